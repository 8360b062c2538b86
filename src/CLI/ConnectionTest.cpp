/// The command test-connection.

#include <optional>

#include "Account/AccountSetup.h"
#include "Account/ConnectionTest.h"
#include "CLI/CLIRunner.h"
#include "CLI/Output.h"
#include "Core/AppLogger.h"
#include "Core/ConfigStore.h"
#include "Core/KeychainStore.h"

namespace tarnwell {

namespace {

/// The saved password. Absent when there is none, it is empty, or the store cannot be read.
std::optional<Secret> savedPassword(const std::string& email) {
  try {
    std::optional<Secret> password = KeychainStore::shared().read(email);
    return password && !password->empty() ? std::move(password) : std::nullopt;
  } catch (const KeychainError& error) {
    AppLogger::error(AppLogger::Category::security,
                     "app password not read: " + AppLogger::redactAddresses(error.description()));
    return std::nullopt;
  }
}

std::string joined(const std::vector<std::string>& words) {
  std::string text;
  for (const std::string& word : words) {
    text += (text.empty() ? "" : " ") + word;
  }
  return text;
}

/// The report about a successful session.
std::string report(const AppConfig& config, const ConnectionOutcome& outcome) {
  return "✅ Connected to " + config.imapHost + ":" + std::to_string(config.imapPort) + " as " +
         config.email + "\n   INBOX selected OK · MOVE supported: " + (outcome.supportsMove ? "yes" : "no") +
         "\n   Capabilities: " + joined(outcome.capabilities);
}

}  // namespace

int CLIRunner::testConnection() {
  const AppConfig config = ConfigStore::shared().load();
  if (!config.isConfigured()) {
    printError("Not configured. Open the app and save your iCloud email + app password.\n");
    return 1;
  }
  std::optional<Secret> password = savedPassword(config.email);
  if (!password) {
    printError("No app password in Keychain for " + AppLogger::redact(config.email) + ".\n");
    return 1;
  }
  const ConnectionOutcome outcome = tarnwell::testConnection(config, std::move(*password));
  AccountSetup::shared().recordTest(config.email, outcome.succeeded());
  if (outcome.succeeded()) {
    print(report(config, outcome));
    return 0;
  }
  printError("❌ Connection failed: " +
             (outcome.error ? outcome.error->description() : "An error occurred.") + "\n");
  return 1;
}

}  // namespace tarnwell
