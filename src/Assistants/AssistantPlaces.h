#pragma once

/// Where the files and programs of the clients are on one machine.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Assistants/AssistantTable.h"

namespace tarnwell {

/// The one of the system that this program was built for.
FolderLayout ownFolderLayout();

struct FoundPlace {
  /// What is there once the client has run.
  std::filesystem::path trace;
  std::filesystem::path file;
};

FoundPlace placeOf(const Machine& machine, const AssistantRow& row);

/// The folders of PATH, and those where installers put programs without telling a program that a desktop
/// menu starts. Absolute, each once, also those that do not exist.
std::vector<std::filesystem::path> programFolders(const Machine& machine);

/// The first executable file of that name in `programFolders`.
std::optional<std::filesystem::path> findProgram(const Machine& machine, std::string_view name);

/// Its trace, one of its programs or its application is there.
bool isInstalled(const Machine& machine, const AssistantRow& row);

/// One of its processes runs, or one holds the lock that programs of its kind (Chromium's) keep beside their
/// settings: some packages run it as "electron".
bool isRunning(const Machine& machine, const AssistantRow& row);

/// Throws `AssistantError::Kind::running` when it runs and would write its file anew.
void checkNotRunning(const Machine& machine, AssistantID id);

}  // namespace tarnwell
