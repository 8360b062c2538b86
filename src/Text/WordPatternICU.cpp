/// Words in text, with the boundaries of ICU's regular expressions ("\b"), whose engine is not needed for it.

#include <unicode/uchar.h>

#include <algorithm>

#include "Text/ASCIICase.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// True for most letters of the Japanese, which are asked for most often.
bool isKanaOrHan(char32_t codePoint) {
  return (codePoint >= 0x3041 && codePoint <= 0x3096) || (codePoint >= 0x30A1 && codePoint <= 0x30FA) ||
         (codePoint >= 0x4E00 && codePoint <= 0x9FFF);
}

/// Marks and format characters belong to what stands before them.
bool isPassedOver(char32_t codePoint) {
  if (codePoint < 0x80 || isKanaOrHan(codePoint)) {
    return false;
  }
  const auto character = static_cast<UChar32>(codePoint);
  return u_hasBinaryProperty(character, UCHAR_GRAPHEME_EXTEND) != 0 || u_charType(character) == U_FORMAT_CHAR;
}

bool isPartOfWord(char32_t codePoint) {
  if (codePoint < 0x80) {
    return isASCIILetterOrDigit(static_cast<char>(codePoint)) || codePoint == '_';
  }
  if (isKanaOrHan(codePoint)) {
    return true;
  }
  const auto character = static_cast<UChar32>(codePoint);
  constexpr uint32_t marksDigitsConnectors = U_GC_M_MASK | U_GC_ND_MASK | U_GC_PC_MASK;
  return u_hasBinaryProperty(character, UCHAR_ALPHABETIC) != 0 ||
         (U_GET_GC_MASK(character) & marksDigitsConnectors) != 0;
}

/// The code point that ends right before `position`, which moves to its beginning.
char32_t codePointBefore(std::string_view text, std::size_t& position) {
  const std::size_t end = position--;
  while (position > 0 && end - position < 4 && isContinuationByte(text[position])) {
    --position;
  }
  std::size_t next = position;
  const char32_t codePoint = nextCodePoint(text, next);
  if (next == end) {
    return codePoint;
  }
  position = end - 1;
  return replacementCharacter;
}

bool isPartOfWordBefore(std::string_view text, std::size_t position) {
  while (position > 0) {
    const char32_t codePoint = codePointBefore(text, position);
    if (!isPassedOver(codePoint)) {
      return isPartOfWord(codePoint);
    }
  }
  return false;
}

bool isWordBoundary(std::string_view text, std::size_t position) {
  bool isPartOfWordBehind = false;
  if (std::size_t next = position; next < text.size()) {
    const char32_t codePoint = nextCodePoint(text, next);
    if (isPassedOver(codePoint)) {
      return false;
    }
    isPartOfWordBehind = isPartOfWord(codePoint);
  }
  return isPartOfWordBefore(text, position) != isPartOfWordBehind;
}

/// Whether the lower-case term stands as a word before `end` with this first byte, its other letters in any
/// case.
bool isFoundWithFirst(char first, std::string_view term, std::string_view text, std::size_t end) {
  for (std::size_t begin = 0; (begin = text.find(first, begin)) < std::min(end, text.size()); ++begin) {
    if (startsWithIgnoringASCIICase(text.substr(begin), term) && isWordBoundary(text, begin) &&
        isWordBoundary(text, begin + term.size())) {
      return true;
    }
  }
  return false;
}

bool isFoundIgnoringASCIICase(std::string_view term, std::string_view text, std::size_t end) {
  const char lower = term.front();
  const char upper = lower >= 'a' && lower <= 'z' ? static_cast<char>(lower & ~0x20) : lower;
  return isFoundWithFirst(lower, term, text, end) ||
         (upper != lower && isFoundWithFirst(upper, term, text, end));
}

}  // namespace

WordPattern::WordPattern(std::string_view term)
    : isFoldedTo_(!foldsFromASCIIOnly(term)),
      term_(isFoldedTo_ ? caseFolded(term) : asciiLowercased(std::string(term))) {}

bool WordPattern::isFoundIn(std::string_view text, std::size_t end) const {
  if (!isUsable()) {
    return false;
  }
  return isFoldedTo_
             ? isFoundIgnoringASCIICase(term_, caseFolded(text), caseFolded(text.substr(0, end)).size())
             : isFoundIgnoringASCIICase(term_, text, end);
}

}  // namespace tarnwell
