#pragma once

/// What a text of JSON (RFC 8259, section 7) may hold as it is: characters that need no escape.
///
/// Threads: pure functions.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace tarnwell {

/// ASCII without control characters, quotation mark and backslash.
inline constexpr std::array<bool, 256> isPlainInJSON = [] {
  std::array<bool, 256> isPlain{};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte) {
    isPlain[byte] = byte != '"' && byte != '\\';
  }
  return isPlain;
}();

/// The number of bytes before the first one that is not plain ASCII; 8 when all of them are. The first byte
/// is the lowest one.
constexpr int plainBytes(std::uint64_t bytes) {
  constexpr std::uint64_t ones = 0x0101010101010101;
  const std::uint64_t quotationMark = bytes ^ (ones * '"');  // 0 where there is one
  const std::uint64_t backslash = bytes ^ (ones * '\\');
  // The highest bit of a byte is set where it is beyond ASCII, or too small for its subtraction and borrows.
  // Only what stands behind such a byte has lent, and may have the bit for that reason alone.
  const std::uint64_t highestBits =
      bytes | (bytes - ones * 0x20) | (quotationMark - ones) | (backslash - ones);
  return std::countr_zero(highestBits & (ones * 0x80)) / 8;
}

/// The end of the run of plain ASCII at `position`.
inline const char* endOfPlainASCII(const char* position, const char* end) {
  constexpr int step = 8;
  while (end - position >= step) {
    std::uint64_t bytes = 0;
    for (int i = 0; i < step; ++i) {  // compilers make one reading of it
      bytes |= std::uint64_t{static_cast<unsigned char>(position[i])} << (8 * i);
    }
    const int count = plainBytes(bytes);
    position += count;
    if (count < step) {
      return position;
    }
  }
  while (position != end && isPlainInJSON[static_cast<unsigned char>(*position)]) {
    ++position;
  }
  return position;
}

/// The end of the run of characters beyond ASCII at `position`. It ends before bytes that are not UTF-8, too.
const char* endOfRunBeyondASCII(const char* position, const char* end);

/// The end of the run of characters at `position` that need no escape. It ends before bytes that are not
/// UTF-8, too.
inline const char* endOfPlainRun(const char* position, const char* end) {
  for (;;) {
    position = endOfPlainASCII(position, end);
    if (position == end || static_cast<unsigned char>(*position) < 0x80) {
      return position;
    }
    const char* const next = endOfRunBeyondASCII(position, end);
    if (next == position) {
      return position;
    }
    position = next;
  }
}

}  // namespace tarnwell
