#pragma once

/// Reduces HTML to text and marks the places where a mail program shows no gap (see Readings.h).
///
///     std::string html = "<b>S</b>ecurity&#8203; <td>code";
///     reduceHTMLToMarkedText(html);
///     withoutInlineMarks(html);       // "Security\u200B  code"; `htmlToText` gives " S ecurity\u200B  code"
///
/// Threads: all functions are pure.

#include <string>
#include <string_view>

namespace tarnwell::TextDecoding {

/// Like `reduceHTMLToText`, but replaces a tag that takes no room on the screen by a mark instead of a space.
/// The two texts correspond code point by code point.
void reduceHTMLToMarkedText(std::string& html);

std::string withoutInlineMarks(std::string_view markedText);

}  // namespace tarnwell::TextDecoding
