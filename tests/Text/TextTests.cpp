#include "Text/Text.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include <random>

#include "Text/UTF8.h"
#include "support/RegexReference.h"
#include "support/RowName.h"

namespace tarnwell {
namespace {

using namespace std::string_view_literals;

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

/// All code points for which the function is true.
std::u32string allOf(bool (*isOne)(char32_t)) {
  std::u32string found;
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (isOne(codePoint)) {
      found += codePoint;
    }
  }
  return found;
}

TEST(Text, whiteSpaceIsTheClosedSetOfUnicode) {
  EXPECT_EQ(
      allOf(isWhitespace),
      U"\t\n\v\f\r \u0085\u00A0\u1680\u2000\u2001\u2002\u2003\u2004\u2005\u2006\u2007\u2008\u2009\u200A\u2028"
      U"\u2029\u202F\u205F\u3000");
  EXPECT_FALSE(isWhitespace(0xFFFFFFFF));
}

TEST(Text, controlCharactersAreTheTwoRangesOfUnicode) {
  std::u32string ranges;
  for (char32_t codePoint = 0; codePoint < 0x20; ++codePoint) {
    ranges += codePoint;
  }
  for (char32_t codePoint = 0x7F; codePoint < 0xA0; ++codePoint) {
    ranges += codePoint;
  }
  EXPECT_EQ(allOf(isControlCharacter), ranges);
  EXPECT_FALSE(isControlCharacter(0xFFFFFFFF));
}

TEST(Text, formatCharactersAreThoseOfUnicode) {
  for (
      const char32_t codePoint :
      U"\u00AD\u0600\u061C\u06DD\u200B\u200C\u200D\u200E\u200F\u202A\u202E\u2060\u2064\u2066\u2069\uFEFF\U000E0001\U000E007F"sv) {
    EXPECT_TRUE(isFormatCharacter(codePoint)) << std::uint32_t{codePoint};
  }
  for (const char32_t codePoint : U"\n a\u00A0\u0301\u2028\uFE0F日\U0001F600\U000E0100"sv) {
    EXPECT_FALSE(isFormatCharacter(codePoint)) << std::uint32_t{codePoint};
  }
  EXPECT_FALSE(isFormatCharacter(0xFFFFFFFF));
}

struct WordRow {
  std::string name;
  std::string word;
  std::string text;
  bool found;
};

class HasWord : public testing::TestWithParam<WordRow> {};

TEST_P(HasWord, isTrueOnlyBetweenBoundaries) {
  EXPECT_EQ(hasWord(GetParam().text, GetParam().word), GetParam().found);
}

INSTANTIATE_TEST_SUITE_P(
    Table, HasWord,
    testing::Values(
        WordRow{"alone", "otp", "otp", true}, WordRow{"emptyText", "otp", "", false},
        WordRow{"insideAWord", "otp", "hotpot", false},
        WordRow{"laterInTheText", "otp", "hotpot or otp: 1", true}, WordRow{"otherCase", "otp", "oTp", false},
        WordRow{"punctuation", "otp", "(otp)", true}, WordRow{"digitBeside", "otp", "otp4", false},
        WordRow{"underscoreBeside", "otp", "otp_code", false}, WordRow{"kanaBeside", "otp", "otpは", false},
        WordRow{"hanBefore", "otp", "次のotp 日otp.", false},
        WordRow{"everyOneInsideOfJapanese", "2fa", "日の2faは2faの2fa", false},
        WordRow{"betweenJapaneseAndASign", "2fa", "日の2faは「2fa」の", true},
        WordRow{"ideographicCommaBeside", "otp", "、otp。", true},
        WordRow{"fullWidthDigitBeside", "otp", "otp１", false},
        WordRow{"markBeside", "otp", "otp\u0301", false},
        WordRow{"fullWidthLettersAreOthers", "otp", "ｏｔｐ", false},
        WordRow{"termBeginsWithDigit", "2fa", "2fast", false},
        WordRow{"termBeginsWithDigitAlone", "2fa", "my 2fa.", true},
        WordRow{"metacharacters", "a.b", "axb", false},
        WordRow{"metacharactersThemselves", "a.b*c", "(a.b*c)", true},
        WordRow{"backslash", "a\\d", "a\\d", true}, WordRow{"quoteMarker", "a\\Eb", "a\\Eb", true},
        WordRow{"space", "one time", "one time", true}, WordRow{"japaneseTerm", "認証", "二要素認証", false},
        WordRow{"japaneseTermAlone", "認証", "「認証」", true},
        WordRow{"invalidBytesBeside", "otp", "\xFFotp\xFF", true},
        WordRow{"voicingMarkBeforeIsPassedOver", "otp", "\uFF9Eotp", true},
        WordRow{"voicingMarkAfterJoins", "otp", "otp\uFF9E", false},
        WordRow{"letterBeforeAMark", "otp", "a\u0301otp", false},
        WordRow{"strayContinuationBefore", "otp", "a\x80otp", true},
        WordRow{"onlyTheLastIsAWord", "otp", "日otp otps 日otp otp", true}),
    rowName);

TEST(HasWord, everyCodePointBesideATermHasTheBoundariesOfICU) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint == 0xD800) {
      codePoint = 0xE000;
    }
    if (codePoint > 0x20000 && (codePoint < 0xE0000 || codePoint > 0xF0000) && codePoint % 64 != 0) {
      continue;  // Han, unassigned and private-use planes: every 64th is enough
    }
    std::string character;
    appendCodePoint(character, codePoint);
    for (const std::string& text : {character + "otp", "otp" + character, "a" + character + "otp"}) {
      ASSERT_EQ(hasWord(text, "otp"), isFoundByICU(text, R"(\botp\b)", LetterCase::matters))
          << "U+" << std::hex << std::uint32_t{codePoint};
    }
  }
}

TEST(HasWord, randomTextsHaveTheWordsOfICU) {
  const std::vector<std::string> pieces = {
      "otp",    "OTP",    "2fa",    "2Fa",    "a",          "_",    "4",        " ",      ".",
      "\n",     "日",     "は",     "。",     "１",         "é",    "\u0301",   "\u0345", "\u20DD",
      "\u0903", "\uFF9E", "\u200D", "\u200B", "\U0001F1EF", "\xFF", "\xE6\x97", "\u0E33",
  };
  constexpr unsigned startValue = 47;
  std::mt19937 random(startValue);
  int found = 0;
  for (int round = 0; round < 20'000; ++round) {
    std::string text;
    for (std::size_t count = random() % 8; count > 0; --count) {
      text += pieces[random() % pieces.size()];
    }
    const bool isFound = hasWord(text, "otp");
    found += isFound ? 1 : 0;
    ASSERT_EQ(isFound, isFoundByICU(text, R"(\botp\b)", LetterCase::matters)) << text;
    ASSERT_EQ(hasWord(text, "2fa"), isFoundByICU(text, R"(\b2fa\b)", LetterCase::matters)) << text;
  }
  EXPECT_GT(found, 500);
}

TEST(Text, everyCodePointHasTheLowerCaseOfICU) {
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint == 0xD800) {
      codePoint = 0xE000;
    }
    if (codePoint > 0x20000 && (codePoint < 0xE0000 || codePoint > 0xF0000) && codePoint % 64 != 0) {
      continue;  // Han, unassigned and private-use planes: every 64th is enough
    }
    std::string text = "A日";
    appendCodePoint(text, codePoint);
    std::string expected;
    icu::UnicodeString::fromUTF8(text).toLower(icu::Locale::getRoot()).toUTF8String(expected);
    ASSERT_EQ(lowercased(text), expected) << "U+" << std::hex << std::uint32_t{codePoint};
  }
}

}  // namespace
}  // namespace tarnwell
