#include <string>

#include "Platform/Text.h"
#include "support/HostileText.h"
#include "support/RowName.h"

namespace tarnwell {
namespace {

struct Row {
  const char* name;
  std::string text;
  std::string folded;
};

class FoldedForScanning : public testing::TestWithParam<Row> {};

TEST_P(FoldedForScanning, isWhatAReaderTakesItFor) {
  EXPECT_EQ(foldedForScanning(GetParam().text), GetParam().folded);
}

TEST_P(FoldedForScanning, foldedAgainStaysAsItIs) {
  EXPECT_EQ(foldedForScanning(GetParam().folded), GetParam().folded);
}

INSTANTIATE_TEST_SUITE_P(
    Table, FoldedForScanning,
    testing::Values(
        Row{"empty", "", ""}, Row{"onlyBlanks", " \t\r\n\u3000", ""},
        Row{"lowerCase", "Security CODE", "security code"}, Row{"sharpS", "Straße", "strasse"},
        Row{"collapsed", "  a \r\n\t b\u00A0\u2003c ", "a b c"},
        Row{"fullWidth", "ＯＴＰ：４７１１", "otp:4711"},
        Row{"halfWidthKatakana", "ﾜﾝﾀｲﾑﾊﾟｽﾜｰﾄﾞ", "ワンタイムパスワード"},
        Row{"mathematicalLetters", "\U0001D412ecurity", "security"}, Row{"circledDigits", "①②", "12"},
        Row{"combiningSequence", "e\u0301", "\u00E9"}, Row{"zeroWidthSpace", "se\u200Bcurity", "security"},
        Row{"softHyphen", "se\u00ADcurity", "security"}, Row{"wordJoinerBetweenBlanks", "a \u2060 b", "a b"},
        Row{"byteOrderMark", "\uFEFFcode", "code"}, Row{"bidirectionalControls", "a\u202Eb\u202C", "ab"},
        Row{"tagCharacters", "a\U000E0041b", "ab"}, Row{"variationSelector", "葛\U000E0100", "葛"},
        Row{"wrappedJapanese", "認証\r\n  コード", "認証コード"},
        Row{"wrappedEnglish", "security\r\ncode", "security code"},
        Row{"lineEndBetweenScripts", "認証\nOTP\n認証", "認証 otp 認証"},
        Row{"blankInJapanese", "認証 コード", "認証 コード"},
        Row{"badBytes", "a\xFF\xE3\x81z", "a\uFFFD\uFFFDz"}),
    rowName);

TEST(FoldedForScanning, everyTextComesOutAsValidUTF8) {
  const std::string_view fragments[] = {"a",        " ",          "\r\n",   "\u0301",      "\u0316",
                                        "\u200D",   "Ｏ",         "\u3000", "認証",        "\xFF",
                                        "\xE3\x81", "\U0001F468", "ﾊﾟ",     "\u1100\u1161"};
  HostileText texts(fragments);
  for (int i = 0; i < 5000; ++i) {
    const std::string text = texts.next(40);
    ASSERT_TRUE(isValidUTF8(foldedForScanning(text))) << testing::PrintToString(text);
  }
}

TEST(FoldedForScanning, noCharacterKeepsMoreThanThirtyMarks) {
  const std::string folded = foldedForScanning("x" + repeated("\u0301\u0316\u200D", 1 << 20) + "y");
  EXPECT_LT(folded.size(), 100u);
  EXPECT_EQ(folded.back(), 'y');
}

TEST(FoldedForScanning, whatTurnsIntoMarksCountsAsMarks) {
  // Katakana sound marks in half width and Tibetan vowels: no marks themselves, they become some.
  for (const char* const marks : {"\uFF9E\u0301", "\u0F73"}) {
    EXPECT_LT(foldedForScanning("x" + repeated(marks, 1 << 19) + "y").size(), 300u) << marks;
  }
}

}  // namespace
}  // namespace tarnwell
