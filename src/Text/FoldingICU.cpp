// Folding for scanners. Most mail is ASCII, kana and Han. The normal form does not change these characters,
// so they are copied without ICU.

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>
#include <unicode/uchar.h>

#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// ICU counts bytes in 32 bits. Longer texts are normalised in pieces of this size.
constexpr std::size_t longestPiece = std::size_t{1} << 28;

constexpr unsigned mostMarks = 30;

/// True only for visible characters that NFKC does not change, also beside each other. False for some of them
/// only costs time.
constexpr bool isOrdinary(char32_t codePoint) {
  return (codePoint > 0x20 && codePoint < 0x7F) ||        // ASCII
         (codePoint >= 0x3041 && codePoint <= 0x3096) ||  // Hiragana
         (codePoint >= 0x30A1 && codePoint <= 0x30FE) ||  // Katakana
         (codePoint >= 0x4E00 && codePoint <= 0x9FFF) ||  // Han
         (codePoint >= 0x3001 && codePoint <= 0x3029) ||  // their punctuation
         (codePoint >= 0xC0 && codePoint <= 0x131) ||     // most Latin letters beyond ASCII
         (codePoint >= 0x201A && codePoint <= 0x2023) ||  // quotation marks, bullets
         (codePoint >= 0x2500 && codePoint <= 0x27BF) ||  // symbols
         (codePoint >= 0x1F300 && codePoint <= 0x1FAFF);  // emoji
}

/// The ASCII character that replaces this one: the NFKC form of a full-width form, or the ASCII form of a
/// typographic dash or apostrophe. 0 for all others.
constexpr char ordinaryFor(char32_t codePoint) {
  if (codePoint >= 0xFF01 && codePoint <= 0xFF5E) {
    return static_cast<char>(codePoint - 0xFF01 + '!');
  }
  if ((codePoint >= 0x2010 && codePoint <= 0x2015) || codePoint == 0x2212) {
    return '-';
  }
  return codePoint == 0x2018 || codePoint == 0x2019 ? '\'' : '\0';
}

const icu::Normalizer2* normalForm() {
  UErrorCode status = U_ZERO_ERROR;
  return icu::Normalizer2::getNFKCInstance(status);
}

/// True for marks and for characters that become marks in the normal form, such as half-width voiced sound
/// marks.
bool joinsTheOneBefore(UChar32 character) {
  const icu::Normalizer2* const form = normalForm();
  return form != nullptr && form->hasBoundaryBefore(character) == 0;
}

/// True for characters of scripts in which a line may end between any two characters.
bool isWide(char32_t codePoint) {
  return codePoint >= 0x1100 &&
         u_getIntPropertyValue(static_cast<UChar32>(codePoint), UCHAR_EAST_ASIAN_WIDTH) == U_EA_WIDE;
}

bool isLineEnd(char32_t codePoint) { return codePoint == '\n' || codePoint == '\r' || codePoint == 0x2028; }

char32_t lastCodePoint(std::string_view text) {
  std::size_t end = text.size();
  return previousCodePoint(text, end);
}

char32_t firstCodePoint(std::string_view text) {
  std::size_t position = 0;
  return nextCodePoint(text, position);
}

/// Copies a text. Drops characters that show nothing and collapses white space.
class Collapsing {
 public:
  explicit Collapsing(std::size_t size) { text_.reserve(size); }

  void take(std::string_view text) {
    std::size_t run = 0;  // the beginning of the ordinary characters that are not copied yet
    for (std::size_t position = 0; position < text.size();) {
      const std::size_t start = position;
      const char32_t codePoint = nextCodePoint(text, position);
      if (isOrdinary(codePoint)) {
        continue;
      }
      append(text.substr(run, start - run));
      run = position;
      if (isWhitespace(codePoint)) {
        isBlankDue_ = !text_.empty();
        isLineEndDue_ = isBlankDue_ && (isLineEndDue_ || isLineEnd(codePoint));
      } else {
        takeOther(codePoint);
      }
    }
    append(text.substr(run));
  }

  bool isAllOrdinary() const { return isAllOrdinary_; }
  std::string text() && { return std::move(text_); }

 private:
  void takeOther(char32_t codePoint) {
    if (const char ordinary = ordinaryFor(codePoint); ordinary != '\0') {
      append({&ordinary, 1});
      return;
    }
    const auto character = static_cast<UChar32>(codePoint);
    if (u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) != 0) {
      return;
    }
    const unsigned marks = joinsTheOneBefore(character) ? marks_ + 1 : 0;
    if (marks > mostMarks) {
      return;
    }
    isAllOrdinary_ = false;
    std::string sequence;
    appendCodePoint(sequence, codePoint);
    append(sequence);
    marks_ = marks;
  }

  void append(std::string_view characters) {
    if (characters.empty()) {
      return;
    }
    if (isBlankDue_) {
      const bool isWrapped =
          isLineEndDue_ && isWide(lastCodePoint(text_)) && isWide(firstCodePoint(characters));
      text_ += isWrapped ? "" : " ";
      isBlankDue_ = isLineEndDue_ = false;
    }
    text_ += characters;
    marks_ = 0;
  }

  std::string text_;
  unsigned marks_ = 0;  // at the end of the text
  bool isBlankDue_ = false;
  bool isLineEndDue_ = false;
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
  const icu::Normalizer2* const form = normalForm();
  if (form == nullptr) {
    return std::string(text);
  }
  UErrorCode status = U_ZERO_ERROR;
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
  // The normal form may have new blanks, new marks and new characters that show nothing.
  return collapsed(normalized(plain), isAllOrdinary);
}

}  // namespace tarnwell
