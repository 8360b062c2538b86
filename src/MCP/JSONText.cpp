#include "MCP/JSONText.h"

#include <string_view>

#include "Platform/UTF8.h"

namespace tarnwell {

const char* endOfRunBeyondASCII(const char* position, const char* end) {
  const std::string_view text(position, end);
  std::size_t next = 0;
  bool isValid = true;
  while (next < text.size() && byteAt(text, next) >= 0x80) {
    const std::size_t begin = next;
    nextCodePoint(text, next, &isValid);
    if (!isValid) {
      return position + begin;
    }
  }
  return position + next;
}

}  // namespace tarnwell
