#include <limits>

#include "IMAP/Decoding/TextDecoding.h"
#include "Text/Text.h"
#include "support/HostileText.h"
#include "support/RowName.h"
#include "support/TextDecodingReference.h"

namespace tarnwell::TextDecoding {

void PrintTo(const Snippet& preview, std::ostream* stream) {
  *stream << testing::PrintToString(preview.text) << (preview.truncated ? " truncated" : " whole");
}

namespace {

struct Row {
  std::string name;
  std::string text;
  std::int64_t maxChars;
  Snippet expected;
};

class SnippetOf : public testing::TestWithParam<Row> {};

TEST_P(SnippetOf, isThePreviewOfTheRow) {
  EXPECT_EQ(snippet(GetParam().text, GetParam().maxChars), GetParam().expected);
  EXPECT_EQ(referenceSnippet(GetParam().text, GetParam().maxChars), GetParam().expected)
      << "the reference disagrees";
}

constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t highest = std::numeric_limits<std::int64_t>::max();

INSTANTIATE_TEST_SUITE_P(
    Table, SnippetOf,
    testing::Values(
        Row{"empty", "", 10, {"", false}}, Row{"onlyWhiteSpace", " \r\n\u00A0\u3000", 10, {"", false}},
        Row{"collapsed", "  a\n\n b  ", 10, {"a b", false}}, Row{"cut", "abcdef", 3, {"abc…", true}},
        Row{"exactlyFits", "abc", 3, {"abc", false}}, Row{"fitsAfterTrimming", " abc \n", 3, {"abc", false}},
        Row{"fitsAfterCollapsing", "a \t\r\n b", 3, {"a b", false}}, Row{"zero", "a", 0, {"…", true}},
        Row{"zeroOfNothing", " ", 0, {"", false}}, Row{"negative", "a", -5, {"…", true}},
        Row{"lowestNumber", "a", lowest, {"…", true}}, Row{"negativeOfNothing", "", -1, {"", false}},
        Row{"highestNumber", "a  b", highest, {"a b", false}},
        Row{"blankBeforeTheCutGoes", "ab cd", 3, {"ab…", true}},
        Row{"japanese", "日本語です", 3, {"日本語…", true}},
        Row{"noBreakSpace", "a\u00A0\u00A0b", 9, {"a b", false}},
        Row{"ideographicSpace", "日\u3000\u3000本", 9, {"日 本", false}},
        Row{"lineSeparator", "a\u2028b", 9, {"a b", false}},
        Row{"zeroWidthSpaceStays", "a\u200Bb", 9, {"a\u200Bb", false}},
        Row{"markBelongsToItsLetter", "ae\u0301x", 2, {"ae\u0301…", true}},
        Row{"markAtTheLimitFits", "ae\u0301", 2, {"ae\u0301", false}},
        Row{"familyIsOneCharacter",
            "\U0001F468\u200D\U0001F469\u200D\U0001F467!",
            1,
            {"\U0001F468\u200D\U0001F469\u200D\U0001F467…", true}},
        Row{"markOnABlank", "a \u0301b", 2, {"a \u0301…", true}},
        Row{"markAfterLeadingBlank", " \u0301", 1, {"\u0301", false}},
        Row{"lineBreakInsideIsABlank", "a\r\nb", 2, {"a…", true}}),
    rowName);

TEST(Snippet, hostileTextsHaveTheMeaningOfTheSteps) {
  constexpr std::string_view fragments[] = {" ",
                                            "  ",
                                            "\n",
                                            "\r\n",
                                            "\t",
                                            "\x0B",
                                            "\x1C",
                                            "\u0085",
                                            "\u00A0",
                                            "\u1680",
                                            "\u2003",
                                            "\u2028",
                                            "\u3000",
                                            "\u200B",
                                            "\uFEFF",
                                            "a",
                                            "bc",
                                            "日",
                                            "か\u3099",
                                            "e\u0301",
                                            "\u0301",
                                            "\U0001F468\u200D",
                                            "\U0001F469",
                                            "🇯",
                                            "🇵",
                                            "한",
                                            "\u1100",
                                            "\u1161",
                                            "\u0600",
                                            "क्",
                                            "ष",
                                            "\x01",
                                            "\x7F",
                                            "\xFF",
                                            "\xE3\x81",
                                            "\xEF\xBF\xBD",
                                            "word and word"};
  HostileText texts(fragments);
  for (int round = 0; round < 20000; ++round) {
    const std::string text = texts.next(24);
    for (const std::int64_t maxChars : {-1, 0, 1, 2, 3, 5, 8, 13, 100}) {
      ASSERT_EQ(snippet(text, maxChars), referenceSnippet(text, maxChars))
          << "start value " << HostileText::startValue << " round " << round << " maxChars " << maxChars;
    }
  }
}

TEST(Snippet, aLongTextHasTheSamePreviewAsItsSteps) {
  for (const std::string_view fragment :
       {"abc ", "日本語", "\u0301", "a\u0301", "  x", "\U0001F468\u200D", "한국 "}) {
    const std::string text = filledWith(fragment, 40'000);
    for (const std::int64_t maxChars : {0, 1, 200, 1000, 1365, 1366, 4096, 9999, 13333, 13334, 40000}) {
      ASSERT_EQ(snippet(text, maxChars), referenceSnippet(text, maxChars)) << fragment << ' ' << maxChars;
    }
  }
}

TEST(Snippet, blanksAfterTheLimitAreNoMoreText) {
  const std::string text = std::string(4096, 'a') + std::string(100'000, ' ');
  EXPECT_EQ(snippet(text, 4096), (Snippet{std::string(4096, 'a'), false}));
  EXPECT_TRUE(snippet(text + "b", 4096).truncated);
}

TEST(Snippet, invalidBytesAreReplaced) {
  EXPECT_EQ(snippet("a \xFF b\xE3\x81", 9), (Snippet{"a \uFFFD b\uFFFD", false}));
}

/// What grew with the square of the size would outlast the limit of ctest.
TEST(Snippet, longTextsEnd) {
  for (const std::string_view fragment : {" ", "a", "\u0301", "a ", "\u00A0\n", "\U0001F468\u200D", "한"}) {
    const std::string text = filledWith(fragment, 1'000'000);
    EXPECT_EQ(snippet(text, highest).truncated, false) << fragment;
    EXPECT_LE(snippet(text, 200).text.size(), text.size() + 3) << fragment;
  }
}

TEST_P(SnippetOf, isMadeOfItsSourceAlone) {
  const std::string& text = GetParam().text;
  const std::size_t size = snippetSourceLength(text, GetParam().maxChars);
  ASSERT_LE(size, text.size());
  std::string cut = GetParam().expected.text;
  if (GetParam().expected.truncated) {
    cut.resize(cut.size() - std::string_view("…").size());
  }
  EXPECT_EQ(snippet(std::string_view(text).substr(0, size), highest).text, cut);
}

}  // namespace
}  // namespace tarnwell::TextDecoding
