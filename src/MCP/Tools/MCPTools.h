#pragma once

/// The tools behind `tools/call`: takes a tool's name and its arguments, gives its result.
///
/// Each call reads the settings afresh, so that a change in the companion app takes effect on the next
/// call, and opens and closes its own IMAP session. Nothing is kept between calls. Every failure becomes a
/// result with the one key "error"; nothing is thrown.
///
/// Threads: one call at a time (`MCPServer` sees to that).

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Core/ConfigStore.h"
#include "Core/KeychainStore.h"
#include "Core/SecurityMail/EmailRiskDetector.h"
#include "IMAP/IMAPClient.h"
#include "MCP/JSON/JSONValue.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

struct ToolCallResult {
  /// Always an object.
  JSONValue structured;
  bool isError = false;

  /// The result {"error": text} with the flag set.
  static ToolCallResult error(std::string text);

  bool operator==(const ToolCallResult&) const = default;
};

class MCPTools {
 public:
  /// Makes the client of one session from host, port, address and password. Connects nothing.
  using ClientFactory = std::function<std::unique_ptr<IMAPClient>(std::string host, std::int64_t port,
                                                                  std::string email, Secret password)>;

  MCPTools(ConfigStore configStore, KeychainStore keychain, EmailRiskDetector detector,
           ClientFactory makeClient);

  /// The tools over the user's settings and secrets and real connections.
  static MCPTools shared();

  /// `arguments` is what the client sent, of any JSON type; anything but an object acts as an empty one.
  ToolCallResult handle(std::string_view name, const JSONValue& arguments) const;

 private:
  ToolCallResult run(ToolName tool, const JSONValue& arguments) const;

  /// Runs `body` with a connected client that has the inbox selected, and ends the session whatever
  /// happened. Throws `IMAPError` and `KeychainError`, and what `body` throws.
  ToolCallResult withIMAP(const AppConfig& config, IMAPClient::Access access,
                          const std::function<ToolCallResult(IMAPClient&)>& body) const;

  /// Runs `body` on the summary of the message that "uid" names, in a read-only session. Without a valid
  /// UID, or without such a message, an error result.
  ToolCallResult withMessage(const AppConfig& config, const JSONValue& arguments,
                             const std::function<JSONValue(IMAPClient&, IMAPMessage&)>& body) const;

  ToolCallResult getStatus() const;
  ToolCallResult listFolders(const JSONValue& arguments) const;
  ToolCallResult searchInbox(const JSONValue& arguments) const;
  ToolCallResult getMessageSummary(const JSONValue& arguments) const;
  ToolCallResult getMessageBody(const JSONValue& arguments) const;
  ToolCallResult proposeInboxCleanup(const JSONValue& arguments) const;
  ToolCallResult moveMessage(const JSONValue& arguments) const;
  ToolCallResult markAsRead(const JSONValue& arguments) const;
  ToolCallResult trashMessage(const JSONValue& arguments) const;

  ConfigStore configStore_;
  KeychainStore keychain_;
  EmailRiskDetector detector_;
  ClientFactory makeClient_;
};

}  // namespace tarnwell
