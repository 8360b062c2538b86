#pragma once

/// Reading and writing UTF-8 (RFC 3629) code point by code point, for the scanners of this program.
///
///     std::size_t position = 0;
///     while (position < text.size()) { use(nextCodePoint(text, position)); }
///
/// Threads: all functions are pure.

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwell {

constexpr char32_t replacementCharacter = 0xFFFD;

inline unsigned char byteAt(std::string_view text, std::size_t position) {
  return static_cast<unsigned char>(text[position]);
}

/// True for the bytes of a sequence behind its first.
constexpr bool isContinuationByte(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

/// The shape of the sequence that a lead byte opens: its length, and the allowed range of its second
/// byte, which excludes overlong forms, surrogates and values above U+10FFFF (Unicode 15, table 3-7).
/// A byte that cannot open a sequence has length 0.
struct UTF8Sequence {
  unsigned length;
  unsigned char secondLowest = 0x80;
  unsigned char secondHighest = 0xBF;
};

constexpr UTF8Sequence sequenceOpenedBy(unsigned char lead) {
  if (lead < 0x80) {
    return {1};
  }
  if (lead < 0xC2) {
    return {0};
  }
  if (lead < 0xE0) {
    return {2};
  }
  if (lead == 0xE0) {
    return {3, 0xA0, 0xBF};
  }
  if (lead == 0xED) {
    return {3, 0x80, 0x9F};
  }
  if (lead < 0xF0) {
    return {3};
  }
  if (lead == 0xF0) {
    return {4, 0x90, 0xBF};
  }
  if (lead < 0xF4) {
    return {4};
  }
  if (lead == 0xF4) {
    return {4, 0x80, 0x8F};
  }
  return {0};
}

/// The code point at `position`, which must lie inside the text and moves behind it. A maximal invalid
/// sequence (Unicode 15, section 3.9) reads as U+FFFD; `valid`, where given, is set to false for it and left
/// alone otherwise.
inline char32_t nextCodePoint(std::string_view text, std::size_t& position, bool* valid = nullptr) {
  const unsigned char lead = byteAt(text, position++);
  if (lead < 0x80) {
    return lead;
  }
  if (lead > 0xE0 && lead < 0xED && text.size() - position >= 2) {
    // Most Japanese and Chinese text: any two continuation bytes will do.
    const unsigned second = byteAt(text, position) ^ 0x80U;
    const unsigned third = byteAt(text, position + 1) ^ 0x80U;
    if ((second | third) < 0x40) {
      position += 2;
      return ((lead & 0xFU) << 12) | (second << 6) | third;
    }
  }
  const UTF8Sequence sequence = sequenceOpenedBy(lead);
  char32_t codePoint = lead & (0x7FU >> sequence.length);
  unsigned char lowest = sequence.secondLowest;
  unsigned char highest = sequence.secondHighest;
  bool complete = sequence.length > 0;
  for (unsigned rest = sequence.length; rest > 1 && complete; --rest) {
    complete =
        position < text.size() && byteAt(text, position) >= lowest && byteAt(text, position) <= highest;
    if (complete) {
      codePoint = (codePoint << 6) | (byteAt(text, position++) & 0x3FU);
    }
    lowest = 0x80;
    highest = 0xBF;
  }
  if (complete) {
    return codePoint;
  }
  if (valid != nullptr) {
    *valid = false;
  }
  return replacementCharacter;
}

/// Appends a Unicode scalar value; anything else (a surrogate, above U+10FFFF) as U+FFFD.
inline void appendCodePoint(std::string& text, char32_t codePoint) {
  if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
    codePoint = replacementCharacter;
  }
  const auto byte = [&text](char32_t value) { text.push_back(static_cast<char>(value)); };
  const auto continuation = [&](unsigned shift) { byte(0x80 | ((codePoint >> shift) & 0x3F)); };
  if (codePoint < 0x80) {
    byte(codePoint);
  } else if (codePoint < 0x800) {
    byte(0xC0 | (codePoint >> 6));
    continuation(0);
  } else if (codePoint < 0x10000) {
    byte(0xE0 | (codePoint >> 12));
    continuation(6);
    continuation(0);
  } else {
    byte(0xF0 | (codePoint >> 18));
    continuation(12);
    continuation(6);
    continuation(0);
  }
}

/// The first `size` bytes of a text, or a little less, so that no sequence is cut. One has at most three
/// continuation bytes; more of them are no text that could be spoilt.
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

/// The length of the run of ASCII bytes at `position`.
std::size_t lengthOfASCIIRun(std::string_view text, std::size_t position);

}  // namespace tarnwell
