#pragma once

/// HTML reduced to text with a note of where a mail program would show no gap (see Readings.h).
///
///     std::string html = "<b>S</b>ecurity&#8203; <td>code";
///     reduceHTMLToMarkedText(html);
///     withoutInlineMarks(html);       // "Security\u200B  code"; `htmlToText` gives " S ecurity\u200B  code"
///
/// Threads: all functions are pure.

#include <string>
#include <string_view>

namespace tarnwell::TextDecoding {

/// As `reduceHTMLToText`, but a tag that takes no room on the screen becomes a mark and not a space. Code
/// point for code point the two texts correspond.
void reduceHTMLToMarkedText(std::string& html);

std::string withoutInlineMarks(std::string_view markedText);

}  // namespace tarnwell::TextDecoding
