#pragma once

/// The encoded words of a header field (RFC 2047, section 2).
///
///     nextEncodedWord("Re: =?utf-8?q?caf=C3=A9?=", 0)   // charset "utf-8", text "caf=C3=A9", start 4
///
/// Threads: all functions are pure.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::TextDecoding {

/// "=?charset?B or Q?text?=" as views into the field.
struct EncodedWord {
  std::size_t start = 0;
  std::string_view charset;
  bool isBase64 = false;
  std::string_view text;
  std::size_t end = 0;
};

/// The first encoded word at or after `position`. Reading all words of a field takes linear time.
std::optional<EncodedWord> nextEncodedWord(std::string_view field, std::size_t position);

/// The word's text with its encoding undone. Base64 that yields no bytes is returned unchanged.
std::string bytesOf(const EncodedWord& word);

}  // namespace tarnwell::TextDecoding
