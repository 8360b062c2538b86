#pragma once

/// The names of the nine tools.

#include <array>
#include <optional>
#include <string_view>

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
inline constexpr std::array allToolNames{
    ToolName::getStatus,         ToolName::listFolders,    ToolName::searchInbox,
    ToolName::getMessageSummary, ToolName::getMessageBody, ToolName::proposeInboxCleanup,
    ToolName::moveMessage,       ToolName::markAsRead,     ToolName::trashMessage,
};

/// The name on the wire, such as "search_inbox".
std::string_view rawValue(ToolName name);
/// Exact, case-sensitive; absent for any other text.
std::optional<ToolName> toolName(std::string_view rawValue);

}  // namespace tarnwell
