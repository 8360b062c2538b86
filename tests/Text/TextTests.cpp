#include "Text/Text.h"

#include <unicode/locid.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/ustring.h>

#include <random>

#include "Text/UTF8.h"
#include "support/RegexReference.h"
#include "support/RowName.h"

namespace tarnwell {
namespace {

struct TextRow {
  std::string name;
  std::string text;
  std::string expected;
};

class Lowercased : public testing::TestWithParam<TextRow> {};

TEST_P(Lowercased, isTheFullMappingOfNoLanguage) {
  EXPECT_EQ(lowercased(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Lowercased,
    testing::Values(TextRow{"empty", "", ""}, TextRow{"ascii", "Your OTP: [47]@Z`{", "your otp: [47]@z`{"},
                    TextRow{"latin", "ÀÉÎ", "àéî"}, TextRow{"dottedCapitalI", "İ", "i\u0307"},
                    TextRow{"capitalIIsNotTurkish", "I", "i"}, TextRow{"finalSigma", "ΟΔΟΣ ΣΑΣ", "οδος σας"},
                    TextRow{"fullWidth", "ＯＴＰ２", "ｏｔｐ２"},
                    TextRow{"japaneseStays", "認証コード", "認証コード"}, TextRow{"kelvin", "\u212A", "k"},
                    TextRow{"sharpS", "ẞ", "ß"},
                    TextRow{"invalid",
                            "A\xFF"
                            "B",
                            "a\uFFFDb"},
                    TextRow{"truncated", "Ä\xE3\x81", "ä\uFFFD"},
                    TextRow{"deseret", "\U00010400", "\U00010428"}),
    rowName);

class Uppercased : public testing::TestWithParam<TextRow> {};

TEST_P(Uppercased, isTheFullMappingOfNoLanguage) {
  EXPECT_EQ(uppercased(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Table, Uppercased,
                         testing::Values(TextRow{"ascii", "aZ{`@1", "AZ{`@1"},
                                         TextRow{"sharpS", "straße", "STRASSE"},
                                         TextRow{"ligature", "ﬃ", "FFI"}, TextRow{"dottedI", "i", "I"},
                                         TextRow{"growing", "\u0390", "\u0399\u0308\u0301"},
                                         TextRow{"invalid", "\xC0é", "\uFFFDÉ"}),
                         rowName);

TEST(Text, mappingThatGrowsMuchIsComplete) {
  std::string text;
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    text += "\u0390";
    expected += "\u0399\u0308\u0301";
  }
  EXPECT_TRUE(uppercased(text) == expected);
}

class RepairedUTF8 : public testing::TestWithParam<TextRow> {};

TEST_P(RepairedUTF8, replacesEachMaximalInvalidSequence) {
  EXPECT_EQ(repairedUTF8(GetParam().text), GetParam().expected);
  EXPECT_TRUE(isValidUTF8(repairedUTF8(GetParam().text)));
  EXPECT_EQ(isValidUTF8(GetParam().text), GetParam().text == GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Table, RepairedUTF8,
    testing::Values(TextRow{"empty", "", ""}, TextRow{"ascii", "0123456789abcdefghi", "0123456789abcdefghi"},
                    TextRow{"allLengths", "a\u00E9\u65E5\U0001F600", "a\u00E9\u65E5\U0001F600"},
                    TextRow{"limits", "\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF",
                            "\u0080\u07FF\u0800\uFFFF\U00010000\U0010FFFF"},
                    TextRow{"nul", std::string("a\0b", 3), std::string("a\0b", 3)},
                    TextRow{"loneContinuation", "\x80z", "\uFFFDz"},
                    TextRow{"overlongSlash", "\xC0\xAF", "\uFFFD\uFFFD"},
                    TextRow{"overlongThree", "\xE0\x80\xAF", "\uFFFD\uFFFD\uFFFD"},
                    TextRow{"surrogate", "\xED\xA0\x80", "\uFFFD\uFFFD\uFFFD"},
                    TextRow{"aboveTheLast", "\xF4\x90\x80\x80", "\uFFFD\uFFFD\uFFFD\uFFFD"},
                    TextRow{"truncatedFour", "\xF0\x9F\x98", "\uFFFD"},
                    TextRow{"truncatedBeforeLetter", "\xF0\x9F\x98z", "\uFFFDz"},
                    // The example of Unicode 15, table 3-8.
                    TextRow{"unicodeExample", "\xE1\x80\xE2\xF0\x91\x92\xF1\xBF\x41",
                            "\uFFFD\uFFFD\uFFFD\uFFFD\x41"},
                    TextRow{"noSuchByte", "\xFE\xFF", "\uFFFD\uFFFD"}),
    rowName);

class Trimmed : public testing::TestWithParam<TextRow> {};

TEST_P(Trimmed, losesTheWhiteSpaceAtBothEnds) { EXPECT_EQ(trimmed(GetParam().text), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(Table, Trimmed,
                         testing::Values(TextRow{"empty", "", ""}, TextRow{"nothingToDo", "a b", "a b"},
                                         TextRow{"only", " \t\r\n\v\f", ""},
                                         TextRow{"both", "\n a b\t\r\n", "a b"},
                                         TextRow{"wide", "\u3000\u00A0日本\u2028\u0085", "日本"},
                                         TextRow{"zeroWidthStays", "\u200Ba\u200B", "\u200Ba\u200B"},
                                         TextRow{"invalidStays", "\xFF a \x85", "\xFF a \x85"},
                                         TextRow{"truncatedAtTheEndStays", "a \xE3\x80", "a \xE3\x80"},
                                         TextRow{"loneContinuationsStay", "a\xC2\xA0\x80\x80\x80\x80",
                                                 "a\xC2\xA0\x80\x80\x80\x80"}),
                         rowName);

TEST(Text, classesOfCodePointsAreThoseOfTheUnicodeDatabase) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    const auto value = static_cast<UChar32>(codePoint);
    ASSERT_EQ(isWhitespace(codePoint), u_hasBinaryProperty(value, UCHAR_WHITE_SPACE) != 0) << value;
    ASSERT_EQ(isControlCharacter(codePoint), u_charType(value) == U_CONTROL_CHAR) << value;
    ASSERT_EQ(isFormatCharacter(codePoint), u_charType(value) == U_FORMAT_CHAR) << value;
  }
  EXPECT_FALSE(isFormatCharacter(0xFFFFFFFF));
}

struct WordRow {
  std::string name;
  std::string term;
  std::string text;
  bool found;
};

class WordPatternRow : public testing::TestWithParam<WordRow> {};

TEST_P(WordPatternRow, isFoundOnlyBetweenBoundaries) {
  const WordPattern pattern(GetParam().term);
  ASSERT_TRUE(pattern.isUsable());
  EXPECT_EQ(pattern.isFoundIn(GetParam().text), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(
    Table, WordPatternRow,
    testing::Values(
        WordRow{"alone", "otp", "otp", true}, WordRow{"emptyText", "otp", "", false},
        WordRow{"insideAWord", "otp", "hotpot", false},
        WordRow{"laterInTheText", "otp", "hotpot or OTP: 1", true}, WordRow{"otherCase", "otp", "oTp", true},
        WordRow{"termInCapitals", "OTP", "otp", true}, WordRow{"punctuation", "otp", "(otp)", true},
        WordRow{"digitBeside", "otp", "otp4", false}, WordRow{"underscoreBeside", "otp", "otp_code", false},
        WordRow{"kanaBeside", "otp", "otpは", false}, WordRow{"hanBefore", "otp", "次のotp 日OTP.", false},
        WordRow{"firstLetterInCapitalsAlone", "otp", "hotpot otps Otp", true},
        WordRow{"firstLetterInCapitalsInAWord", "otp", "hotpot Otps", false},
        WordRow{"everyOneInsideOfJapanese", "2fa", "日の2FAは2faの2FA", false},
        WordRow{"betweenJapaneseAndASign", "2fa", "日の2FAは「2fa」の", true},
        WordRow{"ideographicCommaBeside", "otp", "、otp。", true},
        WordRow{"fullWidthDigitBeside", "otp", "otp１", false},
        WordRow{"markBeside", "otp", "otp\u0301", false},
        WordRow{"fullWidthLettersAreOthers", "otp", "ｏｔｐ", false},
        WordRow{"termBeginsWithDigit", "2fa", "2FAST", false},
        WordRow{"termBeginsWithDigitAlone", "2fa", "my 2FA.", true},
        WordRow{"longS", "sms", "\u017Fms", true}, WordRow{"kelvinSign", "ok", "o\u212A", true},
        WordRow{"ligature", "fit", "ﬁt", true}, WordRow{"ligatureOfST", "fast", "fa\uFB06", true},
        WordRow{"metacharacters", "a.b", "axb", false},
        WordRow{"metacharactersThemselves", "a.b*c", "(a.b*c)", true},
        WordRow{"backslash", "a\\d", "a\\d", true}, WordRow{"quoteMarker", "a\\Eb", "a\\Eb", true},
        WordRow{"space", "one time", "one time", true}, WordRow{"japaneseTerm", "認証", "二要素認証", false},
        WordRow{"japaneseTermAlone", "認証", "「認証」", true},
        WordRow{"invalidBytesBeside", "otp", "\xFFotp\xFF", true},
        WordRow{"voicingMarkBeforeIsPassedOver", "otp", "\uFF9Eotp", true},
        WordRow{"voicingMarkBehindJoins", "otp", "otp\uFF9E", false},
        WordRow{"letterBeforeAMark", "otp", "a\u0301otp", false},
        WordRow{"strayContinuationBefore", "otp", "a\x80otp", true},
        WordRow{"onlyTheLastIsAWord", "otp", "日otp otps 日otp otp", true}),
    rowName);

TEST(WordPattern, onlyTheKnownLettersFoldToASCII) {
  // Texts are not folded for the terms without them.
  std::u32string found;
  for (UChar32 codePoint = 0x80; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint >= 0xD800 && codePoint <= 0xDFFF) {
      continue;
    }
    UChar folded[16];
    UChar single[2];
    int32_t length = 0;
    U16_APPEND_UNSAFE(single, length, codePoint);
    UErrorCode status = U_ZERO_ERROR;
    const int32_t count = u_strFoldCase(folded, 16, single, length, U_FOLD_CASE_DEFAULT, &status);
    bool isASCII = true;
    for (int32_t i = 0; i < count; ++i) {
      isASCII = isASCII && folded[i] < 0x80;
    }
    if (isASCII) {
      found.push_back(static_cast<char32_t>(codePoint));
    }
  }
  EXPECT_EQ(found, U"\u00DF\u017F\u1E9E\u212A\uFB00\uFB01\uFB02\uFB03\uFB04\uFB05\uFB06");
}

TEST(WordPattern, everyCodePointBesideATermHasTheBoundariesOfICU) {
  const WordPattern pattern("otp");
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint == 0xD800) {
      codePoint = 0xE000;
    }
    if (codePoint > 0x20000 && (codePoint < 0xE0000 || codePoint > 0xF0000) && codePoint % 64 != 0) {
      continue;  // planes of Han, unassigned or for private use
    }
    std::string character;
    appendCodePoint(character, codePoint);
    for (const std::string& text : {character + "otp", "OTP" + character, "a" + character + "otp"}) {
      ASSERT_EQ(pattern.isFoundIn(text), isFoundByICU(text, R"(\botp\b)", LetterCase::isIgnored))
          << "U+" << std::hex << std::uint32_t{codePoint};
    }
  }
}

TEST(WordPattern, randomTextsHaveTheWordsOfICU) {
  const std::vector<std::string> pieces = {
      "otp",    "OTP",    "2fa",    "2Fa",    "a",          "_",    "4",        " ",      ".",
      "\n",     "日",     "は",     "。",     "１",         "é",    "\u0301",   "\u0345", "\u20DD",
      "\u0903", "\uFF9E", "\u200D", "\u200B", "\U0001F1EF", "\xFF", "\xE6\x97", "\u0E33",
  };
  const WordPattern otp("otp");
  const WordPattern twoFactor("2fa");
  constexpr unsigned startValue = 47;
  std::mt19937 random(startValue);
  int found = 0;
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    for (std::size_t count = random() % 8; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    const bool isFound = otp.isFoundIn(text);
    found += isFound ? 1 : 0;
    ASSERT_EQ(isFound, isFoundByICU(text, R"(\botp\b)", LetterCase::isIgnored)) << text;
    ASSERT_EQ(twoFactor.isFoundIn(text), isFoundByICU(text, R"(\b2fa\b)", LetterCase::isIgnored)) << text;
  }
  EXPECT_GT(found, 1'000);
}

TEST(Text, everyCodePointHasTheLowerCaseOfICU) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint == 0xD800) {
      codePoint = 0xE000;
    }
    if (codePoint > 0x20000 && (codePoint < 0xE0000 || codePoint > 0xF0000) && codePoint % 64 != 0) {
      continue;  // planes of Han, unassigned or for private use
    }
    std::string text = "A日";
    appendCodePoint(text, codePoint);
    std::string expected;
    icu::UnicodeString::fromUTF8(text).toLower(icu::Locale::getRoot()).toUTF8String(expected);
    ASSERT_EQ(lowercased(text), expected) << "U+" << std::hex << std::uint32_t{codePoint};
  }
}

TEST(WordPattern, movedFromIsFoundNowhere) {
  WordPattern first("otp");
  const WordPattern second(std::move(first));
  EXPECT_TRUE(second.isFoundIn("otp"));
  EXPECT_FALSE(first.isUsable());  // NOLINT(bugprone-use-after-move)
  EXPECT_FALSE(first.isFoundIn("otp"));
}

}  // namespace
}  // namespace tarnwell
