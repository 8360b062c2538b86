#include "IMAP/Responses/IMAPToken.h"

#include <gtest/gtest.h>

#include "IMAP/Responses/IMAPParser.h"
#include "support/TokenPrinter.h"

namespace tarnwell {
namespace {

using Kind = IMAPToken::Kind;

TEST(IMAPToken, tellsItsKindAndText) {
  const IMAPTokens tokens = IMAPParser::tokenize(R"(atom "string" (list) NIL)");
  struct Row {
    Kind kind;
    std::optional<std::string> text;
  };
  const std::vector<Row> rows{{Kind::atom, "atom"},
                              {Kind::string, "string"},
                              {Kind::list, std::nullopt},
                              {Kind::nilToken, std::nullopt}};
  for (std::size_t position = 0; position < rows.size(); ++position) {
    SCOPED_TRACE(position);
    const std::optional<IMAPToken> token = tokens.elements()[position];
    ASSERT_TRUE(token);
    EXPECT_EQ(token->kind(), rows[position].kind);
    EXPECT_EQ(token->text(), rows[position].text);
  }
}

TEST(IMAPToken, textEqualsIgnoresOnlyASCIICase) {
  struct Row {
    std::string_view response;
    std::string_view word;
    bool expected;
  };
  const std::vector<Row> rows{
      {"FETCH", "fetch", true},
      {"fetch", "FETCH", true},
      {"\"Fetch\"", "FETCH", true},
      {"{5}\r\nfETCh", "FETCH", true},
      {"\"F\\ET\\CH\"", "FETCH", true},
      {"FETC", "FETCH", false},
      {"FETCHES", "FETCH", false},
      {"\"FETC\\H\\\"\"", "FETCH", false},
      {"F\xFF", "F", false},
      {"\xC3\x84", "\xC3\xA4", false},
      {"\\Seen", "\\SEEN", true},
      {"[", "{", false},
      {"@", "`", false},
      {"NIL", "NIL", false},
      {"NIL", "", false},
      {"\"NIL\"", "nil", true},
      {"(FETCH)", "FETCH", false},
      {"()", "", false},
      {"\"\"", "", true},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.response);
    const IMAPTokens tokens = IMAPParser::tokenize(row.response);
    ASSERT_FALSE(tokens.elements().empty());
    EXPECT_EQ((*tokens.elements().begin()).textEquals(row.word), row.expected);
  }
}

TEST(IMAPToken, onlyAListHasElements) {
  const IMAPTokens tokens = IMAPParser::tokenize(R"(atom "string" NIL () (a))");
  std::vector<bool> empty;
  for (const IMAPToken token : tokens.elements()) {
    empty.push_back(token.list().empty());
  }
  EXPECT_EQ(empty, (std::vector<bool>{true, true, true, true, false}));
}

TEST(IMAPTokenList, positionsStepOverNestedLists) {
  const IMAPTokens tokens = IMAPParser::tokenize("a (b (c d) e) f ((g) h)");
  const IMAPTokenList elements = tokens.elements();
  EXPECT_EQ(test::printed(*elements[0]), "a");
  EXPECT_EQ(test::printed(*elements[1]), "(b (c d) e)");
  EXPECT_EQ(test::printed(*elements[2]), "f");
  EXPECT_EQ(test::printed(*elements[3]), "((g) h)");
  EXPECT_FALSE(elements[4]);
  EXPECT_FALSE(elements[1'000'000]);
  EXPECT_EQ(test::printed(*elements[1]->list()[1]->list()[1]), "d");
  EXPECT_FALSE(elements[1]->list()[3]);
}

TEST(IMAPTokenList, withoutElementsIsEmpty) {
  EXPECT_TRUE(IMAPTokenList().empty());
  EXPECT_FALSE(IMAPTokenList()[0]);
  EXPECT_TRUE(IMAPTokenList().begin() == IMAPTokenList().end());
  EXPECT_TRUE(IMAPParser::tokenize("").elements().empty());
}

TEST(IMAPTokenList, worksWithTheStandardAlgorithms) {
  static_assert(std::forward_iterator<IMAPTokenList::Iterator>);
  const IMAPTokens tokens = IMAPParser::tokenize("a (b c) d (e)");
  const IMAPTokenList elements = tokens.elements();
  EXPECT_EQ(std::distance(elements.begin(), elements.end()), 4);
}

}  // namespace
}  // namespace tarnwell
