#include "MCP/LogText.h"

#include "Platform/Text.h"
#include "Platform/UTF8.h"

namespace tarnwell {

std::string_view shortened(std::string_view text, std::size_t count) {
  constexpr std::size_t bytesForEach = 8;
  return characterPrefix(bytePrefix(text, count * bytesForEach), count);
}

}  // namespace tarnwell
