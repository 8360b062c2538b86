#pragma once

/// Finds the server's mailbox for the name that a person or an assistant uses.
///
/// Both operations search a list of folders that the caller already has, in its order.
///
/// Threads: any.

#include <optional>
#include <string_view>
#include <vector>

#include "IMAP/Responses/IMAPFolder.h"

namespace tarnwell::MailboxMapper {

/// Finds a folder by `name`, in this order: by the whole path, by the last component, by the readable path,
/// by the readable name (`readablePath`, `readableName`). So "ゴミ箱" finds "&MLQw33ux-". Ignores letter
/// case. Does not match parts of a name. Returns the first match in the list. Absent when nothing matches.
std::optional<IMAPFolder> resolve(std::string_view name, const std::vector<IMAPFolder>& folders);

/// The folder marked \Trash (RFC 6154). Else the first folder whose name or path, as the server spells it, is
/// a usual name for trash. Else the first whose readable name or path is one. Absent when there is none.
std::optional<IMAPFolder> trashFolder(const std::vector<IMAPFolder>& folders);

}  // namespace tarnwell::MailboxMapper
