#include <Security/Security.h>

#include "Platform/Desktop/KeyringUnlock.h"

namespace tarnwell {

namespace {

// Deprecated together with the file-based keychains, and without a successor: the login keychain, where this
// program keeps its item, is one of them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

OSStatus statusOfDefaultKeychain(SecKeychainStatus& status) { return SecKeychainGetStatus(nullptr, &status); }

/// Shows the system's question when the keychain is locked.
OSStatus unlockDefaultKeychain() { return SecKeychainUnlock(nullptr, 0, nullptr, false); }

#pragma GCC diagnostic pop

}  // namespace

KeyringState keyringState() {
  SecKeychainStatus status = 0;
  switch (statusOfDefaultKeychain(status)) {
    case errSecSuccess:
      return (status & kSecUnlockStateStatus) != 0 ? KeyringState::ready : KeyringState::locked;
    case errSecNoDefaultKeychain:
      return KeyringState::absent;
    default:
      return KeyringState::noService;
  }
}

UnlockOutcome KeyringUnlock::ask() const {
  if (*isGivenUp_) {
    return UnlockOutcome::dismissed;
  }
  switch (unlockDefaultKeychain()) {
    case errSecSuccess:
      return UnlockOutcome::unlocked;
    case errSecUserCanceled:
      return UnlockOutcome::dismissed;
    case errSecNotAvailable:
      return UnlockOutcome::noService;
    default:
      return UnlockOutcome::refused;
  }
}

}  // namespace tarnwell
