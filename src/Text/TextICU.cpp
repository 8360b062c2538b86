#include "Text/Text.h"

#include <unicode/ucasemap.h>
#include <unicode/uchar.h>

#include <algorithm>

#include "Text/ASCIICase.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// ICU counts bytes in 32 bits; longer texts are mapped in pieces of this size.
constexpr std::size_t longestPiece = std::size_t{1} << 28;

const UCaseMap* rootCaseMap() {
  // Never closed: it may be in use by another thread until the process ends.
  static const UCaseMap* const caseMap = [] {
    UErrorCode status = U_ZERO_ERROR;
    return ucasemap_open("", 0, &status);
  }();
  return caseMap;
}

using CaseMapping = int32_t (*)(const UCaseMap*, char*, int32_t, const char*, int32_t, UErrorCode*);

void appendMapped(std::string& mapped, CaseMapping mapping, std::string_view piece) {
  const auto length = static_cast<int32_t>(piece.size());
  const std::size_t start = mapped.size();
  int32_t capacity = length + length / 4 + 16;
  for (;;) {
    mapped.resize(start + static_cast<std::size_t>(capacity));
    UErrorCode status = U_ZERO_ERROR;
    const int32_t needed =
        mapping(rootCaseMap(), mapped.data() + start, capacity, piece.data(), length, &status);
    mapped.resize(start + static_cast<std::size_t>(U_SUCCESS(status) ? std::max(needed, 0) : 0));
    if (status != U_BUFFER_OVERFLOW_ERROR) {
      return;
    }
    capacity = needed;
  }
}

std::string mappedInPieces(std::string_view text, CaseMapping mapping) {
  // ICU copies invalid bytes as they are.
  if (!isValidUTF8(text)) {
    return mappedInPieces(repairedUTF8(text), mapping);
  }
  std::string mapped;
  while (!text.empty()) {
    const std::string_view piece = bytePrefix(text, longestPiece);
    appendMapped(mapped, mapping, piece);
    text.remove_prefix(piece.size());
  }
  return mapped;
}

/// True for scripts and signs that have no lower case, kana and Han above all. It may be false for others of
/// the kind: that costs time.
bool isCaseless(char32_t codePoint) {
  return (codePoint >= 0x3000 && codePoint < 0xA000) ||   // kana, Han and their punctuation
         (codePoint >= 0x2000 && codePoint < 0x2100) ||   // dashes, quotation marks
         (codePoint >= 0xFF00 && codePoint <= 0xFF20) ||  // full-width digits and signs
         (codePoint >= 0xAC00 && codePoint < 0xD7A4) ||   // Hangul
         (codePoint >= 0x1F000 && codePoint < 0x20000);   // emoji
}

/// The same for most of kana and Han by their bytes alone: U+3000 to U+9FFF.
bool isCaselessSequence(std::string_view bytes) {
  return bytes.size() == 3 && bytes[0] >= '\xE3' && bytes[0] <= '\xE9' && isContinuationByte(bytes[1]) &&
         isContinuationByte(bytes[2]);
}

/// True when the text is well formed and only its ASCII letters can change.
bool hasLetterCaseInASCIIOnly(std::string_view text) {
  for (std::size_t position = 0; position < text.size();) {
    if (isCaselessSequence(text.substr(position, 3))) {
      position += 3;
      continue;
    }
    const char32_t codePoint = nextCodePoint(text, position);
    if (codePoint >= 0x80 && !isCaseless(codePoint)) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::string repairedUTF8(std::string_view bytes) {
  if (lengthOfASCIIRun(bytes, 0) == bytes.size()) {
    return std::string(bytes);
  }
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t position = 0; position < bytes.size();) {
    const std::size_t run = lengthOfASCIIRun(bytes, position);
    text.append(bytes, position, run);
    position += run;
    if (position < bytes.size()) {
      appendCodePoint(text, nextCodePoint(bytes, position));
    }
  }
  return text;
}

bool isValidUTF8(std::string_view bytes) {
  bool valid = true;
  for (std::size_t position = 0; position < bytes.size() && valid;) {
    position += lengthOfASCIIRun(bytes, position);
    while (position < bytes.size() && byteAt(bytes, position) >= 0x80 && valid) {
      nextCodePoint(bytes, position, &valid);
    }
  }
  return valid;
}

std::string lowercased(std::string_view text) {
  const std::size_t ascii = lengthOfASCIIRun(text, 0);
  if (!hasLetterCaseInASCIIOnly(text.substr(ascii))) {
    return mappedInPieces(text, ucasemap_utf8ToLower);
  }
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), asciiLowercasedByte);
  return lower;
}

std::string caseFolded(std::string_view text) { return mappedInPieces(text, ucasemap_utf8FoldCase); }

std::string uppercased(std::string_view text) {
  if (lengthOfASCIIRun(text, 0) < text.size()) {
    return mappedInPieces(text, ucasemap_utf8ToUpper);
  }
  std::string upper(text);
  std::ranges::transform(upper, upper.begin(), [](char character) {
    return character >= 'a' && character <= 'z' ? static_cast<char>(character & ~0x20) : character;
  });
  return upper;
}

bool isWhitespace(char32_t codePoint) {
  // The property is closed: these 25 code points have had it since Unicode 6.3.
  if (codePoint < 0x80) {
    return codePoint == ' ' || (codePoint >= '\t' && codePoint <= '\r');
  }
  if (codePoint >= 0x2000 && codePoint <= 0x200A) {
    return true;
  }
  switch (codePoint) {
    case 0x85:
    case 0xA0:
    case 0x1680:
    case 0x2028:
    case 0x2029:
    case 0x202F:
    case 0x205F:
    case 0x3000:
      return true;
    default:
      return false;
  }
}

bool isControlCharacter(char32_t codePoint) {
  return codePoint < 0x20 || (codePoint >= 0x7F && codePoint < 0xA0);
}

bool isFormatCharacter(char32_t codePoint) {
  return codePoint >= 0xAD && codePoint <= 0x10FFFF &&
         u_charType(static_cast<UChar32>(codePoint)) == U_FORMAT_CHAR;
}

std::string_view trimmed(std::string_view text) {
  while (!text.empty()) {
    std::size_t next = 0;
    if (!isWhitespace(nextCodePoint(text, next))) {
      break;
    }
    text.remove_prefix(next);
  }
  while (!text.empty()) {
    std::size_t last = text.size() - 1;
    while (last > 0 && text.size() - last < 3 && isContinuationByte(text[last])) {
      --last;
    }
    std::size_t next = last;
    if (!isWhitespace(nextCodePoint(text, next)) || next != text.size()) {
      break;
    }
    text = text.substr(0, last);
  }
  return text;
}

}  // namespace tarnwell
