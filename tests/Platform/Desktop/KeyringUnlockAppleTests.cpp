#include "Platform/Desktop/KeyringUnlock.h"

#include <Security/Security.h>
#include <gtest/gtest.h>

#include "apple/FrameworksInMemory.h"

namespace tarnwell::test {
namespace {

struct StateRow {
  std::int32_t status;
  std::uint32_t bits;
  KeyringState state;
};

TEST(KeyringOfMac, stateIsThatOfTheDefaultKeychain) {
  for (const StateRow& row :
       {StateRow{errSecSuccess, 7, KeyringState::ready}, StateRow{errSecSuccess, 6, KeyringState::locked},
        StateRow{errSecNoDefaultKeychain, 0, KeyringState::absent},
        StateRow{errSecNotAvailable, 0, KeyringState::noService}}) {
    frameworksInMemory() = {};
    frameworksInMemory().keychainStateStatus = row.status;
    frameworksInMemory().keychainState = row.bits;
    EXPECT_EQ(keyringState(), row.state) << row.status << " " << row.bits;
    EXPECT_EQ(frameworksInMemory().unlockRequests, 0);
  }
}

struct OutcomeRow {
  std::int32_t status;
  UnlockOutcome outcome;
};

TEST(KeyringOfMac, systemAsksOnce) {
  for (const OutcomeRow& row : {OutcomeRow{errSecSuccess, UnlockOutcome::unlocked},
                                OutcomeRow{errSecUserCanceled, UnlockOutcome::dismissed},
                                OutcomeRow{errSecNotAvailable, UnlockOutcome::noService},
                                OutcomeRow{errSecInteractionNotAllowed, UnlockOutcome::refused}}) {
    frameworksInMemory() = {};
    frameworksInMemory().unlockStatus = row.status;
    EXPECT_EQ(KeyringUnlock().ask(), row.outcome) << row.status;
    EXPECT_EQ(frameworksInMemory().unlockRequests, 1);
  }
}

TEST(KeyringOfMac, requestThatWasGivenUpAsksNobody) {
  frameworksInMemory() = {};
  const KeyringUnlock unlock;
  unlock.giveUp();
  EXPECT_EQ(unlock.ask(), UnlockOutcome::dismissed);
  EXPECT_EQ(frameworksInMemory().unlockRequests, 0);
}

}  // namespace
}  // namespace tarnwell::test
