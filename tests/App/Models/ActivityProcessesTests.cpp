/// Which processes the activity knows, and what it shows of one.
#include "App/Models/ActivityProcesses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "App/support/ActivityModelFixture.h"

namespace tarnwell::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* start = "tarnwell serve starting";

struct ActivityProcessesTest : ActivityModelTest {
  /// As "kind number second program", newest first.
  std::vector<std::string> processes() const {
    std::vector<std::string> result;
    for (const ActivityProcess& each : model->otherProcesses()) {
      const char* const kind = each.kind == ActivityProcess::Kind::helper ? "helper " : "other ";
      const auto second = (each.since - moment(0)) / std::chrono::seconds(1);
      result.push_back(kind + std::to_string(each.processID) + " " + std::to_string(second) +
                       (each.program.isEmpty() ? "" : " " + each.program.toStdString()));
    }
    return result;
  }
  bool have(const std::vector<std::string>& wanted) const {
    return QTest::qWaitFor([&] { return processes() == wanted; });
  }
  void tell(int second, qint64 processID, const char* text) const {
    log.tell({entryOf(processID, moment(second), text)});
  }
  int numberOf(std::size_t place) const { return model->otherProcesses().at(place).number; }
};

TEST_F(ActivityProcessesTest, areKnownNewestFirstWithoutThisApp) {
  makeModel();
  EXPECT_THAT(processes(), IsEmpty());
  buffer.append(ownEntry(1, "of the app"));
  log.tell({entryOf(7, moment(2), start), entryOf(7, moment(3), "x"), entryOf(8, moment(4), start),
            entryOf(9, moment(5), "Authenticated to IMAP for us***@example.org"),
            entryOf(0, moment(6), "of an unknown process")});
  EXPECT_TRUE(have({"other 9 5", "helper 8 4", "helper 7 2"}));
}

TEST_F(ActivityProcessesTest, areNewWhenTheSystemGivesTheirNumberAgain) {
  makeModel();
  log.tell({entryOf(7, moment(1), start), entryOf(7, moment(2), "a"), entryOf(7, moment(3), start),
            entryOf(7, moment(4), "b")});
  ASSERT_TRUE(have({"helper 7 3", "helper 7 1"}));
  model->showProcess(numberOf(0));
  EXPECT_THAT(texts(), ElementsAre(start, "b"));
  model->showProcess(numberOf(1));
  EXPECT_THAT(texts(), ElementsAre(start, "a"));
}

TEST_F(ActivityProcessesTest, areToldApartAlsoWhenTheStartArrivesLast) {
  makeModel();
  tell(2, 7, "a");
  tell(4, 7, "b");
  ASSERT_TRUE(have({"other 7 2"}));
  tell(3, 7, start);
  ASSERT_TRUE(have({"helper 7 3", "other 7 2"}));
  model->showProcess(numberOf(0));
  EXPECT_THAT(texts(), ElementsAre(start, "b"));
  tell(1, 7, start);
  ASSERT_TRUE(have({"helper 7 3", "helper 7 1"}));
  model->showProcess(numberOf(1));
  EXPECT_THAT(texts(), ElementsAre(start, "a"));
}

TEST_F(ActivityProcessesTest, anOlderOneWithTheNumberOfThisAppIsAnother) {
  makeModel();
  const qint64 own = QCoreApplication::applicationPid();
  tell(1, own, start);
  buffer.append(ownEntry(2, "of the app"));
  ASSERT_TRUE(hasRows(2));
  EXPECT_EQ(model->otherProcesses().size(), 1U);
  model->showProcess(ActivityProcesses::thisApp);
  EXPECT_THAT(texts(), ElementsAre("of the app"));
}

TEST_F(ActivityProcessesTest, theChoiceHoldsForNewEntriesAndWithASearch) {
  makeModel();
  log.tell({entryOf(7, moment(1), "red"), entryOf(8, moment(2), "red"), entryOf(7, moment(3), "blue")});
  ASSERT_TRUE(hasRows(3));
  model->showProcess(numberOf(1));
  EXPECT_THAT(texts(), ElementsAre("red", "blue"));
  log.tell({entryOf(7, moment(4), "new"), entryOf(8, moment(5), "hidden")});
  ASSERT_TRUE(hasRows(3));
  model->search("e");
  EXPECT_THAT(texts(), ElementsAre("red", "blue", "new"));
  model->search("red");
  EXPECT_THAT(texts(), ElementsAre("red"));
  EXPECT_EQ(model->allLines().count('\n'), 1) << "what is copied and saved is what is shown";
  model->showProcess(std::nullopt);
  EXPECT_EQ(model->rowCount(), 2);
}

TEST_F(ActivityProcessesTest, areKnownOnlyWhileAnEntryIsKeptUnlessChosen) {
  constexpr int all = static_cast<int>(ActivityModel::keptEntries);
  makeModel();
  tell(0, 6, start);
  tell(1, 7, start);
  ASSERT_TRUE(have({"helper 7 1", "helper 6 0"}));
  model->showProcess(numberOf(0));
  std::vector<FollowedEntry> entries;
  for (int number = 2; number < all + 2; ++number) {
    entries.push_back(entryOf(9, moment(number), "x"));
  }
  log.tell(std::move(entries));
  ASSERT_TRUE(have({"other 9 2", "helper 7 1"}));
  EXPECT_EQ(model->rowCount(), 0);
  tell(all + 2, 7, "again");
  ASSERT_TRUE(hasRows(1));
  model->showProcess(std::nullopt);
  EXPECT_EQ(processes(), std::vector<std::string>({"other 9 2", "helper 7 1"}));
}

TEST_F(ActivityProcessesTest, clearingKeepsTheChoiceAndKnowsTheOthersAgain) {
  makeModel();
  log.tell({entryOf(7, moment(1), start), entryOf(8, moment(2), start)});
  ASSERT_TRUE(have({"helper 8 2", "helper 7 1"}));
  model->showProcess(numberOf(1));
  model->clear();
  EXPECT_EQ(processes(), std::vector<std::string>({"helper 7 1"}));
  const auto later = std::chrono::system_clock::now() + std::chrono::hours(1);
  log.tell({entryOf(7, later, "a"), entryOf(8, later, "b")});
  ASSERT_TRUE(have({"helper 8 2", "helper 7 1"}));
  EXPECT_THAT(texts(), ElementsAre("a"));
}

TEST_F(ActivityProcessesTest, areNamedByTheProgramThatStartedThemWhileTheyRun) {
  programs->run({{.processID = 7, .parentID = 3, .name = "tarnwell"}, {.processID = 3, .name = "claude"}});
  makeModel();
  log.tell({entryOf(7, moment(1), start), entryOf(8, moment(2), start),
            entryOf(8, moment(3), "stdio MCP server stopped"), entryOf(9, moment(4), "of no helper")});
  ASSERT_TRUE(have({"other 9 4", "helper 8 2", "helper 7 1 Claude Code"}));
  EXPECT_EQ(programs->asked(), 1);
  programs->run({});
  tell(5, 7, "x");
  ASSERT_TRUE(hasRows(5));
  EXPECT_EQ(programs->asked(), 1) << "the answer is remembered";
  tell(6, 10, start);
  EXPECT_TRUE(have({"helper 10 6", "other 9 4", "helper 8 2", "helper 7 1 Claude Code"}));
  EXPECT_TRUE(QTest::qWaitFor([&] { return programs->asked() == 2; }));
}

TEST_F(ActivityProcessesTest, aHelperThatRunsKeepsItsNameWithoutAnEntry) {
  constexpr int all = static_cast<int>(ActivityModel::keptEntries);
  programs->run({{.processID = 7, .parentID = 3, .name = "tarnwell"}, {.processID = 3, .name = "claude"}});
  makeModel();
  tell(1, 7, start);
  ASSERT_TRUE(have({"helper 7 1 Claude Code"}));
  programs->run({});
  std::vector<FollowedEntry> flood;
  for (int number = 2; number < all + 2; ++number) {
    flood.push_back(entryOf(9, moment(number), "x"));
  }
  log.tell(std::move(flood));
  ASSERT_TRUE(have({"other 9 2"}));
  tell(all + 2, 7, "x");
  ASSERT_TRUE(have({"other 9 2", "helper 7 1 Claude Code"}));
  model->clear();
  model->clear();
  EXPECT_THAT(processes(), IsEmpty());
  log.tell({entryOf(7, std::chrono::system_clock::now() + std::chrono::hours(1), "tool call: get_status")});
  EXPECT_TRUE(have({"helper 7 1 Claude Code"}));
}

TEST_F(ActivityProcessesTest, ofThoseWithoutAnEntryTheNewestAreKnown) {
  constexpr int more = static_cast<int>(ActivityProcesses::mostProcesses) + 1;
  makeModel();
  std::vector<FollowedEntry> entries;
  for (int number = 1; number <= more; ++number) {
    entries.push_back(entryOf(100 + number, moment(number), start));
  }
  log.tell(std::move(entries));
  ASSERT_TRUE(hasRows(more));
  model->clear();
  model->clear();
  const auto later = std::chrono::system_clock::now() + std::chrono::hours(1);
  log.tell({entryOf(101, later, "x"), entryOf(102, later, "x")});
  ASSERT_TRUE(hasRows(2));
  ASSERT_EQ(model->otherProcesses().size(), 2U);
  EXPECT_EQ(model->otherProcesses()[0].kind, ActivityProcess::Kind::other) << "the oldest";
  EXPECT_EQ(model->otherProcesses()[1].since, moment(2));
}

TEST_F(ActivityProcessesTest, onlyTheNewestAreOfferedAndTheChosenOne) {
  constexpr int most = static_cast<int>(ActivityProcesses::mostProcesses);
  makeModel();
  tell(0, 7, start);
  ASSERT_TRUE(have({"helper 7 0"}));
  model->showProcess(numberOf(0));
  std::vector<FollowedEntry> entries;
  for (int number = 1; number <= 2 * most; ++number) {
    entries.push_back(entryOf(100 + number, moment(number), start));
  }
  log.tell(std::move(entries));
  ASSERT_TRUE(QTest::qWaitFor([&] { return model->otherProcesses().size() == most + 1U; }));
  EXPECT_EQ(processes().front(), "helper 200 100");
  EXPECT_EQ(processes()[most - 1], "helper 151 51");
  EXPECT_EQ(processes().back(), "helper 7 0");
  model->showProcess(std::nullopt);
  EXPECT_EQ(processes().size(), most + 0U);
}

TEST_F(ActivityProcessesTest, aCallMakesAHelperUnlessTheAppRunsIt) {
  makeModel();
  log.tell({entryOf(7, moment(1), "tool call: get_status"),
            entryOf(8, moment(2), "initialize (protocol 2025-11-25)"),
            entryOf(9, moment(3), "tried by the user: get_status"),
            entryOf(9, moment(3), "tool call: get_status"),
            entryOf(10, moment(4), "localhost MCP HTTP server listening on 127.0.0.1:8765"),
            entryOf(10, moment(5), "tool call: get_status"), entryOf(11, moment(6), "tool call: get_status"),
            entryOf(11, moment(7), "tried by the user: get_status")});
  EXPECT_TRUE(have({"other 11 6", "other 10 4", "other 9 3", "helper 8 2", "helper 7 1"}))
      << "three are the app itself";
}

TEST_F(ActivityProcessesTest, areNotAskedForWhenAllHaveEnded) {
  makeModel();
  log.tell({entryOf(7, moment(1), start), entryOf(7, moment(2), "stdio MCP server stopped"),
            entryOf(8, moment(3), start), entryOf(8, moment(4), "stdio MCP server stopped")});
  ASSERT_TRUE(hasRows(4));
  EXPECT_EQ(programs->asked(), 0);
}

TEST_F(ActivityProcessesTest, changesAreTold) {
  makeModel();
  QSignalSpy changes(model.get(), &ActivityModel::processesChanged);
  tell(1, 7, "x");
  ASSERT_TRUE(hasRows(1));
  EXPECT_EQ(changes.count(), 1);
  tell(2, 7, "x");
  ASSERT_TRUE(hasRows(2));
  EXPECT_EQ(changes.count(), 1) << "nothing new";
  model->clear();
  EXPECT_EQ(changes.count(), 2);
}

}  // namespace
}  // namespace tarnwell::test
