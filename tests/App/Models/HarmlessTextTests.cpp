#include "App/Models/HarmlessText.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "support/RowName.h"

namespace tarnwell::test {
namespace {

struct Row {
  const char* name;
  std::string given;
  QString line;
  QString text;
};
void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

class HarmlessText : public testing::TestWithParam<Row> {};
INSTANTIATE_TEST_SUITE_P(
    Table, HarmlessText,
    testing::Values(Row{"plain", "Tea at four", "Tea at four", "Tea at four"}, Row{"empty", "", "", ""},
                    Row{"japanese", "明日の打ち合わせ", "明日の打ち合わせ", "明日の打ち合わせ"},
                    Row{"markStaysAsItIs", "<b>Tea</b> &amp;", "<b>Tea</b> &amp;", "<b>Tea</b> &amp;"},
                    Row{"lineEnds", "a\r\nb\nc\rd", "a b c d", "a\nb\nc\nd"},
                    Row{"lineEndsOfUnicode", "a\u2028b\u2029c", "a b c", "a\nb\nc"},
                    Row{"tab", "a\tb", "a b", "a\tb"}, Row{"blanksAround", "  a\n", "a", "  a\n"},
                    Row{"nul", std::string("a\0b", 3), "a\u2400b", "a\u2400b"},
                    Row{"bell", "a\ab", "a\u2407b", "a\u2407b"},
                    Row{"delete",
                        "a\x7f"
                        "b",
                        "a\u2421b", "a\u2421b"},
                    Row{"nextLineOfC1", "a\u0085b", "a‹U+0085›b", "a‹U+0085›b"},
                    Row{"rightToLeftOverride", "gpj\u202etxt", "gpj‹U+202E›txt", "gpj‹U+202E›txt"},
                    Row{"isolate", "a\u2067b\u2069", "a‹U+2067›b‹U+2069›", "a‹U+2067›b‹U+2069›"},
                    Row{"directionMarks", "a\u200eb\u200fc\u061cd", "abcd", "a‹U+200E›b‹U+200F›c‹U+061C›d"},
                    Row{"tagCharacters", "a\U000E0041b", "a‹U+E0041›b", "a‹U+E0041›b"},
                    Row{"emojiWithJoiner", "\U0001F469\u200d\U0001F4BB", "\U0001F469\u200d\U0001F4BB",
                        "\U0001F469\u200d\U0001F4BB"},
                    Row{"hebrew", "שלום", "שלום", "שלום"},
                    Row{"notUTF8",
                        "a\xff"
                        "b",
                        "a\ufffdb", "a\ufffdb"}),
    rowName);

TEST_P(HarmlessText, shows) {
  EXPECT_EQ(harmlessLine(GetParam().given), GetParam().line) << harmlessLine(GetParam().given).toStdString();
  EXPECT_EQ(harmlessText(GetParam().given), GetParam().text) << harmlessText(GetParam().given).toStdString();
}

/// The line and the text are alike.
struct Hidden {
  const char* name;
  QString given;
  QString shown;
};
void PrintTo(const Hidden& row, std::ostream* stream) { *stream << row.name; }

class HarmlessTextWithHidden : public testing::TestWithParam<Hidden> {};
INSTANTIATE_TEST_SUITE_P(
    Table, HarmlessTextWithHidden,
    testing::Values(
        Hidden{"softHyphen", "a\u00adb", "a‹U+00AD›b"},
        Hidden{"hangulFillers", "a\u115f\u1160\u3164\uffa0", "a‹U+115F›‹U+1160›‹U+3164›‹U+FFA0›"},
        Hidden{"operators", "a\u2061\u2062\u2063\u2064", "a‹U+2061›‹U+2062›‹U+2063›‹U+2064›"},
        Hidden{"deprecatedControls", "a\u206ab", "a‹U+206A›b"},
        Hidden{"runOfWidthless", "a\u200b\u200c\u200db", "a‹U+200B›‹U+200C›‹U+200D›b"},
        Hidden{"runWithADirectionMark", "a\u200b\u200eb", "a‹U+200B›‹U+200E›b"},
        Hidden{"runWithTheJoinerOfWords", "a\u2060\ufeffb", "a‹U+2060›‹U+FEFF›b"},
        Hidden{"runAtTheEnds", "\u200b\u200b", "‹U+200B›‹U+200B›"},
        Hidden{"oneWidthless", "a\u200bb", "a\u200bb"},
        Hidden{"persianNonJoiner", "می\u200cخواهم", "می\u200cخواهم"},
        Hidden{"indicJoiner", "ක්\u200dර", "ක්\u200dර"},
        Hidden{"selectorAfterALetter", "a\ufe0fb", "a‹U+FE0F›b"},
        Hidden{"selectorAtTheBeginning", "\ufe0fb", "‹U+FE0F›b"},
        Hidden{"selectorsInARow", "\u2764\ufe0f\ufe01", "\u2764\ufe0f‹U+FE01›"},
        Hidden{"bytesInSelectors", "\U0001F600\U000E0131\U000E0132", "\U0001F600‹U+E0131›‹U+E0132›"},
        Hidden{"lastSelector", "a\U000E01EF", "a‹U+E01EF›"},
        Hidden{"selectorOfAHeart", "\u2764\ufe0f\u200d\U0001F525", "\u2764\ufe0f\u200d\U0001F525"},
        Hidden{"selectorOfAKey", "1\ufe0f\u20e3", "1\ufe0f\u20e3"},
        Hidden{"selectorOfTheInformationSign", "\u2139\ufe0f", "\u2139\ufe0f"},
        Hidden{"selectorOfAnIdeograph", "葛\U000E0100城", "葛\U000E0100城"},
        Hidden{"selectorOfACompatibilityForm", "神\ufe00", "神\ufe00"}),
    rowName);

TEST_P(HarmlessTextWithHidden, showsWhatTheEyeWouldMiss) {
  const std::string given = GetParam().given.toStdString();
  EXPECT_EQ(harmlessLine(given), GetParam().shown) << harmlessLine(given).toStdString();
  EXPECT_EQ(harmlessText(given), GetParam().shown) << harmlessText(given).toStdString();
}

TEST(HarmlessTextOfAnyLength, takesLinearTime) {
  std::string given;
  for (int i = 0; i < 300'000; ++i) {
    given += "\u202e";
  }
  EXPECT_EQ(harmlessLine(given).size(), 2'400'000);
}

TEST(HarmlessTextInASentence, isIsolated) { EXPECT_EQ(isolated("שלום"), "\u2068שלום\u2069"); }

}  // namespace
}  // namespace tarnwell::test
