#pragma once

/// The character references of HTML: eleven named ones and the numeric ones.
///
///     std::string text = "caf&#xE9; &amp; bar";
///     decodeHTMLEntities(text);  // "café & bar"
///
/// Threads: all functions are pure.

#include <string>
#include <string_view>

namespace tarnwell::TextDecoding {

/// Decodes them where the text lies; any other reference stays as it stands. Linear in the text.
void decodeHTMLEntities(std::string& text);

/// Decodes what a mail program decodes beyond that, as far as it can hide a word: references to blanks and to
/// invisible characters, and numeric ones with a capital X or without a semicolon.
void decodeRemainingHTMLEntities(std::string& text);

}  // namespace tarnwell::TextDecoding
