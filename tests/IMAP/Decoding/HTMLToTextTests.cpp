#include "IMAP/Decoding/TextDecoding.h"
#include "support/HostileText.h"
#include "support/RowName.h"
#include "support/TextDecodingReference.h"

namespace tarnwell::TextDecoding {
namespace {

struct Row {
  std::string name;
  std::string html;
  std::string text;
};

class HTMLToText : public testing::TestWithParam<Row> {};

TEST_P(HTMLToText, isTheTextOfTheRow) {
  EXPECT_EQ(htmlToText(GetParam().html), GetParam().text);
  EXPECT_EQ(referenceText(GetParam().html), GetParam().text) << "the reference disagrees";
}

INSTANTIATE_TEST_SUITE_P(
    Elements, HTMLToText,
    testing::Values(
        Row{"empty", "", ""}, Row{"plain", "a > b", "a > b"},
        Row{"paragraphs", "<p>a</p><p>b</p>", " a\n b\n"}, Row{"script", "<SCRIPT>x</SCRIPT>y", " y"},
        Row{"scriptAcrossLines", "a<script type=\"t\">\nx<b>\n</script>b", "a b"},
        Row{"shortestSpan", "<style>a</style>b<style>c</style>", " b "},
        Row{"scriptWithoutEnd", "<script>x<b>y", " x y"},
        Row{"scriptTagWithoutEnd", "<script x", "<script x"},
        Row{"closingTagWithBlankIsNone", "<style>x</style >y", " x y"},
        Row{"closingTagInsideTheOpeningOne", "<script </script>x</script>y", " y"},
        Row{"headInsideScript", "<script><head></script></head>x", "  x"},
        Row{"attributeWithGreater", "<style a='>'>x</style>y", " y"},
        Row{"headerOpensAHead", "<header>x</header>y</head>z", " z"},
        Row{"headerWithoutHead", "<header>x</header>y", " x y"},
        Row{"longS", "<\u017Fcript>x</SCRIPT>y", " y"}, Row{"ligature", "<\uFB06yle>x</st\u0079le>y", " y"},
        Row{"longSInTheClosingTag", "<style>x</\u017Ftyle>y", " y"}, Row{"body", "<body>a</body>", " a "},
        Row{"aPassSeesWhatTheOneBeforeItLeft", "<he<style></style>ad>x</head>", " x "}),
    rowName);

INSTANTIATE_TEST_SUITE_P(LineTags, HTMLToText,
                         testing::Values(Row{"lineBreaks", "a<br>b<br/>c<BR />d", "a\nb\nc\nd"},
                                         Row{"blanks", "a< \n br\t>b</ p>", "a\nb "},
                                         Row{"blankInEveryPlace", "<\u3000/p\u00A0/>x", "\nx"},
                                         Row{"allBlocks", "</p></div></tr></li></h1></h6>", "\n\n\n\n\n\n"},
                                         Row{"otherHeadings", "</h0></h7></h></h12>", "    "},
                                         Row{"openingBlocks", "<p><div><li>", "   "},
                                         Row{"longerName", "<broken></pre></p2>", "   "},
                                         Row{"lineBreakWithAttribute", "a<br clear=all>b", "a b"},
                                         Row{"closingLineBreak", "a</br>b", "a b"},
                                         Row{"twoSlashes", "<br//>", " "}, Row{"unfinished", "<br", "<br"},
                                         Row{"unfinishedSlash", "<br/", "<br/"},
                                         Row{"lineBreakInsideATag", "< <br> x>", " "},
                                         Row{"capitalHeading", "</H3>", "\n"}),
                         rowName);

INSTANTIATE_TEST_SUITE_P(
    Tags, HTMLToText,
    testing::Values(Row{"emptyTagStays", "a<>b", "a<>b"}, Row{"lessWithoutGreater", "a < b", "a < b"},
                    Row{"lessThanIsATag", "1 < 2 > 0", "1   0"},
                    Row{"acrossLines", "<a\nhref='x'>y</a>", " y "}, Row{"nestedLess", "<a<b>c", " c"},
                    Row{"comment", "<!-- x -->y", " y"}, Row{"commentWithTag", "<!-- <b> -->y", "  -->y"},
                    Row{"emptyInside", "<<>x", " x"}, Row{"emptyThenTag", "<><b>x", "<> x"},
                    Row{"whiteSpaceStays", " a \r\n\t b ", " a \r\n\t b "}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Entities, HTMLToText,
    testing::Values(
        Row{"named", "&lt;&gt;&quot;&#39;&apos;&amp;", "<>\"''&"},
        Row{"typographic", "&mdash;&ndash;&hellip;&copy;&reg;", "\u2014\u2013\u2026\u00A9\u00AE"},
        Row{"noBreakSpaceIsASpace", "a&nbsp;b", "a b"}, Row{"caseMatters", "&LT;&Amp;", "&LT;&Amp;"},
        Row{"unknown", "&eacute;&foo", "&eacute;&foo"}, Row{"withoutSemicolon", "&lt &amp", "&lt &amp"},
        Row{"decimal", "&#65;&#26085;", "A日"}, Row{"hexadecimal", "&#x1F600;&#x41;", "\U0001F600A"},
        Row{"surrogate", "&#xD800;&#xDFFF;&#55296;", "&#xD800;&#xDFFF;&#55296;"},
        Row{"lastAndTooLarge", "&#x10FFFF;&#x110000;", "\U0010FFFF&#x110000;"},
        Row{"overflow", "&#4294967361;&#x100000041;", "&#4294967361;&#x100000041;"},
        Row{"hexadecimalDigitsWithoutX", "&#1a;", "&#1a;"}, Row{"capitalX", "&#X41;", "&#X41;"},
        Row{"noDigits", "&#;&#x;", "&#;&#x;"}, Row{"zero", "&#0;", std::string(1, '\0')},
        Row{"leadingZeros", "&#" + std::string(5000, '0') + "65;", "A"},
        Row{"escapedTwice", "&amp;lt;&amp;#65;", "<A"}, Row{"escapedThrice", "&amp;amp;lt;", "&amp;lt;"},
        Row{"numericMakesNoNamed", "&#38;lt;", "&lt;"}, Row{"namedMakesNoNumeric", "&#&#39;;", "&#';"},
        Row{"tagsFromEntitiesStay", "&lt;b&gt;", "<b>"}, Row{"entityInsideTag", "<a b='&gt;'>x", " x"},
        Row{"ampersandAtTheEnd", "a&", "a&"}, Row{"ampersandsInARow", "&&amp;&", "&&&"}),
    rowName);

constexpr std::string_view fragments[] = {"<",
                                          ">",
                                          "</",
                                          "<script",
                                          "<script>",
                                          "</script>",
                                          "<style>",
                                          "</style>",
                                          "<head>",
                                          "</head>",
                                          "<header>",
                                          "</header>",
                                          "<SCRIPT ",
                                          "</Style>",
                                          "<\u017Fcript>",
                                          "</\uFB06yle>",
                                          "<\uFB05yle>",
                                          "</\u017Ftyle>",
                                          "<scripﬅ>",
                                          "<br",
                                          "<br>",
                                          "<br/>",
                                          "< br >",
                                          "</p>",
                                          "</ p>",
                                          "</div",
                                          "</h1>",
                                          "</h7>",
                                          "</H6 / >",
                                          "/>",
                                          "/",
                                          " ",
                                          "\n",
                                          "\u00A0",
                                          "\u3000",
                                          "\u0085",
                                          "\u200B",
                                          "\x0B",
                                          "\x1C",
                                          "p",
                                          "b",
                                          "&",
                                          "&amp;",
                                          "&lt;",
                                          "&gt;",
                                          "amp;",
                                          "lt;",
                                          "&#39;",
                                          "&nbsp;",
                                          "&#",
                                          "&#x",
                                          "#",
                                          "x",
                                          "X",
                                          "1",
                                          "41;",
                                          "D800;",
                                          "0000",
                                          "4294967296",
                                          "f",
                                          ";",
                                          "&apos;",
                                          "&hellip",
                                          "&copy;",
                                          "日",
                                          "\u212A",
                                          "<li>",
                                          "</li>",
                                          "<\u1E96",
                                          "</tr\t>",
                                          "s",
                                          "t"};

TEST(HTMLToText, hostileTextsHaveTheMeaningOfTheExpressions) {
  HostileText texts(fragments);
  for (int round = 0; round < 20000; ++round) {
    const std::string html = texts.next(24);
    ASSERT_EQ(htmlToText(html), referenceText(html))
        << "start value " << HostileText::startValue << " round " << round << ": " << html;
  }
}

TEST(HTMLToText, invalidBytesPassThroughUntouched) {
  EXPECT_EQ(htmlToText("\xFF<b>\xE3\x81"), "\xFF \xE3\x81");
}

/// A quadratic scanner would need hours for these; the test runner's time limit ends it.
/// What grew with the square of the size would outlast the limit of ctest.
TEST(HTMLToText, repeatedBeginningsEnd) {
  constexpr std::size_t size = 1'000'000;
  for (const std::string_view fragment : {"<",
                                          "<script",
                                          "<script>",
                                          "</script",
                                          "<script></scrip",
                                          "<head>",
                                          "<style ",
                                          "<    ",
                                          "<br   ",
                                          "</h1 ",
                                          "<>",
                                          "&",
                                          "&amp;",
                                          "&#1",
                                          "&#x",
                                          "&#",
                                          "&#1111111111",
                                          "&am",
                                          "</",
                                          "<script><style><head>",
                                          "<\u3000",
                                          "< br <"}) {
    const std::string html = filledWith(fragment, size);
    EXPECT_FALSE(htmlToText(html).empty()) << fragment;
  }
  EXPECT_EQ(htmlToText("&#" + std::string(size, '1') + ";"), "&#" + std::string(size, '1') + ";");
}

}  // namespace
}  // namespace tarnwell::TextDecoding
