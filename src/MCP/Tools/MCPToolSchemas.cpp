#include "MCP/Tools/MCPToolSchemas.h"

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

MCPToolDefinition define(ToolName name, std::string_view description, JSONValue inputSchema) {
  return {std::string(rawValue(name)), std::string(description), std::move(inputSchema)};
}

MCPToolDefinition getStatus() {
  return define(ToolName::getStatus,
                "Return the bridge's connection readiness, the active safety mode (read-only / dry-run / "
                "write-enabled), and all safety settings. Takes no arguments.",
                object({}));
}

MCPToolDefinition listFolders() {
  return define(
      ToolName::listFolders,
      "List IMAP mailboxes/folders with their path, hierarchy delimiter and special-use attribute. "
      "Read-only.",
      object({
          {"includeSpecialUse",
           prop("boolean", "Include RFC 6154 special-use attributes (\\Trash, \\Archive, …). Default true.")},
      }));
}

MCPToolDefinition searchInbox() {
  return define(
      ToolName::searchInbox,
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
      }));
}

MCPToolDefinition getMessageSummary() {
  return define(
      ToolName::getMessageSummary,
      "Return safe summary fields for one message (subject, from, to, cc, date, flags, hasAttachments, "
      "detected risk signals, and a bounded body snippet ≤1000 chars). Snippets of "
      "OTP/2FA/verification/password-reset mail are withheld. Read-only.",
      object({{"uid", uidProperty()},
              {"includeBodySnippet",
               prop("boolean", "Include a short body snippet (≤1000 chars, HTML flattened). Default true.")}},
             {"uid"}));
}

MCPToolDefinition getMessageBody() {
  return define(ToolName::getMessageBody,
                "Return the (text) body of one message, HTML flattened, truncated to maxChars. Bodies of "
                "OTP/2FA/verification-code/password-reset/security-alert mail are NOT returned — the tool "
                "explains why instead. Attachments are never read. Read-only.",
                object({{"uid", uidProperty()},
                        {"maxChars", prop("integer", maxCharsDescription(),
                                          {{"minimum", 1}, {"maximum", BridgeConstants::bodyHardMaxChars}})}},
                       {"uid"}));
}

MCPToolDefinition proposeInboxCleanup() {
  return define(
      ToolName::proposeInboxCleanup,
      "Return recent INBOX messages with lightweight rule-based category hints so the *client* AI can "
      "propose an organization plan. Performs NO moves and makes NO LLM classification itself. Read-only.",
      object({
          {"limit",
           limitProperty("How many recent messages to consider (default 20, capped by Safety settings).")},
          {"categories", prop("array",
                              "Optional candidate category labels. Defaults to: action_needed, receipt, "
                              "newsletter, notification, personal, work, archive_candidate, unsure.",
                              {{"items", JSONObject{{"type", "string"}}}})},
      }));
}

MCPToolDefinition moveMessage() {
  return define(
      ToolName::moveMessage,
      "Move ONE message out of INBOX into an existing folder using IMAP UID MOVE. Blocked under read-only; "
      "simulated under dry-run. The target folder must already exist (never created). Source is always "
      "INBOX. No bulk moves, no delete/EXPUNGE.",
      object({{"uid", uidProperty()},
              {"targetFolder", prop("string", "Destination folder path or name. Must already exist.")},
              {"dryRun", dryRunProperty()}},
             {"uid", "targetFolder"}));
}

MCPToolDefinition markAsRead() {
  return define(ToolName::markAsRead,
                "Mark ONE message as read (sets the \\Seen flag) via UID STORE. Blocked under read-only; "
                "simulated under dry-run.",
                object({{"uid", uidProperty()}, {"dryRun", dryRunProperty()}}, {"uid"}));
}

MCPToolDefinition trashMessage() {
  return define(
      ToolName::trashMessage,
      "Move ONE message from INBOX to the Trash folder via UID MOVE. Disabled by default in Safety settings. "
      "Blocked under read-only; simulated under dry-run. Never performs a physical delete or EXPUNGE.",
      object({{"uid", uidProperty()}, {"dryRun", dryRunProperty()}}, {"uid"}));
}

}  // namespace

JSONValue MCPToolDefinition::toJSON() const {
  return JSONObject{{"name", name}, {"description", description}, {"inputSchema", inputSchema}};
}

const std::vector<MCPToolDefinition>& MCPToolSchemas::all() {
  static const std::vector<MCPToolDefinition> catalogue{
      getStatus(),           listFolders(), searchInbox(), getMessageSummary(), getMessageBody(),
      proposeInboxCleanup(), moveMessage(), markAsRead(),  trashMessage(),
  };
  return catalogue;
}

std::optional<MCPToolDefinition> MCPToolSchemas::definition(ToolName name) {
  const auto found = std::ranges::find(all(), rawValue(name), &MCPToolDefinition::name);
  return found == all().end() ? std::nullopt : std::optional(*found);
}

JSONValue MCPToolSchemas::toolsListJSON() {
  JSONArray tools;
  for (const MCPToolDefinition& tool : all()) {
    tools.push_back(tool.toJSON());
  }
  return tools;
}

JSONValue MCPToolSchemas::prop(std::string_view type, std::string_view description, const JSONObject& extra) {
  JSONObject property{{"type", type}, {"description", description}};
  for (const auto& [key, value] : extra) {
    property[key] = value;
  }
  return property;
}

JSONValue MCPToolSchemas::object(JSONObject properties, const std::vector<std::string>& required) {
  JSONObject schema{
      {"type", "object"}, {"properties", std::move(properties)}, {"additionalProperties", false}};
  if (!required.empty()) {
    schema.emplace("required", JSONValue::strings(required));
  }
  return schema;
}

}  // namespace tarnwell
