/// Calls in one row each, made of the lines of the log.
#include "App/Models/ActivityCalls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QTest>
#include <algorithm>

#include "App/support/ActivityModelFixture.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using testing::ElementsAre;

struct Line {
  qint64 processID;
  const char* text;
};

struct Row {
  const char* name;
  std::vector<Line> lines;
  std::vector<std::string> rows;
};

constexpr const char* start = "tarnwell serve starting";
constexpr const char* ready = "stdio MCP server started";
constexpr const char* connected = "initialize (protocol 2025-11-25)";
constexpr const char* left = "stdio input stream ended";
constexpr const char* stopped = "stdio MCP server stopped";
constexpr const char* search = "tool call: search_inbox";
constexpr const char* signIn = "Authenticated to IMAP for us***@example.org";
constexpr const char* found = "tool search_inbox: 16 messages, 5 withheld (247 ms)";
constexpr const char* move = "tool call: move_message";
constexpr const char* refused = "tool move_message: blocked (0 ms)";

const Row rows[] = {
    {"aCallIsOneRow",
     {{7, search}, {7, signIn}, {7, found}},
     {"ended: tool call: search_inbox · Authenticated to IMAP for us***@example.org · tool search_inbox: 16 "
      "messages, 5 withheld (247 ms)"}},
    {"aCallThatRuns", {{7, search}, {7, signIn}}, {std::string("begun: ") + search + " · " + signIn}},
    {"refusedByReadOnlyMode",
     {{7, move}, {7, "write move_message: blocked(read-only)"}, {7, refused}},
     {"ended read-only: tool call: move_message · write move_message: blocked(read-only) · tool "
      "move_message: blocked (0 ms)"}},
    {"refusedByTheSettings",
     {{7, move}, {7, "write move_message: blocked(disabled)"}, {7, refused}},
     {"ended off: tool call: move_message · write move_message: blocked(disabled) · tool "
      "move_message: blocked (0 ms)"}},
    {"preview",
     {{7, move}, {7, "write move_message: dry-run"}, {7, "tool move_message: previewed (62 ms)"}},
     {"ended preview: tool call: move_message · write move_message: dry-run · tool move_message: previewed "
      "(62 ms)"}},
    {"failed",
     {{7, move},
      {7, "write move_message: execute"},
      {7, "tool move_message failed: Folder not found: Attic"}},
     {"ended allowed: tool call: move_message · write move_message: execute · tool move_message failed: "
      "Folder not found: Attic"}},
    {"keyring",
     {{7, search}, {7, "tool search_inbox keychain error locked"}},
     {"ended: tool call: search_inbox · tool search_inbox keychain error locked"}},
    {"fault",
     {{7, search}, {7, "tool search_inbox error: what"}},
     {"ended: tool call: search_inbox · tool search_inbox error: what"}},
    {"cancelledInTheMiddle",
     {{7, search}, {7, "tool search_inbox: cancelled (12 ms)"}},
     {"ended: tool call: search_inbox · tool search_inbox: cancelled (12 ms)"}},
    {"cancelledBeforeItBegan",
     {{7, search}, {7, "cancelled by the client before it began: move_message"}, {7, found}},
     {"ended: tool call: search_inbox · tool search_inbox: 16 messages, 5 withheld (247 ms)",
      "ended: cancelled by the client before it began: move_message"}},
    {"withoutAnOutcomeWhenTheNextBegins",
     {{7, move}, {7, search}, {7, found}},
     {"unusable: tool call: move_message",
      "ended: tool call: search_inbox · tool search_inbox: 16 messages, 5 withheld (247 ms)"}},
    {"withoutAnOutcomeWhenTheHelperStops",
     {{7, search}, {7, left}, {7, stopped}},
     {"unusable: tool call: search_inbox", "Goodbye"}},
    {"brokenOffWhenANewProcessHasTheNumber",
     {{7, start}, {7, search}, {7, start}},
     {start, "broken off: tool call: search_inbox", start}},
    {"twoOfTheSameTool",
     {{7, search}, {7, search}, {7, found}},
     {"unusable: tool call: search_inbox",
      "ended: tool call: search_inbox · tool search_inbox: 16 messages, 5 withheld (247 ms)"}},
    {"twoAtATime",
     {{7, search}, {7, move}, {7, found}, {7, refused}},
     {"ended: tool call: search_inbox · tool search_inbox: 16 messages, 5 withheld (247 ms)",
      "ended: tool call: move_message · tool move_message: blocked (0 ms)"}},
    {"processesDoNotMix",
     {{7, search}, {8, move}, {8, "write move_message: blocked(read-only)"}, {7, found}, {8, refused}},
     {"ended: tool call: search_inbox · tool search_inbox: 16 messages, 5 withheld (247 ms)",
      "ended read-only: tool call: move_message · write move_message: blocked(read-only) · tool "
      "move_message: blocked (0 ms)"}},
    {"sameToolInTwoProcesses",
     {{7, search}, {8, search}, {7, found}},
     {"ended: tool call: search_inbox · tool search_inbox: 16 messages, 5 withheld (247 ms)",
      "begun: tool call: search_inbox"}},
    {"outcomeWithoutItsBeginning", {{7, found}}, {std::string("ended: ") + found}},
    {"decisionWithoutItsCall", {{7, "write move_message: execute"}}, {"write move_message: execute"}},
    {"decisionOfAnotherTool",
     {{7, move}, {7, "write trash_message: execute"}},
     {"begun: tool call: move_message", "write trash_message: execute"}},
    {"signInOfATest", {{7, signIn}}, {signIn}},
    {"signInAfterACall",
     {{7, search}, {7, found}, {7, signIn}},
     {"ended: tool call: search_inbox · tool search_inbox: 16 messages, 5 withheld (247 ms)", signIn}},
    {"signInAfterACallThatCameToNothing",
     {{7, move}, {7, search}, {7, found}, {7, signIn}},
     {"unusable: tool call: move_message",
      "ended: tool call: search_inbox · tool search_inbox: 16 messages, 5 withheld (247 ms)", signIn}},
    {"aConnectionIsTwoRows",
     {{7, start}, {7, ready}, {7, connected}, {7, left}, {7, stopped}},
     {start, "Goodbye"}},
    {"connectionToTheEndpoint", {{7, connected}}, {connected}},
    {"secondConnection", {{7, start}, {7, connected}, {7, connected}}, {start, connected}},
    {"endsWithoutAGoodbye", {{7, start}, {7, stopped}}, {start, stopped}},
    {"faultsAndTextsFromElsewhereStay",
     {{7, search},
      {7, "Config file unreadable; using defaults"},
      {7, "a text from elsewhere"},
      {7, "a call was not run: its connection closed before it began"}},
     {"begun: tool call: search_inbox", "Config file unreadable; using defaults", "a text from elsewhere",
      "a call was not run: its connection closed before it began"}},
    {"unknownTool",
     {{7, "tool call: rm_rf"}, {7, left}, {7, stopped}},
     {"unusable: tool call: rm_rf", "Goodbye"}},
};

struct ActivityCallsTest : ActivityModelTest {
  /// Now, because a call that began long ago is given up.
  const Moment now = std::chrono::system_clock::now();

  std::vector<FollowedEntry> entriesOf(const std::vector<Line>& lines) const {
    std::vector<FollowedEntry> entries;
    for (const Line& line : lines) {
      const auto place = static_cast<int>(entries.size());
      entries.push_back(entryOf(line.processID, now + std::chrono::milliseconds(place), line.text));
    }
    return entries;
  }
  bool shows(const std::vector<std::string>& wanted) const {
    return QTest::qWaitFor([&] { return texts() == wanted; });
  }
  void makeFreshModel() {
    tester.reset();
    model.reset();
    makeModel();
  }
};

struct ActivityCallsOf : ActivityCallsTest, testing::WithParamInterface<Row> {};

TEST_P(ActivityCallsOf, areToldInOneRowEach) {
  makeModel();
  log.tell(entriesOf(GetParam().lines));
  EXPECT_TRUE(shows(GetParam().rows));
  EXPECT_EQ(texts(), GetParam().rows);
}

TEST_P(ActivityCallsOf, areTheSameWhenEachLineComesAlone) {
  makeModel();
  int count = 0;
  model->showDetail(ActivityDetail::everyLine);
  for (const FollowedEntry& entry : entriesOf(GetParam().lines)) {
    log.tell({entry});
    ASSERT_TRUE(hasRows(++count));
    model->showDetail(ActivityDetail::calls);
    model->showDetail(ActivityDetail::everyLine);
  }
  model->showDetail(ActivityDetail::calls);
  EXPECT_EQ(texts(), GetParam().rows);
}

TEST_P(ActivityCallsOf, areTheSameInWhateverOrderTheLinesCome) {
  std::vector<FollowedEntry> entries = entriesOf(GetParam().lines);
  std::reverse(entries.begin(), entries.end());
  for (std::size_t first = 0; first < entries.size(); ++first) {
    makeFreshModel();
    for (const FollowedEntry& entry : entries) {
      log.tell({entry});
      QTest::qWait(0);
    }
    EXPECT_TRUE(shows(GetParam().rows)) << first;
    EXPECT_EQ(texts(), GetParam().rows) << first;
    std::rotate(entries.begin(), entries.begin() + 1, entries.end());
  }
}

TEST_P(ActivityCallsOf, showEveryLineWhenAskedTo) {
  makeModel();
  model->showDetail(ActivityDetail::everyLine);
  log.tell(entriesOf(GetParam().lines));
  ASSERT_TRUE(hasRows(static_cast<int>(GetParam().lines.size())));
  for (int row = 0; row < model->rowCount(); ++row) {
    EXPECT_EQ(model->entry(row).original, GetParam().lines[static_cast<std::size_t>(row)].text);
    EXPECT_FALSE(model->entry(row).call);
  }
}

INSTANTIATE_TEST_SUITE_P(, ActivityCallsOf, testing::ValuesIn(rows), rowName);

TEST_F(ActivityCallsTest, aRowTellsWhatTheCallCameTo) {
  makeModel();
  log.tell({entryOf(7, now, search), entryOf(7, now, signIn), entryOf(7, now, found)});
  ASSERT_TRUE(hasRows(1));
  const ActivityEntry& row = model->entry(0);
  EXPECT_EQ(row.date, now) << "its time is that of its beginning";
  EXPECT_EQ(row.text.phrase, LogPhrase::foundMessages);
  EXPECT_EQ(row.text.count, 16);
  EXPECT_EQ(row.call->tool, ToolName::searchInbox);
}

TEST_F(ActivityCallsTest, aRowHasTheGravestLevelOfItsLines) {
  makeModel();
  std::vector<FollowedEntry> entries = entriesOf(
      {{7, move}, {7, "write move_message: execute"}, {7, "tool move_message failed: no"}, {7, search}});
  entries[1].type = SystemLogType::standard;
  entries[2].type = SystemLogType::error;
  log.tell(entries);
  ASSERT_TRUE(hasRows(2));
  EXPECT_EQ(model->entry(0).level, LogLevel::error);
  EXPECT_EQ(model->entry(1).level, LogLevel::info);
}

TEST_F(ActivityCallsTest, anOutcomeThatComesLaterChangesTheRowInItsPlace) {
  makeModel();
  log.tell({entryOf(7, now, search), entryOf(8, now, "after it")});
  ASSERT_TRUE(shows({"begun: tool call: search_inbox", "after it"}));
  const QPersistentModelIndex row = model->index(0, 0);
  log.tell({entryOf(7, now + std::chrono::milliseconds(1), found)});
  const std::string whole = std::string("ended: ") + search + " · " + found;
  EXPECT_TRUE(shows({whole, "after it"}));
  EXPECT_TRUE(row.isValid()) << "what is selected stays so";
}

TEST_F(ActivityCallsTest, aSearchFollowsTheWordsOfARow) {
  makeModel();
  model->search("begun");
  log.tell({entryOf(7, now, search), entryOf(8, now, "begun, too")});
  ASSERT_TRUE(hasRows(2));
  log.tell({entryOf(7, now + std::chrono::milliseconds(1), found)});
  ASSERT_TRUE(shows({"begun, too"}));
  model->search("withheld");
  log.tell({entryOf(8, now + std::chrono::milliseconds(2), search)});
  EXPECT_TRUE(hasRows(1));
  log.tell({entryOf(8, now + std::chrono::milliseconds(3), found)});
  EXPECT_TRUE(hasRows(2));
}

TEST_F(ActivityCallsTest, aCallOfLongAgoIsNotWaitedForButItsOutcomeStillCounts) {
  makeModel();
  const Moment then = now - ActivityModel::longestCall - std::chrono::seconds(1);
  log.tell({entryOf(7, then, search)});
  ASSERT_TRUE(shows({"unknown: tool call: search_inbox"}));
  log.tell({entryOf(7, now, found)});
  EXPECT_TRUE(shows({std::string("ended: ") + search + " · " + found}));
}

TEST_F(ActivityCallsTest, aCallOfLongAgoWasUnusableWhenItsHelperWentOn) {
  makeModel();
  log.tell({entryOf(7, now - std::chrono::minutes(9), move)});
  ASSERT_TRUE(shows({"unknown: tool call: move_message"}));
  log.tell({entryOf(7, now, search)});
  EXPECT_TRUE(shows({"unusable: tool call: move_message", "begun: tool call: search_inbox"}));
}

TEST_F(ActivityCallsTest, clearingLeavesTheOutcomeOfACallThatRuns) {
  makeModel();
  log.tell({entryOf(7, now, search)});
  ASSERT_TRUE(hasRows(1));
  model->clear();
  log.tell({entryOf(7, now + std::chrono::hours(1), found)});
  EXPECT_TRUE(shows({std::string("ended: ") + found}));
}

TEST_F(ActivityCallsTest, aCallWhoseBeginningIsKeptNoMoreIsGoneWithIt) {
  makeModel();
  std::vector<FollowedEntry> entries{entryOf(7, moment(0), search)};
  for (int number = 1; number <= static_cast<int>(ActivityModel::keptEntries); ++number) {
    entries.push_back(entryOf(8, moment(number), "other"));
  }
  log.tell(std::move(entries));
  ASSERT_TRUE(hasRows(static_cast<int>(ActivityModel::keptEntries)));
  log.tell({entryOf(7, now, found)});
  ASSERT_TRUE(QTest::qWaitFor([&] { return texts().back() == std::string("ended: ") + found; }));
}

}  // namespace
}  // namespace tarnwell::test
