// The character references of HTML.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <span>

#include "IMAP/Decoding/HTMLToText.h"
#include "IMAP/Decoding/TextReplacement.h"
#include "Text/UTF8.h"

namespace tarnwell::TextDecoding {

namespace {

constexpr auto nowhere = std::string_view::npos;

struct NamedEntity {
  std::string_view entity;
  std::string_view character;
};

constexpr NamedEntity namedEntities[] = {
    {"&lt;", "<"},
    {"&gt;", ">"},
    {"&quot;", "\""},
    {"&apos;", "'"},
    // Deliberate: an ordinary space and not U+00A0, which plain text does not need.
    {"&nbsp;", " "},
    {"&mdash;", "\u2014"},
    {"&ndash;", "\u2013"},
    {"&hellip;", "\u2026"},
    {"&copy;", "\u00A9"},
    {"&reg;", "\u00AE"},
};

/// The other references to blank and invisible characters (HTML, section 13.5). Two of them are also known
/// without a semicolon.
constexpr NamedEntity blankEntities[] = {
    {"&ensp;", " "},
    {"&emsp;", " "},
    {"&emsp13;", " "},
    {"&emsp14;", " "},
    {"&numsp;", " "},
    {"&puncsp;", " "},
    {"&thinsp;", " "},
    {"&ThinSpace;", " "},
    {"&hairsp;", " "},
    {"&VeryThinSpace;", " "},
    {"&MediumSpace;", " "},
    {"&NonBreakingSpace;", " "},
    {"&Tab;", " "},
    {"&NewLine;", " "},
    {"&nbsp", " "},
    {"&shy;", ""},
    {"&shy", ""},
    {"&zwnj;", ""},
    {"&zwj;", ""},
    {"&lrm;", ""},
    {"&rlm;", ""},
    {"&NoBreak;", ""},
    {"&ZeroWidthSpace;", ""},
    {"&NegativeVeryThinSpace;", ""},
    {"&NegativeThinSpace;", ""},
    {"&NegativeMediumSpace;", ""},
    {"&NegativeThickSpace;", ""},
};

/// A reference "&#(x?[0-9A-Fa-f]+);": its end and its scalar value. Without a value the reference is ordinary
/// text: hexadecimal digits without the x, a surrogate, or a number that is too large.
struct NumericReference {
  std::size_t end = 0;
  std::optional<char32_t> value;
};

enum class Grammar { exact, asInBrowsers };

std::optional<NumericReference> numericReferenceAt(std::string_view text, std::size_t start,
                                                   Grammar grammar) {
  if (!text.substr(start).starts_with("&#")) {
    return std::nullopt;
  }
  std::size_t begin = start + 2;
  // Deliberate: in the text that tools return, "&#X41;" with a capital X is not a reference.
  const bool isHexadecimal = text.substr(begin).starts_with('x') ||
                             (grammar == Grammar::asInBrowsers && text.substr(begin).starts_with('X'));
  begin += isHexadecimal ? 1 : 0;
  const std::string_view digits =
      isHexadecimal || grammar == Grammar::exact ? "0123456789ABCDEFabcdef" : "0123456789";
  const std::size_t end = std::min(text.find_first_not_of(digits, begin), text.size());
  const bool isEnded = text.substr(end).starts_with(';');
  if (end == begin || (!isEnded && grammar == Grammar::exact)) {
    return std::nullopt;
  }
  NumericReference reference{.end = end + (isEnded ? 1 : 0), .value = std::nullopt};
  std::uint32_t value = 0;
  const auto [read, error] =
      std::from_chars(text.data() + begin, text.data() + end, value, isHexadecimal ? 16 : 10);
  const bool isNumber = error == std::errc() && read == text.data() + end;
  const bool isSurrogate = value >= 0xD800 && value <= 0xDFFF;
  if (isNumber && value <= 0x10FFFF && !isSurrogate) {
    reference.value = value;
  }
  return reference;
}

/// Replaces the reference at `start` if there is one, and returns where to continue.
std::size_t replaceReference(std::string_view text, std::size_t start, TextReplacement& replacement,
                             std::span<const NamedEntity> entities, Grammar grammar) {
  for (const NamedEntity& named : entities) {
    if (text.substr(start).starts_with(named.entity)) {
      replacement.replace(start, start + named.entity.size(), named.character);
      return start + named.entity.size();
    }
  }
  const std::optional<NumericReference> numeric = numericReferenceAt(text, start, grammar);
  if (!numeric) {
    return start + 1;
  }
  if (numeric->value) {
    std::string character;
    appendCodePoint(character, *numeric->value);
    replacement.replace(start, numeric->end, character);
  }
  return numeric->end;
}

void replaceReferences(std::string& text, std::span<const NamedEntity> entities, Grammar grammar) {
  const std::string_view encoded = text;
  TextReplacement decoded(text);
  for (std::size_t start = encoded.find('&'); start != nowhere;) {
    start = encoded.find('&', replaceReference(encoded, start, decoded, entities, grammar));
  }
  decoded.finish();
}

}  // namespace

/// Deliberate: "&amp;" is decoded first, and then what it uncovers: "&amp;lt;" becomes "<". Mail is often
/// escaped twice, and the result is never used as markup. The other references cannot uncover each other, so
/// one pass is enough for them.
void decodeHTMLEntities(std::string& text) {
  constexpr std::string_view ampersand = "&amp;";
  const std::string_view escaped = text;
  TextReplacement unescaped(text);
  for (std::size_t start = escaped.find(ampersand); start != nowhere;
       start = escaped.find(ampersand, start + ampersand.size())) {
    unescaped.replace(start, start + ampersand.size(), "&");
  }
  unescaped.finish();
  replaceReferences(text, namedEntities, Grammar::exact);
}

void decodeRemainingHTMLEntities(std::string& text) {
  replaceReferences(text, blankEntities, Grammar::asInBrowsers);
}

}  // namespace tarnwell::TextDecoding
