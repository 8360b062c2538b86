#include <random>

#include "IMAP/Decoding/TextDecoding.h"
#include "Text/Text.h"
#include "support/HostileText.h"
#include "support/RowName.h"

namespace tarnwell::TextDecoding {
namespace {

using namespace std::string_literals;

TEST(StringEncoding, everyCommonNameLeadsToItsCharset) {
  const std::pair<std::string, Charset> rows[] = {
      {"utf-8", Charset::utf8},
      {"utf8", Charset::utf8},
      {"us-ascii", Charset::ascii},
      {"ascii", Charset::ascii},
      {"iso-8859-1", Charset::latin1},
      {"latin1", Charset::latin1},
      {"latin-1", Charset::latin1},
      {"8859_1", Charset::latin1},
      {"iso-8859-2", Charset::latin2},
      {"latin2", Charset::latin2},
      {"windows-1252", Charset::windows1252},
      {"cp1252", Charset::windows1252},
      {"windows-1251", Charset::windows1251},
      {"cp1251", Charset::windows1251},
      {"shift_jis", Charset::shiftJIS},
      {"shift-jis", Charset::shiftJIS},
      {"sjis", Charset::shiftJIS},
      {"x-sjis", Charset::shiftJIS},
      {"euc-jp", Charset::eucJP},
      {"eucjp", Charset::eucJP},
      {"iso-2022-jp", Charset::iso2022JP},
      {"utf-16", Charset::utf16},
      {"utf-16le", Charset::utf16},
      {"utf-16be", Charset::utf16},
      {"gb2312", Charset::gb18030},
      {"gbk", Charset::gb18030},
      {"gb18030", Charset::gb18030},
  };
  for (const auto& [name, charset] : rows) {
    EXPECT_TRUE(stringEncoding(name) == charset) << name << " leads to " << stringEncoding(name).name();
    EXPECT_TRUE(stringEncoding(uppercased(name)) == charset) << uppercased(name);
  }
}

TEST(StringEncoding, unknownAndAbsentNamesMeanUTF8) {
  EXPECT_TRUE(stringEncoding(std::nullopt) == Charset::utf8);
  for (const std::string& name :
       {""s, " iso-8859-1"s, "iso-8859-1 "s, "\"iso-8859-1\""s, "utf-8*en"s, "unknown-8bit"s, "x-unknown"s,
        "../etc/passwd"s, "iso-8859-1,swaplfnl"s, "\xFF"s}) {
    EXPECT_TRUE(stringEncoding(name) == Charset::utf8) << name << " leads to " << stringEncoding(name).name();
  }
}

TEST(StringEncoding, otherNamesAreLookedUpInTheRegistry) {
  EXPECT_EQ(decodeCharset("\xF0\xD2\xC9", "KOI8-R"), "При");
  EXPECT_EQ(decodeCharset("\xA4", "iso-8859-15"), "€");
  EXPECT_EQ(decodeCharset("\xA4\xA4\xA4\xE5", "Big5"), "中文");
  EXPECT_EQ(decodeCharset("\x87\x40", "Windows-31J"), "①");
  EXPECT_EQ(decodeCharset("\xC7\xD1", "ks_c_5601-1987"), "한");
}

struct Row {
  std::string name;
  std::string encoding;
  std::optional<std::string> charset;
  std::string body;
  std::string text;
};

class BodyText : public testing::TestWithParam<Row> {};

TEST_P(BodyText, isReadable) {
  EXPECT_EQ(decodeText(std::string(GetParam().body), GetParam().encoding, GetParam().charset),
            GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    TransferEncodings, BodyText,
    testing::Values(Row{"empty", "", {}, "", ""},
                    Row{"base64InCapitals", "BASE64", "utf-8", "SGVs\r\nbG8=\r\n", "Hello"},
                    Row{"base64InUTF8", "base64", "utf-8", "5pel5pys6Kqe", "日本語"},
                    Row{"base64OfNothing", "base64", "utf-8", "\r\n", ""},
                    Row{"base64WithoutAWholeByte", "base64", "utf-8", "x", "x"},
                    Row{"quotedPrintable", "Quoted-Printable", "utf-8", "caf=C3=A9=\r\n au lait_",
                        "café au lait_"},
                    Row{"sevenBit", "7bit", "utf-8", "a=3D", "a=3D"},
                    Row{"eightBit", "8bit", "utf-8", "caf\xC3\xA9", "café"},
                    Row{"unknown", "x-uuencode", "iso-8859-1", "SGVsbG8=\xE9", "SGVsbG8=é"},
                    Row{"nameIsNotTrimmed", " base64", "utf-8", "SGVsbG8=", "SGVsbG8="}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Charsets, BodyText,
    testing::Values(Row{"absentMeansUTF8", "8bit", {}, "日本", "日本"},
                    Row{"latin1InCapitals", "8bit", "ISO-8859-1", "\xE9", "é"},
                    Row{"blankBeforeTheNameIsNotTrimmed", "8bit", " utf-8", "日本", "日本"},
                    Row{"unknownMeansUTF8", "8bit", "unknown-8bit", "日本", "日本"},
                    Row{"wrongNameFallsToUTF8", "8bit", "us-ascii", "日本", "日本"},
                    Row{"wrongNameAndNotUTF8FallsToLatin1", "8bit", "us-ascii", "caf\xE9", "café"},
                    Row{"invalidUTF8FallsToLatin1", "8bit", "utf-8", "caf\xE9 \xC3\xA9", "café Ã©"},
                    Row{"truncatedShiftJISFallsToLatin1", "8bit", "shift_jis", "\x93\xFA\x96",
                        "\u0093ú\u0096"},
                    Row{"utf8UnderAJapaneseName", "8bit", "iso-2022-jp", "日本", "日本"},
                    Row{"utf16ByteOrderOfTheMark", "8bit", "utf-16le", "\xFE\xFF\0A"s, "A"},
                    Row{"utf16WithoutMarkIsBigEndian", "8bit", "utf-16le", "\0A"s, "A"},
                    Row{"gb2312ReadsTheSuperset", "8bit", "gb2312", "\x96\xD1\x81\x30\x81\x30", "栄\u0080"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    JapaneseMail, BodyText,
    testing::Values(
        Row{"iso2022JP", "7bit", "ISO-2022-JP", "\x1B$B;3ED\x1B(B\r\n\x1B$B$4MW7o\x1B(B", "山田\r\nご要件"},
        Row{"iso2022JPHalfWidth", "7bit", "iso-2022-jp", "\x1B(IJ]68\x1B(B \x1B$B-!\x1B(B", "ﾊﾝｶｸ ①"},
        Row{"shiftJIS", "8bit", "Shift_JIS", "\x87\x40 \xFB\xFC\x8B\xB4\x97\x6C \xCA\xDD\xB6\xB8",
            "① 髙橋様 ﾊﾝｶｸ"},
        Row{"shiftJISInBase64", "base64", "shift_jis", "h0Ag+/yLtA==", "① 髙橋"},
        Row{"shiftJISInQuotedPrintable", "quoted-printable", "sjis", "=95\\=8E=A6", "表示"},
        Row{"eucJP", "8bit", "EUC-JP", "\xAD\xA1 \xFC\xE2\xB6\xB6 \x8E\xCA\x8E\xDD", "① 髙橋 ﾊﾝ"}),
    rowName);

TEST(BodyText, anyBytesUnderAnyNameComeOutAsValidText) {
  std::mt19937 random(HostileText::startValue);
  const std::string charsets[] = {"utf-8",       "us-ascii",   "shift_jis",    "euc-jp", "iso-2022-jp",
                                  "utf-16",      "gbk",        "windows-1252", "big5",   "utf-7",
                                  "iso-2022-kr", "hz-gb-2312", "x-unknown"};
  const std::string encodings[] = {"base64", "quoted-printable", "8bit"};
  for (int round = 0; round < 5000; ++round) {
    std::string body;
    for (auto left = random() % 40; left > 0; --left) {
      body += random() % 4 == 0 ? "\x1B$B" : std::string(1, static_cast<char>(random()));
    }
    for (const std::string& charset : charsets) {
      const std::string text = decodeText(body, encodings[random() % std::size(encodings)], charset);
      ASSERT_TRUE(isValidUTF8(text)) << charset << " start value " << HostileText::startValue << " round "
                                     << round;
    }
  }
}

}  // namespace
}  // namespace tarnwell::TextDecoding
