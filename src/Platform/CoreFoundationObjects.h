#pragma once

/// Core Foundation objects with an owner, and conversion of their strings to and from UTF-8. macOS only.
/// Include this header only in source files: it brings the framework's headers with it.
///
///     // "Copy" or "Create" in the function's name means that the caller owns the result.
///     CFPointer<CFArrayRef> languages(CFLocaleCopyPreferredLanguages());
///     auto first = utf8Text(static_cast<CFStringRef>(CFArrayGetValueAtIndex(languages.get(), 0)));
///
/// Threads: any, but only one thread at a time uses an object.

#include <CoreFoundation/CoreFoundation.h>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace tarnwell {

/// Releases one reference to an object.
struct CFReleaser {
  void operator()(CFTypeRef object) const { CFRelease(object); }
};

/// Owns one reference to an object. `Reference` is its reference type, such as `CFStringRef`.
template <class Reference>
using CFPointer = std::unique_ptr<std::remove_pointer_t<Reference>, CFReleaser>;

/// Null for bytes that are not valid UTF-8.
CFPointer<CFStringRef> stringObject(std::string_view text);

/// Absent for a string that UTF-8 cannot express, for example one with an unpaired surrogate.
std::optional<std::string> utf8Text(CFStringRef string);

}  // namespace tarnwell
