#include <CoreFoundation/CoreFoundation.h>

#include <cstring>
#include <stdexcept>

#include "Text/UTF8.h"
#include "apple/ObjectsInMemory.h"

namespace tarnwell::test {

FrameworksInMemory& frameworksInMemory() {
  static FrameworksInMemory frameworks;
  return frameworks;
}

std::u16string utf16(std::string_view bytes) {
  std::u16string text;
  for (std::size_t position = 0; position < bytes.size();) {
    char32_t codePoint = nextCodePoint(bytes, position);
    if (codePoint > 0xFFFF) {
      text.push_back(static_cast<char16_t>(0xD7C0 + (codePoint >> 10)));
      codePoint = 0xDC00 + (codePoint & 0x3FF);
    }
    text.push_back(static_cast<char16_t>(codePoint));
  }
  return text;
}

std::string utf8(std::u16string_view text, std::size_t& units) {
  std::string bytes;
  for (units = 0; units < text.size(); ++units) {
    char32_t codePoint = text[units];
    if (codePoint >> 10 == 0x36 && units + 1 < text.size() && text[units + 1] >> 10 == 0x37) {
      codePoint = ((codePoint - 0xD7C0) << 10) + (text[++units] & 0x3FFU);
    } else if (codePoint >> 11 == 0x1B) {
      break;
    }
    appendCodePoint(bytes, codePoint);
  }
  return bytes;
}

}  // namespace tarnwell::test

using tarnwell::test::frameworksInMemory;

struct __CFBundle {};
struct __CFAllocator {};
struct OpaqueKeyCallBacks {};
struct OpaqueValueCallBacks {};

const OpaqueKeyCallBacks kCFTypeDictionaryKeyCallBacks{};
const OpaqueValueCallBacks kCFTypeDictionaryValueCallBacks{};
const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFAllocatorRef kCFAllocatorNull = new __CFAllocator;
const CFBooleanRef kCFBooleanTrue = new __CFBoolean;
namespace {

Object* objectOf(CFTypeRef object) { return static_cast<Object*>(const_cast<void*>(object)); }

CFTypeRef retained(CFTypeRef object) {
  ++objectOf(object)->references;
  return object;
}

}  // namespace

void CFRelease(CFTypeRef object) {
  if (--objectOf(object)->references == 0) {
    delete objectOf(object);
  }
}

CFTypeID CFGetTypeID(CFTypeRef object) { return objectOf(object)->type(); }

CFIndex CFArrayGetCount(CFArrayRef array) { return static_cast<CFIndex>(array->values.size()); }

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  return array->values.at(static_cast<std::size_t>(index));
}

CFBundleRef CFBundleGetMainBundle() {
  static __CFBundle bundle;
  return frameworksInMemory().hasBundle ? &bundle : nullptr;
}

CFURLRef CFBundleCopyExecutableURL(CFBundleRef /*bundle*/) {
  if (!frameworksInMemory().bundleExecutable) {
    return nullptr;
  }
  auto* url = new __CFURL;
  url->path = *frameworksInMemory().bundleExecutable;
  return url;
}

CFDataRef CFDataCreateWithBytesNoCopy(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex length,
                                      CFAllocatorRef bytesDeallocator) {
  if (bytesDeallocator != kCFAllocatorNull) {
    throw std::logic_error("the bytes of another would be freed");
  }
  return new __CFData(bytes, length);
}

const UInt8* CFDataGetBytePtr(CFDataRef data) { return data->bytes; }
CFIndex CFDataGetLength(CFDataRef data) { return data->length; }
CFTypeID CFDataGetTypeID() { return 2; }

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef /*allocator*/, CFIndex /*capacity*/,
                                                 const CFDictionaryKeyCallBacks* /*keyCallBacks*/,
                                                 const CFDictionaryValueCallBacks* /*valueCallBacks*/) {
  return new __CFDictionary;
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  dictionary->values[key] = value;
  dictionary->retained.insert(dictionary->retained.end(), {retained(key), retained(value)});
}

CFArrayRef CFLocaleCopyPreferredLanguages() {
  if (!frameworksInMemory().languages) {
    return nullptr;
  }
  auto* array = new __CFArray;
  for (const std::u16string& language : *frameworksInMemory().languages) {
    array->values.push_back(new __CFString(language));
  }
  return array;
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef /*allocator*/, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding /*encoding*/, Boolean /*isExternalRepresentation*/) {
  std::string_view text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
  bool isValid = true;
  for (std::size_t position = 0; position < text.size();) {
    (void)tarnwell::nextCodePoint(text, position, &isValid);
  }
  return isValid ? new __CFString(tarnwell::test::utf16(text)) : nullptr;
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding /*encoding*/, UInt8 /*lossByte*/,
                         Boolean /*isExternalRepresentation*/, UInt8* buffer, CFIndex capacity,
                         CFIndex* used) {
  std::size_t units = 0;
  auto text = std::u16string_view(string->text)
                  .substr(static_cast<std::size_t>(range.location), static_cast<std::size_t>(range.length));
  std::string bytes = tarnwell::test::utf8(text, units);
  if (static_cast<CFIndex>(bytes.size()) > capacity) {
    throw std::logic_error("the buffer is too small");
  }
  std::ranges::copy(bytes, buffer);
  *used = static_cast<CFIndex>(bytes.size());
  return static_cast<CFIndex>(units);
}

CFIndex CFStringGetLength(CFStringRef string) { return static_cast<CFIndex>(string->text.size()); }

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding /*encoding*/) {
  return length * 3;
}

Boolean CFURLGetFileSystemRepresentation(CFURLRef url, Boolean /*resolveAgainstBase*/, UInt8* buffer,
                                         CFIndex capacity) {
  if (static_cast<CFIndex>(url->path.size()) >= capacity) {
    return false;
  }
  std::memcpy(buffer, url->path.c_str(), url->path.size() + 1);
  return true;
}
