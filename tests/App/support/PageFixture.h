#pragma once

/// Drives a page by keys only. Each goes to whatever has the focus, as those of a person do.
///
///     class SafetyPageTest : public PageTest { ... };
///     ASSERT_TRUE(tabTo("Read-only mode"));
///     press(Qt::Key_Space);

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QStringList>
#include <QTest>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "App/Models/Language.h"
#include "App/Models/SettingsFile.h"
#include "App/Widgets/Page.h"
#include "App/Widgets/Questions.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

/// Lets the events run until the condition holds.
template <class Condition>
bool eventually(Condition condition) {
  return QTest::qWaitFor(condition, 10'000);
}

/// Keeps the questions, and answers when the test says so.
class AnsweredQuestions : public Questions {
 public:
  void ask(QWidget* /*parent*/, const Question& question, std::function<void(bool)> answered) override {
    asked.push_back(question);
    answered_ = std::move(answered);
  }
  void answer(bool yes) { std::exchange(answered_, {})(yes); }

  std::vector<Question> asked;

 private:
  std::function<void(bool)> answered_;
};

inline void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
  ASSERT_NE(QApplication::focusWidget(), nullptr);
  QTest::keyClick(QApplication::focusWidget(), key, modifiers);
}

inline void type(const QString& text) {
  ASSERT_NE(QApplication::focusWidget(), nullptr);
  QTest::keyClicks(QApplication::focusWidget(), text);
}

/// What a screen reader calls the widget.
inline QString nameOf(const QWidget* widget) {
  if (const auto* const button = qobject_cast<const QPushButton*>(widget)) {
    return button->accessibleName().isEmpty() ? button->text() : button->accessibleName();
  }
  return widget->accessibleName();
}

/// Presses Tab until this one has the focus. False when it never gets it.
inline bool tabTo(const QString& name) {
  for (int steps = 0; steps < 50; ++steps) {
    if (QApplication::focusWidget() && nameOf(QApplication::focusWidget()) == name) {
      return true;
    }
    press(Qt::Key_Tab);
  }
  ADD_FAILURE() << "Tab does not reach " << name.toStdString();
  return false;
}

/// The names of all that Tab visits, from the beginning. A text with several links keeps the focus for a
/// while.
inline QStringList tabStops(QWidget& window) {
  QStringList names;
  if (QApplication::focusWidget()) {
    QApplication::focusWidget()->clearFocus();
  }
  QTest::keyClick(&window, Qt::Key_Tab);
  const QWidget* const first = QApplication::focusWidget();
  const QWidget* before = nullptr;
  for (int steps = 0; steps < 50; ++steps) {
    const QWidget* const stop = QApplication::focusWidget();
    if (stop == first && before && before != first) {
      break;
    }
    if (stop != before) {
      names.append(nameOf(stop));
    }
    before = stop;
    press(Qt::Key_Tab);
  }
  return names;
}

/// All texts that the page shows, one a line.
inline QString shown(const QWidget& page) {
  QStringList texts;
  for (const QLabel* const label : page.findChildren<QLabel*>()) {
    if (label->isVisible()) {
      texts.append(label->text());
    }
  }
  return texts.join(QLatin1Char('\n'));
}

/// The labels and buttons that have too little room, and the areas that would have to be scrolled sideways.
inline QStringList cutOff(const QWidget& page) {
  QStringList names;
  for (const QLabel* const label : page.findChildren<QLabel*>()) {
    const int needed =
        label->hasHeightForWidth() ? label->heightForWidth(label->width()) : label->sizeHint().height();
    if (label->isVisible() &&
        (label->height() < needed || label->width() < label->minimumSizeHint().width())) {
      names.append(label->text());
    }
  }
  for (const QPushButton* const button : page.findChildren<QPushButton*>()) {
    if (button->isVisible() && button->width() < button->sizeHint().width()) {
      names.append(button->text());
    }
  }
  for (const QScrollArea* const area : page.findChildren<QScrollArea*>()) {
    if (area->isVisible() && area->widget()->width() > area->viewport()->width()) {
      names.append(
          QStringLiteral("an area of %1 in %2").arg(area->widget()->width()).arg(area->viewport()->width()));
    }
  }
  return names;
}

/// Names each instance of a test in several languages.
constexpr auto languageName = [](const auto& instance) { return std::string(rawValue(instance.param)); };

/// Settings in a folder of their own, and a language.
class PageTest : public testing::Test {
 protected:
  PageTest() { language_.choose(AppLanguage::english); }

  void open(Page& page) {
    page.resize(620, 600);
    page.show();
    QApplication::setActiveWindow(&page);
  }

  /// Waits until all is written, and returns what a helper reads.
  AppConfig saved(const SettingsFile& settings) const {
    EXPECT_TRUE(eventually([&] { return !settings.isSaving(); }));
    return store_.load();
  }

  TemporaryDirectory directory_;
  ConfigStore store_{directory_.path()};
  Language language_;
};

}  // namespace tarnwell::test
