#include "Account/AccountSetup.h"

#include <utility>

#include "Core/AppLogger.h"

namespace tarnwell {

namespace {

void log(std::string_view what, const KeychainError& error) {
  AppLogger::error(AppLogger::Category::security,
                   std::string(what) + ": " + AppLogger::redactAddresses(error.description()));
}

/// The password that stands there, or none when it cannot be read as text: such an item can only be replaced.
std::optional<Secret> passwordIn(const KeychainStore& passwords, const std::string& account) {
  try {
    return passwords.read(account);
  } catch (const KeychainError& error) {
    if (error.kind() == KeychainError::Kind::decodingFailed) {
      return std::nullopt;
    }
    throw;
  }
}

/// Changes the password of an account and, until `keep`, puts back what was there before.
class PasswordChange {
 public:
  /// An absent password removes the item.
  PasswordChange(const KeychainStore& passwords, std::string account, const std::optional<Secret>& password)
      : passwords_(passwords), account_(std::move(account)), before_(passwordIn(passwords_, account_)) {
    try {
      set(password);
    } catch (const KeychainError&) {
      putBack();
      throw;
    }
  }
  ~PasswordChange() {
    if (!isKept_) {
      putBack();
    }
  }
  PasswordChange(const PasswordChange&) = delete;
  PasswordChange& operator=(const PasswordChange&) = delete;

  void keep() { isKept_ = true; }

 private:
  void set(const std::optional<Secret>& password) {
    password ? passwords_.save(*password, account_) : passwords_.remove(account_);
  }
  void putBack() noexcept {
    try {
      set(before_);
    } catch (const KeychainError& error) {
      log("app password not put back", error);
    }
  }

  const KeychainStore& passwords_;
  std::string account_;
  std::optional<Secret> before_;
  bool isKept_ = false;
};

}  // namespace

AccountSetup AccountSetup::shared() { return {ConfigStore::shared(), KeychainStore::shared()}; }

void AccountSetup::save(const AccountAddress& account, std::optional<Secret> password) const {
  const std::string before = settings_.inspect().config.email;
  const bool moves = !before.empty() && before != account.email;
  if (!password && moves) {
    password = passwords_.read(before);
  }
  std::optional<PasswordChange> stored;
  if (password) {
    stored.emplace(passwords_, account.email, password);
  }
  settings_.update([&](AppConfig& config) {
    if (!config.isConfigured()) {
      config.strictWithholding = true;
    }
    const AccountAddress old{config.email, config.imapHost, config.imapPort};
    if (password || old != account) {
      config.lastConnectionTestDate.reset();
      config.lastConnectionTestSuccess.reset();
    }
    config.email = account.email;
    config.imapHost = account.imapHost;
    config.imapPort = account.imapPort;
  });
  if (stored) {
    stored->keep();
  }
  if (moves) {
    try {
      passwords_.remove(before);
    } catch (const KeychainError& error) {
      log("app password of the account before not removed", error);
    }
  }
}

void AccountSetup::remove() const {
  const std::string account = settings_.inspect().config.email;
  if (account.empty()) {
    return;
  }
  PasswordChange removed(passwords_, account, std::nullopt);
  settings_.update([](AppConfig& config) {
    AppConfig empty;
    empty.language = config.language;
    empty.httpPort = config.httpPort;
    config = std::move(empty);
  });
  removed.keep();
}

void AccountSetup::recordTest(const std::string& email, bool succeeded) const {
  if (settings_.inspect().config.email != email) {
    return;
  }
  try {
    settings_.update([&](AppConfig& config) {
      if (config.email == email) {
        config.lastConnectionTestDate = currentInstant();
        config.lastConnectionTestSuccess = succeeded;
      }
    });
  } catch (const std::exception& error) {
    AppLogger::error(AppLogger::Category::app,
                     "test outcome not saved: " + AppLogger::redactAddresses(error.what()));
  }
}

}  // namespace tarnwell
