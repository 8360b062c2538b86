#pragma once

/// The commands of the clients that have some, and running them.

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "Assistants/AssistantEntry.h"
#include "Platform/ProgramRun.h"

namespace tarnwell {

using ClientCommand = std::vector<std::string>;

/// The commands that connect the helper. `existing` is the entry that is there. One of Claude Code must have
/// no secrets.
std::vector<ClientCommand> connectCommands(const Machine& machine, const AssistantRow& row,
                                           const std::filesystem::path& program,
                                           const std::optional<AssistantEntry>& existing);

std::vector<ClientCommand> disconnectCommands(const AssistantRow& row, const std::filesystem::path& program);

/// The commands that bring back the `earlier` entry, or no entry, where another one may be by now. None when
/// the client has no command that can write the earlier entry as it was, or the entry has secrets.
std::vector<ClientCommand> restoreCommands(const AssistantRow& row, const std::filesystem::path& program,
                                           const std::optional<AssistantEntry>& earlier, bool isThereNow);

/// Runs the command with the environment of this program, the folders of `machine`, and a PATH in which the
/// client also finds what it is made of, such as node. In the root folder, because clients keep settings for
/// the folder that they run in.
ProgramOutcome runCommand(const Machine& machine, const ClientCommand& command);

}  // namespace tarnwell
