#include "IMAP/Decoding/TextDecoding.h"
#include "Text/Text.h"
#include "support/HostileText.h"
#include "support/RowName.h"
#include "support/TextDecodingReference.h"

namespace tarnwell::TextDecoding {
namespace {

struct Row {
  std::string name;
  std::string field;
  std::string text;
};

class Field : public testing::TestWithParam<Row> {};

TEST_P(Field, isTheTextOfTheRow) {
  EXPECT_EQ(decodeRFC2047(GetParam().field), GetParam().text);
  EXPECT_EQ(referenceField(GetParam().field), GetParam().text) << "the reference disagrees";
}

INSTANTIATE_TEST_SUITE_P(
    Words, Field,
    testing::Values(
        Row{"empty", "", ""}, Row{"plain", "Re: lunch? = yes", "Re: lunch? = yes"},
        Row{"blankBetweenWordsIsDropped", "=?UTF-8?B?SGVsbG8=?= =?UTF-8?B?V29ybGQ=?=", "HelloWorld"},
        Row{"plainTextBefore", "Re: =?utf-8?q?caf=C3=A9_au_lait?=", "Re: café au lait"},
        Row{"plainTextAfter", "=?utf-8?Q?caf=C3=A9?=  au lait ", "café  au lait "},
        Row{"unknownCharset", "=?unknown-cs?Q?abc?=", "abc"}, Row{"language", "=?utf-8*en?Q?=C3=A9?=", "é"},
        Row{"languageOnAnotherCharsetMeansUTF8", "=?koi8-r*ru?Q?=F0?= =?koi8-r?Q?=F0?=", "ðП"},
        Row{"foldedBetweenWords", "=?utf-8?Q?a?=\r\n\t =?utf-8?Q?b?=", "ab"},
        Row{"wideBlankBetweenWords", "=?utf-8?Q?a?=\u3000\u00A0=?utf-8?Q?b?=", "ab"},
        Row{"nothingBetweenWords", "=?utf-8?Q?a?==?utf-8?Q?b?=", "ab"},
        Row{"textBetweenWordsKeepsItsBlanks", "=?utf-8?Q?a?= x =?utf-8?Q?b?=", "a x b"},
        Row{"blanksBeforeTheFirstWordStay", "  =?utf-8?Q?a?=", "  a"},
        Row{"blanksInQ", "=?utf-8?Q?a b_c?=", "a b c"}, Row{"emptyText", "[=?utf-8?Q?\?=]", "[]"},
        Row{"emptyBase64", "[=?utf-8?B?\?=]", "[]"}, Row{"brokenBase64IsTextItself", "=?utf-8?B?x?=", "x"},
        Row{"base64WithoutPadding", "=?utf-8?b?SGVsbG8?=", "Hello"},
        Row{"latin1", "=?ISO-8859-1?Q?Andr=E9?= Pirard", "André Pirard"},
        Row{"wrongCharsetFallsToLatin1", "=?utf-8?Q?=E9?=", "é"},
        // Each word stands for whole characters (RFC 2047, section 5): these two do not.
        Row{"characterSplitAcrossWords", "=?utf-8?Q?=E6=97?= =?utf-8?Q?=A5?=", "æ\u0097¥"},
        Row{"equalsInQ", "=?utf-8?Q?a=3Db=?=", "a=b="}, Row{"underscoreEscape", "=?utf-8?Q?=5F?=", "_"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    NoWords, Field,
    testing::Values(Row{"unclosed", "=?utf-8?Q?abc", "=?utf-8?Q?abc"},
                    Row{"unclosedMark", "=?utf-8?Q?abc?", "=?utf-8?Q?abc?"},
                    Row{"otherEncoding", "=?utf-8?X?abc?=", "=?utf-8?X?abc?="},
                    Row{"longEncoding", "=?utf-8?QQ?abc?=", "=?utf-8?QQ?abc?="},
                    Row{"noCharset", "=??Q?abc?=", "=??Q?abc?="},
                    Row{"markInTheText", "=?utf-8?Q?a?b?=", "=?utf-8?Q?a?b?="},
                    Row{"onlyTheBeginning", "=?", "=?"}, Row{"beginnings", "=?=?=?", "=?=?=?"},
                    Row{"almostTheShortest", "=?x?q??", "=?x?q??"}, Row{"theShortest", "=?x?q?\?=", ""},
                    Row{"wordAfterABrokenOne", "=?utf-8?Q?a=?utf-8?Q?b?=", "=?utf-8?Q?ab"},
                    Row{"wordAfterABeginning", "=?=?utf-8?Q?b?=", "=?b"},
                    Row{"charsetWithAnEqualsSign", "=?a=?q?b?=", "b"},
                    Row{"sharedEqualsSign", "=?utf-8?q?a?=?utf-8?q?b?=", "a?utf-8?q?b?="}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    JapaneseMail, Field,
    testing::Values(Row{"iso2022JP", "=?ISO-2022-JP?B?GyRCOzNFRBsoQg==?=", "山田"},
                    Row{"iso2022JPFolded",
                        "=?iso-2022-jp?B?GyRCRnxLXBsoQg==?=\r\n =?iso-2022-jp?B?GyRCOGwbKEI=?= (1)",
                        "日本語 (1)"},
                    Row{"shiftJIS", "=?Shift_JIS?B?h0Ag+/yLtA==?=", "① 髙橋"},
                    Row{"shiftJISInQ", "=?shift_jis?Q?=CA=DD=B6=B8=87=40?=", "ﾊﾝｶｸ①"},
                    Row{"utf8", "=?UTF-8?B?44CQ6YeN6KaB44CR?= OTP", "【重要】 OTP"}),
    rowName);

TEST(Field, absentStaysAbsent) { EXPECT_EQ(decodeRFC2047(std::nullopt), std::nullopt); }

TEST(Field, withoutABeginningItIsReturnedByteForByte) {
  const std::string field = "caf\xE9 \xFF? =x?=";
  EXPECT_EQ(decodeRFC2047(field), field);
}

TEST(Field, hostileTextsHaveTheMeaningOfTheExpression) {
  constexpr std::string_view fragments[] = {"=",
                                            "?",
                                            "=?",
                                            "?=",
                                            "=?",
                                            "?=",
                                            "utf-8",
                                            "iso-2022-jp",
                                            "x",
                                            "?Q?",
                                            "?q?",
                                            "?B?",
                                            "?b?",
                                            "Q",
                                            "B",
                                            "=41",
                                            "SGVsbG8=",
                                            "_",
                                            " ",
                                            "\r\n ",
                                            "\u00A0",
                                            "日",
                                            "\x1B$BF|",
                                            "=?utf-8?Q?a?=",
                                            "=?utf-8?B?YQ==?=",
                                            "=?utf-8?q?",
                                            "\u200B"};
  HostileText texts(fragments);
  for (int round = 0; round < 50000; ++round) {
    const std::string field = texts.next(20);
    ASSERT_EQ(decodeRFC2047(field), referenceField(field))
        << "start value " << HostileText::startValue << " round " << round << ": " << field;
  }
}

/// What grew with the square of the size would outlast the limit of ctest.
TEST(Field, repeatedBeginningsEnd) {
  for (const std::string_view fragment :
       {"=?", "=?=?", "=?a", "=?a?q?", "=?a?q?b", "=?a?q?b?", "?", "=", "=?a?q?b?= ", "=?a?b?",
        "=?aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", "=?a?q?a?=?q?a?="}) {
    const std::string field = filledWith(fragment, 1'000'000);
    EXPECT_FALSE(decodeRFC2047(field)->empty()) << fragment;
  }
}

}  // namespace
}  // namespace tarnwell::TextDecoding
