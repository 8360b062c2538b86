#pragma once

/// What a text of JSON (RFC 8259, section 7) may hold as it is.
///
/// Threads: a pure function.

#include <array>
#include <cstddef>
#include <string_view>

#include "Platform/UTF8.h"

namespace tarnwell {

/// ASCII without control characters, quotation mark and backslash.
inline constexpr std::array<bool, 256> isPlainInJSON = [] {
  std::array<bool, 256> isPlain{};
  for (std::size_t byte = 0x20; byte < 0x80; ++byte) {
    isPlain[byte] = byte != '"' && byte != '\\';
  }
  return isPlain;
}();

/// The end of the run of characters at `position` that need no escape. It ends before bytes that are not
/// UTF-8, too.
inline std::size_t endOfPlainRun(std::string_view text, std::size_t position) {
  while (position < text.size()) {
    if (isPlainInJSON[byteAt(text, position)]) {
      ++position;
      continue;
    }
    std::size_t next = position;
    bool isValid = byteAt(text, position) >= 0x80;
    if (isValid) {
      nextCodePoint(text, next, &isValid);
    }
    if (!isValid) {
      return position;
    }
    position = next;
  }
  return position;
}

}  // namespace tarnwell
