#pragma once

/// The page "Try it" over its real model and a mailbox in memory, driven by keys.

#include <QLineEdit>
#include <QScrollBar>
#include <functional>
#include <optional>
#include <string>

#include "App/Pages/TryItPage.h"
#include "App/Pages/TryItTexts.h"
#include "App/Widgets/Theme.h"
#include "App/support/FakeMailbox.h"
#include "App/support/PageFixture.h"

namespace tarnwell::test {

class TryItPageTest : public PageTest {
 protected:
  TryItPageTest() {
    mailbox.mails = {
        {.uid = 9, .subject = "Tea at four", .body = "Hello,\r\nsee you."},
        {.uid = 8, .subject = "Your verification code", .body = "4711"},
        {.uid = 7, .subject = "Welcome", .body = "4711 is your security code", .flags = "\\Seen"}};
    store_.update([](AppConfig& config) { config.email = testEmail; });
  }

  /// Narrow unless told otherwise: a window of 800 by 600.
  void begin(int width = 620, const std::function<void(AppConfig&)>& edit = {}) {
    if (edit) {
      store_.update(edit);
    }
    settings.emplace(store_);
    model.emplace(*settings, ReadOnlyTools(mailbox.tools(store_)));
    page.emplace(*model);
    applyTheme(*qApp, Scheme::light);
    page->resize(width, 600);
    page->show();
    QApplication::setActiveWindow(&*page);
    ASSERT_TRUE(tabTo(word("Search the inbox", "TryItSearch")));
    settle();
  }
  void beginWide(const std::function<void(AppConfig&)>& edit = {}) { begin(800, edit); }

  /// From the field with the words.
  void search(const QString& words = {}) {
    type(words);
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return model->state() != TryItModel::State::searching; }));
    settle();
  }
  void goToList() { ASSERT_TRUE(tabTo(word("Messages"))); }
  /// Goes down the list and opens the row by a key.
  void openRow(int row) {
    ASSERT_NO_FATAL_FAILURE(goToList());
    press(Qt::Key_Home);
    for (int step = 0; step < row; ++step) {
      press(Qt::Key_Down);
    }
    press(Qt::Key_Return);
    ASSERT_TRUE(eventually([this] { return model->text().has_value(); }));
    settle();
  }
  /// Names a button as a screen reader does.
  void pressButton(const QString& name) {
    for (int steps = 0; steps < 50; ++steps) {
      if (spoken(nameOf(QApplication::focusWidget())) == spoken(name)) {
        press(Qt::Key_Space);
        settle();
        return;
      }
      press(Qt::Key_Tab);
    }
    FAIL() << "Tab does not reach " << name.toStdString();
  }

  /// Without the mark of the mnemonic.
  static QString spoken(QString text) {
    const auto place = text.indexOf(QLatin1String("(&"));
    return place >= 0 ? text.left(place) : text.remove(QLatin1Char('&'));
  }
  /// A text in the language of the test.
  static QString word(const char* english, const char* context = "TryItPage") {
    return spoken(QCoreApplication::translate((std::string("tarnwell::") + context).c_str(), english));
  }

  /// Everything that can be read on the page, in labels and fields.
  QString everything() const {
    QString all = shown(*page);
    for (const QPlainTextEdit* const text : page->findChildren<QPlainTextEdit*>()) {
      if (text->isVisible()) {
        all += QLatin1Char('\n') + text->toPlainText();
      }
    }
    return all;
  }
  QStringList rowTexts() const {
    const QAbstractItemModel* const rows = list()->model();
    QStringList texts;
    for (int row = 0; row < rows->rowCount(); ++row) {
      texts.append(rows->index(row, 0).data(Qt::AccessibleTextRole).toString());
    }
    return texts;
  }
  TryItList* list() const { return page->findChild<TryItList*>(); }

  /// Lets the layout follow.
  static void settle() {
    for (int round = 0; round < 5; ++round) {
      QCoreApplication::processEvents();
      QCoreApplication::sendPostedEvents();
    }
  }

  FakeMailbox mailbox;
  std::optional<SettingsFile> settings;
  std::optional<TryItModel> model;
  std::optional<TryItPage> page;
};

}  // namespace tarnwell::test
