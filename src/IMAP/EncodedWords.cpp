#include "IMAP/TextDecoding.h"

#include "Platform/Text.h"

namespace tarnwell::IMAPParser {

namespace {

constexpr auto nowhere = std::string_view::npos;

/// "=?charset?B or Q?text?=" (RFC 2047, section 2) as views into the field.
struct EncodedWord {
  std::string_view charset;
  bool isBase64 = false;
  std::string_view text;
  std::size_t end = 0;
};

/// The encoded word that begins at `start`, where "=?" stands. A word reaches over at most three more
/// question marks, so that reading from every "=?" of a field stays linear.
std::optional<EncodedWord> encodedWordAt(std::string_view field, std::size_t start) {
  const std::size_t charsetStart = start + 2;
  const std::size_t charsetEnd = field.find('?', charsetStart);
  if (charsetEnd == nowhere || charsetEnd == charsetStart || field.size() - charsetEnd < 5) {
    return std::nullopt;
  }
  const char encoding = field[charsetEnd + 1];
  const bool isBase64 = encoding == 'B' || encoding == 'b';
  const bool isQuoted = encoding == 'Q' || encoding == 'q';
  if ((!isBase64 && !isQuoted) || field[charsetEnd + 2] != '?') {
    return std::nullopt;
  }
  const std::size_t textStart = charsetEnd + 3;
  const std::size_t textEnd = field.find('?', textStart);
  if (textEnd == nowhere || textEnd + 1 == field.size() || field[textEnd + 1] != '=') {
    return std::nullopt;
  }
  return EncodedWord{.charset = field.substr(charsetStart, charsetEnd - charsetStart),
                     .isBase64 = isBase64,
                     .text = field.substr(textStart, textEnd - textStart),
                     .end = textEnd + 2};
}

std::string decodeEncodedWord(const EncodedWord& word) {
  if (!word.isBase64) {
    return decodeCharset(decodeQuotedPrintable(word.text, Underscore::isSpace), word.charset);
  }
  const std::optional<std::string> bytes = decodeBase64(word.text);
  return decodeCharset(bytes ? std::string_view(*bytes) : word.text, word.charset);
}

}  // namespace

std::optional<std::string> decodeRFC2047(std::optional<std::string_view> text) {
  if (!text) {
    return std::nullopt;
  }
  const std::string_view field = *text;
  std::string decoded;
  std::size_t copied = 0;
  bool isBehindWord = false;
  for (std::size_t start = field.find("=?"); start != nowhere;) {
    const std::optional<EncodedWord> word = encodedWordAt(field, start);
    if (!word) {
      start = field.find("=?", start + 1);
      continue;
    }
    const std::string_view between = field.substr(copied, start - copied);
    if (!isBehindWord || !trimmed(between).empty()) {
      decoded += between;
    }
    decoded += decodeEncodedWord(*word);
    isBehindWord = true;
    copied = word->end;
    start = field.find("=?", copied);
  }
  decoded += field.substr(copied);
  return decoded;
}

}  // namespace tarnwell::IMAPParser
