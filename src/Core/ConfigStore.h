#pragma once

/// Finds, reads and writes the one settings file, "config.json".
///
/// The file belongs to the user alone: its folder has mode 0700, the file 0600. It is written whole or
/// not at all: a crash, a full disk or a power cut leaves the old file or the new one.
///
/// Threads: a store has no state; any thread may use it.

#include <filesystem>

#include "Core/AppConfig.h"

namespace tarnwell {

class ConfigStore {
 public:
  explicit ConfigStore(std::filesystem::path directory) : directory_(std::move(directory)) {}

  /// The store in the user's own directory: Application Support (or what stands for it, see
  /// Platform/UserDirectories.h) and in it a folder named like the application identifier. Where the system
  /// tells of no such directory it is "Library/Application Support" in the home directory of the user's entry
  /// in the user database, on every system.
  static ConfigStore shared();

  std::filesystem::path configURL() const { return directory_ / "config.json"; }

  /// Never fails: a file that is missing or cannot be read gives the defaults silently; one that is not
  /// a JSON object of the right types, or that somebody else may have written (see Platform/PrivateFiles.h),
  /// gives them with an error in the log.
  AppConfig load() const;

  /// Throws `std::filesystem::filesystem_error` naming the path, or `std::exception` for an encoding
  /// error; the old file is then as it was.
  void save(const AppConfig& config) const;

 private:
  std::filesystem::path directory_;
};

}  // namespace tarnwell
