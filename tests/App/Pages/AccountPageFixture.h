#pragma once

/// The account page over its real model, driven by keys that go to whatever has the focus.

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QTest>
#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "App/Models/Language.h"
#include "App/Pages/AccountPage.h"
#include "App/Pages/AccountTexts.h"
#include "App/Widgets/Theme.h"
#include "support/FakeIMAPServer.h"
#include "support/InMemorySecretItems.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

class AccountPageTest : public testing::TestWithParam<AppLanguage> {
 protected:
  /// Outlives the test when a thread still asks.
  struct Keyring {
    std::atomic<KeyringState> state = KeyringState::ready;
    std::atomic<UnlockOutcome> answer = UnlockOutcome::unlocked;
  };
  struct NotedQuestions : Questions {
    void ask(QWidget* /*parent*/, const Question& question, std::function<void(bool)> answered) override {
      asked.push_back(question);
      answer = std::move(answered);
    }
    std::vector<Question> asked;
    std::function<void(bool)> answer;
  };

  AccountPageTest() { language.choose(GetParam()); }

  /// Shows the page as it is after a start of the program.
  void open() {
    page.reset();
    model.reset();
    settings.emplace(store);
    model.emplace(
        *settings, passwords,
        KeyringAccess{[keyring = keyring] { return keyring->state.load(); },
                      [keyring = keyring](const KeyringUnlock&) { return keyring->answer.load(); }});
    page.emplace(*model, questions);
    applyTheme(*qApp, Scheme::light);
    page->resize(640, 560);
    page->show();
    page->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&*page));
  }
  void saveOutside(const std::string& email, const std::string& host, std::int64_t port = 993) {
    store.update([&](AppConfig& config) {
      config.email = email;
      config.imapHost = host;
      config.imapPort = port;
    });
  }
  std::optional<std::string> stored(const std::string& account) const {
    return items.at({"service", account, std::nullopt});
  }

  /// A text of the page in the language of the test, without the mark of the mnemonic.
  static QString word(const char* english, const char* context = "tarnwell::AccountPage") {
    QString text = QCoreApplication::translate(context, english);
    if (const auto place = text.indexOf(QLatin1String("(&")); place >= 0) {
      return text.left(place);
    }
    return text.remove(QLatin1Char('&'));
  }
  static QString textWord(const char* english) { return word(english, "tarnwell::AccountTexts"); }
  static QString email() { return word("&E-mail address"); }
  static QString host() { return word("&Mail server"); }
  static QString port() { return word("P&ort"); }
  static QString password() { return textWord("App &password"); }
  static QString shows() { return word("S&how the password", "tarnwell::PasswordField"); }
  static QString testing_() { return word("&Test connection"); }
  static QString cancel() { return word("&Cancel"); }
  static QString save() { return word("&Save"); }
  static QString removal() { return word("&Remove account"); }

  static QWidget* focus() { return QApplication::focusWidget(); }
  /// What a screen reader calls it.
  static QString nameOf(QWidget* widget) {
    QAccessibleInterface* const heard = QAccessible::queryAccessibleInterface(widget);
    const QString name = heard == nullptr ? QString() : heard->text(QAccessible::Name);
    // Of a button's mnemonic in Japanese, Qt takes away only the ampersand.
    return name.endsWith(QLatin1Char(')')) && name.size() > 3 && name.at(name.size() - 3) == QLatin1Char('(')
               ? name.chopped(3)
               : name;
  }
  static QString focusName() { return focus() == nullptr ? QString() : nameOf(focus()); }

  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(focus() == nullptr ? &*page : focus(), key, modifiers);
  }
  void write(const QString& text) {
    press(Qt::Key_A, Qt::ControlModifier);
    QTest::keyClicks(focus(), text);
  }
  bool tabTo(const QString& name) {
    for (int steps = 0; steps < 40; ++steps) {
      if (focusName() == name) {
        return true;
      }
      press(Qt::Key_Tab);
    }
    ADD_FAILURE() << "Tab does not reach " << name.toStdString();
    return false;
  }
  /// Fills the form in by keys, from the address on.
  void fillIn(const QString& address, const QString& server, int number, const QString& secret) {
    ASSERT_TRUE(tabTo(email()));
    write(address);
    ASSERT_TRUE(tabTo(host()));
    write(server);
    ASSERT_TRUE(tabTo(port()));
    write(QString::number(number));
    ASSERT_TRUE(tabTo(password()));
    write(secret);
  }
  void pressButton(const QString& name) {
    ASSERT_TRUE(tabTo(name));
    press(Qt::Key_Space);
  }
  QString textOf(const QString& name) {
    for (const auto* input : page->findChildren<QLineEdit*>()) {
      if (input->accessibleName().startsWith(name)) {
        return input->text();
      }
    }
    ADD_FAILURE() << "no field " << name.toStdString();
    return {};
  }
  QPushButton* button(const QString& name) {
    for (auto* found : page->findChildren<QPushButton*>()) {
      if (found->isVisible() && nameOf(found) == name) {
        return found;
      }
    }
    return nullptr;
  }

  /// All that the page says, one text a line.
  QString shown() const {
    QStringList texts;
    for (const QLabel* const label : page->findChildren<QLabel*>()) {
      if (label->isVisible()) {
        texts.append(label->text());
      }
    }
    return texts.join(QLatin1Char('\n'));
  }
  /// Waits until the page says it.
  bool says(const QString& text) {
    const bool isSaid = QTest::qWaitFor([&] { return shown().contains(text); }, 20'000);
    EXPECT_TRUE(isSaid) << "\"" << text.toStdString() << "\" is not in\n" << shown().toStdString();
    return isSaid;
  }
  bool saysNews(AccountNews::Kind kind, const Provider* provider = nullptr) {
    return says(AccountTexts::news({.kind = kind, .provider = provider}));
  }
  template <class Widget>
  bool isSeen() const {
    const auto* const found = page->findChild<Widget*>();
    return found->visibleRegion().boundingRect() == found->rect();
  }
  /// The texts of the notices that are wholly in view.
  QStringList seenNotices() const {
    QStringList texts;
    for (const Notice* const notice : page->findChildren<Notice*>()) {
      if (notice->visibleRegion().boundingRect() == notice->rect()) {
        texts.append(notice->text());
      }
    }
    return texts;
  }
  /// What has less room than it needs.
  QStringList cutOff() const {
    QStringList names;
    for (const QLabel* const label : page->findChildren<QLabel*>()) {
      const int needed =
          label->hasHeightForWidth() ? label->heightForWidth(label->width()) : label->sizeHint().height();
      if (label->isVisible() &&
          (label->height() < needed || label->width() < label->minimumSizeHint().width())) {
        names.append(label->text());
      }
    }
    for (const QAbstractButton* const control : page->findChildren<QAbstractButton*>()) {
      if (control->isVisible() && control->width() < control->sizeHint().width()) {
        names.append(control->text());
      }
    }
    for (const QScrollArea* const area : page->findChildren<QScrollArea*>()) {
      if (area->widget()->width() > area->viewport()->width()) {
        names.append(QStringLiteral("the page itself"));
      }
    }
    return names;
  }
  template <class Condition>
  static bool until(Condition condition) {
    return QTest::qWaitFor(condition, 20'000);
  }

  TemporaryDirectory directory;
  InMemorySecretItems& items = InMemorySecretItems::kept();
  ConfigStore store{directory.path()};
  KeychainStore passwords{"service", std::nullopt, items};
  std::shared_ptr<Keyring> keyring = std::make_shared<Keyring>();
  NotedQuestions questions;
  Language language;
  std::optional<SettingsFile> settings;
  std::optional<AccountModel> model;
  std::optional<AccountPage> page;
};

inline Dialogue pageSession() {
  return loginDialogue() + Dialogue{expect("A0004 LOGOUT\r\n"), answer("* BYE\r\nA0004 OK done\r\n")};
}

}  // namespace tarnwell::test
