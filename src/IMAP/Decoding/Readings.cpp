#include "IMAP/Decoding/Readings.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "IMAP/Decoding/EncodedWord.h"
#include "IMAP/Decoding/HTMLToText.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "Text/ASCIICase.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell::TextDecoding {

namespace {

/// Enough for the rest of any keyword, even one that is spread over lines.
constexpr std::size_t bytesAfterTheCut = 1024;
/// The same for folded text, which has no such gaps.
constexpr std::size_t foldedBytesAfterTheCut = 64;

bool hasEscapeSequences(std::string_view bytes) {
  return bytes.find("\x1B$") != std::string_view::npos || bytes.find("\x1B(") != std::string_view::npos;
}

/// The charsets in which the bytes may be readable, except the known ones.
std::vector<Charset> otherCharsets(std::string_view bytes, const std::vector<Charset>& known) {
  std::vector<Charset> others;
  const auto add = [&](const Charset& charset) {
    if (std::ranges::find(known, charset) == known.end()) {
      others.push_back(charset);
    }
  };
  if (hasEscapeSequences(bytes)) {
    add(Charset::iso2022JP);
  }
  if (!isASCII(bytes)) {
    add(Charset::utf8);
    if (!isValidUTF8(bytes)) {
      add(Charset::shiftJIS);
      add(Charset::eucJP);
    }
  }
  return others;
}

std::size_t codePointCount(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t position = 0; position < text.size(); ++count) {
    nextCodePoint(text, position);
  }
  return count;
}

/// The beginning of a text, unchanged. `leavingBytes` bytes of it leave the program.
Passage asItStands(std::string_view text, std::size_t leavingBytes) {
  return {.text = std::string(bytePrefix(text, leavingBytes + bytesAfterTheCut)), .end = leavingBytes};
}

/// The same, folded. One character may have any number of bytes; only the first megabyte is read.
Passage folded(std::string_view text, std::size_t leavingBytes) {
  const std::string_view leaving = bytePrefix(text.substr(0, leavingBytes), mostBytesForReadings);
  const std::size_t end = foldedForScanning(leaving).size();
  // There may be pages of blanks inside a keyword. They fold to one blank.
  for (std::size_t size = leaving.size() + bytesAfterTheCut;; size *= 2) {
    std::string passage = foldedForScanning(bytePrefix(text, size));
    if (passage.size() >= end + foldedBytesAfterTheCut ||
        size >= std::min(text.size(), mostBytesForReadings)) {
      return {.text = std::move(passage), .end = end};
    }
  }
}

/// HTML as a mail program shows it: without tags that have no width, and with blank and invisible references
/// decoded.
Passage passageOfHTML(std::string html, std::size_t leavingCodePoints) {
  reduceHTMLToMarkedText(html);
  const std::size_t leavingBytes = sourceLength(html, Charset::utf8, leavingCodePoints);
  const auto shown = [&html](std::size_t size) {
    std::string text = withoutInlineMarks(bytePrefix(html, size));
    decodeRemainingHTMLEntities(text);
    return foldedForScanning(text);
  };
  return {.text = shown(leavingBytes + bytesAfterTheCut), .end = shown(leavingBytes).size()};
}

/// A piece of a header field: the bytes of one or more encoded words of one charset, or the text between
/// words.
struct Stretch {
  std::string bytes;
  std::optional<std::string> charset;  // absent between the words
};

/// Words of one charset with only white space between them make one stretch. A character may begin in one
/// word and end in the next. RFC 2047, section 5, forbids that, but it is common.
std::vector<Stretch> stretchesOf(std::string_view field) {
  std::vector<Stretch> stretches;
  std::size_t position = 0;
  while (const std::optional<EncodedWord> word = nextEncodedWord(field, position)) {
    const std::string_view between = field.substr(position, word->start - position);
    const bool isAfterWord = !stretches.empty() && trimmed(between).empty();
    if (!isAfterWord) {
      stretches.push_back({std::string(between), std::nullopt});
    }
    std::string charset = lowercased(word->charset);
    if (isAfterWord && stretches.back().charset == charset) {
      stretches.back().bytes += bytesOf(*word);
    } else {
      stretches.push_back({bytesOf(*word), std::move(charset)});
    }
    position = word->end;
  }
  stretches.push_back({std::string(field.substr(position)), std::nullopt});
  return stretches;
}

}  // namespace

std::vector<Passage> bodyReadings(const BodySource& source, std::string_view text, std::size_t leavingBytes) {
  std::vector<Passage> readings{asItStands(text, leavingBytes)};
  if (Passage passage = folded(text, leavingBytes); passage != readings.front()) {
    readings.push_back(std::move(passage));
  }
  std::vector<Charset> charsets = otherCharsets(source.bytes, {source.used, source.named});
  if (source.named != source.used) {
    charsets.push_back(source.named);
  }
  if (source.isHTML) {
    charsets.push_back(source.used);
  }
  const std::size_t codePoints = codePointCount(text.substr(0, leavingBytes));
  for (const Charset& charset : charsets) {
    if (source.isHTML) {
      readings.push_back(passageOfHTML(convertLeniently(source.bytes, charset), codePoints));
      continue;
    }
    const std::string_view bytes = source.bytes;
    const std::size_t leaving = sourceLength(bytes, source.used, codePoints);
    const std::size_t shown = convertLeniently(bytes.substr(0, leaving), charset).size();
    readings.push_back(folded(convertLeniently(bytes.substr(0, leaving + bytesAfterTheCut), charset), shown));
  }
  return readings;
}

std::vector<std::string> headerReadings(std::string_view field) {
  const bool isPlain = isASCII(field) && !hasEscapeSequences(field) && field.find("=?") == std::string::npos;
  if (isPlain) {
    return {};
  }
  const std::vector<Stretch> stretches = stretchesOf(bytePrefix(field, mostBytesOfAField));
  std::string bytes;
  for (const Stretch& stretch : stretches) {
    bytes += stretch.bytes;
  }
  const auto readIn = [&stretches](const std::optional<Charset>& charset) {
    std::string text;
    for (const Stretch& stretch : stretches) {
      text += convertLeniently(stretch.bytes, charset ? *charset : stringEncoding(stretch.charset));
    }
    return foldedForScanning(text);
  };
  std::vector<std::string> readings{readIn(std::nullopt)};
  for (const Charset& charset : otherCharsets(bytes, {})) {
    readings.push_back(readIn(charset));
  }
  return readings;
}

}  // namespace tarnwell::TextDecoding
