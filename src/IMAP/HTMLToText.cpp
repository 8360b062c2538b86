// HTML as plain text, in passes of which each has the exact meaning of one regular expression. A pass
// remembers a search that found nothing, so that no search is repeated for each opening "<" or "&".

#include "IMAP/TextDecoding.h"

#include <array>
#include <cstdint>

#include "Platform/Text.h"
#include "Platform/UTF8.h"

namespace tarnwell::IMAPParser {

namespace {

constexpr auto nowhere = std::string_view::npos;

/// The text with some spans replaced, built from left to right.
class Replacement {
 public:
  explicit Replacement(std::string_view text) : text_(text) { result_.reserve(text.size()); }

  /// Copies up to `start`, then takes what stands for the span from there to `end`.
  void replace(std::size_t start, std::size_t end, std::string_view substitute) {
    result_.append(text_, copied_, start - copied_);
    result_ += substitute;
    copied_ = end;
  }

  std::string finished() && {
    result_.append(text_, copied_);
    return std::move(result_);
  }

 private:
  std::string_view text_;
  std::size_t copied_ = 0;
  std::string result_;
};

char lowerASCII(char character) {
  return character >= 'A' && character <= 'Z' ? static_cast<char>(character | 0x20) : character;
}

bool startsWith(std::string_view text, std::size_t position, std::string_view start) {
  return text.substr(position, start.size()) == start;
}

/// Where a name ends that stands at `position` without regard to case, or nowhere. Case folding is that
/// of Unicode: U+017F is an s, and the ligatures U+FB05 and U+FB06 are an st.
std::size_t endOfName(std::string_view text, std::size_t position, std::string_view lowerName) {
  while (!lowerName.empty()) {
    if (position >= text.size()) return nowhere;
    if (lowerASCII(text[position]) == lowerName.front()) {
      ++position;
      lowerName.remove_prefix(1);
    } else if (lowerName.front() == 's' && startsWith(text, position, "\u017F")) {
      position += 2;
      lowerName.remove_prefix(1);
    } else if (lowerName.starts_with("st") &&
               (startsWith(text, position, "\uFB05") || startsWith(text, position, "\uFB06"))) {
      position += 3;
      lowerName.remove_prefix(2);
    } else {
      return nowhere;
    }
  }
  return position;
}

/// The closing tag "</name>" at or behind `position`: its end, or nowhere.
std::size_t endOfClosingTag(std::string_view text, std::size_t position, std::string_view lowerName) {
  for (std::size_t start = text.find("</", position); start != nowhere; start = text.find("</", start + 1)) {
    const std::size_t end = endOfName(text, start + 2, lowerName);
    if (end != nowhere && end < text.size() && text[end] == '>') return end + 1;
  }
  return nowhere;
}

/// Every "<name[^>]*>[\s\S]*?</name>" as one space.
/// Deliberate: the name may be the beginning of a longer one, so that "<header>" opens a head and
/// everything up to a "</head>" behind it goes. It can only hide more of a broken message, and one that
/// has a "</head>" without a "<head" is broken.
std::string withoutElement(std::string_view html, std::string_view lowerName) {
  Replacement replacement(html);
  for (std::size_t start = html.find('<'); start != nowhere;) {
    const std::size_t nameEnd = endOfName(html, start + 1, lowerName);
    if (nameEnd == nowhere) {
      start = html.find('<', start + 1);
      continue;
    }
    // What is missing behind this tag is missing behind all later ones too.
    const std::size_t tagEnd = html.find('>', nameEnd);
    if (tagEnd == nowhere) break;
    const std::size_t elementEnd = endOfClosingTag(html, tagEnd + 1, lowerName);
    if (elementEnd == nowhere) break;
    replacement.replace(start, elementEnd, " ");
    start = html.find('<', elementEnd);
  }
  return std::move(replacement).finished();
}

std::size_t skipWhitespace(std::string_view text, std::size_t position) {
  while (position < text.size()) {
    std::size_t next = position;
    if (!isWhitespace(nextCodePoint(text, next))) break;
    position = next;
  }
  return position;
}

/// Where the name of a tag that ends a line ends: "br|/p|/div|/tr|/li|/h[1-6]".
std::size_t endOfLineTagName(std::string_view text, std::size_t position) {
  if (position == text.size() || (text[position] != '/' && lowerASCII(text[position]) != 'b')) return nowhere;
  for (const std::string_view name : {"br", "/p", "/div", "/tr", "/li"}) {
    const std::size_t end = endOfName(text, position, name);
    if (end != nowhere) return end;
  }
  const std::size_t digit = endOfName(text, position, "/h");
  const bool isHeading = digit < text.size() && text[digit] >= '1' && text[digit] <= '6';
  return isHeading ? digit + 1 : nowhere;
}

/// Every "<\s*(br|/p|/div|/tr|/li|/h[1-6])\s*/?>" as a line feed.
std::string withLineFeeds(std::string_view html) {
  Replacement replacement(html);
  for (std::size_t start = html.find('<'); start != nowhere;) {
    std::size_t end = endOfLineTagName(html, skipWhitespace(html, start + 1));
    if (end != nowhere) {
      end = skipWhitespace(html, end);
      if (end < html.size() && html[end] == '/') ++end;
    }
    if (end < html.size() && html[end] == '>') {
      replacement.replace(start, end + 1, "\n");
      start = html.find('<', end + 1);
    } else {
      start = html.find('<', start + 1);
    }
  }
  return std::move(replacement).finished();
}

/// Every "<[^>]+>" as one space.
std::string withoutTags(std::string_view html) {
  Replacement replacement(html);
  for (std::size_t start = html.find('<'); start != nowhere;) {
    const std::size_t end = html.find('>', start + 1);
    if (end == nowhere) break;
    const bool isEmpty = end == start + 1;
    if (!isEmpty) replacement.replace(start, end + 1, " ");
    start = html.find('<', end + 1);
  }
  return std::move(replacement).finished();
}

struct NamedEntity {
  std::string_view entity;
  std::string_view character;
};

constexpr NamedEntity namedEntities[] = {
    {"&lt;", "<"},
    {"&gt;", ">"},
    {"&quot;", "\""},
    {"&#39;", "'"},
    {"&apos;", "'"},
    // Deliberate: an ordinary space and not U+00A0, which no reader of plain text needs.
    {"&nbsp;", " "},
    {"&mdash;", "\u2014"},
    {"&ndash;", "\u2013"},
    {"&hellip;", "\u2026"},
    {"&copy;", "\u00A9"},
    {"&reg;", "\u00AE"},
};

int digitValue(char digit) {
  if (digit >= '0' && digit <= '9') return digit - '0';
  if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
  if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
  return -1;
}

/// "&#(x?[0-9A-Fa-f]+);": where it ends, and the scalar value it names. A reference without a value is
/// text like any other: hexadecimal digits without the x, a surrogate, or a number that is too large.
struct NumericReference {
  std::size_t end = 0;
  std::optional<char32_t> value;
};

std::optional<NumericReference> numericReferenceAt(std::string_view text, std::size_t start) {
  if (!startsWith(text, start, "&#")) return std::nullopt;
  std::size_t position = start + 2;
  // Deliberate: "&#X41;" with a capital X is no reference.
  const bool isHexadecimal = startsWith(text, position, "x");
  if (isHexadecimal) ++position;
  const std::size_t digitsStart = position;
  const int radix = isHexadecimal ? 16 : 10;
  constexpr std::uint64_t tooLarge = 0x110000;
  std::uint64_t value = 0;
  bool isNumber = true;
  for (; position < text.size() && digitValue(text[position]) >= 0; ++position) {
    const int digit = digitValue(text[position]);
    isNumber = isNumber && digit < radix;
    if (value < tooLarge) value = value * static_cast<unsigned>(radix) + static_cast<unsigned>(digit);
  }
  if (position == digitsStart || !startsWith(text, position, ";")) return std::nullopt;
  NumericReference reference{.end = position + 1, .value = std::nullopt};
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (isNumber && value < tooLarge && !isSurrogate) reference.value = static_cast<char32_t>(value);
  return reference;
}

/// Replaces the reference at `start`, if there is one, and tells where to go on.
std::size_t replaceReference(std::string_view text, std::size_t start, Replacement& replacement) {
  for (const NamedEntity& named : namedEntities) {
    if (startsWith(text, start, named.entity)) {
      replacement.replace(start, start + named.entity.size(), named.character);
      return start + named.entity.size();
    }
  }
  const std::optional<NumericReference> numeric = numericReferenceAt(text, start);
  if (!numeric) return start + 1;
  if (numeric->value) {
    std::string character;
    appendCodePoint(character, *numeric->value);
    replacement.replace(start, numeric->end, character);
  }
  return numeric->end;
}

/// Deliberate: "&amp;" goes first and what it uncovers is decoded too, so that "&amp;lt;" is "<". Mail is
/// often escaped twice, and no markup is made of the result. The other references cannot uncover one
/// another, so that one pass does for all of them.
std::string decodeHTMLEntities(std::string_view text) {
  constexpr std::string_view ampersand = "&amp;";
  Replacement unescaped(text);
  for (std::size_t start = text.find(ampersand); start != nowhere;
       start = text.find(ampersand, start + ampersand.size())) {
    unescaped.replace(start, start + ampersand.size(), "&");
  }
  const std::string once = std::move(unescaped).finished();
  Replacement decoded(once);
  for (std::size_t start = once.find('&'); start != nowhere;) {
    start = once.find('&', replaceReference(once, start, decoded));
  }
  return std::move(decoded).finished();
}

}  // namespace

std::string htmlToText(std::string_view html) {
  std::string text(html);
  for (const std::string_view name : {"script", "style", "head"}) {
    text = withoutElement(text, name);
  }
  text = withLineFeeds(text);
  text = withoutTags(text);
  return decodeHTMLEntities(text);
}

}  // namespace tarnwell::IMAPParser
