#pragma once

/// What is known of each MCP client: where it keeps its settings, what its entry looks like, by which command
/// it is told, and how it is recognised. The sources are the clients' own pages and what their commands
/// wrote.

#include <span>
#include <string_view>
#include <vector>

#include "Assistants/Assistants.h"

namespace tarnwell {

/// The folder that a path in the table starts from.
enum class BaseFolder {
  home,
  /// `$XDG_CONFIG_HOME` or ~/.config on Linux, ~/Library/Application Support on macOS.
  settings,
  /// `$XDG_CONFIG_HOME` or ~/.config, also on macOS.
  dotConfig,
  /// The one that `AssistantPlace::variable` names.
  variable
};

struct AssistantPlace {
  BaseFolder base = BaseFolder::home;
  /// What is there once the client has run.
  const char* trace = "";
  const char* file = "";
  const char* variable = nullptr;
};

enum class EntryShape {
  /// {"command", "args"}
  command,
  /// The same with "type": "stdio".
  typedCommand,
  /// The same with an empty "env", as Claude Code's own command writes it.
  typedCommandWithEnvironment,
  /// A table of TOML.
  tomlTable
};

struct AssistantRow {
  AssistantID id;
  const char* name;
  /// The first whose variable is set counts. Else the first of the others whose trace is there. Else the
  /// first of the others.
  std::vector<AssistantPlace> places;
  /// The name of the object with the entries.
  const char* object;
  EntryShape shape = EntryShape::command;
  /// Has commands that connect and disconnect (ClientCommands.h).
  bool hasCommands = false;
  /// Holds its file in memory and writes it anew.
  bool rewritesFile = false;
  /// Names of its program, for PATH and among the running ones. The first is the one with the commands.
  std::vector<const char*> programs{};
  /// Its name among the applications of macOS.
  const char* application = nullptr;
  /// More names of its processes.
  std::vector<std::string_view> processes{};
  /// A folder that its program lies in somewhere below, beside `application`.
  std::string_view folder{};
};

/// In the order of `AssistantID`.
std::span<const AssistantRow> assistantRows();
const AssistantRow& assistantRow(AssistantID id);

}  // namespace tarnwell
