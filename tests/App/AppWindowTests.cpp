#include "App/AppWindow.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <QTimer>

#include "App/Models/Language.h"
#include "Assistants/FakeMachine.h"
#include "MCP/HTTP/LoopbackPort.h"
#include "support/Gate.h"
#include "support/InMemorySecretItems.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

class AppWindowTest : public testing::Test {
 protected:
  /// With nobody's assistants on it.
  Machine machine() const {
    Machine machine = Machine::thisOne();
    machine.home = directory.path();
    machine.environment = [](const char*) { return std::nullopt; };
    return machine;
  }
  void useFreePort() {
    settings.change([](AppConfig& config) { config.httpPort = freeLoopbackPort(0).value(); });
  }
  static bool closes(AppWindow& app) {
    app.window().close();
    return !app.window().isVisible();
  }
  /// The button with this text, once it is there.
  static QPushButton* button(AppWindow& app, const QString& text) {
    QPushButton* found = nullptr;
    const bool isThere = QTest::qWaitFor([&] {
      for (QPushButton* const button : app.window().findChildren<QPushButton*>()) {
        if (button->isVisible() && button->text().remove(QLatin1Char('&')) == text) {
          found = button;
        }
      }
      return found != nullptr;
    });
    return isThere ? found : nullptr;
  }

  TemporaryDirectory directory;
  InMemorySecretItems& items = InMemorySecretItems::kept();
  KeychainStore passwords{"service", std::nullopt, items};
  ConfigStore store{directory / "settings"};
  SettingsFile settings{store};
};

TEST_F(AppWindowTest, opensOnTheAccount) {
  AppWindow app(settings, passwords, machine());
  app.window().show();
  EXPECT_EQ(app.window().chosen(), static_cast<int>(AppWindow::PageName::account));
}

/// The program ends right after the window, so what was saved must be finished before.
TEST_F(AppWindowTest, closingRightAfterAChangeLosesNothing) {
  AppWindow app(settings, passwords, machine());
  app.window().show();
  app.account().setEmail("anna@example.org");
  app.account().setHost("imap.example.org");
  app.account().setPasswordTyped(true);
  app.account().save(Secret("pass"));
  settings.change([](AppConfig& config) { config.safety.maxFetch = 7; });
  app.window().close();
  app.finishWork();
  EXPECT_EQ(store.load().safety.maxFetch, 7);
  EXPECT_EQ(store.load().email, "anna@example.org");
  EXPECT_EQ(items.at({"service", "anna@example.org", std::nullopt}), "pass");
}

TEST_F(AppWindowTest, closingRightAfterSavingTheActivityLosesNothing) {
  AppWindow app(settings, passwords, machine());
  app.choose(AppWindow::PageName::activity);
  app.window().show();
  const std::filesystem::path file = directory / "activity.txt";
  app.activity().save(QString::fromStdString(file.string()));
  app.window().close();
  app.finishWork();
  EXPECT_FALSE(app.activity().isSaving());
  EXPECT_TRUE(std::filesystem::exists(file));
}

/// Between two commands the assistant would be left without its entry.
TEST_F(AppWindowTest, closingWaitsForTheCommandsOfAnAssistantWithoutALimit) {
  FakeMachine fake;
  fake.put(".claude.json", "{}");
  FakeMachine::putProgram(fake.home() / ".local/bin/claude", "sleep 0.3; echo $2 >>\"$HOME/ran\"; exit 1");
  fake.variables["PATH"] = "/usr/bin:/bin";
  AppWindow app(settings, passwords, fake.machine);
  app.choose(AppWindow::PageName::assistants);
  app.window().show();
  AssistantsModel& assistants = app.assistants();
  ASSERT_TRUE(QTest::qWaitFor([&] { return !assistants.assistants().empty(); }));
  assistants.act(AssistantID::claudeCode);
  ASSERT_TRUE(QTest::qWaitFor([&] { return assistants.progress(AssistantID::claudeCode).plan.has_value(); }));
  assistants.carryOut();
  app.window().close();
  ASSERT_TRUE(assistants.isWriting());
  app.finishWork(std::chrono::milliseconds(0));
  EXPECT_FALSE(assistants.isWriting());
  EXPECT_TRUE(fileContents(fake.home() / "ran").starts_with("add"));
}

TEST_F(AppWindowTest, numberThatWasTypedCountsWhenTheWindowCloses) {
  AppWindow app(settings, passwords, machine());
  app.choose(AppWindow::PageName::safety);
  app.window().show();
  QApplication::setActiveWindow(&app.window());
  auto* const number = app.window().findChild<QSpinBox*>();
  number->setFocus();
  number->selectAll();
  QTest::keyClicks(number, "3");
  app.window().close();
  app.finishWork();
  EXPECT_EQ(store.load().safety.maxMessagesPerCall, 3);
}

/// Whoever uses the endpoint would lose it without a word.
TEST_F(AppWindowTest, closingAsksWhileTheEndpointRuns) {
  useFreePort();
  AppWindow app(settings, passwords, machine());
  app.window().show();
  app.endpoint().start();
  ASSERT_TRUE(QTest::qWaitFor([&] { return app.endpoint().state() == EndpointModel::State::running; }));

  EXPECT_FALSE(closes(app));
  QPushButton* const stays = button(app, "Leave open");
  ASSERT_NE(stays, nullptr);
  stays->click();
  EXPECT_TRUE(app.window().isVisible());
  EXPECT_TRUE(app.endpoint().isRunning());

  EXPECT_FALSE(closes(app));
  QPushButton* const closing = button(app, "Close");
  ASSERT_NE(closing, nullptr);
  closing->click();
  EXPECT_FALSE(app.window().isVisible());
  app.finishWork();
  EXPECT_FALSE(app.endpoint().isRunning());
}

TEST_F(AppWindowTest, closingDoesNotAskWhileTheEndpointEnds) {
  useFreePort();
  AppWindow app(settings, passwords, machine());
  app.window().show();
  app.endpoint().start();
  app.endpoint().stop();
  EXPECT_EQ(app.endpoint().state(), EndpointModel::State::stopping);
  EXPECT_TRUE(closes(app));
  app.finishWork();
  EXPECT_FALSE(app.endpoint().isRunning());
}

/// The old token goes before the new one is there.
TEST_F(AppWindowTest, closingWhileTheTokenIsRenewedLeavesOne) {
  struct SlowItems : InMemorySecretItems {
    Gate gate;
    std::int32_t add(const SecretItemQuery& query, std::string_view data) override {
      gate.pass();
      return InMemorySecretItems::add(query, data);
    }
  } slow;
  const SecretItemQuery token{"app.tarnwell.Tarnwell.endpoint", "local-endpoint", std::nullopt};
  slow.put(token, "old");
  const KeychainStore keyring("service", std::nullopt, slow);
  AppWindow app(settings, keyring, machine());
  app.window().show();
  app.endpoint().renewToken();
  ASSERT_TRUE(slow.gate.awaitArrivals(1));
  EXPECT_FALSE(slow.at(token)) << "removed, and not yet replaced";
  EXPECT_TRUE(closes(app));
  QTimer::singleShot(0, [&slow] { slow.gate.open(); });
  app.finishWork();
  EXPECT_FALSE(app.endpoint().isRenewing());
  slow.gate.open();  // also where nothing was waited for
  ASSERT_TRUE(QTest::qWaitFor([&] { return !app.endpoint().isRenewing(); }));
  EXPECT_NE(slow.at(token).value_or("old"), "old");
}

TEST_F(AppWindowTest, troubleOnThePageTryItLeadsToTheAccount) {
  AppWindow app(settings, passwords, machine());
  app.window().show();
  app.choose(AppWindow::PageName::tryIt);
  app.tryIt().search({});
  QPushButton* const wayOut = button(app, "Open “Account”");
  ASSERT_NE(wayOut, nullptr);
  wayOut->click();
  EXPECT_EQ(app.window().chosen(), static_cast<int>(AppWindow::PageName::account));
}

TEST_F(AppWindowTest, everyPageIsMadeWhenItIsChosen) {
  AppWindow app(settings, passwords, machine());
  app.window().show();
  const auto pages = [&] { return app.window().findChildren<Page*>().size(); };
  EXPECT_EQ(pages(), 1);
  for (int page = 0; page <= static_cast<int>(AppWindow::PageName::about); ++page) {
    app.choose(static_cast<AppWindow::PageName>(page));
    EXPECT_EQ(pages(), page + 1);
  }
}

TEST_F(AppWindowTest, fitsIntoASmallScreenInBothLanguages) {
  Language language;
  AppWindow app(settings, passwords, machine());
  app.window().show();
  for (int page = 0; page <= static_cast<int>(AppWindow::PageName::about); ++page) {
    app.choose(static_cast<AppWindow::PageName>(page));
  }
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
