/// Calls or every line, and one process or all, on the page "Activity".
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QScrollArea>

#include "App/support/ActivityPageFixture.h"

namespace tarnwell::test {
namespace {

struct ActivityFilterTest : ActivityPageTest {
  const Moment now = std::chrono::system_clock::now();

  FollowedEntry line(int number, qint64 processID, const char* text) const {
    return entryOf(processID, now + std::chrono::milliseconds(number), text);
  }
  /// Two helpers whose lines alternate: 4711 searches, 4712 may not move.
  void tellOfTwo() const {
    log.tell({line(1, 4711, "tarnwell serve starting"), line(2, 4712, "tarnwell serve starting"),
              line(3, 4711, "tool call: search_inbox"), line(4, 4712, "tool call: move_message"),
              line(5, 4712, "write move_message: blocked(read-only)"),
              line(6, 4711, "Authenticated to IMAP for us***@example.org"),
              line(7, 4711, "tool search_inbox: 16 messages, 5 withheld (347 ms)"),
              line(8, 4712, "tool move_message: blocked (0 ms)")});
  }
  QStringList shownTexts() const {
    QStringList result;
    for (int row = 0; row < model.rowCount(); ++row) {
      result += cell(row, ActivityColumn::text);
    }
    return result;
  }
  QStringList choices() const {
    QStringList result;
    for (int place = 0; place < processes()->count(); ++place) {
      // The time of day is that of the test.
      result += processes()->itemText(place).section(", since ", 0, 0);
    }
    return result;
  }
  bool hasChoices(const QStringList& wanted) const {
    return QTest::qWaitFor([&] { return choices() == wanted; });
  }
};

TEST_F(ActivityFilterTest, showsOneRowForEachCallUntilEveryLineIsWanted) {
  tellOfTwo();
  ASSERT_TRUE(hasRows(4));
  EXPECT_EQ(shownTexts(),
            QStringList({"A helper starts for an assistant.", "A helper starts for an assistant.",
                         "Searched the inbox: 16 messages, 5 withheld, 0.3 s",
                         "Move refused: read-only mode is on"}));
  ASSERT_TRUE(tabTo("Every line of the log"));
  press(Qt::Key_Space);
  EXPECT_EQ(model.rowCount(), 8);
  EXPECT_TRUE(shownTexts().contains("move_message is called."));
  EXPECT_TRUE(isAtEnd());
  press(Qt::Key_Space);
  EXPECT_EQ(model.rowCount(), 4);
}

TEST_F(ActivityFilterTest, theCurrentCallIsShownWithAllOfItsLines) {
  tellOfTwo();
  ASSERT_TRUE(hasRows(4));
  ASSERT_TRUE(tabTo("Entries"));
  EXPECT_TRUE(visibleTexts().contains("Move refused: read-only mode is on"));
  EXPECT_TRUE(
      visibleTexts().contains("tool call: move_message · write move_message: blocked(read-only) · tool "
                              "move_message: blocked (0 ms)"));
}

TEST_F(ActivityFilterTest, theCurrentCallIsSaidAnewWhenItEnds) {
  log.tell({line(1, 4711, "tool call: search_inbox")});
  ASSERT_TRUE(hasRows(1));
  ASSERT_TRUE(tabTo("Entries"));
  EXPECT_TRUE(visibleTexts().contains("Searching the inbox…"));
  log.tell({line(2, 4711, "tool search_inbox: 1 message (66 ms)")});
  EXPECT_TRUE(
      QTest::qWaitFor([&] { return visibleTexts().contains("Searched the inbox: 1 message, 0.1 s"); }));
}

TEST_F(ActivityFilterTest, oneProcessIsChosenByKeys) {
  EXPECT_EQ(choices(), QStringList({"Everything", "This app"}));
  tellOfTwo();
  ASSERT_TRUE(hasChoices({"Everything", "This app", "Helper 4712", "Helper 4711"}));
  ASSERT_TRUE(tabTo("Process"));
  press(Qt::Key_Down);
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_TRUE(visibleTexts().contains("No entry of this process is shown."));
  press(Qt::Key_Down);
  press(Qt::Key_Down);
  EXPECT_EQ(shownTexts(), QStringList({"A helper starts for an assistant.",
                                       "Searched the inbox: 16 messages, 5 withheld, 0.3 s"}));
  press(Qt::Key_F, Qt::ControlModifier);
  QTest::keyClicks(focus(), "searched");
  EXPECT_EQ(model.rowCount(), 1);
  ASSERT_TRUE(tabTo("Copy"));
  press(Qt::Key_Space);
  EXPECT_EQ(QApplication::clipboard()->text(), model.allLines());
  EXPECT_FALSE(model.allLines().contains("Move"));
}

TEST_F(ActivityFilterTest, theChoiceStaysWhileProcessesComeAndGo) {
  tellOfTwo();
  ASSERT_TRUE(hasChoices({"Everything", "This app", "Helper 4712", "Helper 4711"}));
  processes()->setCurrentIndex(3);
  log.tell({line(9, 4713, "tarnwell serve starting")});
  ASSERT_TRUE(hasChoices({"Everything", "This app", "Helper 4713", "Helper 4712", "Helper 4711"}));
  EXPECT_TRUE(processes()->currentText().startsWith("Helper 4711"));
  EXPECT_EQ(model.rowCount(), 2);
  ASSERT_TRUE(tabTo("Clear"));
  press(Qt::Key_Space);
  EXPECT_EQ(choices(), QStringList({"Everything", "This app", "Helper 4711"}));
  EXPECT_TRUE(processes()->currentText().startsWith("Helper 4711"));
  ASSERT_TRUE(tabTo("Process"));
  press(Qt::Key_Home);
  EXPECT_EQ(choices(), QStringList({"Everything", "This app"}));
  EXPECT_EQ(processes()->currentText(), "Everything");
  EXPECT_EQ(model.shownProcess(), std::nullopt);
}

TEST_F(ActivityFilterTest, anOlderProcessTakesItsPlaceAmongTheChoices) {
  log.tell({line(5, 4711, "tarnwell serve starting"), line(6, 4712, "x")});
  ASSERT_TRUE(hasChoices({"Everything", "This app", "Program 4712", "Helper 4711"}));
  processes()->setCurrentIndex(2);
  log.tell({line(1, 4712, "tarnwell serve starting"), line(2, 4713, "x")});
  ASSERT_TRUE(hasChoices({"Everything", "This app", "Helper 4711", "Program 4713", "Helper 4712"}));
  EXPECT_TRUE(processes()->currentText().startsWith("Helper 4712"));
}

TEST_F(ActivityFilterTest, aProcessHasTheNameOfTheProgramThatStartedIt) {
  programs->run(
      {{.processID = 4711, .parentID = 3, .name = "tarnwell"}, {.processID = 3, .name = "claude-desktop"}});
  tellOfTwo();
  ASSERT_TRUE(hasChoices({"Everything", "This app", "Helper 4712", "Claude Desktop"}));
  const QString time = localTime(now).section(' ', 1).chopped(3);
  EXPECT_TRUE(processes()->itemText(3).endsWith(", since " + time)) << processes()->itemText(3).toStdString();
}

TEST_F(ActivityFilterTest, twoProcessesOfOneProgramAreToldApart) {
  programs->run({{.processID = 4711, .parentID = 3, .name = "tarnwell"},
                 {.processID = 4712, .parentID = 3, .name = "tarnwell"},
                 {.processID = 3, .name = "claude-desktop"}});
  tellOfTwo();
  ASSERT_TRUE(hasChoices(
      {"Everything", "This app", "Claude Desktop (process 4712)", "Claude Desktop (process 4711)"}));
}

TEST_F(ActivityFilterTest, twoProcessesOfOneNumberAreToldApart) {
  const Moment minute = std::chrono::floor<std::chrono::minutes>(now);
  log.tell({entryOf(4711, minute, "tarnwell serve starting"),
            entryOf(4711, minute + std::chrono::seconds(1), "tarnwell serve starting")});
  ASSERT_TRUE(hasChoices({"Everything", "This app", "Helper 4711", "Helper 4711"}));
  EXPECT_NE(processes()->itemText(2), processes()->itemText(3));
}

TEST_F(ActivityFilterTest, aLongNameLeavesThePageAsWideAsItIs) {
  page.resize(620, 600);
  const std::string name(300, 'a');
  log.tell({line(1, 4711, ("tool call: " + name).c_str())});
  ASSERT_TRUE(hasRows(1));
  ASSERT_TRUE(tabTo("Entries"));
  QCoreApplication::processEvents();
  const QScrollArea* const area = only<QScrollArea>();
  EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
  EXPECT_TRUE(visibleTexts().contains(QString::fromStdString("tool call: " + name)));
}

TEST_F(ActivityFilterTest, anotherLanguageKeepsTheChoice) {
  tellOfTwo();
  ASSERT_TRUE(hasChoices({"Everything", "This app", "Helper 4712", "Helper 4711"}));
  processes()->setCurrentIndex(3);
  language.choose(AppLanguage::japanese);
  QCoreApplication::sendPostedEvents();
  EXPECT_TRUE(processes()->currentText().startsWith("ヘルパー 4711（"))
      << processes()->currentText().toStdString();
  EXPECT_EQ(processes()->itemText(0), "すべて");
  EXPECT_EQ(cell(1, ActivityColumn::text),
            "受信トレイを検索しました: 16 通、うち 5 通は渡していません、0.3 秒");
  language.choose(AppLanguage::english);
}

}  // namespace
}  // namespace tarnwell::test
