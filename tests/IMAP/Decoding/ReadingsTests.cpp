#include "IMAP/Decoding/Readings.h"

#include "IMAP/Decoding/HTMLToText.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "Text/Text.h"
#include "support/HostileText.h"
#include "support/RowName.h"

namespace tarnwell::TextDecoding {

void PrintTo(const Passage& passage, std::ostream* stream) {
  *stream << testing::PrintToString(passage.text) << " up to " << passage.end;
}

namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

std::vector<Passage> readingsOf(const std::string& bytes, const char* charset, bool isHTML,
                                std::size_t leavingBytes = std::string::npos) {
  DecodedPart part = decodePart(bytes, "8bit", charset);
  part.source.isHTML = isHTML;
  if (isHTML) {
    reduceHTMLToText(part.text);
  }
  return bodyReadings(part.source, part.text, std::min(leavingBytes, part.text.size()));
}

std::vector<std::string> textsOf(const std::vector<Passage>& passages) {
  std::vector<std::string> texts;
  for (const Passage& passage : passages) {
    texts.push_back(passage.text);
  }
  return texts;
}

TEST(BodyReadings, plainTextInOrderHasOneReading) {
  EXPECT_THAT(readingsOf("Tea at four", "utf-8", false), ElementsAre(Passage{"Tea at four", 11}));
  EXPECT_THAT(textsOf(readingsOf("お茶", "utf-8", false)), ElementsAre("お茶"));
  EXPECT_THAT(textsOf(readingsOf("\x93\xFA\x96\x7B", "shift_jis", false)), Contains("日本"));
}

TEST(BodyReadings, textIsReadAsItStandsAndFolded) {
  EXPECT_THAT(readingsOf("Tea  at\r\nfour", "utf-8", false),
              ElementsAre(Passage{"Tea  at\r\nfour", 13}, Passage{"Tea at four", 11}));
  EXPECT_THAT(textsOf(readingsOf("tea\u200B4711", "utf-8", false)), ElementsAre("tea\u200B4711", "tea4711"));
}

TEST(BodyReadings, blanksAtTheCutDoNotHideWhatFollows) {
  const std::string wide = "tea" + filledWith(" \u200B\n", 500000) + "at four";
  EXPECT_THAT(readingsOf(wide, "utf-8", false, 2), Contains(Passage{"tea at four", 2}));
}

TEST(BodyReadings, foldingTakesLittleMemoryForOneCharacterOfMegabytes) {
  // A vowel that the normal form takes apart into three characters.
  const std::vector<Passage> readings =
      readingsOf("x" + filledWith("\u0F77", 3 * mostBytesForReadings), "utf-8", false);
  ASSERT_EQ(readings.size(), 2u);
  EXPECT_EQ(readings[0].text.size(), 3 * mostBytesForReadings + 1);
  EXPECT_LT(readings[1].text.size(), 4 * mostBytesForReadings);
}

TEST(BodyReadings, whatFollowsTheCutIsThereButDoesNotCount) {
  EXPECT_THAT(readingsOf("tea at four", "utf-8", false, 6), ElementsAre(Passage{"tea at four", 6}));
  EXPECT_THAT(readingsOf("日本語", "utf-8", false, 3), ElementsAre(Passage{"日本語", 3}));
  const std::string far = "a" + std::string(2000, 'x');
  EXPECT_EQ(readingsOf(far, "utf-8", false, 1).front().text.size(), 1025u);
}

TEST(BodyReadings, bytesAreReadInEveryCharsetThatTheyLookLike) {
  EXPECT_THAT(textsOf(readingsOf("\x93\xFA\x96\x7B", "utf-8", false)), Contains("日本"));
  EXPECT_THAT(textsOf(readingsOf("\xC6\xFC\xCB\xDC", "utf-8", false)), Contains("日本"));
  EXPECT_THAT(textsOf(readingsOf("\x1B$BF|K\\\x1B(B", "utf-8", false)), Contains("日本"));
  EXPECT_THAT(textsOf(readingsOf("日本", "iso-8859-1", false)), Contains("日本"));
  EXPECT_THAT(textsOf(readingsOf("日本\xFF", "utf-8", false)), Contains("日本\uFFFD"));
}

TEST(BodyReadings, cutInAnotherCharsetIsThatOfTheBytes) {
  // In ISO 8859-1 each byte is a character: three of them are one that leaves.
  const std::vector<Passage> readings =
      readingsOf("日本語", "iso-8859-1", false, std::string("æ\u0097¥").size());
  EXPECT_THAT(readings, Contains(Passage{"日本語", 3}));
}

TEST(BodyReadings, tagsWithoutAWidthVanish) {
  EXPECT_THAT(textsOf(readingsOf("<b>t</b>ea", "utf-8", true)), Contains("tea"));
  EXPECT_THAT(textsOf(readingsOf("<td>t</td>ea", "utf-8", true)), ElementsAre(" t ea", "t ea", "t ea"));
  EXPECT_THAT(readingsOf("<i>t</i>ea", "utf-8", true, 3), Contains(Passage{"tea", 1}));
}

TEST(BodyReadings, onlyTheFirstMegabyteOfOtherCharsetsIsRead) {
  const std::string bytes = std::string(mostBytesForReadings, ' ') + "\x93\xFA\x96\x7B";
  EXPECT_THAT(textsOf(readingsOf(bytes, "utf-8", false)), testing::Not(Contains("日本")));
  EXPECT_THAT(textsOf(readingsOf(bytes.substr(9), "utf-8", false)), Contains("日本"));
}

struct FieldRow {
  const char* name;
  std::string field;
  std::vector<std::string> readings;
};

class HeaderReadingsOf : public testing::TestWithParam<FieldRow> {};

TEST_P(HeaderReadingsOf, areThoseOfTheRow) {
  EXPECT_EQ(headerReadings(GetParam().field), GetParam().readings);
}

INSTANTIATE_TEST_SUITE_P(
    Table, HeaderReadingsOf,
    testing::Values(FieldRow{"empty", "", {}}, FieldRow{"plain", "Tea at four", {}},
                    FieldRow{"utf8", "お茶", {"お茶", "お茶"}},
                    FieldRow{"encodedWord", "=?utf-8?Q?a_b?= C", {"a b C"}},
                    FieldRow{"beginningOfAnEncodedWord", "=?utf-8?Q?a", {"=?utf-8?Q?a"}},
                    FieldRow{"wordsJoined", "=?utf-8?Q?=E6?= =?UTF-8?Q?=97=A5?=", {"日", "日"}},
                    FieldRow{"wordsOfTwoEncodings", "=?utf-8?Q?=E6?= =?utf-8?B?l6U=?=", {"日", "日"}},
                    FieldRow{"textBetweenWords", "=?utf-8?Q?a?= x =?utf-8?Q?b?=", {"a x b"}}),
    rowName);

TEST(HeaderReadings, rawJapaneseIsAmongThem) {
  EXPECT_THAT(headerReadings("\x93\xFA\x96\x7B"), Contains("日本"));
  EXPECT_THAT(headerReadings("\xC6\xFC\xCB\xDC"), Contains("日本"));
  EXPECT_THAT(headerReadings("\x1B$BF|K\\\x1B(B"), Contains("日本"));
  EXPECT_THAT(headerReadings("=?us-ascii?B?GyRCRnxLXBsoQg==?="), Contains("日本"));
}

TEST(MarkedText, correspondsToTheTextThatToolsReturn) {
  const std::string_view fragments[] = {"<",     ">",        "<b>",    "</b>",  "<p>",  "<br/>",
                                        "&amp;", "&lt;",     "&ensp;", "x ",    "日本", "<script>",
                                        "</td>", "<!-- -->", "<s",     "&#65;", "=\n"};
  HostileText texts(fragments);
  for (int i = 0; i < 5000; ++i) {
    const std::string html = texts.next(30);
    std::string marked = html;
    reduceHTMLToMarkedText(marked);
    std::string text;
    for (std::size_t position = 0; position < marked.size();) {
      const bool isMark = marked.compare(position, 3, "\uFDD0") == 0;
      text += isMark ? ' ' : marked[position];
      position += isMark ? 3 : 1;
    }
    ASSERT_EQ(text, htmlToText(html)) << html;
  }
}

TEST(MarkedText, losesItsMarks) {
  std::string html = "<b>T</b>ea<br>at <a href=\"x\">four</a><td>x";
  reduceHTMLToMarkedText(html);
  EXPECT_EQ(withoutInlineMarks(html), "Tea\nat four x");
}

TEST(RemainingEntities, blankAndInvisibleOnesAreDecoded) {
  const std::pair<const char*, const char*> rows[] = {
      {"a&ensp;b", "a b"},
      {"a&shy;b", "ab"},
      {"a&shyb", "ab"},
      {"a&nbspb", "a b"},
      {"a&zwnj;&zwj;b", "ab"},
      {"a&zwnjb", "a&zwnjb"},
      {"&#X41;", "A"},
      {"&#x41g", "Ag"},
      {"&#65 x", "A x"},
      {"&#65a", "Aa"},
      {"&#", "&#"},
      {"&#x;", "&#x;"},
      {"&eacute;", "&eacute;"},
      {"&#xD800;", "&#xD800;"},
      {"&Tab;&NewLine;", "  "},
      {"&", "&"},
  };
  for (const auto& [encoded, decoded] : rows) {
    std::string text = encoded;
    decodeRemainingHTMLEntities(text);
    EXPECT_EQ(text, decoded) << encoded;
  }
}

}  // namespace
}  // namespace tarnwell::TextDecoding
