// The account page with a real gnome-keyring: saved, locked and unlocked through the keyring's own question.

#include "App/Pages/AccountPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

#include "App/Pages/AccountTexts.h"
#include "App/Widgets/Theme.h"
#include "integration/KeyringPrompts.h"
#include "integration/PrivateKeyring.h"
#include "support/ScopedEnvironment.h"

namespace tarnwell::test {
namespace {

using Kind = AccountNews::Kind;

class NoQuestions : public Questions {
 public:
  void ask(QWidget* /*parent*/, const Question& question, std::function<void(bool)> /*answered*/) override {
    ADD_FAILURE() << question.title.toStdString();
  }
};

class AccountPageOnKeyring : public testing::Test {
 protected:
  void open() {
    page.resize(700, 600);
    page.show();
    page.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&page));
  }
  static void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
  /// Tab, until a control with this text or name has the focus.
  static bool tabTo(const QString& name) {
    for (int steps = 0; steps < 40; ++steps) {
      const QWidget* const focus = QApplication::focusWidget();
      const auto* const button = qobject_cast<const QAbstractButton*>(focus);
      if (name == (button == nullptr ? focus->accessibleName() : button->text().remove('&'))) {
        return true;
      }
      press(Qt::Key_Tab);
    }
    ADD_FAILURE() << "Tab does not reach " << name.toStdString();
    return false;
  }
  static void write(const QString& field, const QString& text) {
    ASSERT_TRUE(tabTo(field));
    QTest::keyClicks(QApplication::focusWidget(), text);
  }
  bool comesTo(Kind kind) {
    const bool isSo = QTest::qWaitFor([&] { return model.news().kind == kind; }, 20'000);
    EXPECT_TRUE(isSo) << AccountTexts::news(model.news()).toStdString();
    return isSo;
  }
  std::string storedByTool() {
    return keyring.bus().run(
        {"secret-tool", "lookup", "service", "app.tarnwell.Tarnwell", "account", "anna@icloud.com"});
  }

  PrivateKeyring keyring;
  ScopedEnvironment environment{{{"DBUS_SESSION_BUS_ADDRESS", keyring.bus().address()},
                                 {"XDG_RUNTIME_DIR", std::nullopt},
                                 {"DISPLAY", std::nullopt},
                                 {"WAYLAND_DISPLAY", std::nullopt}}};
  TemporaryDirectory directory;
  SettingsFile settings{ConfigStore(directory.path())};
  AccountModel model{settings, KeychainStore::shared()};
  NoQuestions questions;
  AccountPage page{model, questions};
};

TEST_F(AccountPageOnKeyring, savedPasswordIsInTheKeyring) {
  open();
  write("E-mail address", "anna@icloud.com");
  write("App password", "app-pass-word");
  ASSERT_TRUE(tabTo("Save"));
  press(Qt::Key_Space);
  ASSERT_TRUE(comesTo(Kind::saved));
  EXPECT_EQ(storedByTool(), "app-pass-word");
}

TEST_F(AccountPageOnKeyring, lockedKeyringIsUnlockedFromThePage) {
  KeyringPrompts prompts(keyring.bus());
  keyring.lock();
  open();
  ASSERT_TRUE(QTest::qWaitFor([&] { return model.keyring() == KeyringState::locked; }, 20'000));
  write("E-mail address", "anna@icloud.com");
  write("App password", "app-pass-word");
  ASSERT_TRUE(tabTo("Save"));
  press(Qt::Key_Space);
  ASSERT_TRUE(comesTo(Kind::keyringLocked));
  ASSERT_TRUE(tabTo("Unlock"));
  press(Qt::Key_Space);
  EXPECT_EQ(model.activity(), AccountModel::Activity::unlocking);
  prompts.answer("right");
  ASSERT_TRUE(comesTo(Kind::unlocked));
  ASSERT_TRUE(tabTo("Save"));
  press(Qt::Key_Space);
  ASSERT_TRUE(comesTo(Kind::saved));
  EXPECT_EQ(storedByTool(), "app-pass-word");
}

}  // namespace
}  // namespace tarnwell::test
