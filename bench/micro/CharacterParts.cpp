#include <unicode/ubrk.h>
#include <unicode/unistr.h>
#include <unicode/utext.h>

#include <memory>

#include "MailInputs.h"
#include "Parts.h"
#include "Text/Text.h"

namespace tarnwell::bench {

namespace {

struct Close {
  void operator()(UBreakIterator* iterator) const { ubrk_close(iterator); }
};

/// Opened once, as the program does.
UBreakIterator* characterIterator() {
  static const std::unique_ptr<UBreakIterator, Close> iterator = [] {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<UBreakIterator, Close>(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
  }();
  return iterator.get();
}

std::size_t countBoundaries(UBreakIterator* iterator) {
  std::size_t count = 0;
  while (ubrk_next(iterator) != UBRK_DONE) {
    ++count;
  }
  return count;
}

std::size_t countInUTF8(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  UText view = UTEXT_INITIALIZER;
  utext_openUTF8(&view, text.data(), static_cast<int64_t>(text.size()), &status);
  ubrk_setUText(characterIterator(), &view, &status);
  const std::size_t count = countBoundaries(characterIterator());
  utext_close(&view);
  return count;
}

std::size_t countInUTF16(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::UnicodeString wide = icu::UnicodeString::fromUTF8(text);
  ubrk_setText(characterIterator(), wide.getBuffer(), wide.length(), &status);
  return countBoundaries(characterIterator());
}

}  // namespace

void addCharacterParts(std::vector<Part>& parts) {
  constexpr std::size_t size = 1'000'000;
  struct Row {
    std::string name;
    Script script;
    double megabytesPerSecond;
    bool isFasterThanICU = true;
  };
  for (const Row& row :
       {Row{"ASCII", Script::latin, 500}, Row{"Japanese", Script::japanese, 250},
        Row{"emoji only", Script::emoji, 25, false}, Row{"Latin with emoji", Script::latinWithEmoji, 100}}) {
    const std::string name = "character count, " + row.name;
    const std::string inUTF8 = name + ", ICU over UTF-8";
    const std::string inUTF16 = name + ", ICU over UTF-16, with the conversion";
    const auto rivals = row.isFasterThanICU ? std::vector{inUTF8, inUTF16} : std::vector<std::string>();
    const std::string text = prose(row.script, size);
    parts.push_back({.name = name,
                     .bytes = text.size(),
                     .goal = {.megabytesPerSecond = row.megabytesPerSecond, .fasterThan = rivals},
                     .work = [text] { return characterCount(text); }});
    parts.push_back({.name = inUTF8, .bytes = text.size(), .work = [text] { return countInUTF8(text); }});
    parts.push_back({.name = inUTF16, .bytes = text.size(), .work = [text] { return countInUTF16(text); }});
  }
}

}  // namespace tarnwell::bench
