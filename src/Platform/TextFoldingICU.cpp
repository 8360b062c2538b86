#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/uchar.h>

#include <algorithm>

#include "Platform/ASCIICase.h"
#include "Platform/Text.h"
#include "Platform/UTF8.h"

namespace tarnwell {

namespace {

/// Drops what has no visible form, and marks beyond the 30 that one character may carry in stream-safe text
/// (Unicode Standard Annex #15, section 13): bringing an endless row of marks into order takes quadratic
/// time. What becomes a mark only in the normal form counts too.
std::string withoutInvisibleCharacters(std::string_view text, const icu::Normalizer2& form) {
  constexpr int mostMarks = 30;
  std::string visible;
  visible.reserve(text.size());
  int marks = 0;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t codePoint = nextCodePoint(text, position);
    const auto character = static_cast<UChar32>(codePoint);
    if (u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT)) {
      continue;
    }
    marks = form.hasBoundaryBefore(character) ? 0 : marks + 1;
    if (marks <= mostMarks) {
      appendCodePoint(visible, codePoint);
    }
  }
  return visible;
}

/// NFKC with case folding (Unicode 15, section 3.13) of what is visible. ICU counts bytes in 32 bits, so that
/// a longer text is folded in pieces.
std::string compatibilityFolded(std::string_view text) {
  constexpr std::size_t longestPiece = std::size_t{1} << 26;
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* const form = icu::Normalizer2::getNFKCCasefoldInstance(status);
  if (U_FAILURE(status)) {
    return caseFolded(text);
  }
  const std::string visible = withoutInvisibleCharacters(text, *form);
  std::string folded;
  icu::StringByteSink<std::string> sink(&folded);
  for (std::string_view rest = visible; !rest.empty();) {
    const std::string_view piece = bytePrefix(rest, longestPiece);
    form->normalizeUTF8(0, {piece.data(), static_cast<int32_t>(piece.size())}, sink, nullptr, status);
    rest.remove_prefix(piece.size());
  }
  return folded;
}

bool isWide(char32_t codePoint) {
  return codePoint >= 0x1100 &&
         u_getIntPropertyValue(static_cast<UChar32>(codePoint), UCHAR_EAST_ASIAN_WIDTH) == U_EA_WIDE;
}

bool isLineEnd(char32_t codePoint) { return codePoint == '\n' || codePoint == '\r' || codePoint == 0x2028; }

std::string withWhitespaceCollapsed(std::string_view text) {
  std::string collapsed;
  collapsed.reserve(text.size());
  bool isAfterSpace = false;
  bool isAfterLineEnd = false;
  bool isAfterWide = false;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t codePoint = nextCodePoint(text, position);
    if (isWhitespace(codePoint)) {
      isAfterSpace = true;
      isAfterLineEnd = isAfterLineEnd || isLineEnd(codePoint);
      continue;
    }
    const bool isWideHere = isWide(codePoint);
    const bool isWrapped = isAfterLineEnd && isAfterWide && isWideHere;
    if (isAfterSpace && !collapsed.empty() && !isWrapped) {
      collapsed.push_back(' ');
    }
    appendCodePoint(collapsed, codePoint);
    isAfterSpace = isAfterLineEnd = false;
    isAfterWide = isWideHere;
  }
  return collapsed;
}

}  // namespace

std::string foldedForScanning(std::string_view text) {
  if (lengthOfASCIIRun(text, 0) == text.size()) {
    std::string collapsed = withWhitespaceCollapsed(text);
    std::ranges::transform(collapsed, collapsed.begin(), asciiLowercasedByte);
    return collapsed;
  }
  return withWhitespaceCollapsed(compatibilityFolded(text));
}

}  // namespace tarnwell
