/// move_message, mark_as_read and trash_message.

#include "Core/AppLogger.h"
#include "Core/SafetyPolicy.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/MailboxMapper.h"
#include "IMAP/MoveOutcome.h"
#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/MailScreen.h"
#include "MCP/Tools/ToolArguments.h"
#include "MCP/Tools/ToolName.h"
#include "Text/Text.h"

namespace tarnwell {

namespace {

/// The outcome of a call, in the words of the log.
constexpr std::string_view blocked = "blocked";
constexpr std::string_view previewed = "previewed";
constexpr std::string_view executed = "executed";

/// The decision in the words of the log, without its reason.
std::string_view label(WriteDecision::Kind decision) {
  switch (decision) {
    case WriteDecision::Kind::blockedDisabled:
      return "blocked(disabled)";
    case WriteDecision::Kind::blockedReadOnly:
      return "blocked(read-only)";
    case WriteDecision::Kind::dryRun:
      return "dry-run";
    case WriteDecision::Kind::execute:
      return "execute";
  }
  return {};
}

/// Decides one write call by the current safety settings and makes its result. Every result has the same
/// seven keys. A refusal is an ordinary result, so an assistant reads it as information and not as a failure.
class WritePlan {
 public:
  /// Decides, and logs the decision.
  static WritePlan decideAndLog(ToolName tool, WriteOperation operation, const AppConfig& config,
                                const JSONValue& arguments) {
    WritePlan plan(tool, operation, config, arguments);
    AppLogger::notice(AppLogger::Category::tool,
                      "write " + std::string(plan.tool_) + ": " + std::string(label(plan.decision_.kind)));
    return plan;
  }

  /// A preview never selects the inbox for writing.
  IMAPClient::Access access() const {
    return decision_.executes() ? IMAPClient::Access::readWrite : IMAPClient::Access::readOnly;
  }

  /// Absent unless the settings refuse the call.
  std::optional<ToolOutcome> refusal() const {
    if (!decision_.isBlocked()) {
      return std::nullopt;
    }
    const bool isReadOnly = decision_.kind == WriteDecision::Kind::blockedReadOnly;
    return outcome(blocked, isReadOnly ? readOnlyRefusal(operation_) : decision_.text, {});
  }

  /// Moves the message to the folder, or only reports that it would.
  ToolOutcome moveTo(const IMAPFolder& folder, std::uint32_t uid, IMAPClient& client) const {
    JSONObject detail{{"uid", uid}, {"from", "INBOX"}, {"to", folder.path}};
    if (!decision_.executes()) {
      return preview(std::move(detail));
    }
    if (client.move(uid, folder.path, fallback_) == MoveOutcome::moved) {
      detail.emplace("method", "UID MOVE");
      return outcome(executed, "Executed.", std::move(detail));
    }
    detail.emplace("method", "COPY + flag \\Deleted (no EXPUNGE)");
    detail.emplace(
        "note",
        "The server does not support MOVE, so the message was copied to the target and the original was "
        "flagged for deletion (not erased). The original stays in INBOX, marked for deletion, until a mail "
        "client finalizes it.");
    return outcome(executed, "Executed via the COPY + mark-deleted fallback.", std::move(detail));
  }

  /// Marks the message as read, or only reports that it would.
  ToolOutcome markRead(const IMAPMessage& message, IMAPClient& client) const {
    JSONObject detail{{"uid", message.uid}, {"subject", JSONValue::of(message.envelope.subject)}};
    if (!decision_.executes()) {
      return preview(std::move(detail));
    }
    client.markRead(message.uid);
    return outcome(executed, "Executed.", std::move(detail));
  }

 private:
  WritePlan(ToolName tool, WriteOperation operation, const AppConfig& config, const JSONValue& arguments)
      : tool_(rawValue(tool)),
        operation_(operation),
        mode_(SafetyPolicy(config.safety).mode()),
        fallback_(config.safety.allowCopyMoveFallback ? IMAPClient::CopyFallback::allowed
                                                      : IMAPClient::CopyFallback::forbidden),
        decision_(SafetyPolicy(config.safety).decide(operation, requestedDryRun(arguments))) {}

  ToolOutcome preview(JSONObject detail) const {
    return outcome(previewed, "Dry-run: no change was made to the mailbox.", std::move(detail));
  }

  ToolOutcome outcome(std::string_view fate, std::string_view reason, JSONObject detail) const {
    return {{JSONObject{
                {"operation", tool_},
                {"executed", fate == executed},
                {"dryRun", fate == previewed},
                {"blocked", fate == blocked},
                {"mode", rawValue(mode_)},
                {"reason", reason},
                {"detail", std::move(detail)},
            }},
            std::string(fate)};
  }

  std::string_view tool_;
  WriteOperation operation_;
  SafetyMode mode_;
  IMAPClient::CopyFallback fallback_;
  WriteDecision decision_;
};

bool namesTheInbox(std::string_view folder) { return uppercased(folder) == "INBOX"; }

}  // namespace

ToolOutcome MCPTools::moveMessage(const JSONValue& arguments, const CallWatch& watch) const {
  const std::optional<std::uint32_t> uid = uidArg(arguments);
  if (!uid) {
    return {ToolCallResult::error(invalidUIDText)};
  }
  const std::optional<std::string> target = textArg(arguments, "targetFolder");
  if (!target) {
    return {ToolCallResult::error("Missing 'targetFolder'.")};
  }
  const AppConfig config = configStore_.load();
  const WritePlan plan =
      WritePlan::decideAndLog(ToolName::moveMessage, WriteOperation::move, config, arguments);
  if (std::optional<ToolOutcome> refusal = plan.refusal()) {
    return *refusal;
  }
  // Deliberate: the decision comes first, so a refused call reports the refusal.
  if (namesTheInbox(*target)) {
    return {ToolCallResult::error("Refusing to move a message to INBOX (it is already there).")};
  }
  return withIMAP(config, plan.access(), watch, [&](IMAPClient& client) {
    const std::optional<IMAPFolder> folder = MailboxMapper::resolve(*target, client.listFolders());
    if (!folder) {
      throw IMAPError::folderNotFound(*target);
    }
    if (namesTheInbox(folder->path)) {
      return ToolOutcome{ToolCallResult::error("Refusing to move a message to INBOX.")};
    }
    return plan.moveTo(*folder, *uid, client);
  });
}

ToolOutcome MCPTools::trashMessage(const JSONValue& arguments, const CallWatch& watch) const {
  const std::optional<std::uint32_t> uid = uidArg(arguments);
  if (!uid) {
    return {ToolCallResult::error(invalidUIDText)};
  }
  const AppConfig config = configStore_.load();
  const WritePlan plan =
      WritePlan::decideAndLog(ToolName::trashMessage, WriteOperation::trash, config, arguments);
  if (std::optional<ToolOutcome> refusal = plan.refusal()) {
    return *refusal;
  }
  return withIMAP(config, plan.access(), watch, [&](IMAPClient& client) {
    const std::optional<IMAPFolder> folder = MailboxMapper::trashFolder(client.listFolders());
    if (!folder) {
      throw IMAPError::folderNotFound("Trash");
    }
    return plan.moveTo(*folder, *uid, client);
  });
}

ToolOutcome MCPTools::markAsRead(const JSONValue& arguments, const CallWatch& watch) const {
  const std::optional<std::uint32_t> uid = uidArg(arguments);
  if (!uid) {
    return {ToolCallResult::error(invalidUIDText)};
  }
  const AppConfig config = configStore_.load();
  const WritePlan plan =
      WritePlan::decideAndLog(ToolName::markAsRead, WriteOperation::markRead, config, arguments);
  if (std::optional<ToolOutcome> refusal = plan.refusal()) {
    return *refusal;
  }
  const MailScreen screen(detector_, config);
  return withIMAP(config, plan.access(), watch, [&](IMAPClient& client) {
    std::optional<IMAPMessage> message = client.fetchMessage(*uid);
    if (!message) {
      return ToolOutcome{ToolCallResult::error(noMessageText(*uid))};
    }
    screen.maskCodes(*message, Judgement::notLookedAt);
    return plan.markRead(*message, client);
  });
}

}  // namespace tarnwell
