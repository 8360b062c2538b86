#pragma once

/// Objects of Core Foundation with an owner, and their texts as UTF-8. macOS only; included by source files
/// alone, since it brings the framework's headers with it.
///
///     // Of a function with "Create" or "Copy" in its name.
///     CFPointer<CFArrayRef> languages(CFLocaleCopyPreferredLanguages());
///     auto first = utf8Text(static_cast<CFStringRef>(CFArrayGetValueAtIndex(languages.get(), 0)));
///
/// Threads: any; one object by one thread at a time.

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

/// Owns one reference to an object, named by its reference type.
template <class Reference>
using CFPointer = std::unique_ptr<std::remove_pointer_t<Reference>, CFReleaser>;

/// Null for bytes that are not valid UTF-8.
CFPointer<CFStringRef> stringObject(std::string_view text);

/// Absent for a string that has no form in UTF-8, such as half of a surrogate pair.
std::optional<std::string> utf8Text(CFStringRef string);

}  // namespace tarnwell
