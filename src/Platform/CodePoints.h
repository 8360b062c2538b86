#pragma once

/// Walks over a text code point by code point.

#include <string>
#include <string_view>

namespace tarnwell {

/// Takes the first code point off a text that is not empty. A maximal invalid sequence of UTF-8 counts as
/// one U+FFFD.
char32_t takeCodePoint(std::string_view& text);

/// Appends a code point as UTF-8; one that is no Unicode scalar value becomes U+FFFD.
void appendCodePoint(std::string& text, char32_t codePoint);

}  // namespace tarnwell
