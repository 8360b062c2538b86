/// What an `ActivityModel` shows of the entries that it has, and gives away.
#include "App/Models/ActivityModel.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include "App/support/ActivityModelFixture.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

using testing::ElementsAre;

struct SearchRow {
  const char* name;
  const char* search;
  std::vector<std::string> found;
};

TEST_F(ActivityModelTest, searchLooksAtAllThatIsShown) {
  const SearchRow rows[] = {
      {"nothing", "", {"Inbox", "inbox of Anna", "Goodbye", "受信箱"}},
      {"letter case", "INBOX", {"Inbox", "inbox of Anna"}},
      {"words", "of anna", {"inbox of Anna"}},
      {"japanese", "受信", {"受信箱"}},
      {"level", "error", {"inbox of Anna"}},
      {"subject", "<imap>", {"受信箱"}},
      {"time", "3s", {"Goodbye"}},
      {"hidden original", "stdio", {}},
      {"over the end of a column", "info<", {}},
      {"absent", "inboxes", {}},
      {"no pattern", ".*", {}},
  };
  makeModel();
  log.tell({followedEntry(1, "Inbox"), followedEntry(2, "inbox of Anna", "mcp", SystemLogType::error),
            followedEntry(3, "stdio input stream ended", "mcp", SystemLogType::error),
            followedEntry(4, "受信箱", "imap")});
  ASSERT_TRUE(hasRows(4));
  for (const SearchRow& row : rows) {
    model->search(row.search);
    EXPECT_EQ(texts(), row.found) << row.name;
  }
}

TEST_F(ActivityModelTest, searchHoldsForNewEntries) {
  makeModel();
  model->search("b");
  log.tell({followedEntry(1, "a"), followedEntry(2, "b1"), followedEntry(4, "b3")});
  ASSERT_TRUE(hasRows(2));
  log.tell({followedEntry(3, "b2"), followedEntry(5, "c")});
  ASSERT_TRUE(hasRows(3));
  EXPECT_THAT(texts(), ElementsAre("b1", "b2", "b3"));
  model->search("");
  EXPECT_THAT(texts(), ElementsAre("a", "b1", "b2", "b3", "c"));
}

TEST_F(ActivityModelTest, clearHidesWhatWasThereForGood) {
  buffer.append(ownEntry(1, "one"));
  makeModel();
  ASSERT_TRUE(hasRows(1));
  model->clear();
  EXPECT_EQ(model->rowCount(), 0);
  EXPECT_EQ(buffer.snapshot().size(), 1U);
  LogEntry now = ownEntry(0, "new");
  now.date = std::chrono::system_clock::now() + std::chrono::seconds(1);
  log.tell({followedEntry(2, "old and late")});
  buffer.append(now);
  ASSERT_TRUE(hasRows(1));
  EXPECT_THAT(texts(), ElementsAre("new"));
}

TEST_F(ActivityModelTest, newWordsShowAtOnceAndCountInTheSearch) {
  makeModel();
  log.tell({followedEntry(1, "a"), followedEntry(2, "b", "mcp", SystemLogType::error)});
  ASSERT_TRUE(hasRows(2));
  QSignalSpy headings(model.get(), &ActivityModel::headerDataChanged);
  QSignalSpy cells(model.get(), &ActivityModel::dataChanged);
  words.suffix = " (ja)";
  model->retranslate();
  EXPECT_EQ(headings.count(), 1);
  EXPECT_EQ(cells.count(), 1);
  EXPECT_EQ(model->headerData(3, Qt::Horizontal, Qt::DisplayRole).toString(), "Text (ja)");
  model->search("error (ja)");
  EXPECT_THAT(texts(), ElementsAre("b"));
  words.suffix = " (en)";
  model->retranslate();
  EXPECT_EQ(model->rowCount(), 0);
}

TEST_F(ActivityModelTest, linesHaveTheOriginalWhereTheTextIsAnother) {
  makeModel();
  log.tell({followedEntry(1, "a\tb"), followedEntry(2, "stdio input stream ended"), followedEntry(3, "c")});
  ASSERT_TRUE(hasRows(3));
  const QString lines = model->allLines();
  EXPECT_EQ(model->lines({0, 1, 2}), lines);
  EXPECT_THAT(lines.toStdString(),
              testing::MatchesRegex("....-..-.. ..:..:..\tInfo\t<mcp>\ta b\n"
                                    "....-..-.. ..:..:..\tInfo\t<mcp>\tGoodbye\tstdio input stream ended\n"
                                    "....-..-.. ..:..:..\tInfo\t<mcp>\tc\n"));
  EXPECT_TRUE(model->lines({2}).endsWith("\tc\n"));
  EXPECT_EQ(model->lines({}), "");
}

TEST_F(ActivityModelTest, savesAllLinesThatAreShown) {
  const TemporaryDirectory directory;
  makeModel();
  log.tell({followedEntry(1, "日本語"), followedEntry(2, "hidden")});
  ASSERT_TRUE(hasRows(2));
  model->search("日本語");
  QSignalSpy saved(model.get(), &ActivityModel::saved);
  const std::string path = (directory / "log.txt").string();
  model->save(QString::fromStdString(path));
  ASSERT_TRUE(saved.wait());
  EXPECT_EQ(fileContents(path), model->allLines().toStdString());
}

TEST_F(ActivityModelTest, saysWhyAFileIsNotSaved) {
  const TemporaryDirectory directory;
  makeModel();
  QSignalSpy notSaved(model.get(), &ActivityModel::notSaved);
  for (const std::string& path : {(directory / "missing" / "log.txt").string(), directory.path().string()}) {
    model->save(QString::fromStdString(path));
    ASSERT_TRUE(notSaved.wait()) << path;
    EXPECT_EQ(notSaved.last().at(0).toString().toStdString(), path);
    EXPECT_NE(notSaved.last().at(1).toString(), "");
  }
}

}  // namespace
}  // namespace tarnwell::test
