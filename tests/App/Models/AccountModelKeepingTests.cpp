/// What is typed, and what is stored, while something else happens.

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <future>
#include <memory>

#include "App/Models/AccountModelFixture.h"

namespace tarnwell::test {
namespace {

TEST_F(AccountModelTest, successIsForgottenWhenAFieldChanges) {
  FakeIMAPServer server(goodSession());
  open();
  type(testEmail, "localhost", server.port());
  typePassword();
  model->test(Secret(testPassword));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, AccountNews::Kind::testSucceeded);
  model->setHost("other.example.org");
  EXPECT_EQ(model->news().kind, AccountNews::Kind::none);
  EXPECT_FALSE(model->stages());
}

TEST_F(AccountModelTest, whatIsTypedWhileSavingIsNotForgotten) {
  open();
  type("anna@example.org", "imap.example.org", 993);
  typePassword();
  const QSignalSpy done(&*model, &AccountModel::passwordDone);
  model->save(Secret("pass"));
  model->setPasswordTyped(true);  // another key
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(password("anna@example.org"), "pass");
  EXPECT_EQ(done.count(), 0);
}

TEST_F(AccountModelTest, blanksAloneDoNotReplaceAPassword) {
  items.put({"service", "anna@gmail.com", std::nullopt}, "good");
  open();
  type("anna@gmail.com", "imap.gmail.com", 993);
  typePassword();
  model->save(Secret("   "));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(password("anna@gmail.com"), "good");
}

/// The question may hang, or hide where nobody finds it.
TEST_F(AccountModelTest, unlockingCanBeGivenUpAndIsWhenTheKeyringOpensOtherwise) {
  const auto release = std::make_shared<std::promise<void>>();
  const auto released = release->get_future().share();
  keyring->state = KeyringState::locked;
  settings.emplace(store);
  model.emplace(*settings, passwords,
                KeyringAccess{[keyring = keyring] { return keyring->state.load(); },
                              [released](const KeyringUnlock&) {
                                released.wait();
                                return UnlockOutcome::refused;
                              }});
  model->unlockKeyring();
  EXPECT_EQ(model->activity(), AccountModel::Activity::unlocking);
  model->giveUp();
  EXPECT_EQ(model->activity(), AccountModel::Activity::none);
  model->unlockKeyring();
  keyring->state = KeyringState::ready;
  model->refreshKeyring();
  EXPECT_TRUE(untilIdle());
  EXPECT_EQ(model->keyring(), KeyringState::ready);
  release->set_value();
}

}  // namespace
}  // namespace tarnwell::test
