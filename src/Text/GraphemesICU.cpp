// User-perceived characters. Most neighbours have a boundary between them, whatever stands around them
// (Unicode Standard Annex #29, rules GB4, GB5 and GB999). ICU's iterator reads only the other stretches.

#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

#include <algorithm>
#include <limits>
#include <memory>

#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// True for code points that always have a boundary between any two of them, except CR LF.
bool isSeparate(char32_t codePoint) {
  constexpr char32_t firstMark = 0x300;
  if (codePoint < firstMark) {
    return true;
  }
  const int32_t kind = u_getIntPropertyValue(static_cast<UChar32>(codePoint), UCHAR_GRAPHEME_CLUSTER_BREAK);
  return kind == U_GCB_OTHER || kind == U_GCB_CONTROL;
}

struct CloseBreakIterator {
  void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};
struct CloseText {
  void operator()(UText* text) const { utext_close(text); }
};

/// This thread's iterator. Opening one takes longer than counting a page of text.
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
    while (!isAtEnd()) {
      walkOverASCII();
      walkOverSeparate();
      if (!isAtEnd()) {
        walkOverOthers();
      }
    }
  }

  std::size_t position() const { return position_; }
  std::size_t count() const { return count_; }

 private:
  bool isAtEnd() const { return position_ == text_.size() || count_ == limit_; }
  void walkOverASCII();
  void walkOverSeparate();
  void walkOverOthers();
  bool areSeparateAt(std::size_t position) const;

  std::string_view text_;
  std::size_t limit_;
  std::size_t position_ = 0;
  std::size_t count_ = 0;
};

/// Walks over ASCII up to the first CR. Leaves out the last character, because a mark may belong to it.
void CharacterWalk::walkOverASCII() {
  const std::string_view most = text_.substr(position_, limit_ - count_);
  const auto isOther = [](char byte) { return byte == '\r' || !U8_IS_SINGLE(byte); };
  // Not std::ranges::find_if: libstdc++ unrolls only this one.
  const auto length =
      static_cast<std::size_t>(std::find_if(most.begin(), most.end(), isOther) - most.begin());
  const std::size_t taken = length - std::min<std::size_t>(length, 1);
  position_ += taken;
  count_ += taken;
}

/// Stops before the last separate code point of a stretch, because a mark may belong to it.
void CharacterWalk::walkOverSeparate() {
  char32_t before = 0;
  for (std::size_t next = position_; next < text_.size();) {
    const std::size_t start = next;
    const char32_t codePoint = nextCodePoint(text_, next);
    if (!isSeparate(codePoint)) {
      return;
    }
    const bool isLineBreak = before == '\r' && codePoint == '\n';
    if (start > position_ && !isLineBreak) {
      position_ = start;
      if (++count_ == limit_) {
        return;
      }
    }
    before = codePoint;
  }
  position_ = text_.size();
  ++count_;
}

/// True when enough separate code points follow. After fewer of them, starting ICU's iterator again would
/// cost more than they save.
bool CharacterWalk::areSeparateAt(std::size_t position) const {
  constexpr int enough = 8;
  for (int count = 0; count < enough && position < text_.size(); ++count) {
    if (!isSeparate(nextCodePoint(text_, position))) {
      return false;
    }
  }
  return true;
}

void CharacterWalk::walkOverOthers() {
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
      // Without the iterator each code point counts as a character. The count is too high, but the loop ends.
      nextCodePoint(text_, position_);
    } else {
      position_ = start + static_cast<std::size_t>(boundary);
    }
    ++count_;
  } while (count_ < limit_ && position_ - start < length && !areSeparateAt(position_));
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
