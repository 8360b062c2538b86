#include "Text/UTF8.h"

#include <cstdint>
#include <cstring>

namespace tarnwell {

std::size_t lengthOfASCIIRun(std::string_view text, std::size_t position) {
  constexpr std::uint64_t highBits = 0x8080808080808080U;
  std::size_t end = position;
  std::uint64_t word;
  while (end + sizeof word <= text.size()) {
    std::memcpy(&word, text.data() + end, sizeof word);
    if ((word & highBits) != 0) {
      break;
    }
    end += sizeof word;
  }
  while (end < text.size() && byteAt(text, end) < 0x80) {
    ++end;
  }
  return end - position;
}

}  // namespace tarnwell
