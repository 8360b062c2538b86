#pragma once

/// The keyring as the pages see it: what it is like, and its unlocking by the person.
///
///     Keyring keyring_(access);
///     connect(&keyring_, &Keyring::changed, this, ...);
///     keyring_.refresh();     // looks at it, off this thread
///     keyring_.unlock();      // the system asks; the answer comes by `unlockEnded`
///
/// Threads: that of the window. The destructor gives up what runs, and waits for nothing.

#include <QObject>
#include <functional>
#include <optional>

#include "App/Models/AccountNews.h"
#include "App/Models/BackgroundTask.h"
#include "Platform/Desktop/KeyringUnlock.h"

namespace tarnwell {

/// What is asked of the system's keyring, for tests to replace.
struct KeyringAccess {
  std::function<KeyringState()> state = keyringState;
  std::function<UnlockOutcome(const KeyringUnlock&)> ask = [](const KeyringUnlock& unlock) {
    return unlock.ask();
  };
};

class Keyring : public QObject {
  Q_OBJECT

 public:
  explicit Keyring(KeyringAccess access, QObject* parent = nullptr);
  ~Keyring() override;

  /// Absent until it was looked at for the first time.
  std::optional<KeyringState> state() const { return state_; }

  /// Looks at it again.
  void refresh();

  bool isUnlocking() const { return unlocking_.isRunning(); }
  /// While the question is on the screen, gives it up and asks anew.
  void unlock();
  /// Gives the question up. Then `unlockEnded` does not come.
  void giveUp();

 Q_SIGNALS:
  void changed();
  /// What the unlocking came to.
  void unlockEnded(const AccountNews& news);
  /// It was unlocked in another way while the question was on the screen, which is given up.
  void openedOtherwise();

 private:
  KeyringAccess access_;
  std::optional<KeyringState> state_;
  KeyringUnlock unlock_;
  BackgroundTask unlocking_;
  BackgroundTask probe_;
};

}  // namespace tarnwell
