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
                    Row{"directionMarks", "a\u200eb\u200fc\u061cd", "abcd", "abcd"},
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
