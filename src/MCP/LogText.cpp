#include "MCP/LogText.h"

#include "Platform/Text.h"

namespace tarnwell {

namespace {

bool isContinuationByte(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

}  // namespace

std::string_view shortened(std::string_view text, std::size_t count) {
  constexpr std::size_t bytesForEach = 8;
  std::size_t size = count * bytesForEach;
  if (size < text.size()) {
    while (size > 0 && isContinuationByte(text[size])) {
      --size;
    }
    text = text.substr(0, size);
  }
  return characterPrefix(text, count);
}

}  // namespace tarnwell
