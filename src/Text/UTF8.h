#pragma once

/// Reads and writes UTF-8 (RFC 3629) code point by code point. The functions wrap ICU's macros.
///
///     std::size_t position = 0;
///     while (position < text.size()) { use(nextCodePoint(text, position)); }
///
/// Threads: all functions are pure.

#include <unicode/utf8.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwell {

constexpr char32_t replacementCharacter = 0xFFFD;

inline unsigned char byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

inline bool isASCII(std::string_view text) {
  char highestBits = 0;
  for (const char byte : text) {
    highestBits = static_cast<char>(highestBits | byte);
  }
  return U8_IS_SINGLE(highestBits);
}

/// True for every byte of a sequence except the first.
constexpr bool isContinuationByte(char byte) { return U8_IS_TRAIL(byte); }

/// Returns the code point at `position`, which must lie inside the text, and moves `position` after it. For a
/// maximal invalid sequence (Unicode 15, section 3.9) returns U+FFFD and sets `valid`, if given, to false.
/// Never sets `valid` to true.
inline char32_t nextCodePoint(std::string_view text, std::size_t& position, bool* valid = nullptr) {
  UChar32 codePoint = 0;
  U8_NEXT(reinterpret_cast<const std::uint8_t*>(text.data()), position, text.size(), codePoint);
  if (codePoint >= 0) {
    return static_cast<char32_t>(codePoint);
  }
  if (valid != nullptr) {
    *valid = false;
  }
  return replacementCharacter;
}

/// Returns the code point that ends at `position`, which must not be 0, and moves `position` to its
/// beginning.
inline char32_t previousCodePoint(std::string_view text, std::size_t& position) {
  const std::string_view last = text.substr(position - std::min<std::size_t>(position, U8_MAX_LENGTH));
  const auto end = static_cast<std::int32_t>(std::min<std::size_t>(position, U8_MAX_LENGTH));
  std::int32_t start = end;
  UChar32 codePoint = 0;
  U8_PREV_OR_FFFD(last.data(), 0, start, codePoint);
  position -= static_cast<std::size_t>(end - start);
  return static_cast<char32_t>(codePoint);
}

/// Appends a Unicode scalar value. Appends U+FFFD for any other number (a surrogate, above U+10FFFF).
inline void appendCodePoint(std::string& text, char32_t codePoint) {
  std::uint8_t sequence[U8_MAX_LENGTH];
  std::size_t size = 0;
  bool isError = false;
  U8_APPEND(sequence, size, sizeof sequence, codePoint, isError);
  text += isError ? "\uFFFD" : std::string_view(reinterpret_cast<const char*>(sequence), size);
}

/// The first `size` bytes of a text, or up to three less, so no sequence is cut. A sequence has at most three
/// continuation bytes. More of them in a row are not valid text, so they may be cut.
constexpr std::string_view bytePrefix(std::string_view text, std::size_t size) {
  if (size >= text.size()) {
    return text;
  }
  std::size_t end = size;
  for (int steps = 0; steps < 3 && end > 0 && isContinuationByte(text[end]); ++steps) {
    --end;
  }
  return text.substr(0, end);
}

}  // namespace tarnwell
