#include <random>

#include "IMAP/Decoding/TextDecoding.h"
#include "support/HostileText.h"
#include "support/RowName.h"
#include "support/TextDecodingReference.h"

namespace tarnwell::TextDecoding {
namespace {

using namespace std::string_literals;

struct Base64Row {
  std::string name;
  std::string text;
  std::optional<std::string> bytes;
};

class Base64 : public testing::TestWithParam<Base64Row> {};

TEST_P(Base64, yieldsTheBytesOfTheRow) { EXPECT_EQ(decodeBase64(GetParam().text), GetParam().bytes); }

INSTANTIATE_TEST_SUITE_P(
    Table, Base64,
    testing::Values(
        // The examples of RFC 4648, section 10.
        Base64Row{"empty", "", ""}, Base64Row{"f", "Zg==", "f"}, Base64Row{"fo", "Zm8=", "fo"},
        Base64Row{"foo", "Zm9v", "foo"}, Base64Row{"foob", "Zm9vYg==", "foob"},
        Base64Row{"fooba", "Zm9vYmE=", "fooba"}, Base64Row{"foobar", "Zm9vYmFy", "foobar"},
        Base64Row{"withoutPadding", "Zm9vYg", "foob"}, Base64Row{"withoutHalfThePadding", "Zm9vYg=", "foob"},
        Base64Row{"lineBreaks", "Zm9v\r\nYmFy\r\n", "foobar"},
        Base64Row{"lineBreakInsideAGroup", "Zm\r\n9v", "foo"},
        Base64Row{"strayCharacters", "*Z!m-9_v\x80.", "foo"}, Base64Row{"strayNul", "Zm\0009v"s, "foo"},
        Base64Row{"goesOnAfterPadding", "Zg==Zm8=Zm9v", "ffofoo"},
        Base64Row{"paddingBetweenGroups", "Zm9v=Zm9v", "foofoo"}, Base64Row{"onlyPadding", "====", ""},
        Base64Row{"onlyStrayCharacters", " -\r\n", ""}, Base64Row{"loneCharacter", "Z", std::nullopt},
        Base64Row{"loneCharacterAfterBytes", "Zm9vZ", "foo"},
        Base64Row{"loneCharactersWithPadding", "Z=Z=", std::nullopt},
        Base64Row{"lastTwoOfTheAlphabet", "+/+/", "\xFB\xFF\xBF"},
        Base64Row{"highBits", "////", "\xFF\xFF\xFF"}, Base64Row{"zeroBytes", "AAAA", "\0\0\0"s},
        Base64Row{"looseTailBits", "Zh==", "f"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    AfterPadding, Base64,
    testing::Values(Base64Row{"footerOfAList",
                              "Zg==\r\n-- \r\nThis is the list, see https://lists.example.org/\r\n", "f"},
                    Base64Row{"footerUnderALine", "Zm8=\r\n____________\r\nlist\r\n", "fo"},
                    Base64Row{"footerOfLettersAndBlanks", "Zg==\r\nSent from home\r\n", "f"},
                    Base64Row{"footerOfTwoWordsOfFourLetters", "Zg==\r\nKind Mail\r\n", "f"},
                    Base64Row{"footerWithTabs", "Zg==\r\nKind\t\tMail\r\n", "f"},
                    Base64Row{"footerOfOneWord", "Zg==\r\nRegards\r\n", "f"},
                    Base64Row{"footerOnTheSameLine", "Zg== see below", "f"},
                    Base64Row{"footerWithAnAddressAndPadding", "Zg==\r\nlist?id=Zm8=\r\n", "f"},
                    Base64Row{"footerAfterTheSecondPadding", "Zg==\r\nZm8=\r\n-- \r\nfooter\r\n", "f"},
                    Base64Row{"footerInAnotherScript", "Zg==\r\n\xE9\xE9\r\n", "f"},
                    Base64Row{"zeroByte", "Zg==\0Zm9v"s, "f"}, Base64Row{"stopAndBase64", "Zg==.Zm9v", "f"},
                    Base64Row{"base64OfTwoLines", "Zg==\r\nZm9v\r\nYmFy\r\n", "ffoobar"},
                    Base64Row{"lineEndInsideAGroupLater", "Zg==\nZm\n8=", "ffo"},
                    Base64Row{"bareCRs", "Zg==\rZm9v\r", "ffoo"},
                    Base64Row{"blankAfterPadding", "Zg== Zm8=", "ffo"},
                    Base64Row{"blanksAtLineEnds", "Zg==  \r\n\tZm9v \t\r\n YmFy", "ffoobar"},
                    Base64Row{"blankBeforePadding", "Zg==Zm8 =\tZm9v", "ffofoo"},
                    Base64Row{"blankInsideAGroup", "Zg==Zm 9v", "f"},
                    Base64Row{"blanksBeforeIt", "Z m 9 v Z g==", "foof"},
                    Base64Row{"halfThePadding", "Zg=Zm8=Zg=", "ffof"},
                    Base64Row{"moreThanThePadding", "Zg====Zm9v", "ffoo"},
                    Base64Row{"noWholeGroupAtTheEnd", "Zg==Zm8", "f"},
                    Base64Row{"singleLetterAtTheEnd", "Zg==Zm9vZ", "f"},
                    Base64Row{"singleLetterBeforePadding", "Zg==Z=Zm9v", "f"},
                    Base64Row{"onlyLineEnds", "Zg==\r\n\r\n", "f"},
                    Base64Row{"paddingWithoutBytesEndsNothing", "=Z= -. Zm8=", "fo"},
                    Base64Row{"paddingOfATextEndsNothing", "====-- \r\nZm9v", "foo"},
                    Base64Row{"nothingBeforeAFooter", "Z=\r\n-", std::nullopt}),
    rowName);

TEST(Base64, hostileTextsHaveTheMeaningOfTheRule) {
  constexpr std::string_view fragments[] = {"Zg==", "Zm8=", "Zm9v", "Z",  "Zg", "=",    "==",   "\r\n", "\n",
                                            "\r",   " ",    "\t",   "--", ".",  "\x80", "word", "a+/b"};
  HostileText texts(fragments);
  for (int round = 0; round < 50000; ++round) {
    const std::string encoded = texts.next(12);
    ASSERT_EQ(decodeBase64(encoded), referenceBase64(encoded))
        << encoded << " start value " << HostileText::startValue << " round " << round;
  }
}

TEST(Base64, footerAfterABodyIsLeftOut) {
  EXPECT_EQ(decodeText("Q2Fmw6k=\r\n-- \r\nlist\r\n", "base64", "utf-8"), "Café");
}

std::string encodedBase64(std::string_view bytes) {
  constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (std::size_t start = 0; start < bytes.size(); start += 3) {
    std::uint32_t group = 0;
    const std::string_view three = bytes.substr(start, 3);
    for (std::size_t i = 0; i < 3; ++i) {
      group = group << 8 | (i < three.size() ? static_cast<unsigned char>(three[i]) : 0U);
    }
    for (std::size_t i = 0; i < 4; ++i) {
      text += i <= three.size() ? alphabet[(group >> (18 - 6 * i)) & 63] : '=';
    }
  }
  return text;
}

TEST(Base64, whatWasEncodedComesBackHoweverItIsWrapped) {
  std::mt19937 random(HostileText::startValue);
  for (int round = 0; round < 3000; ++round) {
    std::string bytes;
    for (auto left = random() % 300; left > 0; --left) {
      bytes += static_cast<char>(random());
    }
    const std::string encoded = encodedBase64(bytes);
    std::string wrapped;
    for (const char character : encoded) {
      wrapped += character;
      if (random() % 20 == 0) {
        wrapped += random() % 2 == 0 ? "\r\n" : " ";
      }
    }
    ASSERT_EQ(decodeBase64(encoded), bytes)
        << "start value " << HostileText::startValue << " round " << round;
    ASSERT_EQ(decodeBase64(wrapped), bytes)
        << "start value " << HostileText::startValue << " round " << round;
  }
}

struct QuotedRow {
  std::string name;
  std::string encoded;
  std::string bytes;
  Underscore underscore = Underscore::isUnderscore;
};

class QuotedPrintable : public testing::TestWithParam<QuotedRow> {};

TEST_P(QuotedPrintable, yieldsTheBytesOfTheRow) {
  EXPECT_EQ(decodeQuotedPrintable(GetParam().encoded, GetParam().underscore), GetParam().bytes);
}

TEST_P(QuotedPrintable, yieldsTheSameAfterALongCleanRun) {
  for (std::size_t length = 1; length < 20; ++length) {
    const std::string run(length, 'x');
    EXPECT_EQ(decodeQuotedPrintable(run + GetParam().encoded, GetParam().underscore), run + GetParam().bytes);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Table, QuotedPrintable,
    testing::Values(QuotedRow{"empty", "", ""}, QuotedRow{"escape", "a=3Db", "a=b"},
                    QuotedRow{"lowerCase", "=c3=A9", "\xC3\xA9"},
                    QuotedRow{"softBreak", "soft=\r\nbreak", "softbreak"},
                    QuotedRow{"softBreakAtBareLF", "soft=\nbreak", "softbreak"},
                    QuotedRow{"equalsAtTheEnd", "100=", "100="}, QuotedRow{"noHexDigits", "=ZZ", "=ZZ"},
                    QuotedRow{"oneHexDigit", "=4", "=4"}, QuotedRow{"oneHexDigitThenOther", "=4G", "=4G"},
                    QuotedRow{"equalsBeforeEscape", "==41", "=A"},
                    QuotedRow{"oneDigitBeforeEscape", "=4=41", "=4A"}, QuotedRow{"loneCR", "=\rx", "=\rx"},
                    QuotedRow{"loneCRAtTheEnd", "=\r", "=\r"}, QuotedRow{"CRBeforeEscape", "=\r=41", "=\rA"},
                    QuotedRow{"softBreakAtTheEnd", "a=\r\n", "a"},
                    QuotedRow{"bareSoftBreakAtTheEnd", "a=\n", "a"},
                    QuotedRow{"blankBeforeTheBreakIsNoSoftBreak", "a= \r\nb", "a= \r\nb"},
                    QuotedRow{"trailingBlanksStay", "a \t\r\nb", "a \t\r\nb"},
                    QuotedRow{"hardBreaksStay", "a\r\nb\n", "a\r\nb\n"},
                    QuotedRow{"eighthBitStays", "\xE9=E9", "\xE9\xE9"}, QuotedRow{"zeroByte", "=00", "\0"s},
                    QuotedRow{"nulStays", "a\0b"s, "a\0b"s}, QuotedRow{"underscoreStays", "a_b=5F", "a_b_"},
                    QuotedRow{"underscoreIsSpace", "a_b=5Fc__", "a b_c  ", Underscore::isSpace},
                    QuotedRow{"underscoreIsNoHexDigit", "=_4", "= 4", Underscore::isSpace},
                    QuotedRow{"escapesInARow", "=E6=97=A5=E6=9C=AC=E8=AA=9E", "日本語"}),
    rowName);

TEST(QuotedPrintable, hostileTextsHaveTheMeaningOfTheRules) {
  constexpr std::string_view fragments[] = {"=",
                                            "=",
                                            "\r",
                                            "\n",
                                            "\r\n",
                                            "4",
                                            "1",
                                            "aF",
                                            "G",
                                            "_",
                                            "=41",
                                            "=3D",
                                            "=\r\n",
                                            "=\n",
                                            " ",
                                            "abcdefgh",
                                            "0123456789abcdef",
                                            "\x80",
                                            "\xFF",
                                            "=0"};
  HostileText texts(fragments);
  for (int round = 0; round < 50000; ++round) {
    const std::string encoded = texts.next(20);
    for (const Underscore underscore : {Underscore::isUnderscore, Underscore::isSpace}) {
      ASSERT_EQ(decodeQuotedPrintable(encoded, underscore), referenceBytes(encoded, underscore))
          << "start value " << HostileText::startValue << " round " << round;
    }
  }
}

/// What grew with the square of the size would outlast the limit of ctest.
TEST(TransferDecoding, repeatedBeginningsEnd) {
  for (const std::string_view fragment :
       {"=", "=4", "=\r", "=\r\n", "=\n", "_", "Z", "Z=", "====A", "\r\n", "QQ==", "QQ==\r\n", "QQ= ="}) {
    const std::string text = filledWith(fragment, 1'000'000);
    EXPECT_LE(decodeQuotedPrintable(text, Underscore::isSpace).size(), text.size()) << fragment;
    EXPECT_LE(decodeBase64(text).value_or("").size(), text.size()) << fragment;
    EXPECT_LE(decodeBase64(text + "-- footer").value_or("").size(), text.size()) << fragment;
  }
}

}  // namespace
}  // namespace tarnwell::TextDecoding
