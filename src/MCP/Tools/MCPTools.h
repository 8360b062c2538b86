#pragma once

/// Runs the tools for `tools/call`. It takes a tool's name and arguments and returns the tool's result.
///
/// Each call reads the settings again, so a change in the companion app takes effect on the next call. A call
/// that needs the mailbox opens and closes its own IMAP session. Nothing is kept between calls. Every failure
/// becomes a result with only the key "error". A call throws only when it was cancelled.
///
/// Threads: one call at a time. `MCPServer` ensures that.

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Core/ConfigStore.h"
#include "Core/KeychainStore.h"
#include "Core/SecurityMail/EmailRiskDetector.h"
#include "IMAP/Connection/Cancellation.h"
#include "IMAP/IMAPClient.h"
#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

struct Leaving;
struct ScreenedBody;

struct ToolCallResult {
  /// Always an object.
  JSONValue structured;
  bool isError = false;

  /// The result {"error": text} with `isError` set.
  static ToolCallResult error(std::string text);

  /// The text that a model reads.
  std::string text() const { return structured.prettyString(); }

  /// The result of `tools/call`, as far as it is the same in every revision of MCP.
  JSONObject toJSON() &&;

  bool operator==(const ToolCallResult&) const = default;
};

/// What a tool returns.
struct ToolOutcome {
  /// For the client.
  ToolCallResult result;
  /// For the log: counts and decisions, such as "20 messages, 1 withheld". Contains no word of a mail, a
  /// search or a mailbox. Empty for an error.
  std::string summary{};
};

/// What the caller of a tool may do on another thread, and what it is told meanwhile.
struct CallWatch {
  /// Gives the call up at its next wait for the mail server. A change that is on the wire is finished, and
  /// the call returns its result.
  Cancellation cancellation{};
  /// Called on the thread of the call after each message that a search or a clean-up has read: how many of
  /// how many. May be empty.
  std::function<void(std::int64_t done, std::int64_t total)> progressed{};
};

class MCPTools {
 public:
  /// Makes the client of one session from host, port, address and password. Does not connect it.
  using ClientFactory = std::function<std::unique_ptr<IMAPClient>(std::string host, std::int64_t port,
                                                                  std::string email, Secret password)>;

  MCPTools(ConfigStore configStore, KeychainStore keychain, EmailRiskDetector detector,
           ClientFactory makeClient);

  /// The tools with the user's settings, the user's secrets and real connections.
  static MCPTools shared();
  /// The same with these settings and secrets.
  static MCPTools over(ConfigStore configStore, KeychainStore keychain);

  /// `arguments` may have any JSON type. Anything but an object counts as an empty object. Throws `Cancelled`
  /// when the watch gave the call up. Then nothing was changed, or is on its way to be.
  ToolCallResult handle(std::string_view name, const JSONValue& arguments, const CallWatch& watch = {}) const;

 private:
  friend struct ToolRow;  // its rows name the tools below

  /// Runs `body` with a connected client that has the inbox selected. Always ends the session. Throws
  /// `IMAPError`, `KeychainError`, `Cancelled` and what `body` throws.
  ToolOutcome withIMAP(const AppConfig& config, IMAPClient::Access access, const CallWatch& watch,
                       const std::function<ToolOutcome(IMAPClient&)>& body) const;

  /// Runs `body` on the summary of the message that "uid" names, in a read-only session. Returns an error
  /// result when the UID is not valid or no message has it.
  ToolOutcome withMessage(const AppConfig& config, const JSONValue& arguments, const CallWatch& watch,
                          const std::function<ToolOutcome(IMAPClient&, IMAPMessage&)>& body) const;

  using ItemMaker = std::function<JSONValue(const IMAPMessage&, const ScreenedBody&)>;
  using ListMaker = std::function<JSONObject(JSONArray items, std::int64_t limit)>;
  /// Finds the newest messages that match, at most as many as "limit" and the settings allow. `itemOf` makes
  /// an item of each message and its screened body. `resultOf` makes the result of the items. "count" is
  /// added to it.
  ToolOutcome listMessages(const JSONValue& arguments, const CallWatch& watch,
                           const IMAPSearchCriteria& criteria, Leaving leaving, const ItemMaker& itemOf,
                           const ListMaker& resultOf) const;

  ToolOutcome getStatus(const JSONValue& arguments, const CallWatch& watch) const;
  ToolOutcome listFolders(const JSONValue& arguments, const CallWatch& watch) const;
  ToolOutcome searchInbox(const JSONValue& arguments, const CallWatch& watch) const;
  ToolOutcome getMessageSummary(const JSONValue& arguments, const CallWatch& watch) const;
  ToolOutcome getMessageBody(const JSONValue& arguments, const CallWatch& watch) const;
  ToolOutcome proposeInboxCleanup(const JSONValue& arguments, const CallWatch& watch) const;
  ToolOutcome moveMessage(const JSONValue& arguments, const CallWatch& watch) const;
  ToolOutcome markAsRead(const JSONValue& arguments, const CallWatch& watch) const;
  ToolOutcome trashMessage(const JSONValue& arguments, const CallWatch& watch) const;

  ConfigStore configStore_;
  KeychainStore keychain_;
  EmailRiskDetector detector_;
  ClientFactory makeClient_;
};

}  // namespace tarnwell
