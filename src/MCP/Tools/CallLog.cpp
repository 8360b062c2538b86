#include "MCP/Tools/CallLog.h"

#include <algorithm>

#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

namespace {

bool isTrue(const JSONValue& result, std::string_view key) { return result[key].boolValue().value_or(false); }

std::string number(const JSONValue& value) { return std::to_string(value.intValue().value_or(0)); }

std::string counted(const JSONValue& result, const std::string& noun) {
  return number(result["count"]) + " " + noun + (result["count"] == JSONValue(1) ? "" : "s");
}

/// The messages of a list, and how many of them came without their text.
std::string listText(const JSONValue& result, std::string_view key) {
  std::string text = counted(result, "message");
  if (const JSONArray* messages = result[key].arrayValue()) {
    const auto withheld = std::ranges::count_if(
        *messages, [](const JSONValue& message) { return message["snippet"] == JSONValue(withheldText); });
    if (withheld > 0) {
      text += ", " + std::to_string(withheld) + " withheld";
    }
  }
  return text;
}

std::string bodyText(const JSONValue& result) {
  if (isTrue(result, "blocked")) {
    return "withheld";
  }
  return isTrue(result, "returned") ? "a text of " + number(result["charCount"]) + " characters" : "no text";
}

std::string writeText(const JSONValue& result) {
  if (isTrue(result, "executed")) {
    return "executed";
  }
  return isTrue(result, "dryRun") ? "previewed" : "blocked";
}

}  // namespace

std::string outcomeText(ToolName tool, const JSONValue& result) {
  switch (tool) {
    case ToolName::getStatus:
      return isTrue(result, "configured") ? "configured" : "not configured";
    case ToolName::listFolders:
      return counted(result, "folder");
    case ToolName::searchInbox:
      return listText(result, "messages");
    case ToolName::proposeInboxCleanup:
      return listText(result, "items");
    case ToolName::getMessageSummary:
      return isTrue(result, "bodyWithheld") ? "1 message, withheld" : "1 message";
    case ToolName::getMessageBody:
      return bodyText(result);
    case ToolName::moveMessage:
    case ToolName::markAsRead:
    case ToolName::trashMessage:
      return writeText(result);
  }
  return {};
}

}  // namespace tarnwell
