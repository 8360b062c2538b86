#include "App/AppWindow.h"

#include <gtest/gtest.h>

#include <QSpinBox>
#include <QTest>

#include "App/Models/Language.h"
#include "support/InMemorySecretItems.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

class AppWindowTest : public testing::Test {
 protected:
  TemporaryDirectory directory;
  InMemorySecretItems items;
  KeychainStore passwords{"service", std::nullopt, items};
  ConfigStore store{directory / "settings"};
  SettingsFile settings{store};
};

TEST_F(AppWindowTest, opensOnTheAccount) {
  AppWindow app(settings, passwords);
  app.window().show();
  EXPECT_EQ(app.window().chosen(), static_cast<int>(AppWindow::PageName::account));
}

/// The program ends right after the window, so what was saved must be finished before.
TEST_F(AppWindowTest, closingRightAfterAChangeLosesNothing) {
  AppWindow app(settings, passwords);
  app.window().show();
  app.account().setEmail("anna@example.org");
  app.account().setHost("imap.example.org");
  app.account().setPasswordTyped(true);
  app.account().save(Secret("pass"));
  settings.change([](AppConfig& config) { config.safety.maxFetch = 7; });
  app.window().close();
  app.finishSaving();
  EXPECT_EQ(store.load().safety.maxFetch, 7);
  EXPECT_EQ(store.load().email, "anna@example.org");
  EXPECT_EQ(items.at({"service", "anna@example.org", std::nullopt}), "pass");
}

TEST_F(AppWindowTest, numberThatWasTypedCountsWhenTheWindowCloses) {
  AppWindow app(settings, passwords);
  app.choose(AppWindow::PageName::safety);
  app.window().show();
  QApplication::setActiveWindow(&app.window());
  auto* const number = app.window().findChild<QSpinBox*>();
  number->setFocus();
  number->selectAll();
  QTest::keyClicks(number, "3");
  app.window().close();
  app.finishSaving();
  EXPECT_EQ(store.load().safety.maxMessagesPerCall, 3);
}

TEST_F(AppWindowTest, fitsIntoASmallScreenInBothLanguages) {
  Language language;
  AppWindow app(settings, passwords);
  app.window().show();
  for (const AppLanguage spoken : AppLanguages::allCases) {
    language.choose(spoken);
    QTest::qWait(0);
    EXPECT_LE(app.window().minimumSizeHint().width(), 800);
    EXPECT_LE(app.window().minimumSizeHint().height(), 600);
  }
  language.choose(AppLanguage::english);
}

}  // namespace
}  // namespace tarnwell::test
