#pragma once

/// Reduces HTML to text and marks the places where a mail program shows no gap (see Readings.h). Decodes the
/// character references of HTML.
///
///     std::string html = "<b>S</b>ecurity&#8203; <td>code";
///     reduceHTMLToMarkedText(html);
///     withoutInlineMarks(html);       // "Security\u200B  code"; `htmlToText` gives " S ecurity\u200B  code"
///
///     std::string text = "caf&#xE9; &amp; bar";
///     decodeHTMLEntities(text);       // "café & bar"
///
/// Threads: all functions are pure.

#include <string>
#include <string_view>

namespace tarnwell::TextDecoding {

/// Like `reduceHTMLToText`, but replaces a tag that takes no room on the screen by a mark instead of a space.
/// The two texts correspond code point by code point.
void reduceHTMLToMarkedText(std::string& html);

std::string withoutInlineMarks(std::string_view markedText);

/// Decodes eleven named references and the numeric ones in place. Other references stay unchanged. Takes
/// linear time.
void decodeHTMLEntities(std::string& text);

/// Decodes other references that a mail program also decodes and that can hide a word: those to blanks and to
/// invisible characters, and numeric ones with a capital X or without a semicolon.
void decodeRemainingHTMLEntities(std::string& text);

}  // namespace tarnwell::TextDecoding
