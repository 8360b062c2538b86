#pragma once

/// The activity page over a log buffer and a system log that the test writes.

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QScrollBar>
#include <QTest>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "App/Models/Language.h"
#include "App/Pages/ActivityPage.h"
#include "App/Pages/ActivityTexts.h"
#include "App/Widgets/Theme.h"
#include "App/support/FakeActivity.h"

namespace tarnwell::test {

/// Answers with the path that the test gives.
class FakeFileChoice : public FileChoice {
 public:
  void askWhereToSave(QWidget* /*parent*/, const QString& /*title*/, const QString& name,
                      std::function<void(const QString&)> chosen) override {
    proposed = name;
    if (!path.isEmpty()) {
      chosen(path);
    }
  }

  QString path;
  QString proposed;
};

struct ActivityPageTest : testing::Test {
  LogBuffer buffer;
  FakeSystemLog log;
  ActivityTexts texts;
  FakeFileChoice files;
  Language language;
  std::shared_ptr<FakePrograms> programs = std::make_shared<FakePrograms>();
  ActivityModel model{buffer, texts, log.follow(),
                      [programs = programs, ask = programs->programs()] { return ask(); }};
  ActivityPage page{model, files};

  explicit ActivityPageTest(AppLanguage spoken = AppLanguage::english) {
    language.choose(spoken);
    applyTheme(*qApp, Scheme::light);
    page.resize(660, 600);
    page.show();
    page.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&page));
  }

  template <class Widget>
  Widget* only() const {
    const auto found = page.findChildren<Widget*>();
    return found.size() == 1 ? found.first() : nullptr;
  }
  ActivityTable* table() const { return only<ActivityTable>(); }
  Switch* switchNamed(const QString& name) const {
    for (Switch* const each : page.findChildren<Switch*>()) {
      if (each->accessibleName() == name) {
        return each;
      }
    }
    return nullptr;
  }
  Switch* follow() const { return switchNamed("Follow"); }
  ChoiceBox* processes() const { return only<ChoiceBox>(); }

  QWidget* focus() const { return QApplication::focusWidget(); }
  QString focusName() const { return focus() ? focus()->accessibleName() : QString(); }

  /// Presses the key in whatever has the focus.
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const {
    QTest::keyClick(focus() ? focus() : const_cast<ActivityPage*>(&page), key, modifiers);
  }
  /// Goes on with the tab key until the focus has this name, or text of a button.
  bool tabTo(const QString& name) const {
    for (int step = 0; step < 20; ++step) {
      const auto* const button = qobject_cast<QAbstractButton*>(focus());
      if (focusName() == name || (button && button->text().remove('&') == name)) {
        return true;
      }
      press(Qt::Key_Tab);
    }
    return false;
  }

  bool hasRows(int count) const {
    return QTest::qWaitFor([&] { return model.rowCount() == count; });
  }
  /// Entries of one second each, with the texts "entry 1" and so on.
  bool fill(int count) {
    std::vector<FollowedEntry> entries;
    for (int number = 1; number <= count; ++number) {
      entries.push_back(followedEntry(number, "entry " + std::to_string(number)));
    }
    log.tell(std::move(entries));
    return hasRows(count);
  }

  QString cell(int row, ActivityColumn column) const {
    return model.index(row, static_cast<int>(column)).data().toString();
  }
  QString topText() const { return table()->indexAt({0, 0}).siblingAtColumn(3).data().toString(); }
  bool isAtEnd() const {
    return table()->verticalScrollBar()->value() == table()->verticalScrollBar()->maximum();
  }
  /// The texts of all labels and notices that can be seen, and the lines of the chosen entry.
  QStringList visibleTexts() const {
    QStringList result;
    for (const QLabel* const label : page.findChildren<QLabel*>()) {
      if (label->isVisible() && !label->text().isEmpty()) {
        result += label->text();
      }
    }
    const auto* const entry = only<ReadingText>();
    if (entry->isVisible()) {
      result += entry->toPlainText().split(u'\n');
    }
    return result;
  }
};

}  // namespace tarnwell::test
