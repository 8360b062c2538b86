#include "MCP/Tools/ToolName.h"

#include <algorithm>

namespace tarnwell {

std::string_view rawValue(ToolName name) {
  switch (name) {
    case ToolName::getStatus:
      return "get_status";
    case ToolName::listFolders:
      return "list_folders";
    case ToolName::searchInbox:
      return "search_inbox";
    case ToolName::getMessageSummary:
      return "get_message_summary";
    case ToolName::getMessageBody:
      return "get_message_body";
    case ToolName::proposeInboxCleanup:
      return "propose_inbox_cleanup";
    case ToolName::moveMessage:
      return "move_message";
    case ToolName::markAsRead:
      return "mark_as_read";
    case ToolName::trashMessage:
      return "trash_message";
  }
  return {};
}

std::optional<ToolName> toolName(std::string_view rawText) {
  const auto found =
      std::ranges::find_if(allToolNames, [&](ToolName name) { return rawValue(name) == rawText; });
  return found == allToolNames.end() ? std::nullopt : std::optional(*found);
}

}  // namespace tarnwell
