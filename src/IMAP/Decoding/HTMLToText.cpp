// Turns HTML into plain text in several passes. Each pass has exactly the meaning of one regular expression.
// A search that found nothing is not repeated at later "<".

#include "IMAP/Decoding/HTMLToText.h"

#include <algorithm>

#include "IMAP/Decoding/TextDecoding.h"
#include "IMAP/Decoding/TextReplacement.h"
#include "Text/ASCIICase.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell::TextDecoding {

namespace {

constexpr auto nowhere = std::string_view::npos;

bool startsWith(std::string_view text, std::size_t position, std::string_view start) {
  return text.substr(position, start.size()) == start;
}

/// The end of a name at `position`, in any letter case, or nowhere. Case folding is that of Unicode: U+017F
/// is an s, and the ligatures U+FB05 and U+FB06 are an st.
std::size_t endOfName(std::string_view text, std::size_t position, std::string_view lowerName) {
  while (!lowerName.empty()) {
    if (position >= text.size()) {
      return nowhere;
    }
    const bool isBeyondASCII = byteAt(text, position) >= 0x80;
    if (asciiLowercasedByte(text[position]) == lowerName.front()) {
      ++position;
      lowerName.remove_prefix(1);
    } else if (isBeyondASCII && lowerName.front() == 's' && startsWith(text, position, "\u017F")) {
      position += 2;
      lowerName.remove_prefix(1);
    } else if (isBeyondASCII && lowerName.starts_with("st") &&
               (startsWith(text, position, "\uFB05") || startsWith(text, position, "\uFB06"))) {
      position += 3;
      lowerName.remove_prefix(2);
    } else {
      return nowhere;
    }
  }
  return position;
}

/// The end of the first closing tag "</name>" at or after `position`, or nowhere.
std::size_t endOfClosingTag(std::string_view text, std::size_t position, std::string_view lowerName) {
  for (std::size_t start = text.find("</", position); start != nowhere; start = text.find("</", start + 1)) {
    const std::size_t end = endOfName(text, start + 2, lowerName);
    if (end != nowhere && end < text.size() && text[end] == '>') {
      return end + 1;
    }
  }
  return nowhere;
}

/// Replaces every "<name[^>]*>[\s\S]*?</name>" by one space.
/// Deliberate: the name may be the beginning of a longer one. So "<header>" opens a head, and everything up
/// to a later "</head>" goes. This only hides more of a broken message: a "</head>" without a "<head" is
/// broken.
void removeElement(std::string& text, std::string_view lowerName) {
  const std::string_view html = text;
  TextReplacement replacement(text);
  for (std::size_t start = html.find('<'); start != nowhere;) {
    const std::size_t nameEnd = endOfName(html, start + 1, lowerName);
    if (nameEnd == nowhere) {
      start = html.find('<', start + 1);
      continue;
    }
    // When something is not found after this tag, it is not found after later tags either.
    const std::size_t tagEnd = html.find('>', nameEnd);
    if (tagEnd == nowhere) {
      break;
    }
    const std::size_t elementEnd = endOfClosingTag(html, tagEnd + 1, lowerName);
    if (elementEnd == nowhere) {
      break;
    }
    replacement.replace(start, elementEnd, " ");
    start = html.find('<', elementEnd);
  }
  replacement.finish();
}

std::size_t skipWhitespace(std::string_view text, std::size_t position) {
  while (position < text.size()) {
    std::size_t next = position;
    if (!isWhitespace(nextCodePoint(text, next))) {
      break;
    }
    position = next;
  }
  return position;
}

/// The end of the name of a tag that ends a line: "br|/p|/div|/tr|/li|/h[1-6]".
std::size_t endOfLineTagName(std::string_view text, std::size_t position) {
  if (position == text.size() || (text[position] != '/' && asciiLowercasedByte(text[position]) != 'b')) {
    return nowhere;
  }
  for (const std::string_view name : {"br", "/p", "/div", "/tr", "/li"}) {
    const std::size_t end = endOfName(text, position, name);
    if (end != nowhere) {
      return end;
    }
  }
  const std::size_t digit = endOfName(text, position, "/h");
  const bool isHeading = digit < text.size() && text[digit] >= '1' && text[digit] <= '6';
  return isHeading ? digit + 1 : nowhere;
}

/// Replaces every "<\s*(br|/p|/div|/tr|/li|/h[1-6])\s*/?>" by a line feed.
void breakLines(std::string& text) {
  const std::string_view html = text;
  TextReplacement replacement(text);
  for (std::size_t start = html.find('<'); start != nowhere;) {
    std::size_t end = endOfLineTagName(html, skipWhitespace(html, start + 1));
    if (end != nowhere) {
      end = skipWhitespace(html, end);
      if (end < html.size() && html[end] == '/') {
        ++end;
      }
    }
    if (end < html.size() && html[end] == '>') {
      replacement.replace(start, end + 1, "\n");
      start = html.find('<', end + 1);
    } else {
      start = html.find('<', start + 1);
    }
  }
  replacement.finish();
}

/// A noncharacter (Unicode 15, section 23.7), which mail does not need. It is not longer than the shortest
/// tag.
constexpr std::string_view inlineMark = "\uFDD0";

/// True for elements that begin or end a line, a cell or a control. All others flow with the text around
/// them.
bool takesRoom(std::string_view tag) {
  static constexpr std::string_view names[] = {
      "address",  "article", "aside", "blockquote", "body",    "br",       "button",     "caption", "center",
      "dd",       "dir",     "div",   "dl",         "dt",      "fieldset", "figcaption", "figure",  "footer",
      "form",     "h1",      "h2",    "h3",         "h4",      "h5",       "h6",         "header",  "hr",
      "html",     "iframe",  "img",   "input",      "legend",  "li",       "main",       "menu",    "nav",
      "ol",       "option",  "p",     "pre",        "section", "select",   "table",      "tbody",   "td",
      "textarea", "tfoot",   "th",    "thead",      "title",   "tr",       "ul",         "video"};
  tag.remove_prefix(tag.starts_with("</") ? 2 : 1);
  const auto nameEnd = std::ranges::find_if_not(tag, isASCIILetterOrDigit);
  const std::string_view name = tag.substr(0, static_cast<std::size_t>(nameEnd - tag.begin()));
  return std::ranges::any_of(names,
                             [name](std::string_view known) { return equalsIgnoringASCIICase(name, known); });
}

enum class InlineTags { becomeSpaces, becomeMarks };

/// Replaces every "<[^>]+>" by one space or by a mark.
void removeTags(std::string& text, InlineTags inlineTags) {
  const std::string_view html = text;
  TextReplacement replacement(text);
  for (std::size_t start = html.find('<'); start != nowhere;) {
    const std::size_t end = html.find('>', start + 1);
    if (end == nowhere) {
      break;
    }
    const bool isEmpty = end == start + 1;
    if (!isEmpty) {
      const bool isMarked =
          inlineTags == InlineTags::becomeMarks && !takesRoom(html.substr(start, end - start));
      replacement.replace(start, end + 1, isMarked ? inlineMark : " ");
    }
    start = html.find('<', end + 1);
  }
  replacement.finish();
}

void reduce(std::string& html, InlineTags inlineTags) {
  for (const std::string_view name : {"script", "style", "head"}) {
    removeElement(html, name);
  }
  breakLines(html);
  removeTags(html, inlineTags);
  decodeHTMLEntities(html);
}

}  // namespace

void reduceHTMLToText(std::string& html) { reduce(html, InlineTags::becomeSpaces); }

void reduceHTMLToMarkedText(std::string& html) { reduce(html, InlineTags::becomeMarks); }

std::string withoutInlineMarks(std::string_view markedText) {
  std::string text;
  for (std::size_t position = 0; position < markedText.size();) {
    const std::size_t mark = std::min(markedText.find(inlineMark, position), markedText.size());
    text += markedText.substr(position, mark - position);
    position = mark + inlineMark.size();
  }
  return text;
}

std::string htmlToText(std::string_view html) {
  std::string text(html);
  reduceHTMLToText(text);
  return text;
}

}  // namespace tarnwell::TextDecoding
