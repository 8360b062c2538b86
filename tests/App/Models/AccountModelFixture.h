#pragma once

/// An account model on a settings file of its own, with a keyring in memory.

#include <gtest/gtest.h>

#include <QTest>
#include <atomic>
#include <fstream>
#include <memory>

#include "App/Models/AccountModel.h"
#include "support/FakeIMAPServer.h"
#include "support/InMemorySecretItems.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

/// Outlives the test when a thread still asks.
struct KeyringOfTest {
  std::atomic<KeyringState> state = KeyringState::ready;
  std::atomic<UnlockOutcome> answer = UnlockOutcome::unlocked;
};

class AccountModelTest : public testing::Test {
 protected:
  AccountModelTest() { std::filesystem::create_directories(store.configURL().parent_path()); }

  void write(const std::string& text) const { std::ofstream(store.configURL()) << text; }
  void saveOutside(const std::string& email, const std::string& host, std::int64_t port = 993) {
    store.update([&](AppConfig& config) {
      config.email = email;
      config.imapHost = host;
      config.imapPort = port;
    });
  }
  std::optional<std::string> password(const std::string& account) const {
    return items.at({"service", account, std::nullopt});
  }

  /// Makes the settings and the model, which read the file.
  AccountModel& open() {
    model.reset();
    settings.emplace(store);
    model.emplace(
        *settings, passwords,
        KeyringAccess{[keyring = keyring] { return keyring->state.load(); },
                      [keyring = keyring](const KeyringUnlock&) { return keyring->answer.load(); }});
    return *model;
  }
  void type(const std::string& email, const std::string& host, int port) {
    model->setEmail(QString::fromStdString(email));
    model->setHost(QString::fromStdString(host));
    model->setPort(QString::number(port));
  }
  void typePassword() { model->setPasswordTyped(true); }
  bool untilIdle() {
    return QTest::qWaitFor([this] { return model->activity() == AccountModel::Activity::none; }, 20'000);
  }
  template <class Condition>
  static bool until(Condition condition) {
    return QTest::qWaitFor(condition, 10'000);
  }

  TemporaryDirectory directory;
  InMemorySecretItems& items = InMemorySecretItems::kept();
  ConfigStore store{directory / "settings"};
  KeychainStore passwords{"service", std::nullopt, items};
  std::shared_ptr<KeyringOfTest> keyring = std::make_shared<KeyringOfTest>();
  std::optional<SettingsFile> settings;
  std::optional<AccountModel> model;
};

inline Dialogue goodSession() {
  return loginDialogue() + Dialogue{expect("A0004 LOGOUT\r\n"), answer("* BYE\r\nA0004 OK done\r\n")};
}

inline Dialogue refusedSession() {
  return {answer("* OK ready\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
          answer("A0001 NO no\r\n"), expect("A0002 LOGOUT\r\n"), answer("A0002 OK done\r\n")};
}

}  // namespace tarnwell::test
