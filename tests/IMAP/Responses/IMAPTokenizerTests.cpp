#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "IMAP/Responses/IMAPParser.h"
#include "support/Repeated.h"
#include "support/TokenPrinter.h"

namespace tarnwell {
namespace {

using test::repeated;

std::string tokenized(std::string_view response) { return test::printed(IMAPParser::tokenize(response)); }

struct Row {
  std::string response;
  std::string tokens;
};

void expectTokens(const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    EXPECT_EQ(tokenized(row.response), row.tokens) << row.response;
  }
}

TEST(IMAPTokenizer, readsWholeResponses) {
  expectTokens({
      {R"(* LIST (\Sent) "/" "Sent Messages")", R"([* LIST (\\Sent) "/" "Sent Messages"])"},
      {"* 1 FETCH (UID 17 BODY[1] {5}\r\nhello)", R"([* 1 FETCH (UID 17 BODY[1] "hello")])"},
      {"* FLAGS (\\Answered \\Flagged \\*)", R"([* FLAGS (\\Answered \\Flagged \\*)])"},
      {"* OK [UIDNEXT 4392] Predicted next UID", "[* OK [UIDNEXT 4392] Predicted next UID]"},
      {"a1 OK [READ-WRITE] done", "[a1 OK [READ-WRITE] done]"},
      {"* SEARCH", "[* SEARCH]"},
      {"+ idling", "[+ idling]"},
  });
}

TEST(IMAPTokenizer, onlySpacesAndTabsAreBlanks) {
  expectTokens({
      {"", "[]"},
      {" ", "[]"},
      {" \t ", "[]"},
      {"  a\t\tb  ", "[a b]"},
      {"( a\t)", "[(a)]"},
      {"a\xC2\xA0"
       "b",
       "[a\xC2\xA0"
       "b]"},
      {"a\v\fb", "[a\v\fb]"},
  });
}

TEST(IMAPTokenizer, skipsParenthesesThatCloseNothing) {
  expectTokens({
      {")", "[]"},
      {") ) A", "[A]"},
      {"a))b) c", "[a b c]"},
      {"(a))(b)", "[(a) (b)]"},
      {")))", "[]"},
  });
}

TEST(IMAPTokenizer, unclosedListYieldsTheElementsReadSoFar) {
  expectTokens({
      {"(", "[()]"},
      {"(a", "[(a)]"},
      {"(a (b \"c", "[(a (b \"c\"))]"},
      {"a ((((", "[a (((())))]"},
      {"((a) b", "[((a) b)]"},
  });
}

TEST(IMAPTokenizer, nestsLists) {
  expectTokens({
      {"()", "[()]"},
      {"(())", "[(())]"},
      {"()()", "[() ()]"},
      {"(a(b)c)d", "[(a (b) c) d]"},
      {"((a b)(c (d)) e)", "[((a b) (c (d)) e)]"},
  });
}

// Deliberate: brackets, backslashes and wildcards do not end an atom.
TEST(IMAPTokenizer, atomsEndOnlyAtBlanksQuotesParenthesesAndBraces) {
  expectTokens({
      {"BODY[1.2]<0>", "[BODY[1.2]<0>]"},
      {"BODY[TEXT]", "[BODY[TEXT]]"},
      {"[READ-WRITE]", "[[READ-WRITE]]"},
      {"\\Noselect", "[\\\\Noselect]"},
      {"a*b%c]d}e", "[a*b%c]d}e]"},
      {"a\"b\"c", "[a \"b\" c]"},
      {"a(b)c", "[a (b) c]"},
      {"a{1}\r\nbc", "[a \"b\" c]"},
      {"a\tb", "[a b]"},
      {"a\\\"b\"", "[a\\\\ \"b\"]"},
      {"BODY[HEADER.FIELDS (DATE FROM)]", "[BODY[HEADER.FIELDS (DATE FROM) ]]"},
  });
}

// Deliberate: CR and LF are part of an atom unless they follow a literal's announcement.
TEST(IMAPTokenizer, lineEndsArePartOfAnAtom) {
  expectTokens({
      {"a\r\nb", "[a\\r\\nb]"},
      {"a \r\n", "[a \\r\\n]"},
      {"\n(a)", "[\\n (a)]"},
  });
}

TEST(IMAPTokenizer, nilIsNoTextInAnyCase) {
  expectTokens({
      {"NIL nil Nil nIl", "[NIL NIL NIL NIL]"},
      {"(NIL)NIL", "[(NIL) NIL]"},
      {"NILS NI IL NIL]", "[NILS NI IL NIL]]"},
      {"\"NIL\"", "[\"NIL\"]"},
      {"{3}\r\nNIL", "[\"NIL\"]"},
      {"NIL\r\n", "[NIL\\r\\n]"},
  });
}

TEST(IMAPTokenizer, undoesEscapesInQuotedStrings) {
  expectTokens({
      {R"("")", R"([""])"},
      {R"("a\"b\\c")", R"(["a\"b\\c"])"},
      {R"("\a\(\ ")", R"(["a( "])"},
      {R"("\\")", R"(["\\"])"},
      {R"("\\" "x")", R"(["\\" "x"])"},
      {R"("\"")", R"(["\""])"},
      {R"("(a) {1} NIL")", R"(["(a) {1} NIL"])"},
      {R"("a""b")", R"(["a" "b"])"},
      {"\"a\r\nb\"", R"(["a\r\nb"])"},
      {"\"a\\\r\nb\"", R"(["a\r\nb"])"},
  });
}

TEST(IMAPTokenizer, unterminatedStringRunsToTheEnd) {
  expectTokens({
      {R"(")", R"([""])"},
      {R"("abc)", R"(["abc"])"},
      {R"("abc\)", R"(["abc\\"])"},
      {R"("\)", R"(["\\"])"},
      {R"("abc\")", R"(["abc\""])"},
      {R"("abc\\)", R"(["abc\\"])"},
      {R"(("a b) c)", R"([("a b) c")])"},
  });
}

TEST(IMAPTokenizer, literalsTakeTheAnnouncedBytes) {
  expectTokens({
      {"{5}\r\nhello", "[\"hello\"]"},
      {"{5+}\r\nhello", "[\"hello\"]"},
      {"({2}\r\n() b)", "[(\"()\" b)]"},
      {"{3}\r\n\"a)b", "[\"\\\"a)\" b]"},
      {"{2}\r\n\\\"c", "[\"\\\\\\\"\" c]"},
      {"{0}\r\na", "[\"\" a]"},
      {"{2}\r\n\r\n", "[\"\\r\\n\"]"},
      {"{1}\r\na{1}\r\nb", "[\"a\" \"b\"]"},
      {"{007}\r\n1234567 8", "[\"1234567\" 8]"},
      {std::string("{3}\r\na\0b", 8), "[\"" + std::string("a\0b", 3) + "\"]"},
  });
}

TEST(IMAPTokenizer, literalThatIsCutShortHasTheBytesThatCame) {
  expectTokens({
      {"{3}\r\nab", "[\"ab\"]"},
      {"{3}\r\n", "[\"\"]"},
      {"{3}", "[\"\"]"},
      {"{5", "[\"\"]"},
      {"{", "[\"\"]"},
      {"({9223372036854775807}\r\nab)", "[(\"ab)\")]"},
  });
}

TEST(IMAPTokenizer, onlyTheDigitsOfAnAnnouncementCount) {
  expectTokens({
      {"{}\r\nab", "[\"\" ab]"},
      {"{x}\r\nab", "[\"\" ab]"},
      {"{-5}\r\nhello!", "[\"hello\" !]"},
      {"{1a}\r\nbc", "[\"b\" c]"},
      {"{ 1 0 }\r\n0123456789a", "[\"0123456789\" a]"},
      {"{(1\"}\r\nbc", "[\"b\" c]"},
      {"{1\r\n}ab", "[\"a\" b]"},
      {"{5 hello", "[\"\"]"},
  });
}

TEST(IMAPTokenizer, lengthThatDoesNotFitIsZero) {
  expectTokens({
      {"{9223372036854775808}\r\nab", "[\"\" ab]"},
      {"{999999999999999999999}\r\nab", "[\"\" ab]"},
      {"{18446744073709551617}\r\nab", "[\"\" ab]"},
      {"{92233720368547758080}\r\nab", "[\"\" ab]"},
      {"{" + std::string(500, '9') + "}\r\nab", "[\"\" ab]"},
      {"{" + std::string(500, '0') + "1}\r\nab", "[\"a\" b]"},
  });
}

TEST(IMAPTokenizer, oneLineEndAfterAnAnnouncementIsSkipped) {
  expectTokens({
      {"{1}\r\n\r\n", "[\"\\r\" \\n]"},
      {"{1}\nab", "[\"a\" b]"},
      {"{1}\rab", "[\"a\" b]"},
      {"{1}ab", "[\"a\" b]"},
      {"{1}\n\rab", "[\"\\r\" ab]"},
      {"{1}\r\r\nab", "[\"\\r\" \\nab]"},
  });
}

TEST(IMAPTokenizer, replacesWhatIsNotUTF8) {
  const std::string replacement = "\xEF\xBF\xBD";
  expectTokens({
      {"a\xFF"
       "b",
       "[a" + replacement + "b]"},
      {"\"a\xC3\" b", "[\"a" + replacement + "\" b]"},
      {"{2}\r\n\xE3\x81 b", "[\"" + replacement + "\" b]"},
      {"\"\xE3\x81\x82\xC3\xA4\"", "[\"\xE3\x81\x82\xC3\xA4\"]"},
      // Undoing an escape can split a sequence, or join one.
      {"\"\xE3\\\x81\x82\"", "[\"\xE3\x81\x82\"]"},
      {"\"\\\xC3\\\xA4\"", "[\"\xC3\xA4\"]"},
  });
}

TEST(IMAPTokenizer, responseCutAtEveryPositionKeepsTheTokensBeforeTheCut) {
  const std::string response =
      "* 12 FETCH (UID 4711 FLAGS (\\Seen) ENVELOPE (\"a\\\"b\" NIL ((\"n\" NIL \"m\" {4}\r\nhost))) BODY[1] "
      "{3}\r\nabc)";
  ASSERT_EQ(tokenized(response),
            "[* 12 FETCH (UID 4711 FLAGS (\\\\Seen) ENVELOPE (\"a\\\"b\" NIL ((\"n\" NIL "
            "\"m\" \"host\"))) BODY[1] \"abc\")]");
  for (std::size_t length = 0; length <= response.size(); ++length) {
    // A copy of its own size, so that the address sanitizer sees a read beyond the end.
    const std::vector<char> cut(response.begin(), response.begin() + static_cast<std::ptrdiff_t>(length));
    const IMAPTokens tokens = IMAPParser::tokenize({cut.data(), cut.size()});
    const std::string line = test::printed(tokens);
    EXPECT_EQ(line.starts_with("[* 12 FETCH"), length >= std::string_view("* 12 FETCH").size()) << line;
    EXPECT_EQ(line.find("UID 4711 ") != std::string::npos, length > response.find("FLAGS")) << line;
    EXPECT_EQ(line.find("\"host\"") != std::string::npos, length >= response.find("host") + 4) << line;
  }
}

TEST(IMAPTokenizer, readsAMillionOpenParentheses) {
  const std::string response = repeated("(", 1'000'000);
  const IMAPTokens tokens = IMAPParser::tokenize(response);
  std::size_t depth = 0;
  for (IMAPTokenList list = tokens.elements(); !list.empty(); list = (*list.begin()).list()) {
    ++depth;
  }
  EXPECT_EQ(depth, 1'000'000U);
}

TEST(IMAPTokenizer, readsAMillionNestedAndClosedLists) {
  const std::string response = repeated("(", 1'000'000) + repeated(")", 1'000'000) + " end";
  const IMAPTokens tokens = IMAPParser::tokenize(response);
  const IMAPTokenList elements = tokens.elements();
  EXPECT_EQ(std::distance(elements.begin(), elements.end()), 2);
  EXPECT_EQ(elements[1]->text(), "end");
}

TEST(IMAPTokenizer, readsAMillionSiblings) {
  const std::string response = repeated("()", 1'000'000);
  const IMAPTokens tokens = IMAPParser::tokenize(response);
  const IMAPTokenList elements = tokens.elements();
  EXPECT_EQ(std::distance(elements.begin(), elements.end()), 1'000'000);
}

TEST(IMAPTokenizer, readsAMillionStrayParentheses) {
  EXPECT_TRUE(IMAPParser::tokenize(repeated(")", 1'000'000)).elements().empty());
}

TEST(IMAPTokenizer, readsAMillionBracesThatNeverClose) {
  EXPECT_EQ(tokenized(repeated("{", 1'000'000)), "[\"\"]");
  EXPECT_EQ(tokenized(repeated("\\", 1'000'000)).size(), 2'000'002U);
}

}  // namespace
}  // namespace tarnwell
