// Folding for scanners. Most mail is ASCII, kana and Han, which the normal form leaves alone: it is copied,
// and ICU is asked about nothing.

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

#include "Platform/Text.h"
#include "Platform/UTF8.h"

namespace tarnwell {

namespace {

/// ICU counts bytes in 32 bits; longer texts are normalised in pieces of this size.
constexpr std::size_t longestPiece = std::size_t{1} << 28;

constexpr unsigned mostMarks = 30;

/// True for characters that show something, are no white space, and stand in NFKC beside each other.
/// It may be false for others: that costs time.
constexpr bool isOrdinary(char32_t codePoint) {
  return (codePoint > 0x20 && codePoint < 0x7F) ||        // ASCII
         (codePoint >= 0x3041 && codePoint <= 0x3096) ||  // Hiragana
         (codePoint >= 0x30A1 && codePoint <= 0x30FE) ||  // Katakana
         (codePoint >= 0x4E00 && codePoint <= 0x9FFF) ||  // Han
         (codePoint >= 0x3001 && codePoint <= 0x3029) ||  // their punctuation
         (codePoint >= 0x2010 && codePoint <= 0x2023 && codePoint != 0x2011 && codePoint != 0x2017) ||
         (codePoint >= 0x1F300 && codePoint <= 0x1FAFF);  // emoji
}

/// Copies the text without what shows nothing and with white space collapsed.
class Collapsing {
 public:
  explicit Collapsing(std::size_t size) { text_.reserve(size); }

  void take(std::string_view text) {
    for (std::size_t position = 0; position < text.size();) {
      const std::size_t start = position;
      const char32_t codePoint = nextCodePoint(text, position);
      if (isOrdinary(codePoint)) {
        marks_ = 0;
        append(text.substr(start, position - start));
      } else if (isWhitespace(codePoint)) {
        isBlankDue_ = !text_.empty();
      } else {
        takeOther(codePoint);
      }
    }
  }

  bool isAllOrdinary() const { return isAllOrdinary_; }
  std::string text() && { return std::move(text_); }

 private:
  void takeOther(char32_t codePoint) {
    const auto character = static_cast<UChar32>(codePoint);
    if (u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0) {
      return;
    }
    marks_ = u_getCombiningClass(character) != 0 ? marks_ + 1 : 0;
    if (marks_ > mostMarks) {
      return;
    }
    isAllOrdinary_ = false;
    append({});
    appendCodePoint(text_, codePoint);
  }

  void append(std::string_view character) {
    if (isBlankDue_) {
      text_ += ' ';
      isBlankDue_ = false;
    }
    text_ += character;
  }

  std::string text_;
  unsigned marks_ = 0;
  bool isBlankDue_ = false;
  bool isAllOrdinary_ = true;
};

std::string collapsed(std::string_view text, bool& isAllOrdinary) {
  Collapsing collapsing(text.size());
  collapsing.take(text);
  isAllOrdinary = collapsing.isAllOrdinary();
  return std::move(collapsing).text();
}

/// NFKC of a valid text.
std::string normalized(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* const form = icu::Normalizer2::getNFKCInstance(status);
  std::string result;
  result.reserve(text.size());
  icu::StringByteSink<std::string> sink(&result);
  while (U_SUCCESS(status) && !text.empty()) {
    const std::string_view piece = bytePrefix(text, longestPiece);
    form->normalizeUTF8(0, icu::StringPiece(piece.data(), static_cast<int32_t>(piece.size())), sink, nullptr,
                        status);
    text.remove_prefix(piece.size());
  }
  return result;
}

}  // namespace

std::string foldedForScanning(std::string_view text) {
  bool isAllOrdinary = true;
  std::string plain = collapsed(text, isAllOrdinary);
  if (isAllOrdinary) {
    return plain;
  }
  // Some characters become blanks and marks, or what was ignored when it stood alone.
  return collapsed(normalized(plain), isAllOrdinary);
}

}  // namespace tarnwell
