#pragma once

/// Decodes the character references of HTML: eleven named ones and the numeric ones.
///
///     std::string text = "caf&#xE9; &amp; bar";
///     decodeHTMLEntities(text);  // "café & bar"
///
/// Threads: all functions are pure.

#include <string>
#include <string_view>

namespace tarnwell::TextDecoding {

/// Decodes them in place. Other references stay unchanged. Takes linear time.
void decodeHTMLEntities(std::string& text);

/// Decodes other references that a mail program also decodes and that can hide a word: those to blanks and to
/// invisible characters, and numeric ones with a capital X or without a semicolon.
void decodeRemainingHTMLEntities(std::string& text);

}  // namespace tarnwell::TextDecoding
