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

namespace tarnwell {

struct Leaving;
struct ScreenedBody;

struct ToolCallResult {
  /// Always an object.
  JSONValue structured;
  bool isError = false;

  /// The result {"error": text} with the flag set.
  static ToolCallResult error(std::string text);

  bool operator==(const ToolCallResult&) const = default;
};

/// What a tool gives.
struct ToolOutcome {
  /// For the client.
  ToolCallResult result;
  /// For the log: counts and decisions, such as "20 messages, 1 withheld", without a word of a mail, a search
  /// or a mailbox. Empty for an error.
  std::string summary{};
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
  friend struct ToolRow;  // names the tools below

  /// Runs `body` with a connected client that has the inbox selected, and ends the session whatever
  /// happened. Throws `IMAPError` and `KeychainError`, and what `body` throws.
  ToolOutcome withIMAP(const AppConfig& config, IMAPClient::Access access,
                       const std::function<ToolOutcome(IMAPClient&)>& body) const;

  /// Runs `body` on the summary of the message that "uid" names, in a read-only session. Without a valid
  /// UID, or without such a message, an error result.
  ToolOutcome withMessage(const AppConfig& config, const JSONValue& arguments,
                          const std::function<ToolOutcome(IMAPClient&, IMAPMessage&)>& body) const;

  using ItemMaker = std::function<JSONValue(const IMAPMessage&, const ScreenedBody&)>;
  using ListMaker = std::function<JSONObject(JSONArray items, std::int64_t limit)>;
  /// Finds the newest messages, as many as "limit" and the settings allow, and makes an item of each with its
  /// screened body. The result is what `resultOf` makes of the items, and their "count".
  ToolOutcome listMessages(const JSONValue& arguments, const IMAPSearchCriteria& criteria, Leaving leaving,
                           const ItemMaker& itemOf, const ListMaker& resultOf) const;

  ToolOutcome getStatus(const JSONValue& arguments) const;
  ToolOutcome listFolders(const JSONValue& arguments) const;
  ToolOutcome searchInbox(const JSONValue& arguments) const;
  ToolOutcome getMessageSummary(const JSONValue& arguments) const;
  ToolOutcome getMessageBody(const JSONValue& arguments) const;
  ToolOutcome proposeInboxCleanup(const JSONValue& arguments) const;
  ToolOutcome moveMessage(const JSONValue& arguments) const;
  ToolOutcome markAsRead(const JSONValue& arguments) const;
  ToolOutcome trashMessage(const JSONValue& arguments) const;

  ConfigStore configStore_;
  KeychainStore keychain_;
  EmailRiskDetector detector_;
  ClientFactory makeClient_;
};

}  // namespace tarnwell
