#include "Assistants/ClientCommands.h"

#include <algorithm>
#include <string_view>

#include "Assistants/AssistantPlaces.h"

namespace tarnwell {
namespace {

ClientCommand joined(ClientCommand command, const std::vector<std::string>& rest) {
  command.insert(command.end(), rest.begin(), rest.end());
  return command;
}

ClientCommand removal(const AssistantRow& row, const std::string& program) {
  return row.id == AssistantID::codex ? ClientCommand{program, "mcp", "remove", entryName}
                                      : ClientCommand{program, "mcp", "remove", "--scope", "user", entryName};
}

ClientCommand addition(const AssistantRow& row, const std::string& program, const std::string& command,
                       const std::vector<std::string>& arguments) {
  ClientCommand words{program, "mcp", "add"};
  if (row.id != AssistantID::codex) {
    words = joined(std::move(words), {"--scope", "user"});
  }
  words.emplace_back(entryName);
  if (row.id != AssistantID::geminiCLI) {  // it would take the two dashes for the command
    words.emplace_back("--");
  }
  words.push_back(command);
  return joined(std::move(words), arguments);
}

/// Claude Code takes the whole entry as JSON.
ClientCommand additionOfEntry(const std::string& program, const JSONValue& value) {
  return {program, "mcp", "add-json", "--scope", "user", entryName, value.serialized()};
}

/// Could be taken for an option of the client.
bool hasOptions(const std::vector<std::string>& arguments) {
  return std::ranges::any_of(arguments, [](const std::string& word) { return word.starts_with('-'); });
}

/// The folder of the program comes first, then those where a program is looked for anyway.
std::string searchPath(const Machine& machine, const std::filesystem::path& program) {
  std::string result = program.parent_path().string();
  for (const std::filesystem::path& folder : programFolders(machine)) {
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) {
      result += ':';
      result += folder.string();
    }
  }
  return result;
}

/// Replaces the variable, or removes it.
void set(std::vector<std::string>& environment, const std::string& name,
         const std::optional<std::string>& value) {
  std::erase_if(environment, [&](const std::string& variable) { return variable.starts_with(name + "="); });
  if (value) {
    environment.push_back(name + "=" + *value);
  }
}

}  // namespace

/// Codex and Gemini CLI replace an entry. Claude Code refuses to, so the old one is removed first, and its
/// other members are taken over.
std::vector<ClientCommand> connectCommands(const Machine& machine, const AssistantRow& row,
                                           const std::filesystem::path& program,
                                           const std::optional<AssistantEntry>& existing) {
  const std::string helper = machine.helper.string();
  if (row.id != AssistantID::claudeCode || !existing) {
    return {addition(row, program, helper, {"serve"})};
  }
  JSONValue value = JSONObject{{"type", "stdio"}, {"env", JSONObject{}}};
  if (existing->command) {
    value = existing->value;
  }
  (*value.objectValue())["command"] = helper;
  (*value.objectValue())["args"] = JSONValue::strings({"serve"});
  return {removal(row, program), additionOfEntry(program, value)};
}

std::vector<ClientCommand> disconnectCommands(const AssistantRow& row, const std::filesystem::path& program) {
  return {removal(row, program)};
}

std::vector<ClientCommand> restoreCommands(const AssistantRow& row, const std::filesystem::path& program,
                                           const std::optional<AssistantEntry>& earlier, bool isThereNow) {
  if (earlier && hasSecrets(*earlier)) {
    return {};
  }
  if (row.id == AssistantID::claudeCode) {
    std::vector<ClientCommand> commands;
    if (isThereNow) {
      commands.push_back(removal(row, program));
    }
    if (earlier) {
      commands.push_back(additionOfEntry(program, earlier->value));
    }
    return commands;
  }
  if (!earlier) {
    return {removal(row, program)};
  }
  if (!earlier->isPlain || (row.id == AssistantID::geminiCLI && hasOptions(earlier->arguments))) {
    return {};
  }
  return {addition(row, program, *earlier->command, earlier->arguments)};
}

ProgramOutcome runCommand(const Machine& machine, const ClientCommand& command) {
  std::vector<std::string> environment = ownEnvironment();
  set(environment, "HOME", machine.home.string());
  set(environment, "PATH", searchPath(machine, command.at(0)));
  set(environment, "NO_COLOR", "1");
  set(environment, "XDG_CONFIG_HOME", machine.environment("XDG_CONFIG_HOME"));
  for (const AssistantRow& row : assistantRows()) {
    for (const AssistantPlace& place : row.places) {
      if (place.variable != nullptr) {
        set(environment, place.variable, machine.environment(place.variable));
      }
    }
  }
  return runProgram({.command = command, .environment = environment, .limit = machine.commandLimit});
}

}  // namespace tarnwell
