#pragma once

/// Where the user's data lies and which languages the user reads.
///
/// Threads: the environment is read on each call; call before other threads change it.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tarnwell {

/// The directory for the data that programs keep for the user: Application Support on macOS; on Linux
/// `$XDG_DATA_HOME` when it is an absolute path, else `$HOME/.local/share` when HOME is one (XDG Base
/// Directory Specification). Absent when neither is known.
std::optional<std::filesystem::path> applicationSupportDirectory();

/// The home directory in the system's user database; the root directory when the user is not in it.
std::filesystem::path homeDirectory();

/// BCP 47 tags such as "ja-JP", most wanted first; possibly empty. On Linux from LANGUAGE, LC_ALL,
/// LC_MESSAGES and LANG, in the order in which gettext asks them.
std::vector<std::string> preferredLanguages();

}  // namespace tarnwell
