#pragma once

/// The names of the nine tools, and which of them change the mailbox. The rows of `ToolTable.cpp` hold both.

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

/// True for a tool that can change the mailbox, whatever its arguments and the settings say.
bool changesMailbox(ToolName name);

}  // namespace tarnwell
