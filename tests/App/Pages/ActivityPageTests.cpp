#include "App/Pages/ActivityPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QStyledItemDelegate>

#include "App/support/ActivityPageFixture.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

TEST_F(ActivityPageTest, tabKeyVisitsEverythingInOrderAndAllHaveNames) {
  ASSERT_TRUE(fill(3));
  QStringList visited;
  for (int step = 0; step < 9; ++step) {
    if (step > 0 || !focus()) {
      press(Qt::Key_Tab);
    }
    const auto* const button = qobject_cast<QPushButton*>(focus());
    visited += button ? button->text().remove('&') : focusName();
  }
  EXPECT_EQ(visited, QStringList({"Search", "Process", "Every line of the log", "Follow", "Entries",
                                  "The chosen entry", "Clear", "Copy", "Save to a file…"}));
}

TEST_F(ActivityPageTest, searchIsTypedAndTakenBack) {
  ASSERT_TRUE(fill(30));
  ASSERT_TRUE(tabTo("Entries"));
  press(Qt::Key_F, Qt::ControlModifier);
  EXPECT_EQ(focusName(), "Search");
  QTest::keyClicks(focus(), "ENTRY 29");
  EXPECT_EQ(model.rowCount(), 1);
  QTest::keyClicks(focus(), "x");
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_TRUE(visibleTexts().contains("No entry has this text."));
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_Delete);
  EXPECT_EQ(model.rowCount(), 30);
  EXPECT_FALSE(visibleTexts().contains("No entry has this text."));
}

TEST_F(ActivityPageTest, followsUntilSomebodyScrollsUp) {
  ASSERT_TRUE(fill(100));
  EXPECT_TRUE(follow()->isChecked());
  EXPECT_TRUE(isAtEnd());
  ASSERT_TRUE(tabTo("Entries"));
  EXPECT_TRUE(follow()->isChecked()) << "the focus alone does not scroll";
  EXPECT_TRUE(isAtEnd());
  press(Qt::Key_PageUp);
  press(Qt::Key_PageUp);
  EXPECT_FALSE(follow()->isChecked());

  const QString top = topText();
  log.tell({followedEntry(0, "older"), followedEntry(1000, "newer")});
  ASSERT_TRUE(hasRows(102));
  EXPECT_EQ(topText(), top);
  EXPECT_FALSE(follow()->isChecked());

  ASSERT_TRUE(tabTo("Search"));
  ASSERT_TRUE(tabTo("Follow"));
  press(Qt::Key_Space);
  EXPECT_TRUE(follow()->isChecked());
  EXPECT_TRUE(isAtEnd());
  log.tell({followedEntry(1001, "newest")});
  ASSERT_TRUE(hasRows(103));
  EXPECT_TRUE(isAtEnd());
}

TEST_F(ActivityPageTest, scrollingToTheEndFollowsAgain) {
  ASSERT_TRUE(fill(100));
  ASSERT_TRUE(tabTo("Entries"));
  press(Qt::Key_Home, Qt::ControlModifier);
  EXPECT_FALSE(follow()->isChecked());
  EXPECT_EQ(topText(), "entry 1");
  press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_TRUE(follow()->isChecked());
}

TEST_F(ActivityPageTest, whatIsReadStaysInViewWhenOldEntriesGo) {
  const int all = static_cast<int>(ActivityModel::keptEntries);
  ASSERT_TRUE(fill(all));
  ASSERT_TRUE(tabTo("Entries"));
  press(Qt::Key_PageUp);
  press(Qt::Key_PageUp);
  const QString top = topText();
  std::vector<FollowedEntry> more;
  for (int number = 1; number <= 100; ++number) {
    more.push_back(followedEntry(all + number, "more"));
  }
  log.tell(std::move(more));
  ASSERT_TRUE(QTest::qWaitFor([&] { return model.entry(0).original == "entry 101"; }));
  EXPECT_EQ(topText(), top);
}

TEST_F(ActivityPageTest, searchThatFindsLittleLeavesTheSwitchAsItIs) {
  ASSERT_TRUE(fill(100));
  ASSERT_TRUE(tabTo("Follow"));
  press(Qt::Key_Space);
  EXPECT_FALSE(follow()->isChecked());
  press(Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(focus(), "99");  // in no time of day
  EXPECT_EQ(model.rowCount(), 1);
  EXPECT_FALSE(follow()->isChecked());
  press(Qt::Key_Backspace);
  press(Qt::Key_Backspace);
  EXPECT_EQ(model.rowCount(), 100);
  EXPECT_FALSE(follow()->isChecked());
}

TEST_F(ActivityPageTest, copiesAllOrTheSelected) {
  ASSERT_TRUE(fill(5));
  ASSERT_TRUE(tabTo("Copy"));
  press(Qt::Key_Space);
  EXPECT_EQ(QApplication::clipboard()->text(), model.allLines());
  ASSERT_TRUE(tabTo("Entries"));
  press(Qt::Key_Up);
  press(Qt::Key_Up, Qt::ShiftModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), model.lines({2, 3}));
  QApplication::clipboard()->clear();
  ASSERT_TRUE(tabTo("Copy"));
  press(Qt::Key_Space);
  EXPECT_EQ(QApplication::clipboard()->text(), model.lines({2, 3}));
}

TEST_F(ActivityPageTest, savesWhereThePersonSays) {
  const TemporaryDirectory directory;
  ASSERT_TRUE(fill(2));
  ASSERT_TRUE(tabTo("Save to a file…"));
  press(Qt::Key_Space);
  EXPECT_TRUE(files.proposed.startsWith("tarnwell-20"));
  EXPECT_TRUE(files.proposed.endsWith(".txt"));
  EXPECT_TRUE(std::filesystem::is_empty(directory.path())) << "no path was chosen";

  files.path = QString::fromStdString((directory / "missing" / "log.txt").string());
  press(Qt::Key_Space);
  const QString failed = "The entries could not be saved to " + files.path + ".";
  ASSERT_TRUE(QTest::qWaitFor([&] { return visibleTexts().contains(failed); }));

  files.path = QString::fromStdString((directory / "log.txt").string());
  press(Qt::Key_Space);
  ASSERT_TRUE(QTest::qWaitFor([&] { return visibleTexts().contains("Saved to " + files.path + "."); }));
  EXPECT_FALSE(visibleTexts().contains(failed));
  EXPECT_EQ(fileContents(files.path.toStdString()), model.allLines().toStdString());
}

TEST_F(ActivityPageTest, clearEmptiesTheTable) {
  ASSERT_TRUE(fill(3));
  ASSERT_TRUE(tabTo("Entries"));
  press(Qt::Key_Up);
  ASSERT_TRUE(tabTo("Clear"));
  press(Qt::Key_Space);
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_TRUE(visibleTexts().contains("No entry is shown."));
}

TEST_F(ActivityPageTest, theCurrentEntryIsShownInFullWithItsOriginal) {
  const std::string answer = "the server answered <b>no</b> " + std::string(200, 'x');
  log.tell({followedEntry(1, "tool search_inbox failed: " + answer, "tool", SystemLogType::error),
            followedEntry(2, "a text from elsewhere")});
  ASSERT_TRUE(hasRows(2));
  ASSERT_TRUE(tabTo("Entries"));
  EXPECT_TRUE(visibleTexts().contains("a text from elsewhere"));
  press(Qt::Key_Up);
  EXPECT_TRUE(visibleTexts().contains("Search failed: " + QString::fromStdString(answer)));
  EXPECT_TRUE(visibleTexts().contains("tool search_inbox failed: " + QString::fromStdString(answer)));
  EXPECT_FALSE(visibleTexts().contains("a text from elsewhere"));
}

struct AccessRow {
  LogAccess access;
  const char* notice;
};

TEST_F(ActivityPageTest, saysWhyTheSystemLogIsMissing) {
  const char* const none = "No system journal runs";
  const AccessRow rows[] = {{LogAccess::noJournal, none},
                            {LogAccess::notAllowed, "You may not read the system journal"},
                            {LogAccess::broken, "could not be read"},
                            {LogAccess::notSupported, "cannot follow the log of this system"}};
  for (const AccessRow& row : rows) {
    log.tell(row.access);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !visibleTexts().filter(row.notice).isEmpty(); })) << row.notice;
    EXPECT_EQ(visibleTexts().filter("Only the entries of this app").size(), 1);
  }
  log.tell(LogAccess::readable);
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return visibleTexts().filter("Only the entries of this app").isEmpty(); }));
}

/// Opens what a delegate keeps for its heirs.
struct OpenDelegate : QStyledItemDelegate {
  static QColor textColour(const QAbstractItemView& view, const QModelIndex& index) {
    QStyleOptionViewItem option;
    option.palette = view.palette();
    const auto* const delegate = static_cast<const QStyledItemDelegate*>(view.itemDelegate());
    (delegate->*&OpenDelegate::initStyleOption)(&option, index);
    return option.palette.color(QPalette::Text);
  }
};

TEST_F(ActivityPageTest, onlyErrorsHaveTheColourOfErrorsInBothSchemes) {
  log.tell({followedEntry(1, "stdio input stream ended", "mcp", SystemLogType::error),
            followedEntry(2, "it broke", "mcp", SystemLogType::error),
            followedEntry(3, "detail", "mcp", SystemLogType::debug), followedEntry(4, "fine")});
  ASSERT_TRUE(hasRows(4));
  QStringList levels;
  for (int row = 0; row < 4; ++row) {
    levels += cell(row, ActivityColumn::level);
  }
  EXPECT_EQ(levels, QStringList({"Info", "Error", "Detail", "Info"}));
  for (const Scheme scheme : {Scheme::dark, Scheme::light}) {
    applyTheme(*qApp, scheme);
    const QPalette palette = paletteOf(scheme);
    const Tone tones[] = {Tone::text, Tone::error, Tone::faint, Tone::text};
    for (int row = 0; row < 4; ++row) {
      EXPECT_EQ(OpenDelegate::textColour(*table(), model.index(row, 1)), toneColour(tones[row], palette))
          << row;
    }
  }
}

}  // namespace
}  // namespace tarnwell::test
