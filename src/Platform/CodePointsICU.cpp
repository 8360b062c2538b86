#include "Platform/CodePoints.h"

#include <unicode/utf8.h>

namespace tarnwell {

char32_t takeCodePoint(std::string_view& text) {
  const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
  std::size_t position = 0;
  UChar32 codePoint = 0;
  U8_NEXT_OR_FFFD(bytes, position, text.size(), codePoint);
  text.remove_prefix(position);
  return static_cast<char32_t>(codePoint);
}

void appendCodePoint(std::string& text, char32_t codePoint) {
  const bool isScalarValue = codePoint < 0xD800 || (codePoint > 0xDFFF && codePoint <= 0x10FFFF);
  const auto scalar = static_cast<std::uint32_t>(isScalarValue ? codePoint : U'\uFFFD');
  std::uint8_t bytes[U8_MAX_LENGTH];
  std::size_t length = 0;
  U8_APPEND_UNSAFE(bytes, length, scalar);
  text.append(reinterpret_cast<const char*>(bytes), length);
}

}  // namespace tarnwell
