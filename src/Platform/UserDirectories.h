#pragma once

/// The directories of the user and the languages the user reads.
///
/// Threads: each call reads the environment, so no other thread may change it at the same time.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarnwell {

/// The directory where programs keep data of the user. On macOS it is Application Support. On Linux it is
/// `$XDG_DATA_HOME` if that is an absolute path, else `$HOME/.local/share` if HOME is an absolute path (XDG
/// Base Directory Specification). Absent when neither is.
std::optional<std::filesystem::path> applicationSupportDirectory();

/// The home directory from the system's user database. The root directory when the database does not tell
/// one.
std::filesystem::path homeDirectory();

/// BCP 47 tags such as "ja-JP", the most wanted first. May be empty. On Linux they come from LANGUAGE,
/// LC_ALL, LC_MESSAGES and LANG, in the order of gettext.
std::vector<std::string> preferredLanguages();

}  // namespace tarnwell
