#pragma once

/// Finds the server's mailbox for what a person or an assistant calls a folder.
///
/// Pure: both operations look at a list of folders already at hand, in its order.
///
/// Threads: any.

#include <optional>
#include <string_view>
#include <vector>

#include "IMAP/Responses/IMAPFolder.h"

namespace tarnwell::MailboxMapper {

/// The folder whose whole path is `name`, else the folder whose last component is; then the same for the path
/// and the name that people read (`readablePath`, `readableName`), so that "ゴミ箱" finds "&MLQw33ux-".
/// Letter case is ignored. There is no partial match. Of several, the one listed first; absent when there is
/// none.
std::optional<IMAPFolder> resolve(std::string_view name, const std::vector<IMAPFolder>& folders);

/// The folder marked \Trash (RFC 6154), else the first one with one of the usual names of a trash folder as
/// the server spells it, else the first one that people read so; absent when there is none.
std::optional<IMAPFolder> trashFolder(const std::vector<IMAPFolder>& folders);

}  // namespace tarnwell::MailboxMapper
