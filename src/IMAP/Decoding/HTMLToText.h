#pragma once

/// The steps from HTML to text: `htmlToText` in TextDecoding.h takes them all, Readings.h some of its own.
/// All of them change the text where it lies, in linear time.
///
///     std::string html = "<b>S</b>ecurity&#8203; <td>code";
///     reduceHTMLToMarkedText(html);
///     withoutInlineMarks(html);       // "Security\u200B  code"; `htmlToText` gives " S ecurity\u200B  code"
///     std::string text = "caf&#xE9; &amp; bar";
///     decodeHTMLEntities(text);       // "café & bar"
///
/// Threads: all functions are pure.

#include <string>
#include <string_view>

namespace tarnwell::TextDecoding {

/// As `reduceHTMLToText`, but a tag that takes no room on the screen becomes a mark and not a space. Code
/// point for code point the two texts correspond.
void reduceHTMLToMarkedText(std::string& html);

std::string withoutInlineMarks(std::string_view markedText);

/// Decodes the character references of HTML: eleven named ones and the numeric ones. Any other stays as it
/// stands.
void decodeHTMLEntities(std::string& text);

/// Decodes what a mail program decodes beyond that, as far as it can hide a word: references to blanks and to
/// invisible characters, and numeric ones with a capital X or without a semicolon.
void decodeRemainingHTMLEntities(std::string& text);

}  // namespace tarnwell::TextDecoding
