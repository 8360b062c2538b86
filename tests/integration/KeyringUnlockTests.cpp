// The user unlocks a real gnome-keyring through its own question; closes the question; and there is no
// keyring to unlock.

#include "Platform/Desktop/KeyringUnlock.h"

#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <string>

#include "Core/KeychainStore.h"
#include "integration/KeyringPrompts.h"
#include "integration/PrivateKeyring.h"
#include "support/ScopedEnvironment.h"

namespace tarnwell::test {
namespace {

ScopedEnvironment::Variables onlyBus(std::optional<std::string> address) {
  return {{"DBUS_SESSION_BUS_ADDRESS", std::move(address)},
          {"XDG_RUNTIME_DIR", std::nullopt},
          {"DISPLAY", std::nullopt},
          {"WAYLAND_DISPLAY", std::nullopt}};
}

class KeyringUnlockTest : public testing::Test {
 protected:
  std::future<UnlockOutcome> ask() const {
    return std::async(std::launch::async, [unlock = unlock] { return unlock.ask(); });
  }

  PrivateKeyring keyring;
  ScopedEnvironment environment{onlyBus(keyring.bus().address())};
  KeyringPrompts prompts{keyring.bus()};
  KeyringUnlock unlock;
};

TEST_F(KeyringUnlockTest, openKeyringAsksNothing) {
  EXPECT_EQ(keyringState(), KeyringState::ready);
  EXPECT_EQ(unlock.ask(), UnlockOutcome::unlocked);
  EXPECT_FALSE(prompts.isShown());
}

TEST_F(KeyringUnlockTest, answerUnlocks) {
  KeychainStore::shared().save(Secret("app-pass-word"), "user@example.org");
  keyring.lock();
  EXPECT_EQ(keyringState(), KeyringState::locked);
  std::future<UnlockOutcome> outcome = ask();
  prompts.answer("right");
  EXPECT_EQ(outcome.get(), UnlockOutcome::unlocked);
  EXPECT_EQ(keyringState(), KeyringState::ready);
  EXPECT_EQ(KeychainStore::shared().read("user@example.org")->view(), "app-pass-word");
}

TEST_F(KeyringUnlockTest, wrongAnswerIsAskedAgain) {
  keyring.lock();
  std::future<UnlockOutcome> outcome = ask();
  prompts.answer("wrong");
  EXPECT_EQ(outcome.wait_for(std::chrono::seconds(1)), std::future_status::timeout);
  EXPECT_EQ(keyringState(), KeyringState::locked);
  prompts.answer("right");
  EXPECT_EQ(outcome.get(), UnlockOutcome::unlocked);
}

TEST_F(KeyringUnlockTest, closedQuestionLeavesTheKeyringLocked) {
  keyring.lock();
  std::future<UnlockOutcome> outcome = ask();
  prompts.dismiss();
  EXPECT_EQ(outcome.get(), UnlockOutcome::dismissed);
  EXPECT_EQ(keyringState(), KeyringState::locked);
}

/// The program closes while the question is shown. The keyring must survive that, for the other programs.
TEST_F(KeyringUnlockTest, givenUpQuestionHoldsUpNobody) {
  keyring.lock();
  std::future<UnlockOutcome> outcome = ask();
  prompts.awaitQuestion();
  const auto begin = std::chrono::steady_clock::now();
  unlock.giveUp();
  EXPECT_EQ(outcome.get(), UnlockOutcome::dismissed);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
  EXPECT_EQ(keyringState(), KeyringState::locked);
  EXPECT_EQ(unlock.ask(), UnlockOutcome::dismissed);
  std::future<UnlockOutcome> next = std::async(std::launch::async, [] { return KeyringUnlock().ask(); });
  prompts.answer("right");
  EXPECT_EQ(next.get(), UnlockOutcome::unlocked);
}

TEST(KeyringThatIsAbsent, isMadeWithThePasswordThatTheUserChooses) {
  const PrivateKeyring keyring("");
  const ScopedEnvironment environment(onlyBus(keyring.bus().address()));
  KeyringPrompts prompts(keyring.bus());
  EXPECT_EQ(keyringState(), KeyringState::absent);
  std::future<UnlockOutcome> outcome = std::async(std::launch::async, [] { return KeyringUnlock().ask(); });
  prompts.choose("chosen");
  EXPECT_EQ(outcome.get(), UnlockOutcome::unlocked);
  EXPECT_EQ(keyringState(), KeyringState::ready);
  KeychainStore::shared().save(Secret("app-pass-word"), "user@example.org");
  EXPECT_TRUE(KeychainStore::shared().hasPassword("user@example.org"));
}

TEST(KeyringWithoutAService, isNamed) {
  const PrivateBus bus;
  const ScopedEnvironment environment(onlyBus(bus.address()));
  EXPECT_EQ(keyringState(), KeyringState::noService);
  EXPECT_EQ(KeyringUnlock().ask(), UnlockOutcome::noService);
}

TEST(KeyringWithoutABus, isNamed) {
  const ScopedEnvironment environment(onlyBus(std::nullopt));
  EXPECT_EQ(keyringState(), KeyringState::noService);
  EXPECT_EQ(KeyringUnlock().ask(), UnlockOutcome::noService);
}

}  // namespace
}  // namespace tarnwell::test
