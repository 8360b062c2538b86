#pragma once

/// The objects of Core Foundation in memory, as its functions and those of the Security framework see them.
///
/// Threads: one.

#include <CoreFoundation/CoreFoundation.h>

#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "apple/FrameworksInMemory.h"

/// The type that every object has for its base, so that a pointer to the one is a pointer to the other.
struct Object {
  Object() { ++tarnwell::test::FrameworksInMemory::liveObjects; }
  Object(const Object&) = delete;
  virtual ~Object() { --tarnwell::test::FrameworksInMemory::liveObjects; }
  virtual CFTypeID type() const { return 1; }

  int references = 1;
};

struct __CFString : Object {
  explicit __CFString(std::u16string units) : text(std::move(units)) {}
  std::u16string text;  // Core Foundation counts in units of UTF-16
};

struct __CFData : Object {
  __CFData(const UInt8* begin, CFIndex count) : bytes(begin), length(count) {}
  CFTypeID type() const override { return 2; }
  const UInt8* bytes;
  CFIndex length;
};

struct __CFDictionary : Object {
  ~__CFDictionary() override { std::ranges::for_each(retained, CFRelease); }
  std::map<CFTypeRef, CFTypeRef> values;
  std::vector<CFTypeRef> retained;
};

struct __CFArray : Object {
  ~__CFArray() override { std::ranges::for_each(values, CFRelease); }
  std::vector<CFTypeRef> values;
};

struct __CFURL : Object {
  std::string path;
};

struct __CFBoolean : Object {};

namespace tarnwell::test {

std::u16string utf16(std::string_view bytes);

/// As far as half of a surrogate pair; `units` is how much was converted.
std::string utf8(std::u16string_view text, std::size_t& units);

}  // namespace tarnwell::test
