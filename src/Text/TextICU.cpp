#include "Text/Text.h"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/uchar.h>

#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// ICU counts bytes in 32 bits. Longer texts are mapped in pieces of this size.
constexpr std::size_t longestPiece = std::size_t{1} << 28;

using CaseMapping = void (*)(const char* language, uint32_t options, icu::StringPiece text,
                             icu::ByteSink& sink, icu::Edits* edits, UErrorCode& status);

std::string mapped(std::string_view text, CaseMapping mapping) {
  // ICU would copy invalid bytes unchanged.
  if (!isValidUTF8(text)) {
    return mapped(repairedUTF8(text), mapping);
  }
  std::string result;
  result.reserve(text.size());
  icu::StringByteSink<std::string> sink(&result);
  UErrorCode status = U_ZERO_ERROR;
  while (!text.empty()) {
    const std::string_view piece = bytePrefix(text, longestPiece);
    mapping("", 0, {piece.data(), static_cast<int32_t>(piece.size())}, sink, nullptr, status);
    text.remove_prefix(piece.size());
  }
  return result;
}

}  // namespace

std::string repairedUTF8(std::string_view bytes) {
  if (isASCII(bytes)) {
    return std::string(bytes);
  }
  std::string text;
  text.reserve(bytes.size());
  std::size_t copied = 0;
  for (std::size_t position = 0; position < bytes.size();) {
    const std::size_t start = position;
    bool valid = true;
    nextCodePoint(bytes, position, &valid);
    if (!valid) {
      text.append(bytes, copied, start - copied);
      appendCodePoint(text, replacementCharacter);
      copied = position;
    }
  }
  text.append(bytes, copied);
  return text;
}

bool isValidUTF8(std::string_view bytes) {
  if (isASCII(bytes)) {
    return true;
  }
  bool valid = true;
  for (std::size_t position = 0; position < bytes.size() && valid;) {
    nextCodePoint(bytes, position, &valid);
  }
  return valid;
}

std::string lowercased(std::string_view text) { return mapped(text, icu::CaseMap::utf8ToLower); }

std::string uppercased(std::string_view text) { return mapped(text, icu::CaseMap::utf8ToUpper); }

bool isWhitespace(char32_t codePoint) { return u_isUWhiteSpace(static_cast<UChar32>(codePoint)) != 0; }

bool isControlCharacter(char32_t codePoint) {
  return u_charType(static_cast<UChar32>(codePoint)) == U_CONTROL_CHAR;
}

bool isFormatCharacter(char32_t codePoint) {
  return u_charType(static_cast<UChar32>(codePoint)) == U_FORMAT_CHAR;
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
    std::size_t last = text.size();
    if (!isWhitespace(previousCodePoint(text, last))) {
      break;
    }
    text = text.substr(0, last);
  }
  return text;
}

}  // namespace tarnwell
