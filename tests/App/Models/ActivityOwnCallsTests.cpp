/// Calls in the app itself, of its endpoint and of trials: several run at a time.
#include <gtest/gtest.h>

#include <QTest>

#include "App/Models/ActivityCalls.h"
#include "App/support/ActivityModelFixture.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

struct Line {
  int milliseconds;
  const char* text;
};

struct Row {
  const char* name;
  std::vector<Line> lines;
  std::vector<std::string> rows;
};

constexpr const char* search = "tool call: search_inbox";
constexpr const char* trial = "tried by the user: search_inbox";

const Row rows[] = {
    {"sameToolTwiceAtATime",
     {{0, search},
      {1'000, search},
      {2'000, "tool search_inbox: 3 messages (2000 ms)"},
      {3'000, "tool search_inbox: 16 messages (2000 ms)"}},
     {"ended: tool call: search_inbox · tool search_inbox: 3 messages (2000 ms)",
      "ended: tool call: search_inbox · tool search_inbox: 16 messages (2000 ms)"}},
    {"theNewerEndsFirst",
     {{0, search},
      {1'000, search},
      {1'500, "tool search_inbox: 16 messages (499 ms)"},
      {3'000, "tool search_inbox: cancelled (2999 ms)"}},
     {"ended: tool call: search_inbox · tool search_inbox: cancelled (2999 ms)",
      "ended: tool call: search_inbox · tool search_inbox: 16 messages (499 ms)"}},
    {"anotherCallThatBeginsEndsNone",
     {{0, search}, {1, "tool call: list_folders"}},
     {"begun: tool call: search_inbox", "begun: tool call: list_folders"}},
    {"moreThanAreWaitedFor",
     {{0, search},
      {1, search},
      {2, search},
      {3, search},
      {4, search},
      {5, search},
      {6, search},
      {7, search},
      {8, search}},
     {"unknown: tool call: search_inbox", "begun: tool call: search_inbox", "begun: tool call: search_inbox",
      "begun: tool call: search_inbox", "begun: tool call: search_inbox", "begun: tool call: search_inbox",
      "begun: tool call: search_inbox", "begun: tool call: search_inbox", "begun: tool call: search_inbox"}},
    {"trial",
     {{0, trial}, {0, search}, {9, "tool search_inbox: 3 messages (9 ms)"}},
     {"trial ended: tried by the user: search_inbox · tool call: search_inbox · tool search_inbox: 3 "
      "messages "
      "(9 ms)"}},
    {"trialBesideACallOfAnAssistant",
     {{0, search},
      {10, trial},
      {10, search},
      {20, "tool search_inbox: 3 messages (10 ms)"},
      {30, "tool search_inbox: 16 messages (30 ms)"}},
     {"ended: tool call: search_inbox · tool search_inbox: 16 messages (30 ms)",
      "trial ended: tried by the user: search_inbox · tool call: search_inbox · tool search_inbox: 3 "
      "messages (10 ms)"}},
    {"callOfAnAssistantAfterATrial",
     {{0, trial}, {0, search}, {10, search}},
     {"trial begun: tried by the user: search_inbox · tool call: search_inbox",
      "begun: tool call: search_inbox"}},
};

struct ActivityOwnCallsOf : ActivityModelTest, testing::WithParamInterface<Row> {};

TEST_P(ActivityOwnCallsOf, keepTheirOutcomesApart) {
  makeModel();
  const Moment now = std::chrono::system_clock::now();
  for (const Line& line : GetParam().lines) {
    LogEntry entry = ownEntry(0, line.text);
    entry.date = now + std::chrono::milliseconds(line.milliseconds);
    buffer.append(entry);
  }
  EXPECT_TRUE(QTest::qWaitFor([&] { return texts() == GetParam().rows; }));
  EXPECT_EQ(texts(), GetParam().rows);
}

INSTANTIATE_TEST_SUITE_P(, ActivityOwnCallsOf, testing::ValuesIn(rows), rowName);

struct ActivityOwnCallsTest : ActivityModelTest {};

TEST_F(ActivityOwnCallsTest, endNoneInAnEarlierRunEither) {
  makeModel();
  const Moment now = std::chrono::system_clock::now();
  constexpr const char* listening = "localhost MCP HTTP server listening on 127.0.0.1:8765";
  log.tell({entryOf(7, now, listening), entryOf(7, now, search), entryOf(7, now, "tool call: list_folders")});
  ASSERT_TRUE(hasRows(3));
  EXPECT_EQ(texts(), std::vector<std::string>(
                         {listening, "begun: tool call: search_inbox", "begun: tool call: list_folders"}));
}

TEST_F(ActivityOwnCallsTest, haveABoundedPartOfTheirLines) {
  makeModel();
  const Moment now = std::chrono::system_clock::now();
  std::vector<FollowedEntry> entries{entryOf(7, now, search)};
  for (int number = 0; number < 400; ++number) {
    entries.push_back(entryOf(7, now, "Authenticated to IMAP for us***@example.org"));
  }
  log.tell(std::move(entries));
  ASSERT_TRUE(hasRows(1));
  EXPECT_LE(model->entry(0).original.size(), 2'001);
  EXPECT_TRUE(model->entry(0).original.endsWith(u'…'));
}

}  // namespace
}  // namespace tarnwell::test
