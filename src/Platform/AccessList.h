#pragma once

/// The access list of a file: what single users and groups may do with it, as setfacl(1) gives it.
///
/// On macOS there is none here: a list stays behind when its file is replaced, and what it allowed or forbade
/// with it. The mode says all of the rest there.
///
/// Threads: any.

#include <filesystem>
#include <optional>
#include <string>

namespace tarnwell {

/// In the form of the system. Absent when there is none. Empty when it cannot be read. Follows links.
std::optional<std::string> accessListOf(const std::filesystem::path& path);

/// The file is open.
bool hasAccessList(int file);

/// Puts the list in the place of the one that the open file has, and with it the bits of its mode that say
/// the same. Returns false, and changes nothing, when the system does not take it.
bool giveAccessList(int file, const std::string& list);

}  // namespace tarnwell
