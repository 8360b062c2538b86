#include "Platform/CoreFoundationObjects.h"

namespace tarnwell {

CFPointer<CFStringRef> stringObject(std::string_view text) {
  return CFPointer<CFStringRef>(CFStringCreateWithBytes(
      kCFAllocatorDefault, reinterpret_cast<const UInt8*>(text.data()), static_cast<CFIndex>(text.size()),
      kCFStringEncodingUTF8, /*isExternalRepresentation=*/false));
}

std::optional<std::string> utf8Text(CFStringRef string) {
  const CFIndex length = CFStringGetLength(string);
  std::string text(static_cast<std::size_t>(CFStringGetMaximumSizeForEncoding(length, kCFStringEncodingUTF8)),
                   '\0');
  CFIndex used = 0;
  const CFIndex converted =
      CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUTF8, /*lossByte=*/0,
                       /*isExternalRepresentation=*/false, reinterpret_cast<UInt8*>(text.data()),
                       static_cast<CFIndex>(text.size()), &used);
  if (converted != length) {
    return std::nullopt;
  }
  text.resize(static_cast<std::size_t>(used));
  return text;
}

}  // namespace tarnwell
