#pragma once

/// Has the user unlock the keyring, with the system's own question. Only a program that shows a window may
/// ask, because somebody sits before it: the helper never does and does not link this.
///
///     KeyringUnlock unlock;                                  // copies share one state
///     if (keyringState() == KeyringState::locked) {
///       UnlockOutcome outcome = unlock.ask();                // waits for the user
///     }
///
/// On Linux the question comes from the freedesktop Secret Service (Secret Service API, "Prompts and
/// Prompting"); on macOS from the keychain. The password is typed there: it never reaches this program.
///
/// Threads: any. `ask` waits for a person, so not on the thread of the window.

#include <atomic>
#include <memory>

namespace tarnwell {

/// What the keyring that takes new passwords is like.
enum class KeyringState {
  ready,
  locked,
  absent,     // the service runs, and the user has no keyring yet
  noService,  // no program offers the service
};

/// Asks nobody and lasts at most two seconds. A service that does not answer in time counts as none.
KeyringState keyringState();

enum class UnlockOutcome {
  unlocked,
  dismissed,  // the user closed the question, or it was given up
  noService,
  refused,  // the service did not ask, or the keyring is still locked after the answer
};

class KeyringUnlock {
 public:
  /// Unlocks the keyring, and makes one where there is none. Returns at once when it is unlocked already.
  UnlockOutcome ask() const;

  /// Ends `ask` with `dismissed`, within a fifth of a second; a later `ask` too. Deliberate: the question
  /// stays on the screen, because a gnome-keyring that is told to take it back can end with an error and
  /// forget what was unlocked. On macOS `ask` ends with the answer only.
  void giveUp() const { *isGivenUp_ = true; }

 private:
  std::shared_ptr<std::atomic<bool>> isGivenUp_ = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace tarnwell
