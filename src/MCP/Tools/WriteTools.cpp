/// move_message, mark_as_read and trash_message.

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/MailboxMapper.h"
#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/MailScreen.h"
#include "MCP/Tools/ToolArguments.h"
#include "MCP/Tools/WriteOutcome.h"
#include "Text/Text.h"

namespace tarnwell {

namespace {

/// What the safety settings of this moment make of one write call.
class WritePlan {
 public:
  WritePlan(ToolName tool, WriteOperation operation, const AppConfig& config, const JSONValue& arguments)
      : tool_(rawValue(tool)),
        mode_(SafetyPolicy(config.safety).mode()),
        fallback_(config.safety.allowCopyMoveFallback ? IMAPClient::CopyFallback::allowed
                                                      : IMAPClient::CopyFallback::forbidden),
        decision_(SafetyPolicy(config.safety).decide(operation, requestedDryRun(arguments))) {
    logDecision(tool_, decision_);
  }

  bool executes() const { return decision_.executes(); }

  /// A preview never selects the inbox for writing.
  IMAPClient::Access access() const {
    return executes() ? IMAPClient::Access::readWrite : IMAPClient::Access::readOnly;
  }

  /// The refusal, when the settings refuse.
  std::optional<ToolCallResult> refusal(std::string_view readOnlyText) const {
    if (!decision_.isBlocked()) {
      return std::nullopt;
    }
    const bool isReadOnly = decision_.kind == WriteDecision::Kind::blockedReadOnly;
    return ToolCallResult{blockedOutcome(tool_, mode_, isReadOnly ? readOnlyText : decision_.text)};
  }

  /// Moves the message to the folder, or only tells that it would.
  ToolCallResult moveTo(const IMAPFolder& folder, std::uint32_t uid, IMAPClient& client) const {
    JSONObject detail{{"uid", uid}, {"from", "INBOX"}, {"to", folder.path}};
    if (!executes()) {
      return {dryRunOutcome(tool_, mode_, std::move(detail))};
    }
    const MoveOutcome outcome = client.move(uid, folder.path, fallback_);
    return {executedMoveOutcome(tool_, mode_, std::move(detail), outcome)};
  }

  /// Marks the message as read, or only tells that it would.
  ToolCallResult markRead(const IMAPMessage& message, IMAPClient& client) const {
    JSONObject detail{{"uid", message.uid}, {"subject", JSONValue::of(message.envelope.subject)}};
    if (!executes()) {
      return {dryRunOutcome(tool_, mode_, std::move(detail))};
    }
    client.markRead(message.uid);
    return {executedOutcome(tool_, mode_, std::move(detail))};
  }

 private:
  std::string_view tool_;
  SafetyMode mode_;
  IMAPClient::CopyFallback fallback_;
  WriteDecision decision_;
};

bool namesTheInbox(std::string_view folder) { return uppercased(folder) == "INBOX"; }

}  // namespace

ToolCallResult MCPTools::moveMessage(const JSONValue& arguments) const {
  const std::optional<std::uint32_t> uid = uidArg(arguments);
  if (!uid) {
    return ToolCallResult::error(std::string(invalidUIDText));
  }
  const std::optional<std::string> target = textArg(arguments, "targetFolder");
  if (!target) {
    return ToolCallResult::error("Missing 'targetFolder'.");
  }
  const AppConfig config = configStore_.load();
  const WritePlan plan(ToolName::moveMessage, WriteOperation::move, config, arguments);
  if (std::optional<ToolCallResult> refusal = plan.refusal("Read-only mode is on; no message was moved.")) {
    return *refusal;
  }
  // Deliberate: after the decision, so that a blocked program reports the block.
  if (namesTheInbox(*target)) {
    return ToolCallResult::error("Refusing to move a message to INBOX (it is already there).");
  }
  return withIMAP(config, plan.access(), [&](IMAPClient& client) {
    const std::optional<IMAPFolder> folder = MailboxMapper::resolve(*target, client.listFolders());
    if (!folder) {
      throw IMAPError::folderNotFound(*target);
    }
    if (namesTheInbox(folder->path)) {
      return ToolCallResult::error("Refusing to move a message to INBOX.");
    }
    return plan.moveTo(*folder, *uid, client);
  });
}

ToolCallResult MCPTools::trashMessage(const JSONValue& arguments) const {
  const std::optional<std::uint32_t> uid = uidArg(arguments);
  if (!uid) {
    return ToolCallResult::error(std::string(invalidUIDText));
  }
  const AppConfig config = configStore_.load();
  const WritePlan plan(ToolName::trashMessage, WriteOperation::trash, config, arguments);
  if (std::optional<ToolCallResult> refusal =
          plan.refusal("Read-only mode is on; the message was not moved to Trash.")) {
    return *refusal;
  }
  return withIMAP(config, plan.access(), [&](IMAPClient& client) {
    const std::optional<IMAPFolder> folder = MailboxMapper::trashFolder(client.listFolders());
    if (!folder) {
      throw IMAPError::folderNotFound("Trash");
    }
    return plan.moveTo(*folder, *uid, client);
  });
}

ToolCallResult MCPTools::markAsRead(const JSONValue& arguments) const {
  const std::optional<std::uint32_t> uid = uidArg(arguments);
  if (!uid) {
    return ToolCallResult::error(std::string(invalidUIDText));
  }
  const AppConfig config = configStore_.load();
  const WritePlan plan(ToolName::markAsRead, WriteOperation::markRead, config, arguments);
  if (std::optional<ToolCallResult> refusal =
          plan.refusal("Read-only mode is on; the message was not marked as read.")) {
    return *refusal;
  }
  const MailScreen screen(detector_, config);
  return withIMAP(config, plan.access(), [&](IMAPClient& client) {
    std::optional<IMAPMessage> message = client.fetchMessage(*uid);
    if (!message) {
      return ToolCallResult::error(noMessageText(*uid));
    }
    screen.maskCodes(*message, Judgement::notLookedAt);
    return plan.markRead(*message, client);
  });
}

}  // namespace tarnwell
