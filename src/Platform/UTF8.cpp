#include "Platform/UTF8.h"

#include <cstdint>
#include <cstring>

namespace tarnwell {

std::size_t lengthOfASCIIRun(std::string_view text, std::size_t position) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  std::size_t end = position;
  while (end + 2 * sizeof(std::uint64_t) <= text.size()) {
    std::uint64_t words[2];
    std::memcpy(words, text.data() + end, sizeof words);
    if (((words[0] | words[1]) & highBits) != 0) {
      break;
    }
    end += sizeof words;
  }
  while (end < text.size() && byteAt(text, end) < 0x80) {
    ++end;
  }
  return end - position;
}

}  // namespace tarnwell
