#pragma once

/// Tries an account: name, secure connection, sign in, inbox. Writes nothing and changes no mail.
///
///     ConnectionOutcome outcome = testConnection(config, std::move(password), {.reached = show});
///     if (outcome.succeeded()) ...
///
/// Threads: any. Waits for the network; `SessionWatch` gives it up.

#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "Core/AppConfig.h"
#include "Core/Secret.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Connection/SessionWatch.h"

namespace tarnwell {

struct ConnectionOutcome {
  enum class Result { succeeded, failed, cancelled };

  Result result = Result::succeeded;
  /// The last stage that was reached. Absent when there was none.
  std::optional<SessionStage> reached{};
  /// Why it failed. Absent for a failure that is not one of the network or the server, such as no memory.
  std::optional<IMAPError> error{};
  /// Of the server, after a success: the names in upper case, sorted.
  std::vector<std::string> capabilities{};
  bool supportsMove = false;

  bool succeeded() const { return result == Result::succeeded; }
};

/// Logs in and selects the inbox for reading. Never throws for what the network or the server does.
ConnectionOutcome testConnection(const AppConfig& config, Secret password, SessionWatch watch = {});

}  // namespace tarnwell
