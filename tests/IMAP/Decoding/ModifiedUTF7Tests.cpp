#include "IMAP/Decoding/ModifiedUTF7.h"

#include "Text/Text.h"
#include "Text/UTF8.h"
#include "support/HostileText.h"
#include "support/ModifiedUTF7Reference.h"
#include "support/RowName.h"

namespace tarnwell::ModifiedUTF7 {
namespace {

struct NameRow {
  const char* name;
  std::string mailbox;
  std::string text;
};

class Valid : public testing::TestWithParam<NameRow> {};

TEST_P(Valid, isDecodedAndEncoded) {
  EXPECT_EQ(decoded(GetParam().mailbox), GetParam().text);
  EXPECT_EQ(readable(GetParam().mailbox), GetParam().text);
  EXPECT_EQ(encoded(GetParam().text), GetParam().mailbox);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Valid,
    testing::Values(
        NameRow{"empty", "", ""}, NameRow{"ascii", "Sent Messages", "Sent Messages"},
        NameRow{"allOfASCIIButTheAmpersand", " !\"#$%'()*+,-./0123456789:;<=>?@ABCXYZ[\\]^_`abcxyz{|}~",
                " !\"#$%'()*+,-./0123456789:;<=>?@ABCXYZ[\\]^_`abcxyz{|}~"},
        NameRow{"ampersand", "R&-D", "R&D"}, NameRow{"ampersands", "&-&-", "&&"},
        NameRow{"ampersandAndMinus", "&--", "&-"},
        // The examples of RFC 3501, section 5.1.3.
        NameRow{"ofTheStandard", "~peter/mail/&U,BTFw-/&ZeVnLIqe-", "~peter/mail/台北/日本語"},
        NameRow{"ofTheStandardInOneShift", "&U,BTF2XlZyyKng-", "台北日本語"},
        NameRow{"projects", "&MNcw7TC4MKcwrzDI-", "プロジェクト"}, NameRow{"trash", "&MLQw33ux-", "ゴミ箱"},
        NameRow{"german", "Entw&APw-rfe", "Entwürfe"},
        NameRow{"russian", "&BB4EQgQ,BEAEMAQyBDsENQQ9BD0ESwQ1-", "Отправленные"},
        NameRow{"commaOfTheAlphabet", "&,,0-", "\uFFFD"}, NameRow{"plusOfTheAlphabet", "&AP4A+wD,-", "þûÿ"},
        NameRow{"beyondTheBasicPlane", "&2D3ePA-", "\U0001F63C"},
        NameRow{"lastCodePoint", "&2,,f,w-", "\U0010FFFF"}, NameRow{"shiftThenAmpersand", "&MNc-&-", "プ&"},
        NameRow{"ampersandThenShift", "&-&MNc-", "&プ"}, NameRow{"shiftThenMinus", "&MNc--", "プ-"},
        NameRow{"joiners", "&IA0-", "\u200D"}, NameRow{"markOfDirection", "&IA8-", "\u200F"}),
    rowName);

struct MalformedRow {
  const char* name;
  std::string mailbox;
};

class Malformed : public testing::TestWithParam<MalformedRow> {};

TEST_P(Malformed, staysAsItIs) {
  EXPECT_EQ(decoded(GetParam().mailbox), std::nullopt);
  EXPECT_EQ(readable(GetParam().mailbox), GetParam().mailbox);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Malformed,
    testing::Values(
        MalformedRow{"ampersandAtTheEnd", "Work&"}, MalformedRow{"onlyAnAmpersand", "&"},
        MalformedRow{"ampersandAsText", "Research & Development"},
        MalformedRow{"shiftThatDoesNotEnd", "&MNc"}, MalformedRow{"shiftThatIsCutInAGroup", "&MNcw7-"},
        MalformedRow{"oneLetter", "&A-"}, MalformedRow{"twoLetters", "&MN-"},
        MalformedRow{"oneLetterTooMany", "&MNcA-"}, MalformedRow{"twoLettersTooMany", "&MLQw33uxAA-"},
        MalformedRow{"looseBits", "&MNd-"}, MalformedRow{"padding", "&MNc=-"},
        MalformedRow{"slashOfOtherBase64", "&U/BTFw-"}, MalformedRow{"blankInAShift", "&MN c-"},
        MalformedRow{"lineEndInAShift", "&MNc\r\n-"}, MalformedRow{"eighthBitInAShift", "&MN\xE9-"},
        MalformedRow{"ampersandInAShift", "&MN&c-"},
        // The example of RFC 3501, section 5.1.3.
        MalformedRow{"nullShift", "&U,BTFw-&ZeVnLIqe-"}, MalformedRow{"asciiInAShift", "&AGE-"},
        MalformedRow{"asciiAfterOthersInAShift", "&MNcAYQ-"}, MalformedRow{"ampersandAsAShift", "&ACY-"},
        MalformedRow{"delimiterAsAShift", "&AC8-"}, MalformedRow{"highSurrogate", "&2D0-"},
        MalformedRow{"highSurrogateAndALetter", "&2D0w1w-"}, MalformedRow{"lowSurrogate", "&3jw-"},
        MalformedRow{"surrogatesInTheWrongOrder", "&3jzYPQ-"},
        MalformedRow{"surrogatesInTwoShifts", "&2D0-&3jw-"}, MalformedRow{"rawUTF8", "\u66F8\u985E"},
        MalformedRow{"rawUTF8BesideAShift", "\u66F8&MNc-"}, MalformedRow{"noUTF8", "caf\xE9"},
        MalformedRow{"rawControlCharacter", "a\tb"}, MalformedRow{"rawDelete", "a\x7F"},
        MalformedRow{"rawControlCharacterBesideAShift", "a\n&MNc-"},
        MalformedRow{"oneShiftOfTwo", "&MNc-a&MN-"}),
    rowName);

class Misleading : public testing::TestWithParam<MalformedRow> {};

TEST_P(Misleading, isValidAndStaysAsItIs) {
  EXPECT_TRUE(decoded(GetParam().mailbox));
  EXPECT_EQ(readable(GetParam().mailbox), GetParam().mailbox);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Misleading,
    testing::Values(MalformedRow{"zero", "a&AAA-"}, MalformedRow{"lineEnd", "a&AA0ACg-b"},
                    MalformedRow{"escape", "&ABs-[2J"}, MalformedRow{"delete", "&AH8-"},
                    MalformedRow{"nextLine", "&AIU-"}, MalformedRow{"lastOfTheControls", "&AJ8-"},
                    MalformedRow{"lineSeparator", "&ICg-"}, MalformedRow{"paragraphSeparator", "&ICk-"},
                    MalformedRow{"rightToLeftOverride", "&IC4-hsarT"}, MalformedRow{"embedding", "&ICo-"},
                    MalformedRow{"isolate", "&IGY-"}, MalformedRow{"endOfAnIsolate", "&IGk-"},
                    MalformedRow{"controlAmongOthers", "&MNcABzDI-"}),
    rowName);

TEST(ModifiedUTF7, everyScalarValueComesBack) {
  const test::ICUConverter converter = test::mailboxNameConverter();
  ASSERT_TRUE(converter);
  for (char32_t codePoint = 0; codePoint <= 0x10FFFF; ++codePoint) {
    if (codePoint == 0xD800) {
      codePoint = 0xE000;
    }
    std::string character;
    appendCodePoint(character, codePoint);
    ASSERT_EQ(encoded(character), test::referenceName(character, converter));
    const bool staysEncoded = isControlCharacter(codePoint) || (codePoint >= 0x2028 && codePoint <= 0x202E) ||
                              (codePoint >= 0x2066 && codePoint <= 0x2069);
    for (const std::string& text : {character, "a" + character + "b"}) {
      const std::string name = encoded(text);
      ASSERT_EQ(readable(name), staysEncoded ? name : text);
      ASSERT_TRUE(!staysEncoded || decoded(name) == text) << name;
    }
  }
}

TEST(ModifiedUTF7, bytesThatAreNotUTF8AreEncodedAsReplacementCharacters) {
  EXPECT_EQ(encoded("a\xFF"), encoded("a\uFFFD"));
}

TEST(ModifiedUTF7, hostileNamesAreReadLikeThoseOfICUOrNotAtAll) {
  constexpr std::string_view fragments[] = {"&",   "-",  "&-",    "&MNc-", "&AGE-", "MNc",  "2D0",
                                            "3jw", "a",  "A",     "/",     ",",     " ",    "\x80",
                                            "プ",  "\t", "&2D3e", "PA-",   "&U,",   "BTFw-"};
  const test::ICUConverter converter = test::mailboxNameConverter();
  HostileText names(fragments);
  int valid = 0;
  for (int round = 0; round < 100000; ++round) {
    const std::string name = names.next(6);
    const std::optional<std::string> text = decoded(name);
    if (text) {
      ++valid;
      ASSERT_EQ(*text, test::referenceNameText(name, converter)) << name;
      ASSERT_EQ(encoded(*text), name);
      ASSERT_TRUE(isValidUTF8(*text)) << name;
    } else {
      ASSERT_NE(test::referenceName(test::referenceNameText(name, converter), converter), name);
    }
  }
  EXPECT_GT(valid, 5000);
}

/// What grew with the square of the size would outlast the limit of ctest.
TEST(ModifiedUTF7, repeatedBeginningsEnd) {
  for (const std::string_view fragment : {"&", "&-", "-", "&MNc-a", "MNcw", "&MNc", "プ", "&2D0-"}) {
    const std::string name = filledWith(fragment, 1'000'000);
    EXPECT_FALSE(readable(name).empty()) << fragment;
    EXPECT_FALSE(readable("&" + name + "-").empty()) << fragment;
  }
}

}  // namespace
}  // namespace tarnwell::ModifiedUTF7
