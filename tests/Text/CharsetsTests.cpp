#include <vector>
#include "Text/Charsets.h"

#include "Text/Text.h"
#include "support/RowName.h"

namespace tarnwell {
namespace {

using namespace std::string_literals;

struct ConversionRow {
  std::string name;
  std::string charset;
  std::string bytes;
  std::optional<std::string> text;
};

class Conversion : public testing::TestWithParam<ConversionRow> {};

TEST_P(Conversion, isStrictAndComplete) {
  const std::optional<Charset> charset = Charset::named(GetParam().charset);
  ASSERT_TRUE(charset.has_value());
  EXPECT_EQ(convertToUTF8(GetParam().bytes, *charset), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Unicode, Conversion,
    testing::Values(ConversionRow{"utf8", "utf-8", "a\u00E9\u65E5\U0001F600", "a\u00E9\u65E5\U0001F600"},
                    ConversionRow{"utf8Empty", "utf-8", "", ""},
                    ConversionRow{"utf8Invalid", "utf-8", "a\xFF", std::nullopt},
                    ConversionRow{"utf8Truncated", "utf-8", "a\xE3\x81", std::nullopt},
                    ConversionRow{"utf8Surrogate", "utf-8", "\xED\xA0\x80", std::nullopt},
                    ConversionRow{"utf8KeepsItsMark", "utf-8",
                                  "\xEF\xBB\xBF"
                                  "a",
                                  "\uFEFFa"},
                    ConversionRow{"utf8WithNul", "utf-8", "a\0b"s, "a\0b"s},
                    ConversionRow{"utf16BigEndianMark", "utf-16", "\xFE\xFF\0A"s, "A"},
                    ConversionRow{"utf16LittleEndianMark", "utf-16",
                                  "\xFF\xFE"
                                  "A\0"s,
                                  "A"},
                    ConversionRow{"utf16WithoutMark", "utf-16", "\0A\x65\xE5"s, "A\u65E5"},
                    ConversionRow{"utf16Pair", "utf-16", "\xD8\x3D\xDE\x00"s, "\U0001F600"},
                    ConversionRow{"utf16OddByte", "utf-16", "\0A\0"s, std::nullopt},
                    ConversionRow{"utf16LoneSurrogate", "utf-16", "\xD8\x00\0A"s, std::nullopt},
                    ConversionRow{"utf16OnlyAMark", "utf-16", "\xFE\xFF", ""},
                    ConversionRow{"utf7", "utf-7", "a+ZeU-b",
                                  "a\u65E5"
                                  "b"},
                    ConversionRow{"utf7LoneSurrogate", "utf-7", "+2AA-", std::nullopt},
                    ConversionRow{"gb18030FourBytes", "gb18030", "\x81\x30\x81\x30", "\u0080"},
                    ConversionRow{"gb18030Truncated", "gb18030", "\xD6", std::nullopt},
                    ConversionRow{"gb18030", "gb18030", "\xD6\xD0\xB9\xFA", "中国"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    SingleByte, Conversion,
    testing::Values(ConversionRow{"ascii", "us-ascii", "0123456789abcdefghij~\x7F",
                                  "0123456789abcdefghij~\x7F"},
                    ConversionRow{"asciiEighthBit", "us-ascii", "0123456789abcdefghij\x80", std::nullopt},
                    ConversionRow{"latin1", "iso-8859-1", "caf\xE9\x80\xFF", "café\u0080ÿ"},
                    ConversionRow{"latin2", "iso-8859-2", "\xB1\xE6\xEA", "ąćę"},
                    ConversionRow{"windows1252", "windows-1252", "\x93\x80\x94", "“€”"},
                    ConversionRow{"windows1251", "windows-1251", "\xCF\xF0\xE8", "При"},
                    ConversionRow{"koi8r", "KOI8-R", "\xF0\xD2\xC9", "При"},
                    ConversionRow{"latin9", "ISO-8859-15", "\xA4", "€"},
                    ConversionRow{"greek", "iso-8859-7", "\xC1\xE2", "Αβ"},
                    // IBM's tables exchange the first three bytes.
                    ConversionRow{"controlCharacters", "ibm437", "\x1A\x1C\x7F\x80", "\x1A\x1C\x7FÇ"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    EastAsian, Conversion,
    testing::Values(ConversionRow{"big5", "Big5", "\xA4\xA4\xA4\xE5", "中文"},
                    ConversionRow{"big5Broken", "Big5", "\xA4", std::nullopt},
                    ConversionRow{"eucKR", "EUC-KR", "\xC7\xD1\xB1\xB9\\", "한국\\"},
                    ConversionRow{"ksC5601", "ks_c_5601-1987", "\xC7\xD1\xB1\xB9\\", "한국\\"},
                    ConversionRow{"ksC5601UnifiedHangul", "ks_c_5601-1987", "\x8C\x63", "똠"},
                    ConversionRow{"iso2022KR", "ISO-2022-KR",
                                  "\x1B$)C\x0E"
                                  "GQ19"
                                  "\x0F",
                                  "한국"},
                    ConversionRow{"hz", "HZ-GB-2312", "~{VP9z~}", "中国"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Japanese, Conversion,
    testing::Values(ConversionRow{"shiftJIS", "shift_jis", "\x93\xFA\x96\x7B", "日本"},
                    ConversionRow{"shiftJISTrailByteIsBackslash", "shift_jis", "\x95\x5C\x8E\xA6", "表示"},
                    ConversionRow{"shiftJISCircledDigit", "shift_jis", "\x87\x40", "①"},
                    ConversionRow{"shiftJISLadderHigh", "shift_jis", "\xFB\xFC", "髙"},
                    ConversionRow{"shiftJISNECSelected", "shift_jis", "\xED\x40", "纊"},
                    ConversionRow{"shiftJISHalfWidth", "shift_jis", "\xCA\xDD\xB6\xB8", "ﾊﾝｶｸ"},
                    ConversionRow{"shiftJISBackslashStaysBackslash", "shift_jis", "C:\\~", "C:\\~"},
                    ConversionRow{"shiftJISWaveDash", "shift_jis", "\x81\x60", "～"},
                    ConversionRow{"shiftJISMinus", "shift_jis", "\x81\x7C", "－"},
                    ConversionRow{"shiftJISControls", "shift_jis", "\x1A\x1C\x7F", "\x1A\x1C\x7F"},
                    ConversionRow{"shiftJISLoneLead", "shift_jis", "\xA4\xE9", std::nullopt},
                    ConversionRow{"shiftJISBadTrail", "shift_jis", "\x81\x39", std::nullopt},
                    ConversionRow{"shiftJISUnassigned", "shift_jis", "\x85\x40", std::nullopt},
                    ConversionRow{"eucJP", "euc-jp", "\xC6\xFC\xCB\xDC", "日本"},
                    ConversionRow{"eucJPCircledDigit", "euc-jp", "\xAD\xA1", "①"},
                    ConversionRow{"eucJPLadderHigh", "euc-jp", "\xFC\xE2", "髙"},
                    ConversionRow{"eucJPHalfWidth", "euc-jp", "\x8E\xCA\x8E\xDD\x8E\xB6\x8E\xB8", "ﾊﾝｶｸ"},
                    ConversionRow{"eucJPThirdSet", "euc-jp", "\x8F\xB0\xA1", "丂"},
                    ConversionRow{"eucJPWaveDash", "euc-jp", "\xA1\xC1", "～"},
                    ConversionRow{"eucJPBackslash", "euc-jp", "\\~", "\\~"},
                    ConversionRow{"eucJPTruncated", "euc-jp", "\xC6", std::nullopt},
                    ConversionRow{"eucJPTruncatedThirdSet", "euc-jp", "\x8F\xB0", std::nullopt},
                    ConversionRow{"iso2022JP", "iso-2022-jp", "\x1B$BF|K\\\x1B(B!", "日本!"},
                    ConversionRow{"iso2022JPOldSet", "iso-2022-jp", "\x1B$@F|K\\\x1B(J!", "日本!"},
                    ConversionRow{"iso2022JPWithoutReturnToASCII", "iso-2022-jp", "\x1B$BF|", "日"},
                    ConversionRow{"iso2022JPLineEndReturnsToASCII", "iso-2022-jp", "\x1B$BF|\r\na",
                                  "日\r\na"},
                    ConversionRow{"iso2022JPCircledDigit", "iso-2022-jp", "\x1B$B-!\x1B(B", "①"},
                    ConversionRow{"iso2022JPLadderHigh", "iso-2022-jp", "\x1B$B|b\x1B(B", "髙"},
                    ConversionRow{"iso2022JPHalfWidth", "iso-2022-jp", "\x1B(IJ]68\x1B(B", "ﾊﾝｶｸ"},
                    ConversionRow{"iso2022JPHalfWidthEightBit", "iso-2022-jp", "\xCA\xDD\xB6\xB8", "ﾊﾝｶｸ"},
                    ConversionRow{"iso2022JPHalfWidthEightBitBesideKanji", "iso-2022-jp",
                                  "\x1B$BF|\x1B(B\xCA\xDD", "日ﾊﾝ"},
                    ConversionRow{"iso2022JPHalfWidthShifted", "iso-2022-jp", "\x0EJ]68\x0F", "ﾊﾝｶｸ"},
                    ConversionRow{"iso2022JPThirdSet", "iso-2022-jp", "\x1B$(D0!\x1B(B", "丂"},
                    ConversionRow{"iso2022JPWaveDash", "iso-2022-jp", "\x1B$B!A\x1B(B", "～"},
                    ConversionRow{"iso2022JPBackslashInASCII", "iso-2022-jp", "\\~", "\\~"},
                    ConversionRow{"iso2022JPYenInRoman", "iso-2022-jp", "\x1B(J\\100\x1B(B", "¥100"},
                    ConversionRow{"iso2022JPTruncatedPair", "iso-2022-jp", "\x1B$BF", std::nullopt},
                    ConversionRow{"iso2022JPTruncatedEscape", "iso-2022-jp", "\x1B$BF|\x1B", std::nullopt},
                    ConversionRow{"iso2022JPUnknownEscape", "iso-2022-jp", "\x1B(Za", std::nullopt},
                    ConversionRow{"iso2022JP2", "iso-2022-jp-2", "\x1B$AVP\x1B(B", "中"}),
    rowName);

TEST(Charsets, namesThatMailUsesReachTheSupersets) {
  const std::pair<std::string, Charset> rows[] = {
      {"utf-8", Charset::utf8},
      {"UTF8", Charset::utf8},
      {"us-ascii", Charset::ascii},
      {"ANSI_X3.4-1968", Charset::ascii},
      {"ISO_8859-1:1987", Charset::latin1},
      {"Shift_JIS", Charset::shiftJIS},
      {"windows-31j", Charset::shiftJIS},
      {"csWindows31J", Charset::shiftJIS},
      {"CP932", Charset::shiftJIS},
      {"ms932", Charset::shiftJIS},
      {"MS_Kanji", Charset::shiftJIS},
      {"x-sjis", Charset::shiftJIS},
      {"EUC-JP", Charset::eucJP},
      {"csEUCPkdFmtJapanese", Charset::eucJP},
      {"cp51932", Charset::eucJP},
      {"eucJP-ms", Charset::eucJP},
      {"eucJP-win", Charset::eucJP},
      {"ISO-2022-JP", Charset::iso2022JP},
      {"csISO2022JP", Charset::iso2022JP},
      {"iso-2022-jp-ms", Charset::iso2022JP},
      {"CP50220", Charset::iso2022JP},
      {"CP50221", Charset::iso2022JP},
      {"UTF-16", Charset::utf16},
  };
  for (const auto& [name, charset] : rows) {
    const std::optional<Charset> found = Charset::named(name);
    EXPECT_TRUE(found == charset) << name << " leads to " << (found ? found->name() : "nothing");
  }
}

/// ICU 74 and newer name the edition of the standard in the converter's name.
TEST(Charsets, chineseStandardIsKnownByItsName) {
  const std::optional<Charset> found = Charset::named("GB18030");
  ASSERT_TRUE(found);
  EXPECT_THAT(std::string(found->name()), testing::StartsWith("gb18030"));
  EXPECT_EQ(convertToUTF8("\x81\x30\x81\x30\xD6\xD0", *found),
            convertToUTF8("\x81\x30\x81\x30\xD6\xD0", Charset::gb18030));
}

TEST(Charsets, namesOutsideTheRegistryAreAbsent) {
  for (const std::string& name :
       {""s, " "s, "no-such-charset"s, "utf-8*en"s, " utf-8"s, "utf-8 "s, "utf-8\n"s, "utf-8,swaplfnl"s,
        "ISO_2022,locale=ja,version=4"s, "/etc/passwd"s, "\"utf-8\""s, "utf-8;"s, "-"s, "../koi8-r"s,
        "..\\koi8-r"s, "utf\0-8"s, "\xE6\x97\xA5"s, std::string(1000, 'a')}) {
    EXPECT_FALSE(Charset::named(name).has_value()) << testing::PrintToString(name);
  }
}

TEST(Charsets, aViewOfNothingIsTheEmptyText) {
  for (const Charset& charset :
       {Charset::utf8, Charset::ascii, Charset::latin1, Charset::shiftJIS, Charset::utf16}) {
    EXPECT_EQ(convertToUTF8(std::string_view(), charset), "") << charset.name();
  }
}

TEST(Charsets, longTextsCrossTheBuffersUnharmed) {
  std::string bytes;
  std::string expected;
  for (int i = 0; i < 20000; ++i) {
    bytes += i % 3 == 0 ? "a\x93\xFA" : "\x96\x7B";
    expected += i % 3 == 0 ? "a日" : "本";
  }
  EXPECT_TRUE(convertToUTF8(bytes, Charset::shiftJIS) == expected);
  EXPECT_FALSE(convertToUTF8(bytes + "\x93", Charset::shiftJIS).has_value());
}

TEST(Charsets, everyByteOfEveryCharsetYieldsValidTextOrNothing) {
  for (const Charset& charset : {Charset::utf8, Charset::ascii, Charset::latin1, Charset::latin2,
                                 Charset::windows1252, Charset::windows1251, Charset::shiftJIS,
                                 Charset::eucJP, Charset::iso2022JP, Charset::utf16, Charset::gb18030}) {
    for (int first = 0; first < 256; ++first) {
      for (int second = 0; second < 256; ++second) {
        const std::string bytes{static_cast<char>(first), static_cast<char>(second)};
        const std::optional<std::string> text = convertToUTF8(bytes, charset);
        ASSERT_TRUE(!text || isValidUTF8(*text)) << charset.name() << ' ' << first << ' ' << second;
      }
    }
  }
}

struct LenientRow {
  const char* name;
  const Charset& charset;
  std::string bytes;
  std::string text;
};

class Leniently : public testing::TestWithParam<LenientRow> {};

TEST_P(Leniently, badBytesSpoilNothingAroundThem) {
  EXPECT_EQ(convertLeniently(GetParam().bytes, GetParam().charset), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Leniently,
    testing::Values(LenientRow{"empty", Charset::utf8, "", ""},
                    LenientRow{"utf8", Charset::utf8, "日\xFF本\xE3\x81", "日\uFFFD本\uFFFD"},
                    LenientRow{"ascii", Charset::ascii, "a\xE9z", "a\uFFFDz"},
                    LenientRow{"latin1", Charset::latin1, "a\xE9z", "aéz"},
                    LenientRow{"shiftJIS", Charset::shiftJIS, "\x93\xFA\xFF\x96\x7B\x81", "日\uFFFD本\uFFFD"},
                    LenientRow{"eucJP", Charset::eucJP, "\xC6\xFC\xFF\xCB\xDC", "日\uFFFD本"},
                    LenientRow{"iso2022JP", Charset::iso2022JP, "\x1B$BF|\xE9K\\\x1B(B!", "日\uFFFD本!"},
                    LenientRow{"valid", Charset::shiftJIS, "\x93\xFA", "日"}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST(Charsets, sourceLengthIsThatOfTheBytesOfTheFirstCodePoints) {
  const struct {
    const Charset& charset;
    std::string bytes;
    std::vector<std::size_t> lengths;  // for 0, 1, 2 ... code points
  } rows[] = {
      {Charset::utf8, "aé日", {0, 1, 3, 6, 6}},
      {Charset::utf8, "\xFFz", {0, 1, 2, 2}},
      {Charset::latin1, "a\xE9z", {0, 1, 2, 3, 3}},
      {Charset::shiftJIS, "a\x93\xFAz", {0, 1, 3, 4, 4}},
      {Charset::eucJP, "\xC6\xFC\xCB\xDC", {0, 2, 4, 4}},
      {Charset::utf16, std::string("\xFE\xFF\0a\xD8\x3D\xDC\x68", 8), {0, 4, 8, 8}},
      {Charset::iso2022JP, "\x1B$BF|K\\\x1B(B!", {0, 5, 7, 11, 11}},
  };
  for (const auto& row : rows) {
    for (std::size_t count = 0; count < row.lengths.size(); ++count) {
      EXPECT_EQ(sourceLength(row.bytes, row.charset, count), row.lengths[count])
          << row.charset.name() << ", " << count << " code points";
    }
  }
}

}  // namespace
}  // namespace tarnwell
