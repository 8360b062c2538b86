#pragma once

/// Saves and removes the account: the settings in the file, the password in the system's secret store. The
/// command line and the companion app use it.
///
///     AccountSetup setup = AccountSetup::shared();
///     setup.save({"user@example.org", "imap.example.org", 993}, std::move(password));
///     setup.recordTest("user@example.org", true);
///
/// Threads: any, one at a time. Waits for the disk and the secret store, so not for a thread that shows a
/// window.

#include <cstdint>
#include <optional>
#include <string>

#include "Core/ConfigStore.h"
#include "Core/KeychainStore.h"
#include "Core/Secret.h"

namespace tarnwell {

/// Where the mail is.
struct AccountAddress {
  /// The address, which is also the login name.
  std::string email;
  std::string imapHost;
  std::int64_t imapPort = BridgeConstants::defaultIMAPPort;

  bool operator==(const AccountAddress&) const = default;
};

class AccountSetup {
 public:
  AccountSetup(ConfigStore settings, KeychainStore passwords)
      : settings_(std::move(settings)), passwords_(std::move(passwords)) {}

  /// The user's own settings and secret store.
  static AccountSetup shared();

  /// Saves the password first, so the settings never name an account that cannot sign in. Without a password
  /// the one that is stored stays; when the address changes, it moves to the new one. The password of the
  /// address before is removed last; when that fails, the log says so.
  ///
  /// An account where there was none has `strictWithholding`. Everything else in the file stays, also keys
  /// that this program does not know. What the last test found is forgotten when anything changes.
  ///
  /// Throws `KeychainError` when the password cannot be stored or moved: the settings are then unchanged, and
  /// the old password is in its place as far as the store allows. Throws as `ConfigStore::update` does when
  /// the settings cannot be written: a new password is then taken back.
  void save(const AccountAddress& account, std::optional<Secret> password) const;

  /// Removes the password and forgets the account. What an assistant may do goes back to the defaults, which
  /// are the cautious choice. The language, the port of the endpoint and unknown keys stay. Without an
  /// account does nothing. Throws as `save` does; then the account is still there.
  void remove() const;

  /// Notes the outcome of a test of this account. Does nothing when the settings are for another one by now.
  /// Deliberate: when that fails, only the log says so, because the test still counts.
  void recordTest(const std::string& email, bool succeeded) const;

 private:
  ConfigStore settings_;
  KeychainStore passwords_;
};

}  // namespace tarnwell
