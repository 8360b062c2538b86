#include "Account/AccountSetup.h"

#include <utility>

#include "Core/AppLogger.h"

namespace tarnwell {

namespace {

void log(std::string_view what, const KeychainError& error) {
  AppLogger::error(AppLogger::Category::security,
                   std::string(what) + ": " + AppLogger::redactAddresses(error.description()));
}

/// Stores a password and, until `keep`, puts back what was there before.
class StoredPassword {
 public:
  StoredPassword(const KeychainStore& passwords, std::string account, const Secret& password)
      : passwords_(passwords), account_(std::move(account)), before_(passwords_.read(account_)) {
    try {
      passwords_.save(password, account_);
    } catch (const KeychainError&) {
      putBack();
      throw;
    }
  }
  ~StoredPassword() {
    if (!isKept_) {
      putBack();
    }
  }
  StoredPassword(const StoredPassword&) = delete;
  StoredPassword& operator=(const StoredPassword&) = delete;

  void keep() { isKept_ = true; }

 private:
  void putBack() noexcept {
    try {
      before_ ? passwords_.save(*before_, account_) : passwords_.remove(account_);
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
  std::optional<StoredPassword> stored;
  if (password) {
    stored.emplace(passwords_, account.email, *password);
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
  passwords_.remove(account);
  settings_.update([](AppConfig& config) {
    AppConfig empty;
    empty.language = config.language;
    empty.httpPort = config.httpPort;
    config = std::move(empty);
  });
}

void AccountSetup::recordTest(const std::string& email, bool succeeded) const {
  if (settings_.inspect().config.email != email) {
    return;
  }
  settings_.update([&](AppConfig& config) {
    if (config.email == email) {
      config.lastConnectionTestDate = currentInstant();
      config.lastConnectionTestSuccess = succeeded;
    }
  });
}

}  // namespace tarnwell
