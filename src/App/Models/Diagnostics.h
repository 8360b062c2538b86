#pragma once

/// What helps to find a fault, as a text that may be shown to anybody. It holds no address, no host, no path
/// and nothing of the mailbox.
///
/// The text is English in every language of the app, for it is read by those who look for the fault.

#include <QString>

#include "App/Models/SettingsFile.h"
#include "Core/KeychainStore.h"

namespace tarnwell {

/// What only a program with a window knows.
struct WindowFacts {
  QString platform{};  // such as "xcb" or "wayland"
  bool isDark = false;
  double scale = 1;
};

struct Diagnostics {
  enum class Password { notLookedFor, stored, absent, locked, noService, unreadable };

  WindowFacts window{};
  AppConfig config{};
  ConfigStore::FileState fileState = ConfigStore::FileState::missing;
  QString fileProblem{};
  Password password = Password::notLookedFor;

  QString text() const;
};

/// Waits for the secret store.
Diagnostics::Password lookForPassword(const KeychainStore& passwords, const std::string& email);

}  // namespace tarnwell
