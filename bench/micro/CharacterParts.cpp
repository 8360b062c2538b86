#include <unicode/ubrk.h>
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

/// Opened only once, as in the program.
UBreakIterator* characterIterator() {
  static const std::unique_ptr<UBreakIterator, Close> iterator = [] {
    UErrorCode status = U_ZERO_ERROR;
    return std::unique_ptr<UBreakIterator, Close>(ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status));
  }();
  return iterator.get();
}

std::size_t countByICU(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  UText view = UTEXT_INITIALIZER;
  utext_openUTF8(&view, text.data(), static_cast<int64_t>(text.size()), &status);
  ubrk_setUText(characterIterator(), &view, &status);
  std::size_t count = 0;
  while (ubrk_next(characterIterator()) != UBRK_DONE) {
    ++count;
  }
  utext_close(&view);
  return count;
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
    const std::string rival = name + ", ICU";
    const auto rivals = row.isFasterThanICU ? std::vector{rival} : std::vector<std::string>();
    const std::string text = prose(row.script, size);
    parts.push_back({.name = name,
                     .bytes = text.size(),
                     .goal = {.megabytesPerSecond = row.megabytesPerSecond, .fasterThan = rivals},
                     .work = [text] { return characterCount(text); }});
    parts.push_back({.name = rival, .bytes = text.size(), .work = [text] { return countByICU(text); }});
  }
}

}  // namespace tarnwell::bench
