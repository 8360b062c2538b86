#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "IMAP/Connection/LineAssembler.h"
#include "IMAP/Responses/IMAPParser.h"
#include "support/ReferenceTokenizer.h"
#include "support/TokenPrinter.h"

namespace tarnwell {
namespace {

/// Pieces of which every rule of the tokenizer takes notice.
const std::vector<std::string> pieces{
    "(",  ")",  "((", "))",  " ",   "\t", "\"", "\\",   "{",    "}",    "1",       "2",     "+",       "\r\n",
    "\r", "\n", "a",  "NIL", "nil", "[",  "*",  "\xC3", "\xA4", "\xFF", "{1}\r\n", "\"b\"", "{2+}\r\n"};

TEST(IMAPTokenizer, readsRandomResponsesLikeTheReference) {
  std::mt19937 random(2683);  // NOLINT(cert-msc51-cpp): the same responses in every run
  std::uniform_int_distribution<std::size_t> piece(0, pieces.size() - 1);
  std::uniform_int_distribution<int> length(0, 16);
  for (int round = 0; round < 50'000; ++round) {
    std::string response;
    for (int count = length(random); count > 0; --count) {
      response += pieces[piece(random)];
    }
    const std::vector<char> copy(response.begin(), response.end());  // exact bounds for the sanitizer
    const IMAPTokens tokens = IMAPParser::tokenize({copy.data(), copy.size()});
    ASSERT_EQ(test::printed(tokens), test::ReferenceTokenizer(response).printed())
        << "round " << round << ": " << ::testing::PrintToString(response);
  }
}

TEST(IMAPTokenizer, readsAllShortQuotedStringsLikeTheReference) {
  constexpr std::string_view alphabet = "\"\\a ";
  std::vector<std::string> ofLength{"\""};
  for (int length = 1; length <= 7; ++length) {
    std::vector<std::string> longer;
    for (const std::string& beginning : ofLength) {
      const std::vector<char> copy(beginning.begin(), beginning.end());  // exact bounds for the sanitizer
      ASSERT_EQ(test::printed(IMAPParser::tokenize({copy.data(), copy.size()})),
                test::ReferenceTokenizer(beginning).printed())
          << beginning;
      for (const char next : alphabet) {
        longer.push_back(beginning + next);
      }
    }
    ofLength = std::move(longer);
  }
}

TEST(IMAPParser, everyReaderEndsOnRandomResponses) {
  const std::vector<std::string> words{"* 1 FETCH (",
                                       "UID 7 ",
                                       "FLAGS (",
                                       "ENVELOPE (",
                                       "BODYSTRUCTURE (\"text\" ",
                                       "\"text\" ",
                                       "\"html\" ",
                                       "(\"charset\" ",
                                       "NIL ",
                                       "(\"attachment\") ",
                                       "* LIST (\\All ",
                                       "\"/\" ",
                                       ") ",
                                       "(",
                                       "BODY ((",
                                       "x "};
  std::mt19937 random(4711);  // NOLINT(cert-msc51-cpp): the same responses in every run
  std::uniform_int_distribution<std::size_t> word(0, words.size() - 1);
  int messages = 0;
  int folders = 0;
  int texts = 0;
  for (int round = 0; round < 20'000; ++round) {
    std::string response = round % 2 == 0 ? words[0] + words[1] : words[10];
    for (int count = round % 40; count > 0; --count) {
      response += words[word(random)];
    }
    const IMAPTokens tokens = IMAPParser::tokenize(response);
    const std::optional<IMAPMessage> message = IMAPParser::parseFetchMessage(tokens.elements());
    messages += message.has_value() ? 1 : 0;
    texts += message && message->bodyInfo.preferredText ? 1 : 0;
    folders += IMAPParser::parseList(tokens.elements()).has_value() ? 1 : 0;
    IMAPParser::parseEnvelope(tokens.elements());
    IMAPParser::parseBodyStructure(tokens.elements());
    IMAPParser::parseCompletion(response, "*");
  }
  // Otherwise the responses would exercise nothing.
  EXPECT_GT(messages, 1000);
  EXPECT_GT(folders, 100);
  EXPECT_GT(texts, 100);
}

}  // namespace
}  // namespace tarnwell
