// Finds words in text. The boundaries are those of "\b" in ICU's regular expressions, without their engine.

#include <unicode/uchar.h>

#include <algorithm>

#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// True for marks and format characters. They belong to the character before them.
bool isPassedOver(char32_t codePoint) {
  return u_hasBinaryProperty(static_cast<UChar32>(codePoint), UCHAR_GRAPHEME_EXTEND) != 0 ||
         isFormatCharacter(codePoint);
}

bool isPartOfWord(char32_t codePoint) {
  const auto character = static_cast<UChar32>(codePoint);
  constexpr uint32_t marksDigitsConnectors = U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK;
  return u_hasBinaryProperty(character, UCHAR_ALPHABETIC) != 0 ||
         (U_GET_GC_MASK(character) & marksDigitsConnectors) != 0;
}

bool isAfterPartOfWord(std::string_view text, std::size_t position) {
  while (position > 0) {
    const char32_t codePoint = previousCodePoint(text, position);
    if (!isPassedOver(codePoint)) {
      return isPartOfWord(codePoint);
    }
  }
  return false;
}

bool isWordBoundary(std::string_view text, std::size_t position) {
  if (position == text.size()) {
    return isAfterPartOfWord(text, position);
  }
  std::size_t next = position;
  const char32_t codePoint = nextCodePoint(text, next);
  return !isPassedOver(codePoint) && isPartOfWord(codePoint) != isAfterPartOfWord(text, position);
}

}  // namespace

bool hasWord(std::string_view text, std::string_view word, std::size_t end) {
  for (std::size_t begin = text.find(word); begin < std::min(end, text.size());
       begin = text.find(word, begin + 1)) {
    if (isWordBoundary(text, begin) && isWordBoundary(text, begin + word.size())) {
      return true;
    }
  }
  return false;
}

}  // namespace tarnwell
