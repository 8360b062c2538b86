// User-perceived characters, checked against ICU's iterator run over the whole text.

#include <unicode/ubrk.h>
#include <unicode/uchar.h>
#include <unicode/utext.h>

#include <functional>
#include <random>
#include <span>
#include <thread>

#include "Text/Text.h"
#include "Text/UTF8.h"
#include "support/RowName.h"

namespace tarnwell {
namespace {

/// The ends of all characters, by ICU's iterator alone.
std::vector<std::size_t> boundariesByICU(std::string_view text) {
  UErrorCode status = U_ZERO_ERROR;
  UText* view = utext_openUTF8(nullptr, text.data(), static_cast<int64_t>(text.size()), &status);
  UBreakIterator* iterator = ubrk_open(UBRK_CHARACTER, "", nullptr, 0, &status);
  ubrk_setUText(iterator, view, &status);
  EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
  std::vector<std::size_t> boundaries;
  for (int32_t end = ubrk_next(iterator); end != UBRK_DONE; end = ubrk_next(iterator)) {
    boundaries.push_back(static_cast<std::size_t>(end));
  }
  ubrk_close(iterator);
  utext_close(view);
  return boundaries;
}

struct CountRow {
  std::string name;
  std::string text;
  std::size_t count;
};

class CharacterCount : public testing::TestWithParam<CountRow> {};

TEST_P(CharacterCount, isWhatAReaderPerceives) {
  EXPECT_EQ(characterCount(GetParam().text), GetParam().count);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CharacterCount,
    testing::Values(
        CountRow{"empty", "", 0}, CountRow{"ascii", "abc", 3}, CountRow{"carriageReturnLineFeed", "\r\n", 1},
        CountRow{"lineFeedCarriageReturn", "\n\r", 2}, CountRow{"loneCarriageReturns", "\r\r\n", 2},
        CountRow{"lineOfMailAfterLongRun", "0123456789abcdef\r\n0123456789abcdef\r\n", 34},
        CountRow{"asciiWithCombiningMark", "e\u0301", 1},
        CountRow{"markAfterEightLetters", "abcdefgh\u0301", 8},
        CountRow{"markAfterNineLetters", "abcdefghi\u0301j", 10},
        CountRow{"markAfterLineFeed", "\n\u0301", 2},
        CountRow{"markAtTheStart",
                 "\u0301"
                 "a",
                 2},
        CountRow{"asciiAmongJapanese", "OTPは2FAの", 8},
        CountRow{"lineBreaksAmongJapanese", "日\r\n本\r本\n日", 7},
        CountRow{"markedASCIIAmongJapanese", "日e\u0301本", 3}, CountRow{"japanese", "日本語です", 5},
        CountRow{"kanaWithCombiningVoicing", "か\u3099き", 2}, CountRow{"halfWidthVoicing", "ﾊﾞﾝ", 2},
        CountRow{"variationSelectorOnHan", "葛\U000E0100城", 2},
        CountRow{"familyEmoji", "\U0001F468\u200D\U0001F469\u200D\U0001F467", 1},
        CountRow{"joinerAfterJoinerTiesNothing", "\U0001F468\u200D\u200D\U0001F469", 2},
        CountRow{"markAfterJoinerTiesNothing", "\U0001F468\u200D\u0301\U0001F469", 2},
        CountRow{"markedPictographIsTied", "\U0001F469\U0001F3FD\u200D\U0001F680", 1},
        CountRow{"joinerAfterLetterTiesNothing", "a\u200D\U0001F469", 2},
        CountRow{"joinersAlone", "\u200D\u200D", 1}, CountRow{"joinerAfterLineFeed", "\n\u200D", 2},
        CountRow{"endingInJoiner", "\U0001F468\u200D", 1}, CountRow{"skinTone", "\U0001F44D\U0001F3FD!", 2},
        CountRow{"flags", "🇯🇵🇫🇷", 2}, CountRow{"oddRegionalIndicators", "🇯🇵🇫", 2},
        CountRow{"keycap", "1\uFE0F\u20E3", 1}, CountRow{"copyrightAsEmoji", "\u00A9\uFE0F\u200D\u00A9", 1},
        CountRow{"hangulSyllables", "한국어", 3}, CountRow{"hangulJamo", "\u1112\u1161\u11AB", 1},
        CountRow{"devanagari", "नि", 1},
        CountRow{"prependedMark",
                 "\u0600"
                 "1",
                 1},
        CountRow{"softHyphen", "a\u00ADb", 3},
        CountRow{"invalidByte",
                 "a\xFF"
                 "b",
                 3},
        CountRow{"truncatedSequence", "a\xE3\x81", 2}, CountRow{"twoMaximalSequences", "\xE3\x81\xF0\x9F", 2},
        CountRow{"encodedSurrogate", "\xED\xA0\x80", 3}),
    rowName);

struct PrefixRow {
  std::string name;
  std::string text;
  std::size_t count;
  std::string prefix;
};

class CharacterPrefix : public testing::TestWithParam<PrefixRow> {};

TEST_P(CharacterPrefix, endsAtACharacter) {
  EXPECT_EQ(characterPrefix(GetParam().text, GetParam().count), GetParam().prefix);
}

INSTANTIATE_TEST_SUITE_P(
    Table, CharacterPrefix,
    testing::Values(
        PrefixRow{"nothing", "abc", 0, ""}, PrefixRow{"ascii", "abcdefghijklmnop", 12, "abcdefghijkl"},
        PrefixRow{"whole", "日本", 2, "日本"}, PrefixRow{"more", "日本", 99, "日本"},
        PrefixRow{"cut", "日本語", 2, "日本"}, PrefixRow{"markIsNotCutOff", "ae\u0301z", 2, "ae\u0301"},
        PrefixRow{"familyIsNotCut", "\U0001F468\u200D\U0001F469x", 1, "\U0001F468\u200D\U0001F469"},
        PrefixRow{"lineBreakIsNotCut", "a\r\nb", 2, "a\r\n"}, PrefixRow{"hangul", "한국어", 1, "한"},
        PrefixRow{"flags", "🇯🇵🇫🇷🇩🇪", 2, "🇯🇵🇫🇷"}, PrefixRow{"emptyText", "", 5, ""}),
    rowName);

/// Pieces that may join with their neighbours.
const std::string_view pieces[] = {"a",          "b",          "\r",         "\n",         "\r\n",
                                   "        ",   "abcdefgh",   "01234567",   "\u0301",     "\u3099",
                                   "\uFF9E",     "\u200D",     "\uFE0F",     "\u20E3",     "\u00A9",
                                   "\u00AD",     "\u200B",     "\u0600",     "日",         "ひ",
                                   "カ",         "ﾊ",          "　",         "、",         "〰",
                                   "〽",         "\u302A",     "한",         "\u1112",     "\u1161",
                                   "\u11AB",     "नि",         "क्ष",         "\u094D",     "क",
                                   "ำ",          "ก",          "\U0001F468", "\U0001F469", "\U0001F3FD",
                                   "🇯",          "🇵",          "❤",          "é",          "ß",
                                   "Ж",          "\u0483",     "ω",          "—",          "‼",
                                   "⁉",          "\xFF",       "\xE3\x81",   "\xC3",       "\xED\xA0\x80",
                                   "𠮷",         "\0",         "\u0085",     "\u2028",     "葛\U000E0100",
                                   "\U000E0001", "\u0E33",     "\uFEFF",     "\uFFFD",     "\U0001F431",
                                   "\u2640",     "\U0001F3F4", "\U000E0067", "\U0001F1E6", "\u2615"};

TEST(Characters, randomTextsHaveTheBoundariesOfICU) {
  constexpr unsigned startValue = 20250611;
  std::mt19937 random(startValue);
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto left = random() % 24; left > 0; --left) {
      text += pieces[random() % std::size(pieces)];
    }
    const std::vector<std::size_t> boundaries = boundariesByICU(text);
    ASSERT_EQ(characterCount(text), boundaries.size()) << "start value " << startValue << " round " << round;
    for (std::size_t count = 0; count <= boundaries.size(); ++count) {
      const std::size_t expected = count == 0 ? 0 : boundaries[count - 1];
      ASSERT_EQ(characterPrefix(text, count).size(), expected)
          << "start value " << startValue << " round " << round << " count " << count
          << testing::PrintToString(text);
    }
  }
}

/// Calls `use` with every sequence of one to `longest` pieces.
void forEachSequence(std::span<const std::string_view> alphabet, std::size_t longest,
                     const std::function<void(const std::string&)>& use) {
  std::vector<std::string> ofLength{""};
  for (std::size_t length = 1; length <= longest; ++length) {
    std::vector<std::string> longer;
    for (const std::string& beginning : ofLength) {
      for (const std::string_view piece : alphabet) {
        longer.push_back(beginning + std::string(piece));
        use(longer.back());
      }
    }
    ofLength = std::move(longer);
  }
}

TEST(Characters, allShortSequencesOfWhatJoinsHaveTheBoundariesOfICU) {
  // Pictographs above and below U+0300, a joiner, marks, half a flag, letters, controls, Hangul.
  constexpr std::string_view alphabet[] = {"\U0001F468", "\u00A9",     "\u200D", "\u0301",
                                           "\U0001F3FD", "\U0001F1E6", "a",      "日",
                                           "\r",         "\n",         "\u00AD", "한"};
  constexpr std::size_t longest = 5;
  forEachSequence(alphabet, longest, [](const std::string& text) {
    const std::vector<std::size_t> boundaries = boundariesByICU(text);
    ASSERT_EQ(characterCount(text), boundaries.size()) << testing::PrintToString(text);
    for (std::size_t count = 1; count <= boundaries.size(); ++count) {
      ASSERT_EQ(characterPrefix(text, count).size(), boundaries[count - 1])
          << testing::PrintToString(text) << " count " << count;
    }
  });
}

TEST(Characters, everyCodePointBesideALetterKanaPictographsAndFlagsHasTheBoundariesOfICU) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint == 0xD800) {
      codePoint = 0xE000;
    }
    if (codePoint > 0x20000 && (codePoint < 0xE0000 || codePoint > 0xF0000) && codePoint % 64 != 0) {
      continue;  // Han, unassigned and private-use planes: every 64th is enough
    }
    std::string text = "a";
    appendCodePoint(text, codePoint);
    text += "ひ";
    appendCodePoint(text, codePoint);
    appendCodePoint(text, codePoint);
    text += "z\U0001F431";
    appendCodePoint(text, codePoint);
    text += "\u200D";
    appendCodePoint(text, codePoint);
    text += "\U0001F431\u200D";
    appendCodePoint(text, codePoint);
    text += "\U0001F1E6";
    appendCodePoint(text, codePoint);
    text += "\U0001F1E6\U0001F1E6";
    ASSERT_EQ(characterCount(text), boundariesByICU(text).size())
        << "U+" << std::hex << std::uint32_t{codePoint};
  }
}

TEST(Characters, manyThreadsCountAtOnce) {
  const std::string text = "e\u0301\U0001F468\u200D\U0001F469한";
  std::vector<std::size_t> counts(4);
  std::vector<std::thread> threads;
  for (std::size_t& count : counts) {
    threads.emplace_back([&count, &text] {
      for (int i = 0; i < 200; ++i) {
        count += characterCount(text);
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(counts, std::vector<std::size_t>(4, 600));
}

}  // namespace
}  // namespace tarnwell
