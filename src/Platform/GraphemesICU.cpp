// User-perceived characters. Most text needs no search for boundaries: where two neighbours each belong
// to the code points that never join, there is one between them (UAX #29, rules GB4, GB5 and GB999).
// ICU's iterator is asked only about the stretches in between.

#include "Platform/Text.h"

#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include "Platform/UTF8.h"

namespace tarnwell {

namespace {

/// True for code points of which each is a character of its own between two of the same kind, CR LF
/// aside. It may be false for others of the kind: that costs time, never a boundary.
bool standsAlone(char32_t codePoint) {
  if (codePoint < 0x300) {
    return codePoint != 0xA9 && codePoint != 0xAE;
  }
  if (codePoint >= 0x3041 && codePoint <= 0x3096) {
    return true;  // Hiragana
  }
  if (codePoint >= 0x309B && codePoint <= 0x312F) {
    return true;  // Katakana, Bopomofo
  }
  if (codePoint >= 0x4E00 && codePoint <= 0x9FFF) {
    return true;  // Han
  }
  if (codePoint >= 0x3000 && codePoint <= 0x3029) {
    return true;  // CJK punctuation
  }
  if (codePoint >= 0xFF01 && codePoint <= 0xFF9D) {
    return true;  // full-width and half-width forms
  }
  if (codePoint >= 0x370 && codePoint <= 0x3FF) {
    return true;  // Greek
  }
  if (codePoint >= 0x400 && codePoint <= 0x482) {
    return true;  // Cyrillic
  }
  if (codePoint >= 0x48A && codePoint <= 0x52F) {
    return true;
  }
  if (codePoint >= 0x2010 && codePoint <= 0x2027) {
    return true;  // dashes, quotation marks
  }
  return codePoint >= 0x3400 && codePoint <= 0x4DBF;  // Han, extension A
}

constexpr char32_t softHyphen = 0xAD;

/// Marks that join whatever stands alone before them, controls excepted (UAX #29, rules GB4 and GB9).
bool isMark(char32_t codePoint) {
  return (codePoint >= 0x300 && codePoint <= 0x36F) || codePoint == 0x3099 || codePoint == 0x309A;
}

struct CloseBreakIterator {
  void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};
struct CloseText {
  void operator()(UText* text) const { utext_close(text); }
};

/// This thread's iterator: opening one takes longer than counting a page of text.
UBreakIterator* characterIterator() {
  thread_local const std::unique_ptr<UBreakIterator, CloseBreakIterator> iterator = [] {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<UBreakIterator, CloseBreakIterator>(
        ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
  }();
  return iterator.get();
}

/// Walks over a text from boundary to boundary.
class CharacterWalk {
 public:
  CharacterWalk(std::string_view text, std::size_t limit) : text_(text), limit_(limit) {
    while (position_ < text_.size() && count_ < limit_) {
      const std::size_t before = position_;
      walkOverASCII();
      walkOverLoners();
      if (position_ == before) {
        walkOverJoining();
      }
    }
  }

  std::size_t position() const { return position_; }
  std::size_t count() const { return count_; }

 private:
  void walkOverASCII();
  void walkOverLoners();
  void walkOverJoining();
  bool startsWithTwoLoners(std::size_t position) const;

  std::string_view text_;
  std::size_t limit_;
  std::size_t position_ = 0;
  std::size_t count_ = 0;
};

/// ASCII that is followed by ASCII: eight bytes at a time without CR, else one by one.
void CharacterWalk::walkOverASCII() {
  constexpr std::uint64_t ones = 0x0101010101010101U;
  constexpr std::uint64_t highBits = 0x80 * ones;
  constexpr std::size_t step = sizeof(std::uint64_t);
  const auto isASCII = [this](std::size_t position) { return byteAt(text_, position) < 0x80; };
  while (position_ + 1 < text_.size() && count_ < limit_ && isASCII(position_) && isASCII(position_ + 1)) {
    if (position_ + step < text_.size() && limit_ - count_ >= step && isASCII(position_ + step)) {
      std::uint64_t word;
      std::memcpy(&word, text_.data() + position_, step);
      const std::uint64_t zeroWhereCR = word ^ ('\r' * ones);
      if (((word | ((zeroWhereCR - ones) & ~zeroWhereCR)) & highBits) == 0) {
        position_ += step;
        count_ += step;
        continue;
      }
    }
    const bool isLineBreak = text_[position_] == '\r' && text_[position_ + 1] == '\n';
    position_ += isLineBreak ? 2 : 1;
    ++count_;
  }
}

/// Code points that stand alone, each with the marks behind it, up to the first that does not.
void CharacterWalk::walkOverLoners() {
  std::size_t next = position_;
  if (next >= text_.size()) {
    return;
  }
  char32_t current = nextCodePoint(text_, next);
  while (count_ < limit_ && standsAlone(current)) {
    char32_t successor = 0;
    std::size_t afterSuccessor = next;
    bool isAtEnd = next == text_.size();
    while (!isAtEnd) {
      successor = nextCodePoint(text_, afterSuccessor);
      if (!isMark(successor) || isControlCharacter(current) || current == softHyphen) {
        break;
      }
      next = afterSuccessor;
      isAtEnd = next == text_.size();
    }
    if (!isAtEnd && (!standsAlone(successor) || (current == '\r' && successor == '\n'))) {
      return;
    }
    position_ = next;
    ++count_;
    // A run of ASCII is walked over faster elsewhere.
    if (isAtEnd || (current < 0x80 && successor < 0x80)) {
      return;
    }
    current = successor;
    next = afterSuccessor;
  }
}

void CharacterWalk::walkOverJoining() {
  // An offset of ICU's iterator has 32 bits.
  constexpr std::size_t longestStretch = std::size_t{1} << 30;
  const std::size_t start = position_;
  const std::size_t length = std::min(text_.size() - start, longestStretch);
  UErrorCode status = U_ZERO_ERROR;
  UText view = UTEXT_INITIALIZER;
  const std::unique_ptr<UText, CloseText> closing(
      utext_openUTF8(&view, text_.data() + start, static_cast<int64_t>(length), &status));
  UBreakIterator* const iterator = characterIterator();
  if (iterator != nullptr) {
    ubrk_setUText(iterator, &view, &status);
  }
  do {
    const int32_t boundary = iterator != nullptr && U_SUCCESS(status) ? ubrk_next(iterator) : UBRK_DONE;
    if (boundary == UBRK_DONE) {
      // Without the iterator each code point counts: too many characters rather than an endless loop.
      nextCodePoint(text_, position_);
    } else {
      position_ = start + static_cast<std::size_t>(boundary);
    }
    ++count_;
  } while (count_ < limit_ && position_ - start < length && !startsWithTwoLoners(position_));
}

bool CharacterWalk::startsWithTwoLoners(std::size_t position) const {
  if (!standsAlone(nextCodePoint(text_, position))) {
    return false;
  }
  return position == text_.size() || standsAlone(nextCodePoint(text_, position));
}

}  // namespace

std::size_t characterCount(std::string_view text) {
  return CharacterWalk(text, std::numeric_limits<std::size_t>::max()).count();
}

std::string_view characterPrefix(std::string_view text, std::size_t count) {
  if (text.size() <= count) {
    return text;
  }
  return text.substr(0, CharacterWalk(text, count).position());
}

}  // namespace tarnwell
