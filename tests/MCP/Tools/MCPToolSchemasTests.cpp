#include "MCP/Tools/MCPToolSchemas.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwell::test {
namespace {

/// The catalogue as clients have always seen it. A change here changes the interface.
constexpr const char* catalogue = R"JSON([
{"name": "get_status",
 "description": "Return the bridge's connection readiness, the active safety mode (read-only / dry-run / write-enabled), and all safety settings. Takes no arguments.",
 "inputSchema": {"type": "object", "properties": {}, "additionalProperties": false}},
{"name": "list_folders",
 "description": "List IMAP mailboxes/folders with their path, hierarchy delimiter and special-use attribute. Read-only.",
 "inputSchema": {"type": "object", "additionalProperties": false, "properties": {
   "includeSpecialUse": {"type": "boolean", "description": "Include RFC 6154 special-use attributes (\\Trash, \\Archive, …). Default true."}}}},
{"name": "search_inbox",
 "description": "Search INBOX and return lightweight message headers (uid, subject, from, date, flags, a short snippet, hasAttachments). Never returns full bodies. Read-only.",
 "inputSchema": {"type": "object", "additionalProperties": false, "properties": {
   "query": {"type": "string", "description": "Free-text search across the message (IMAP TEXT)."},
   "unreadOnly": {"type": "boolean", "description": "Only unread (\\Unseen) messages. Default false."},
   "since": {"type": "string", "description": "Only messages on/after this date. ISO-8601 (e.g. 2024-01-31)."},
   "before": {"type": "string", "description": "Only messages before this date. ISO-8601."},
   "from": {"type": "string", "description": "Match the From header."},
   "subject": {"type": "string", "description": "Match the Subject header."},
   "limit": {"type": "integer", "minimum": 1, "maximum": 100, "description": "Max results (default 20, hard max 100, further capped by Safety settings)."}}}},
{"name": "get_message_summary",
 "description": "Return safe summary fields for one message (subject, from, to, cc, date, flags, hasAttachments, detected risk signals, and a bounded body snippet ≤1000 chars). Snippets of OTP/2FA/verification/password-reset mail are withheld. Read-only.",
 "inputSchema": {"type": "object", "additionalProperties": false, "required": ["uid"], "properties": {
   "uid": {"type": "integer", "minimum": 1, "description": "IMAP UID of the message (as returned by search_inbox)."},
   "includeBodySnippet": {"type": "boolean", "description": "Include a short body snippet (≤1000 chars, HTML flattened). Default true."}}}},
{"name": "get_message_body",
 "description": "Return the (text) body of one message, HTML flattened, truncated to maxChars. Bodies of OTP/2FA/verification-code/password-reset/security-alert mail are NOT returned — the tool explains why instead. Attachments are never read. Read-only.",
 "inputSchema": {"type": "object", "additionalProperties": false, "required": ["uid"], "properties": {
   "uid": {"type": "integer", "minimum": 1, "description": "IMAP UID of the message (as returned by search_inbox)."},
   "maxChars": {"type": "integer", "minimum": 1, "maximum": 10000, "description": "Max characters to return (default 4000, hard max 10000)."}}}},
{"name": "propose_inbox_cleanup",
 "description": "Return recent INBOX messages with lightweight rule-based category hints so the *client* AI can propose an organization plan. Performs NO moves and makes NO LLM classification itself. Read-only.",
 "inputSchema": {"type": "object", "additionalProperties": false, "properties": {
   "limit": {"type": "integer", "minimum": 1, "maximum": 100, "description": "How many recent messages to consider (default 20, capped by Safety settings)."},
   "categories": {"type": "array", "items": {"type": "string"}, "description": "Optional candidate category labels. Defaults to: action_needed, receipt, newsletter, notification, personal, work, archive_candidate, unsure."}}}},
{"name": "move_message",
 "description": "Move ONE message out of INBOX into an existing folder using IMAP UID MOVE. Blocked under read-only; simulated under dry-run. The target folder must already exist (never created). Source is always INBOX. No bulk moves, no delete/EXPUNGE.",
 "inputSchema": {"type": "object", "additionalProperties": false, "required": ["uid", "targetFolder"], "properties": {
   "uid": {"type": "integer", "minimum": 1, "description": "IMAP UID of the message (as returned by search_inbox)."},
   "targetFolder": {"type": "string", "description": "Destination folder path or name. Must already exist."},
   "dryRun": {"type": "boolean", "description": "If true, never perform the change — only report what would happen. Read-only mode still takes precedence (a true here cannot override it)."}}}},
{"name": "mark_as_read",
 "description": "Mark ONE message as read (sets the \\Seen flag) via UID STORE. Blocked under read-only; simulated under dry-run.",
 "inputSchema": {"type": "object", "additionalProperties": false, "required": ["uid"], "properties": {
   "uid": {"type": "integer", "minimum": 1, "description": "IMAP UID of the message (as returned by search_inbox)."},
   "dryRun": {"type": "boolean", "description": "If true, never perform the change — only report what would happen. Read-only mode still takes precedence (a true here cannot override it)."}}}},
{"name": "trash_message",
 "description": "Move ONE message from INBOX to the Trash folder via UID MOVE. Disabled by default in Safety settings. Blocked under read-only; simulated under dry-run. Never performs a physical delete or EXPUNGE.",
 "inputSchema": {"type": "object", "additionalProperties": false, "required": ["uid"], "properties": {
   "uid": {"type": "integer", "minimum": 1, "description": "IMAP UID of the message (as returned by search_inbox)."},
   "dryRun": {"type": "boolean", "description": "If true, never perform the change — only report what would happen. Read-only mode still takes precedence (a true here cannot override it)."}}}}
])JSON";

TEST(MCPToolSchemas, catalogueIsExactlyThis) {
  const std::optional<JSONValue> expected = JSONValue::decode(catalogue);
  ASSERT_TRUE(expected);
  const JSONValue actual = MCPToolSchemas::toolsListJSON();
  ASSERT_EQ(actual.arrayValue()->size(), 9u);
  for (std::size_t i = 0; i < 9; ++i) {
    EXPECT_EQ((*actual.arrayValue())[i].prettyString(), (*expected->arrayValue())[i].prettyString());
  }
}

/// Title, then whether it only reads, destroys, may be repeated, meets an open world.
struct CurrentRow {
  const char* name;
  const char* title;
  bool readOnly;
  bool destructive;
  bool idempotent;
  bool openWorld;
};

constexpr CurrentRow currentRows[] = {
    {"get_status", "Connection and safety status", true, false, true, false},
    {"list_folders", "List mail folders", true, false, true, true},
    {"search_inbox", "Search inbox", true, false, true, true},
    {"get_message_summary", "Message summary", true, false, true, true},
    {"get_message_body", "Read message text", true, false, true, true},
    {"propose_inbox_cleanup", "Suggest inbox clean-up", true, false, true, true},
    {"move_message", "Move message to a folder", false, true, false, true},
    {"mark_as_read", "Mark message as read", false, false, true, true},
    {"trash_message", "Move message to Trash", false, true, false, true},
};

TEST(MCPToolSchemas, currentFormAddsTitleAndHints) {
  const JSONValue before = MCPToolSchemas::toolsListJSON();
  JSONArray expected;
  for (const CurrentRow& row : currentRows) {
    JSONValue tool = (*before.arrayValue())[expected.size()];
    EXPECT_EQ(tool["name"], JSONValue(row.name));
    EXPECT_EQ(tool.objectValue()->size(), 3u) << "the older form has nothing else";
    tool.objectValue()->emplace("title", row.title);
    tool.objectValue()->emplace("annotations", JSONObject{{"readOnlyHint", row.readOnly},
                                                          {"destructiveHint", row.destructive},
                                                          {"idempotentHint", row.idempotent},
                                                          {"openWorldHint", row.openWorld}});
    expected.push_back(tool);
  }
  EXPECT_EQ(MCPToolSchemas::currentToolsListJSON().prettyString(), JSONValue(expected).prettyString());
}

TEST(MCPToolSchemas, everyToolHasADefinitionAndANameBothWays) {
  const std::pair<ToolName, const char*> rows[] = {
      {ToolName::getStatus, "get_status"},
      {ToolName::listFolders, "list_folders"},
      {ToolName::searchInbox, "search_inbox"},
      {ToolName::getMessageSummary, "get_message_summary"},
      {ToolName::getMessageBody, "get_message_body"},
      {ToolName::proposeInboxCleanup, "propose_inbox_cleanup"},
      {ToolName::moveMessage, "move_message"},
      {ToolName::markAsRead, "mark_as_read"},
      {ToolName::trashMessage, "trash_message"},
  };
  std::vector<ToolName> names;
  for (const auto& [tool, name] : rows) {
    EXPECT_EQ(rawValue(tool), name);
    EXPECT_EQ(toolName(name), tool);
    EXPECT_EQ(MCPToolSchemas::definition(tool)->name, name);
    names.push_back(tool);
  }
  EXPECT_EQ(allToolNames(), names);
  EXPECT_EQ(toolName("Get_status"), std::nullopt);
  EXPECT_EQ(toolName(""), std::nullopt);
}

TEST(MCPToolSchemas, threeToolsChangeTheMailbox) {
  std::vector<ToolName> changing = allToolNames();
  std::erase_if(changing, [](ToolName tool) { return !changesMailbox(tool); });
  EXPECT_EQ(changing, (std::vector{ToolName::moveMessage, ToolName::markAsRead, ToolName::trashMessage}));
}

TEST(MCPToolSchemas, propertyTakesExtraMembers) {
  EXPECT_EQ(MCPToolSchemas::prop("integer", "d", {{"minimum", 1}}),
            JSONValue(JSONObject{{"type", "integer"}, {"description", "d"}, {"minimum", 1}}));
}

TEST(MCPToolSchemas, objectLeavesOutAnEmptyListOfRequiredNames) {
  EXPECT_EQ(MCPToolSchemas::object({}).member("required"), nullptr);
  EXPECT_EQ(MCPToolSchemas::object({}, {"b", "a"})["required"], JSONValue(JSONArray{"b", "a"}));
}

}  // namespace
}  // namespace tarnwell::test
