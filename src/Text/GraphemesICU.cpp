// User-perceived characters. Most text consists of a few kinds of code points for which the boundaries follow
// from two neighbours (UAX #29, rules GB4, GB5 and GB999), or nearly so. ICU's iterator is asked only about
// the stretches in between.

#include "Text/Text.h"

#include <unicode/ubrk.h>
#include <unicode/utext.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <limits>
#include <memory>

#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// What a code point does to its neighbours, as far as this file knows.
enum class Joining : std::uint8_t {
  unknown,     // ICU's iterator is asked
  never,       // a character of its own between two that never join, CR LF aside
  pictograph,  // the same, but a joiner ties two of them together (rule GB11)
  flagLetter,  // two of them make a flag (rules GB12 and GB13)
  mark,        // joins whatever stands before it, controls excepted (rules GB4 and GB9)
  joiner,      // the same, and ties a pictograph and its marks to the pictograph behind it (rule GB11)
  end,         // of the text, where nothing joins
};

struct Range {
  char32_t first;
  char32_t last;
  Joining joining;
};

/// What the most common code points are. A range may leave some of its kind out: that costs time, never a
/// boundary. Pictographs are those of emoji-data.txt with the property Extended_Pictographic.
constexpr Range ranges[] = {
    {0x0000, 0x00A8, Joining::never},        {0x00AA, 0x00AD, Joining::never},
    {0x00AF, 0x02FF, Joining::never},        {0x0300, 0x036F, Joining::mark},
    {0x0370, 0x0482, Joining::never},  // Greek, Cyrillic
    {0x048A, 0x052F, Joining::never},        {0x200D, 0x200D, Joining::joiner},
    {0x2010, 0x2027, Joining::never},  // dashes, quotation marks
    {0x2600, 0x2605, Joining::pictograph},   {0x2607, 0x2612, Joining::pictograph},
    {0x2614, 0x2685, Joining::pictograph},   {0x2690, 0x2705, Joining::pictograph},
    {0x2708, 0x2712, Joining::pictograph},   {0x2763, 0x2767, Joining::pictograph},  // hearts
    {0x3000, 0x3029, Joining::never},                                                // CJK punctuation
    {0x3041, 0x3096, Joining::never},                                                // Hiragana
    {0x3099, 0x309A, Joining::mark},         {0x309B, 0x312F, Joining::never},       // Katakana, Bopomofo
    {0x3400, 0x4DBF, Joining::never},                                                // Han, extension A
    {0x4E00, 0x9FFF, Joining::never},                                                // Han
    {0xFE00, 0xFE0F, Joining::mark},                                                 // variation selectors
    {0xFF01, 0xFF9D, Joining::never},  // full-width and half-width forms
    {0x1F1E6, 0x1F1FF, Joining::flagLetter}, {0x1F300, 0x1F3FA, Joining::pictograph},
    {0x1F3FB, 0x1F3FF, Joining::mark},  // skin tones
    {0x1F400, 0x1F53D, Joining::pictograph}, {0x1F546, 0x1F64F, Joining::pictograph},
    {0x1F680, 0x1F6FF, Joining::pictograph}, {0x1F90C, 0x1F93A, Joining::pictograph},
    {0x1F93C, 0x1F945, Joining::pictograph}, {0x1F947, 0x1F9FF, Joining::pictograph},
};

/// The ranges laid out, for the code points below 0x20000.
class JoiningTable {
 public:
  constexpr JoiningTable() {
    for (const Range& range : ranges) {
      for (char32_t codePoint = range.first; codePoint <= range.last; ++codePoint) {
        table_[codePoint] = range.joining;
      }
    }
  }

  constexpr Joining operator()(char32_t codePoint) const {
    return codePoint < table_.size() ? table_[codePoint] : Joining::unknown;
  }

 private:
  std::array<Joining, 0x20000> table_{};
};

constexpr JoiningTable joiningOf;

constexpr char32_t softHyphen = 0xAD;

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
      walkOverPlain();
      if (position_ == before) {
        walkOverKnown();
      }
      if (position_ == before) {
        walkOverUnknown();
      }
    }
  }

  std::size_t position() const { return position_; }
  std::size_t count() const { return count_; }

 private:
  void walkOverASCII();
  void walkOverPlain();
  void walkOverKnown();
  void walkOverUnknown();

  /// Small enough for two registers.
  struct CodePoint {
    std::size_t begin;
    char32_t value;
    std::uint8_t length;  // bytes
    Joining joining;
  };
  CodePoint codePointAt(std::size_t position) const {
    if (position >= text_.size()) {
      return {position, 0, 0, Joining::end};
    }
    std::size_t end = position;
    const char32_t value = nextCodePoint(text_, end);
    return {position, value, static_cast<std::uint8_t>(end - position), joiningOf(value)};
  }
  CodePoint successorOf(CodePoint codePoint) const { return codePointAt(codePoint.begin + codePoint.length); }
  CodePoint successorOfCharacter(CodePoint first) const;
  bool isKnownCharacter(std::size_t position) const;

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

/// Code points that never join and are followed by others that never do, as in most Japanese, up to where
/// ASCII is followed by ASCII.
void CharacterWalk::walkOverPlain() {
  const auto isPlain = [](char32_t value) { return value != '\r' && joiningOf(value) == Joining::never; };
  std::size_t end = position_;
  if (end >= text_.size()) {
    return;
  }
  char32_t current = nextCodePoint(text_, end);
  if (!isPlain(current)) {
    return;
  }
  while (end < text_.size() && count_ < limit_) {
    std::size_t endOfNext = end;
    const char32_t next = nextCodePoint(text_, endOfNext);
    if (!isPlain(next) || (current < 0x80 && next < 0x80)) {
      return;
    }
    position_ = end;
    ++count_;
    current = next;
    end = endOfNext;
  }
}

/// Characters of known code points, up to the first that has or touches an unknown one.
void CharacterWalk::walkOverKnown() {
  CodePoint current = codePointAt(position_);
  while (count_ < limit_ && current.joining != Joining::unknown && current.joining != Joining::end) {
    const CodePoint successor = successorOfCharacter(current);
    if (successor.joining == Joining::unknown || (current.value == '\r' && successor.value == '\n')) {
      return;
    }
    position_ = successor.begin;
    ++count_;
    // A run of ASCII is walked over faster elsewhere.
    if (current.value < 0x80 && successor.value < 0x80) {
      return;
    }
    current = successor;
  }
}

/// What stands behind the character that begins with this known code point, as far as known ones tell. A CR
/// is taken for a character without its LF.
CharacterWalk::CodePoint CharacterWalk::successorOfCharacter(CodePoint first) const {
  CodePoint next = successorOf(first);
  if (first.joining == Joining::never && (isControlCharacter(first.value) || first.value == softHyphen)) {
    return next;
  }
  // What the next code point may find: a pictograph with nothing but marks behind it, the same and a joiner,
  // half a flag.
  enum class Before { other, pictograph, tie, halfFlag };
  Before before = first.joining == Joining::pictograph   ? Before::pictograph
                  : first.joining == Joining::flagLetter ? Before::halfFlag
                                                         : Before::other;
  for (; next.joining != Joining::never; next = successorOf(next)) {
    if (next.joining == Joining::mark) {
      before = before == Before::pictograph ? Before::pictograph : Before::other;
    } else if (next.joining == Joining::joiner) {
      before = before == Before::pictograph ? Before::tie : Before::other;
    } else if (next.joining == Joining::pictograph && before == Before::tie) {
      before = Before::pictograph;
    } else if (next.joining == Joining::flagLetter && before == Before::halfFlag) {
      before = Before::other;
    } else {
      break;
    }
  }
  return next;
}

void CharacterWalk::walkOverUnknown() {
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
  } while (count_ < limit_ && position_ - start < length && !isKnownCharacter(position_));
}

/// Whether a character begins there that has and touches known code points only.
bool CharacterWalk::isKnownCharacter(std::size_t position) const {
  const CodePoint first = codePointAt(position);
  return first.joining != Joining::unknown && successorOfCharacter(first).joining != Joining::unknown;
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
