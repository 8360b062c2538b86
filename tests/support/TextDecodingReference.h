#pragma once

/// The operations of TextDecoding.h in their simplest form, slow, by ICU's regular expressions or step by
/// step. For valid UTF-8 only, except `referenceBytes` and `referenceBase64`.

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

#include "IMAP/Decoding/TextDecoding.h"
#include "Text/Text.h"
#include "Text/UTF8.h"
#include "support/RegexReference.h"

namespace tarnwell::TextDecoding {

/// Decodes byte after byte, without short cuts.
inline std::string referenceBytes(std::string_view encoded, Underscore underscore) {
  const auto isHex = [&](std::size_t at) {
    return at < encoded.size() &&
           std::string_view("0123456789abcdefABCDEF").find(encoded[at]) != std::string_view::npos;
  };
  std::string bytes;
  for (std::size_t at = 0; at < encoded.size();) {
    const std::string_view rest = encoded.substr(at);
    if (rest.starts_with("=\r\n")) {
      at += 3;
    } else if (rest.starts_with("=\n")) {
      at += 2;
    } else if (rest.front() == '=' && isHex(at + 1) && isHex(at + 2)) {
      bytes += static_cast<char>(std::stoi(std::string(rest.substr(1, 2)), nullptr, 16));
      at += 3;
    } else {
      bytes += rest.front() == '_' && underscore == Underscore::isSpace ? ' ' : rest.front();
      at += 1;
    }
  }
  return bytes;
}

constexpr std::string_view base64Letters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

/// Checks the text after padding, line by line and then run by run.
inline bool referenceIsBase64Again(std::string_view rest) {
  constexpr auto none = std::string_view::npos;
  std::vector<std::string> runs{""};
  for (std::size_t begin = 0; begin <= rest.size();) {
    const std::size_t end = std::min(rest.find_first_of("\r\n", begin), rest.size());
    char before = '=';  // blanks may follow it, as at the beginning of a line
    for (std::size_t at = begin; (at = rest.find_first_not_of(" \t", at)) < end; ++at) {
      const bool isLetter = base64Letters.find(rest[at]) != none;
      const bool hasBlanksBefore = at > begin && (rest[at - 1] == ' ' || rest[at - 1] == '\t');
      if ((!isLetter && rest[at] != '=') || (isLetter && before != '=' && hasBlanksBefore)) {
        return false;
      }
      before = rest[at];
      isLetter ? runs.back().push_back(before) : runs.emplace_back().clear();
    }
    begin = end + 1;
  }
  const std::string last = runs.back();
  runs.pop_back();
  return last.size() % 4 == 0 &&
         std::none_of(runs.begin(), runs.end(), [](const std::string& run) { return run.size() % 4 == 1; });
}

/// Follows RFC 2045, section 6.8, bit by bit. Checks the rest again after each padding.
inline std::optional<std::string> referenceBase64(std::string_view text) {
  std::string bytes;
  std::string bits;
  bool sawSextet = false;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const std::size_t sextet = base64Letters.find(text[at]);
    if (text[at] == '=') {
      bits.clear();
      if (!bytes.empty() && !referenceIsBase64Again(text.substr(at + 1))) {
        break;
      }
    } else if (sextet != std::string_view::npos) {
      sawSextet = true;
      for (unsigned bit = 6; bit-- > 0;) {
        bits += (sextet >> bit & 1) != 0 ? '1' : '0';
      }
    }
    if (bits.size() >= 8) {
      bytes += static_cast<char>(std::stoi(bits.substr(0, 8), nullptr, 2));
      bits.erase(0, 8);
    }
    // Four sextets are three bytes and leave no bits.
  }
  return sawSextet && bytes.empty() ? std::nullopt : std::optional(bytes);
}

/// Finds the words of the field by the regular expression and decodes each by itself.
inline std::string referenceField(const std::string& field) {
  const auto decodeWord = [](const RegexGroups& groups) {
    const std::string& text = groups[3];
    const bool isBase64 = uppercased(groups[2]) == "B";
    if (!isBase64) {
      return decodeCharset(decodeQuotedPrintable(text, Underscore::isSpace), groups[1]);
    }
    return decodeCharset(decodeBase64(text).value_or(text), groups[1]);
  };
  const auto dropBlanks = [](const std::string& gap) { return trimmed(gap).empty() ? std::string() : gap; };
  return replaceByICU(field, "=\\?([^?]+)\\?([BbQq])\\?([^?]*)\\?=", LetterCase::matters, decodeWord,
                      dropBlanks);
}

inline std::string replacedEverywhere(std::string text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at + to.size())) {
    text.replace(at, from.size(), to);
  }
  return text;
}

/// The character of a numeric reference, or the match itself. Reads the number with the standard library.
inline std::string scalarOrMatch(const RegexGroups& groups) {
  const bool isHexadecimal = groups[1].starts_with('x');
  const std::string digits = groups[1].substr(isHexadecimal ? 1 : 0);
  std::uint32_t value = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), value, isHexadecimal ? 16 : 10);
  const bool isNumber = error == std::errc() && end == digits.data() + digits.size();
  if (!isNumber || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF)) {
    return groups[0];
  }
  std::string character;
  appendCodePoint(character, value);
  return character;
}

/// HTML as plain text, by regular expressions and plain replacements.
inline std::string referenceText(std::string text) {
  for (const std::string name : {"script", "style", "head"}) {
    text = replaceByICU(text, "<" + name + "[^>]*>[\\s\\S]*?</" + name + ">", LetterCase::isIgnored, " ");
  }
  text = replaceByICU(text, "<\\s*(br|/p|/div|/tr|/li|/h[1-6])\\s*/?>", LetterCase::isIgnored, "\n");
  text = replaceByICU(text, "<[^>]+>", LetterCase::matters, " ");
  const std::pair<std::string_view, std::string_view> entities[] = {
      {"&amp;", "&"},        {"&lt;", "<"},          {"&gt;", ">"},        {"&quot;", "\""},
      {"&#39;", "'"},        {"&apos;", "'"},        {"&nbsp;", " "},      {"&mdash;", "\u2014"},
      {"&ndash;", "\u2013"}, {"&hellip;", "\u2026"}, {"&copy;", "\u00A9"}, {"&reg;", "\u00AE"}};
  for (const auto& [entity, character] : entities) {
    text = replacedEverywhere(std::move(text), entity, character);
  }
  return replaceByICU(text, "&#(x?[0-9A-Fa-f]+);", LetterCase::matters, scalarOrMatch);
}

/// The preview, step by step over the whole text.
inline Snippet referenceSnippet(const std::string& text, std::int64_t maxChars) {
  const std::string plain = replaceByICU(text, "\\u00A0", LetterCase::matters, " ");
  const std::string collapsed(trimmed(replaceByICU(plain, "\\s+", LetterCase::matters, " ")));
  const auto limit = static_cast<std::size_t>(std::max<std::int64_t>(maxChars, 0));
  if (characterCount(collapsed) <= limit) {
    return {.text = collapsed, .truncated = false};
  }
  return {.text = std::string(trimmed(characterPrefix(collapsed, limit))) + "…", .truncated = true};
}

}  // namespace tarnwell::TextDecoding
