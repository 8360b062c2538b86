/// The command test-connection.

#include <optional>

#include "CLI/CLIRunner.h"
#include "CLI/Output.h"
#include "Core/AppLogger.h"
#include "Core/BridgeConstants.h"
#include "Core/ConfigStore.h"
#include "Core/KeychainStore.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/InboxSession.h"

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

/// Saves the outcome for the companion app. The app may have changed the settings during the test, so they
/// are read again. If they are now for another account, they stay unchanged.
/// Deliberate: the test still counts when the outcome cannot be saved.
void saveOutcome(const ConfigStore& store, const std::string& email, bool succeeded) {
  AppConfig config = store.load();
  if (config.email != email) {
    return;
  }
  config.lastConnectionTestDate = currentInstant();
  config.lastConnectionTestSuccess = succeeded;
  try {
    store.save(config);
  } catch (const std::exception& error) {
    AppLogger::error(AppLogger::Category::app,
                     "test outcome not saved: " + AppLogger::redactAddresses(error.what()));
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
std::string report(const AppConfig& config, const IMAPClient& client) {
  return "✅ Connected to " + config.imapHost + ":" + std::to_string(config.imapPort) + " as " +
         config.email + "\n   INBOX selected OK · MOVE supported: " + (client.supportsMove() ? "yes" : "no") +
         "\n   Capabilities: " + joined(client.serverCapabilities());
}

/// Logs in and selects the inbox. Returns the report. Throws only after the session has ended.
std::string tryConnection(const AppConfig& config, Secret password) {
  IMAPClient client(config.imapHost, config.imapPort, config.email, std::move(password),
                    BridgeConstants::networkTimeoutSeconds);
  return withInbox(client, IMAPClient::Access::readOnly,
                   [&](const IMAPClient& session) { return report(config, session); });
}

}  // namespace

int CLIRunner::testConnection() {
  const ConfigStore store = ConfigStore::shared();
  const AppConfig config = store.load();
  if (!config.isConfigured()) {
    printError("Not configured. Open the app and save your iCloud email + app password.\n");
    return 1;
  }
  std::optional<Secret> password = savedPassword(config.email);
  if (!password) {
    printError("No app password in Keychain for " + AppLogger::redact(config.email) + ".\n");
    return 1;
  }
  std::string message;
  try {
    const std::string text = tryConnection(config, std::move(*password));
    saveOutcome(store, config.email, true);
    print(text);
    return 0;
  } catch (const IMAPError& error) {
    message = error.description();
  } catch (const std::exception&) {
    message = "An error occurred.";
  }
  saveOutcome(store, config.email, false);
  printError("❌ Connection failed: " + message + "\n");
  return 1;
}

}  // namespace tarnwell
