#include "MCP/Tools/ToolTable.h"

#include <algorithm>

#include "Core/BridgeConstants.h"

namespace tarnwell {

namespace {

using MCPToolSchemas::object;
using MCPToolSchemas::prop;

JSONValue uidProperty() {
  return prop("integer", "IMAP UID of the message (as returned by search_inbox).", {{"minimum", 1}});
}

JSONValue dryRunProperty() {
  return prop("boolean",
              "If true, never perform the change — only report what would happen. Read-only mode still takes "
              "precedence (a true here cannot override it).");
}

JSONValue limitProperty(std::string_view description) {
  return prop("integer", description, {{"minimum", 1}, {"maximum", BridgeConstants::searchLimitMax}});
}

std::string maxCharsDescription() {
  return "Max characters to return (default " + std::to_string(BridgeConstants::bodyDefaultMaxChars) +
         ", hard max " + std::to_string(BridgeConstants::bodyHardMaxChars) + ").";
}

}  // namespace

std::span<const ToolRow> ToolRow::all() {
  static const ToolRow rows[] = {
      {ToolName::getStatus,
       Effect::tellsOfItself,
       "Connection and safety status",
       {"get_status",
        "Return the bridge's connection readiness, the active safety mode (read-only / dry-run / "
        "write-enabled), and all safety settings. Takes no arguments.",
        object({})},
       &MCPTools::getStatus},
      {ToolName::listFolders,
       Effect::readsMail,
       "List mail folders",
       {"list_folders",
        "List IMAP mailboxes/folders with their path, hierarchy delimiter and special-use attribute. "
        "Read-only.",
        object({
            {"includeSpecialUse",
             prop("boolean",
                  "Include RFC 6154 special-use attributes (\\Trash, \\Archive, …). Default true.")},
        })},
       &MCPTools::listFolders},
      {ToolName::searchInbox,
       Effect::readsMail,
       "Search inbox",
       {"search_inbox",
        "Search INBOX and return lightweight message headers (uid, subject, from, date, flags, a short "
        "snippet, hasAttachments). Never returns full bodies. Read-only.",
        object({
            {"query", prop("string", "Free-text search across the message (IMAP TEXT).")},
            {"unreadOnly", prop("boolean", "Only unread (\\Unseen) messages. Default false.")},
            {"since", prop("string", "Only messages on/after this date. ISO-8601 (e.g. 2024-01-31).")},
            {"before", prop("string", "Only messages before this date. ISO-8601.")},
            {"from", prop("string", "Match the From header.")},
            {"subject", prop("string", "Match the Subject header.")},
            {"limit",
             limitProperty("Max results (default 20, hard max 100, further capped by Safety settings).")},
        })},
       &MCPTools::searchInbox},
      {ToolName::getMessageSummary,
       Effect::readsMail,
       "Message summary",
       {"get_message_summary",
        "Return safe summary fields for one message (subject, from, to, cc, date, flags, hasAttachments, "
        "detected risk signals, and a bounded body snippet ≤1000 chars). Snippets of "
        "OTP/2FA/verification/password-reset mail are withheld. Read-only.",
        object(
            {{"uid", uidProperty()},
             {"includeBodySnippet",
              prop("boolean", "Include a short body snippet (≤1000 chars, HTML flattened). Default true.")}},
            {"uid"})},
       &MCPTools::getMessageSummary},
      {ToolName::getMessageBody,
       Effect::readsMail,
       "Read message text",
       {"get_message_body",
        "Return the (text) body of one message, HTML flattened, truncated to maxChars. Bodies of "
        "OTP/2FA/verification-code/password-reset/security-alert mail are NOT returned — the tool "
        "explains why instead. Attachments are never read. Read-only.",
        object({{"uid", uidProperty()},
                {"maxChars", prop("integer", maxCharsDescription(),
                                  {{"minimum", 1}, {"maximum", BridgeConstants::bodyHardMaxChars}})}},
               {"uid"})},
       &MCPTools::getMessageBody},
      {ToolName::proposeInboxCleanup,
       Effect::readsMail,
       "Suggest inbox clean-up",
       {"propose_inbox_cleanup",
        "Return recent INBOX messages with lightweight rule-based category hints so the *client* AI can "
        "propose an organization plan. Performs NO moves and makes NO LLM classification itself. Read-only.",
        object({
            {"limit",
             limitProperty("How many recent messages to consider (default 20, capped by Safety settings).")},
            {"categories", prop("array",
                                "Optional candidate category labels. Defaults to: action_needed, receipt, "
                                "newsletter, notification, personal, work, archive_candidate, unsure.",
                                {{"items", JSONObject{{"type", "string"}}}})},
        })},
       &MCPTools::proposeInboxCleanup},
      {ToolName::moveMessage,
       Effect::movesMail,
       "Move message to a folder",
       {"move_message",
        "Move ONE message out of INBOX into an existing folder using IMAP UID MOVE. Blocked under read-only; "
        "simulated under dry-run. The target folder must already exist (never created). Source is always "
        "INBOX. No bulk moves, no delete/EXPUNGE.",
        object({{"uid", uidProperty()},
                {"targetFolder", prop("string", "Destination folder path or name. Must already exist.")},
                {"dryRun", dryRunProperty()}},
               {"uid", "targetFolder"})},
       &MCPTools::moveMessage},
      {ToolName::markAsRead,
       Effect::marksMail,
       "Mark message as read",
       {"mark_as_read",
        "Mark ONE message as read (sets the \\Seen flag) via UID STORE. Blocked under read-only; "
        "simulated under dry-run.",
        object({{"uid", uidProperty()}, {"dryRun", dryRunProperty()}}, {"uid"})},
       &MCPTools::markAsRead},
      {ToolName::trashMessage,
       Effect::movesMail,
       "Move message to Trash",
       {"trash_message",
        "Move ONE message from INBOX to the Trash folder via UID MOVE. Disabled by default in Safety "
        "settings. Blocked under read-only; simulated under dry-run. Never performs a physical delete or "
        "EXPUNGE.",
        object({{"uid", uidProperty()}, {"dryRun", dryRunProperty()}}, {"uid"})},
       &MCPTools::trashMessage},
  };
  return rows;
}

const ToolRow& ToolRow::of(ToolName tool) { return *std::ranges::find(all(), tool, &ToolRow::tool); }

std::vector<ToolName> allToolNames() {
  std::vector<ToolName> names;
  for (const ToolRow& row : ToolRow::all()) {
    names.push_back(row.tool);
  }
  return names;
}

std::string_view rawValue(ToolName name) { return ToolRow::of(name).definition.name; }

std::optional<ToolName> toolName(std::string_view rawText) {
  const auto hasName = [&](const ToolRow& row) { return row.definition.name == rawText; };
  const auto row = std::ranges::find_if(ToolRow::all(), hasName);
  return row == ToolRow::all().end() ? std::nullopt : std::optional(row->tool);
}

bool changesMailbox(ToolName name) {
  const ToolRow::Effect effect = ToolRow::of(name).effect;
  return effect == ToolRow::Effect::marksMail || effect == ToolRow::Effect::movesMail;
}

}  // namespace tarnwell
