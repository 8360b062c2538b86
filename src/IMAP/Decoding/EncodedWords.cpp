#include "IMAP/Decoding/EncodedWord.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "Text/Text.h"

namespace tarnwell::TextDecoding {

namespace {

constexpr auto nowhere = std::string_view::npos;

/// The encoded word that begins at `start`, where "=?" stands. A word contains at most three more question
/// marks, so trying every "=?" of a field still takes linear time.
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
  return EncodedWord{.start = start,
                     .charset = field.substr(charsetStart, charsetEnd - charsetStart),
                     .isBase64 = isBase64,
                     .text = field.substr(textStart, textEnd - textStart),
                     .end = textEnd + 2};
}

}  // namespace

std::optional<EncodedWord> nextEncodedWord(std::string_view field, std::size_t position) {
  for (std::size_t start = field.find("=?", position); start != nowhere;
       start = field.find("=?", start + 1)) {
    if (const std::optional<EncodedWord> word = encodedWordAt(field, start)) {
      return word;
    }
  }
  return std::nullopt;
}

std::string bytesOf(const EncodedWord& word) {
  return word.isBase64 ? decodeBase64(word.text).value_or(std::string(word.text))
                       : decodeQuotedPrintable(word.text, Underscore::isSpace);
}

std::optional<std::string> decodeRFC2047(std::optional<std::string_view> text) {
  if (!text) {
    return std::nullopt;
  }
  const std::string_view field = *text;
  std::string decoded;
  std::size_t copied = 0;
  while (const std::optional<EncodedWord> word = nextEncodedWord(field, copied)) {
    const std::string_view between = field.substr(copied, word->start - copied);
    const bool isAfterWord = copied > 0;
    if (!isAfterWord || !trimmed(between).empty()) {
      decoded += between;
    }
    decoded += decodeCharset(bytesOf(*word), word->charset);
    copied = word->end;
  }
  decoded += field.substr(copied);
  return decoded;
}

}  // namespace tarnwell::TextDecoding
