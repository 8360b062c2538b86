#pragma once

/// Finds, reads and writes the settings file, "config.json".
///
/// The file belongs to one user: its folder has mode 0700, the file 0600. A write is all or nothing: after a
/// crash, a full disk or a power cut there is either the old file or the new one.
///
/// Threads: any. A store has no state of its own. Within one process, updates wait for each other.

#include <filesystem>
#include <functional>
#include <string>

#include "Core/AppConfig.h"

namespace tarnwell {

class ConfigStore {
 public:
  enum class FileState {
    missing,  // there is none
    good,
    damaged,    // not a JSON object of the right types, or larger than a settings file is
    untrusted,  // somebody else may have written it, or it cannot be read
  };

  struct Inspection {
    AppConfig config;  // the defaults unless the file is good
    FileState state = FileState::missing;
    std::string reason;  // a few words for `damaged` and `untrusted`, such as "imapPort: expected an integer"
  };

  explicit ConfigStore(std::filesystem::path directory) : directory_(std::move(directory)) {}

  /// The store in the user's own directory: the folder named after the application identifier in Application
  /// Support, or in the directory that replaces it (see Platform/UserDirectories.h). On every system, when
  /// there is no such directory, it is "Library/Application Support" in the home directory from the user
  /// database.
  static ConfigStore shared();

  std::filesystem::path configURL() const { return directory_ / "config.json"; }

  /// Never fails. When the file is missing or cannot be read, returns the defaults without a log line. When
  /// the file is not a JSON object of the right types, or somebody else may have written it (see
  /// Platform/PrivateFiles.h), returns the defaults and logs an error.
  AppConfig load() const;

  /// What `load` returns, and why. Logs nothing.
  Inspection inspect() const;

  /// Reads the file afresh, changes what `edit` changes and writes it. Keys that this program does not know
  /// stay. A damaged file is copied beside itself first, to "config.json.damaged-" and the time; the settings
  /// then begin with the defaults and `strictWithholding`. Updates wait for each other, also those of other
  /// processes. Throws as `save` does, and `std::runtime_error` for an untrusted file,
  /// which stays as it is.
  void update(const std::function<void(AppConfig&)>& edit) const;

  /// Throws `std::filesystem::filesystem_error` naming the path, or `std::exception` for an encoding error.
  /// The old file is then unchanged.
  void save(const AppConfig& config) const;

 private:
  void keepCopy() const;
  void write(const std::string& text) const;

  std::filesystem::path directory_;
};

}  // namespace tarnwell
