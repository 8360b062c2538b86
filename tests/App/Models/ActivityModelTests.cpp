#include "App/Models/ActivityModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>
#include <thread>

#include "App/support/ActivityModelFixture.h"

namespace tarnwell::test {
namespace {

using testing::ElementsAre;

TEST_F(ActivityModelTest, beginsWithTheOwnLogAndGoesOn) {
  buffer.append(ownEntry(1, "one"));
  buffer.append(ownEntry(2, "two"));
  makeModel();
  ASSERT_TRUE(hasRows(2));
  buffer.append(ownEntry(3, "three"));
  ASSERT_TRUE(hasRows(3));
  EXPECT_THAT(texts(), ElementsAre("one", "two", "three"));
  EXPECT_EQ(model->entry(0).processID, QCoreApplication::applicationPid());
  EXPECT_EQ(model->entry(0).subject, AppLogger::Category::app);
}

TEST_F(ActivityModelTest, asksForTheSystemLogWithoutTheEntriesThatItHas) {
  buffer.append(ownEntry(10, "one"));
  buffer.append(ownEntry(20, "two"));
  makeModel();
  model->follow();
  EXPECT_EQ(log.started(), 1);
  EXPECT_EQ(log.query().subsystem, "app.tarnwell.Tarnwell");
  EXPECT_EQ(log.query().withoutOwnSince, moment(9));
}

TEST_F(ActivityModelTest, ordersByTimeWhateverComesFirst) {
  makeModel();
  buffer.append(ownEntry(5, "own 5"));
  buffer.append(ownEntry(9, "own 9"));
  ASSERT_TRUE(hasRows(2));
  log.tell({followedEntry(1, "1"), followedEntry(3, "3"), followedEntry(5, "5"), followedEntry(6, "6"),
            followedEntry(7, "7"), followedEntry(12, "12")});
  log.tell({followedEntry(4, "4"), followedEntry(11, "11"), followedEntry(2, "2")});
  ASSERT_TRUE(hasRows(11));
  EXPECT_THAT(texts(), ElementsAre("1", "2", "3", "4", "own 5", "5", "6", "7", "own 9", "11", "12"));
}

TEST_F(ActivityModelTest, readsTheFieldsOfTheSystemLog) {
  makeModel();
  log.tell({followedEntry(1, "a", "imap", SystemLogType::debug),
            followedEntry(2, "b", "tool", SystemLogType::standard),
            followedEntry(3, "c", "other", SystemLogType::error)});
  ASSERT_TRUE(hasRows(3));
  EXPECT_EQ(model->entry(0).level, LogLevel::debug);
  EXPECT_EQ(model->entry(1).level, LogLevel::notice);
  EXPECT_EQ(model->entry(2).level, LogLevel::error);
  EXPECT_EQ(model->entry(0).subject, AppLogger::Category::imap);
  EXPECT_EQ(model->entry(2).subject, std::nullopt);
  EXPECT_EQ(model->entry(2).category, "other");
  EXPECT_EQ(model->entry(2).processID, 4711);
  EXPECT_EQ(model->index(2, 0).data(ActivityModel::levelRole).toInt(), static_cast<int>(LogLevel::error));
}

TEST_F(ActivityModelTest, goodbyeOfAClientIsNoError) {
  makeModel();
  log.tell({followedEntry(1, "stdio input stream ended", "mcp", SystemLogType::error),
            followedEntry(2, "stdio input stream broke", "mcp", SystemLogType::error)});
  ASSERT_TRUE(hasRows(2));
  EXPECT_EQ(model->entry(0).level, LogLevel::info);
  EXPECT_EQ(cell(0, ActivityColumn::text), "Goodbye");
  EXPECT_EQ(model->entry(1).level, LogLevel::error);
}

TEST_F(ActivityModelTest, tellsWhetherTheSystemLogCanBeRead) {
  makeModel();
  QSignalSpy changes(model.get(), &ActivityModel::accessChanged);
  EXPECT_EQ(model->access(), std::nullopt);
  for (const LogAccess access : {LogAccess::notAllowed, LogAccess::notAllowed, LogAccess::readable}) {
    log.tell(access);
  }
  ASSERT_TRUE(QTest::qWaitFor([&] { return model->access() == LogAccess::readable; }));
  EXPECT_EQ(changes.count(), 2);
}

struct LineRow {
  const char* name;
  std::string message;
  QString shown;
};

TEST_F(ActivityModelTest, showsEachEntryOnOneLineAndNoMarkup) {
  const LineRow rows[] = {
      {"line feed", "one\ntwo", "one two"},
      {"other line ends",
       "a\r\vb\xE2\x80\xA8"
       "c",
       "a  b c"},
      {"direction",
       "a\xE2\x80\xAE"
       "b",
       "a b"},
      {"no UTF-8", "caf\xE9", QString::fromUtf8("caf\xEF\xBF\xBD")},
      {"markup", "<img src=x> & <b>", "<img src=x> & <b>"},
  };
  makeModel();
  int number = 0;
  for (const LineRow& row : rows) {
    log.tell({followedEntry(number, row.message)});
    ASSERT_TRUE(hasRows(number + 1)) << row.name;
    EXPECT_EQ(cell(number, ActivityColumn::text), row.shown) << row.name;
    EXPECT_EQ(model->index(number, 3).data(Qt::ToolTipRole).toString(),
              "<qt>" + row.shown.toHtmlEscaped() + "</qt>")
        << row.name;
    ++number;
  }
}

TEST_F(ActivityModelTest, keepsTheNewestInAFlood) {
  constexpr int count = 19 * 617;
  makeModel();
  model->search("5");
  for (int number = 0; number < count; number += 617) {
    std::vector<FollowedEntry> entries;
    for (int each = number; each < number + 617; ++each) {
      entries.push_back(followedEntry(each, std::to_string(each)));
    }
    log.tell(std::move(entries));
    QTest::qWait(0);
  }
  ASSERT_TRUE(QTest::qWaitFor(
      [&] { return model->rowCount() > 0 && model->entry(model->rowCount() - 1).original == "11715"; },
      20'000));
  const int matching = model->rowCount();
  EXPECT_EQ(model->entry(0).original, "1725");
  model->search("");
  EXPECT_EQ(model->rowCount(), static_cast<int>(ActivityModel::keptEntries));
  EXPECT_LT(matching, model->rowCount());
  EXPECT_EQ(model->entry(0).original, "1723");
  EXPECT_EQ(model->entry(model->rowCount() - 1).original, QString::number(count - 1));
}

TEST_F(ActivityModelTest, threadsLogAtTheSameTime) {
  constexpr int each = 300;
  makeModel();
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 3; ++thread) {
    threads.emplace_back([&, thread] {
      for (int number = 0; number < each; ++number) {
        if (thread == 0) {
          log.tell({followedEntry(number, "followed")});
        } else {
          LogEntry entry{{}, moment(number), LogLevel::info, "app", "own"};
          entry.id = {static_cast<std::uint8_t>(thread), static_cast<std::uint8_t>(number / 200),
                      static_cast<std::uint8_t>(number % 200)};
          buffer.append(entry);
        }
      }
    });
  }
  EXPECT_TRUE(hasRows(3 * each));
  for (std::thread& thread : threads) {
    thread.join();
  }
  for (int row = 1; row < model->rowCount(); ++row) {
    EXPECT_LE(model->entry(row - 1).date, model->entry(row).date);
  }
}

/// Each of the 500 entries that the buffer holds arrives while the model is made: before, between, or after.
TEST_F(ActivityModelTest, ownEntriesComeOnceWhileOthersLog) {
  constexpr int writers = 3;
  constexpr int each = 160;
  for (int round = 0; round < 100; ++round) {
    LogBuffer busy;
    std::vector<std::thread> threads;
    for (int writer = 0; writer < writers; ++writer) {
      threads.emplace_back([&busy, writer] {
        for (int number = 0; number < each; ++number) {
          busy.append({{static_cast<std::uint8_t>(writer), static_cast<std::uint8_t>(number), 1},
                       moment(number),
                       LogLevel::info,
                       "app",
                       "entry"});
        }
      });
    }
    while (busy.snapshot().size() < 20) {
      std::this_thread::yield();
    }
    const ActivityModel early(busy, words, log.follow());
    for (std::thread& thread : threads) {
      thread.join();
    }
    busy.append(ownEntry(each, "last"));
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return early.rowCount() > 0 && early.entry(early.rowCount() - 1).original == "last"; }));
    ASSERT_EQ(early.rowCount(), writers * each + 1);
  }
}

TEST_F(ActivityModelTest, mayGoAwayWhileOthersLog) {
  for (int round = 0; round < 50; ++round) {
    makeModel();
    std::thread writer([&] {
      for (int number = 0; number < 100; ++number) {
        log.tell({followedEntry(number, "x")});
        buffer.append({{}, moment(number), LogLevel::info, "app", "x"});
      }
    });
    QTest::qWait(0);
    tester.reset();
    model.reset();
    writer.join();
    buffer.append(ownEntry(1, "nobody hears this"));
  }
}

}  // namespace
}  // namespace tarnwell::test
