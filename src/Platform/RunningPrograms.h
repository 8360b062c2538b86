#pragma once

/// The programs of this user that run now. For telling whether another program has to be closed first, and
/// which program started a helper.
///
/// Threads: any. Each call asks the system anew. Waits for no program.

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnwell {

struct RunningProgram {
  std::int64_t processID = 0;
  /// The process that started it, or the one that took it over after that had ended.
  std::int64_t parentID = 0;
  /// A short name, which the program may choose itself. The system may cut it: after 15 bytes on Linux.
  std::string name{};
  /// Its file, links resolved. Empty when the system does not tell it.
  std::filesystem::path executable{};

  bool operator==(const RunningProgram&) const = default;
};

/// In no order. Programs that end meanwhile are left out, as are those of other users. Empty when the system
/// tells nothing.
std::vector<RunningProgram> runningPrograms();

}  // namespace tarnwell
