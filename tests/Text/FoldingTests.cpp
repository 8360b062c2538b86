#include <unicode/normalizer2.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include "Text/Text.h"
#include "Text/UTF8.h"
#include "support/HostileText.h"
#include "support/Repeated.h"
#include "support/RowName.h"

namespace tarnwell {
namespace {

struct FoldingRow {
  std::string name;
  std::string_view text;
  std::string_view folded;
};

class FoldedForScanning : public testing::TestWithParam<FoldingRow> {};

TEST_P(FoldedForScanning, isThePlainForm) {
  EXPECT_EQ(foldedForScanning(GetParam().text), GetParam().folded);
}

INSTANTIATE_TEST_SUITE_P(
    Table, FoldedForScanning,
    testing::Values(FoldingRow{"empty", "", ""}, FoldingRow{"whiteSpaceAlone", " \t\r\n\u3000\u00A0", ""},
                    FoldingRow{"caseStays", "Your CODE", "Your CODE"},
                    FoldingRow{"whiteSpaceCollapses", "  a \r\n\t b\u2003c ", "a b c"},
                    FoldingRow{"fullWidth", "ＡＢｃ４９３！", "ABc493!"},
                    FoldingRow{"circledAndMathematical", "①②\U0001D7D2", "124"},
                    FoldingRow{"halfWidthKatakana", "ﾊﾟｽｺｰﾄﾞ", "パスコード"},
                    FoldingRow{"composed", "が", "が"}, FoldingRow{"decomposed", "か\u3099", "が"},
                    FoldingRow{"ligature", "ﬁnd", "find"},
                    FoldingRow{"softHyphenAndZeroWidth", "co\u00ADde\u200B\u200D\uFEFF", "code"},
                    FoldingRow{"fillersBetweenBlanks", "a \u200B \u034F b", "a b"},
                    FoldingRow{"variationSelector", "\u2764\uFE0F", "\u2764"},
                    FoldingRow{"dashes", "a\u2010b\u2011c\u2013d\u2014e\u2212f", "a-b-c-d-e-f"},
                    FoldingRow{"apostrophes", "it\u2019s \u2018x", "it's 'x"},
                    FoldingRow{"accents", "Café", "Café"}, FoldingRow{"accentAfter", "Cafe\u0301", "Café"},
                    FoldingRow{"markThatBecomesABlank", "a\u00A8b", "a \u0308b"},
                    FoldingRow{"bidirectionalControls", "a\u202Eb\u202C", "ab"},
                    FoldingRow{"tagCharacters", "a\U000E0041b", "ab"},
                    FoldingRow{"hyphenInAKeyword", "two\u2011factor", "two-factor"},
                    FoldingRow{"wrappedJapanese", "認証\r\n  コード", "認証コード"},
                    FoldingRow{"wrappedEnglish", "security\r\ncode", "security code"},
                    FoldingRow{"lineEndBetweenScripts", "認証\nOTP\n認証", "認証 OTP 認証"},
                    FoldingRow{"blankInJapanese", "認証 コード", "認証 コード"},
                    FoldingRow{"cutInTwo", "日\xE3\x81", "日\uFFFD"},
                    FoldingRow{"ellipsis", "a\u2026", "a..."},
                    FoldingRow{"invalid",
                               "a\xFF"
                               "b",
                               "a\uFFFDb"}),
    rowName);

TEST_P(FoldedForScanning, staysAsItIsWhenFoldedAgain) {
  EXPECT_EQ(foldedForScanning(GetParam().folded), GetParam().folded);
}

TEST(FoldedForScanningOfAll, everyTextComesOutAsValidUTF8) {
  const std::string_view fragments[] = {"a",        " ",          "\r\n",   "\u0301",      "\u0316",
                                        "\u200D",   "Ｏ",         "\u3000", "認証",        "\xFF",
                                        "\xE3\x81", "\U0001F468", "ﾊﾟ",     "\u1100\u1161"};
  HostileText texts(fragments);
  for (int i = 0; i < 5000; ++i) {
    const std::string text = texts.next(40);
    ASSERT_TRUE(isValidUTF8(foldedForScanning(text))) << testing::PrintToString(text);
  }
}

/// Folds the whole text step by step: drops characters that show nothing, replaces dashes and apostrophes,
/// normalises, does the first two steps again, and collapses white space. Has no rule for line ends between
/// wide characters and for many marks.
std::string foldedPlainly(const std::string& text) {
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* const form = icu::Normalizer2::getNFKCInstance(status);
  const auto withoutIgnorables = [](const icu::UnicodeString& from) {
    icu::UnicodeString to;
    for (int32_t at = 0; at < from.length(); at = from.moveIndex32(at, 1)) {
      const UChar32 character = from.char32At(at);
      if (u_hasBinaryProperty(character, UCHAR_DEFAULT_IGNORABLE_CODE_POINT) == 0) {
        const bool isDash = (character >= 0x2010 && character <= 0x2015) || character == 0x2212;
        const bool isApostrophe = character == 0x2018 || character == 0x2019;
        to.append(isDash ? UChar32{'-'} : isApostrophe ? UChar32{'\''} : character);
      }
    }
    return to;
  };
  const auto normal = form->normalize(withoutIgnorables(icu::UnicodeString::fromUTF8(text)), status);
  EXPECT_TRUE(U_SUCCESS(status));
  const icu::UnicodeString plain = withoutIgnorables(normal);
  std::string folded;
  bool isBlankDue = false;
  for (int32_t at = 0; at < plain.length(); at = plain.moveIndex32(at, 1)) {
    const UChar32 character = plain.char32At(at);
    if (u_isUWhiteSpace(character) != 0) {
      isBlankDue = !folded.empty();
      continue;
    }
    folded += isBlankDue ? " " : "";
    isBlankDue = false;
    appendCodePoint(folded, static_cast<char32_t>(character));
  }
  return folded;
}

TEST(FoldedForScanningOfAll, everyCharacterIsFoldedAsByICU) {
  // No character is assigned between planes 3 and 14.
  for (char32_t codePoint = 1; codePoint <= 0xE0FFF; codePoint += codePoint == 0x323FF ? 0xADC01 : 1) {
    std::string text = "a";
    appendCodePoint(text, codePoint);
    text += "か\u3099e\u0301";
    ASSERT_EQ(foldedForScanning(text), foldedPlainly(text)) << "U+" << std::hex << std::uint32_t{codePoint};
  }
}

TEST(FoldedForScanningOfAll, ofManyMarksTheFirstThirtyCount) {
  const std::string marks = foldedForScanning("x" + test::repeated("\u0316\u0301", 500'000));
  EXPECT_EQ(characterCount(marks), 1U);
  EXPECT_EQ(marks, "x" + test::repeated("\u0316", 15) + test::repeated("\u0301", 15));
}

TEST(FoldedForScanningOfAll, whatTurnsIntoMarksCountsAsMarks) {
  // A half-width sound mark is no mark but becomes one. A Tibetan vowel sign becomes two.
  for (const char* const marks : {"\uFF9E\u0301", "\u0F73"}) {
    EXPECT_LT(foldedForScanning("x" + test::repeated(marks, 200'000) + "y").size(), 300U) << marks;
  }
}

}  // namespace
}  // namespace tarnwell
