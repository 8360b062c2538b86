#include "App/Models/LogText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "App/support/LoggedTexts.h"
#include "support/RowName.h"

namespace tarnwell {

static void PrintTo(const LogText& text, std::ostream* out) {
  *out << static_cast<int>(text.phrase) << " \"" << text.name.toStdString() << "\" \""
       << text.detail.toStdString() << "\" " << text.count << ' ' << text.withheld << ' '
       << text.milliseconds;
}

namespace test {
namespace {

struct Row {
  const char* name;
  const char* message;
  LogText text;
};

class LogTextRecognised : public testing::TestWithParam<Row> {};

TEST_P(LogTextRecognised, hasItsPhraseAndItsParts) {
  EXPECT_EQ(recognised(GetParam().message), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    , LogTextRecognised,
    testing::Values(
        Row{"withoutParts", "stdio input stream ended", {.phrase = LogPhrase::assistantLeft}},
        Row{"name", "tool call: get_status", {.phrase = LogPhrase::callBegan, .name = "get_status"}},
        Row{"nameWithABlank", "tool call: get status", {}}, Row{"noName", "tool call: ", {}},
        Row{"address",
            "Authenticated to IMAP for us***@example.org",
            {.phrase = LogPhrase::signedIn, .name = "us***@example.org"}},
        Row{"countsAndTime",
            "tool search_inbox: 16 messages, 5 withheld (247 ms)",
            {.phrase = LogPhrase::foundMessages,
             .name = "search_inbox",
             .count = 16,
             .withheld = 5,
             .milliseconds = 247}},
        Row{"one",
            "tool search_inbox: 1 message, 1 withheld (0 ms)",
            {.phrase = LogPhrase::foundMessages, .name = "search_inbox", .count = 1, .withheld = 1}},
        Row{"withheldSnippet",
            "tool get_message_summary: 1 message, withheld (3 ms)",
            {.phrase = LogPhrase::textWithheld, .name = "get_message_summary", .milliseconds = 3}},
        Row{"outcomeOfALaterProgram",
            "tool search_inbox: 3 threads (in 2 folders) (12 ms)",
            {.phrase = LogPhrase::callEnded,
             .name = "search_inbox",
             .detail = "3 threads (in 2 folders)",
             .milliseconds = 12}},
        Row{"noOutcome",
            "tool search_inbox:  (12 ms)",
            {.phrase = LogPhrase::callEnded, .name = "search_inbox", .milliseconds = 12}},
        Row{"timeThatIsNone", "tool search_inbox: 1 message (x ms)", {}},
        Row{"timeWithoutABracket", "tool search_inbox: 12 ms)", {}},
        Row{"bracketOnly", "tool search_inbox: (12 ms)", {}},
        Row{"hugeCount",
            "tool search_inbox: 99999999999999999999 messages (1 ms)",
            {.phrase = LogPhrase::callEnded,
             .name = "search_inbox",
             .detail = "99999999999999999999 messages",
             .milliseconds = 1}},
        Row{"failureThatQuotesTheEndOfACall",
            "tool move_message failed: Folder not found: a failed: (3 ms)",
            {.phrase = LogPhrase::callFailed,
             .name = "move_message",
             .detail = "Folder not found: a failed: (3 ms)"}},
        Row{"detailBetweenTwoTexts",
            "Config file set aside: owned by another user; using defaults",
            {.phrase = LogPhrase::settingsSetAside, .detail = "owned by another user"}},
        Row{"endpoint",
            "localhost MCP HTTP server listening on 127.0.0.1:8765",
            {.phrase = LogPhrase::endpointListening, .name = "127.0.0.1:8765"}},
        Row{"onlyTheBeginning", "stdio input stream", {}}, Row{"more", "stdio input stream ended.", {}},
        Row{"otherLetterCase", "STDIO input stream ended", {}}, Row{"empty", "", {}},
        Row{"japanese", "接続しました", {}}, Row{"percent", "%", {}}),
    rowName);

/// Every text that the sources log is recognised, and every phrase is one that they log.
TEST(LogText, knowsAllTextsOfTheSources) {
  const std::vector<LoggedText> samples = textsOfTheSources(TARNWELL_SOURCES);
  ASSERT_GT(samples.size(), 20U);
  std::set<LogPhrase> found;
  for (const LoggedText& sample : samples) {
    const LogPhrase phrase = recognised(QString::fromStdString(sample.text)).phrase;
    EXPECT_NE(phrase, LogPhrase::other)
        << sample.file << " logs \"" << sample.text << "\", which src/App/Models/LogText.cpp does not know";
    found.insert(phrase);
  }
  for (int phrase = 1; phrase <= static_cast<int>(LogPhrase::endpointStopped); ++phrase) {
    EXPECT_TRUE(found.contains(static_cast<LogPhrase>(phrase))) << "nothing logs phrase " << phrase;
  }
}

/// docs/logs.md shows a day as a real journal has it.
TEST(LogText, knowsAllTextsOfADay) {
  std::ifstream page(TARNWELL_LOG_PAGE);
  int count = 0;
  for (std::string line; std::getline(page, line);) {
    const std::size_t begin = line.find("]: ");
    if (line.starts_with("    ") && line.find("tarnwell[") != std::string::npos &&
        begin != std::string::npos) {
      const LogPhrase phrase = recognised(QString::fromStdString(line.substr(begin + 3))).phrase;
      EXPECT_NE(phrase, LogPhrase::other) << line;
      EXPECT_NE(phrase, LogPhrase::callEnded) << line;
      ++count;
    }
  }
  EXPECT_GT(count, 50);
}

}  // namespace
}  // namespace test
}  // namespace tarnwell
