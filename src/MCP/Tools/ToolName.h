#pragma once

/// The names of the nine tools. The rows of `ToolTable.cpp` hold them.

#include <optional>
#include <string_view>
#include <vector>

namespace tarnwell {

enum class ToolName {
  getStatus,
  listFolders,
  searchInbox,
  getMessageSummary,
  getMessageBody,
  proposeInboxCleanup,
  moveMessage,
  markAsRead,
  trashMessage,
};

/// In the order of the catalogue.
std::vector<ToolName> allToolNames();

/// The name on the wire, such as "search_inbox".
std::string_view rawValue(ToolName name);
/// Letter case counts. Absent for any other text.
std::optional<ToolName> toolName(std::string_view rawValue);

}  // namespace tarnwell
