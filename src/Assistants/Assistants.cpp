#include "Assistants/Assistants.h"

#include <unistd.h>

#include <string_view>
#include <utility>

#include "Assistants/AssistantPlaces.h"
#include "Assistants/ClientCommands.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

using Goal = ConnectionPlan::Goal;
using Connection = AssistantState::Connection;

/// The program with the client's commands, if it has some and is here.
std::optional<std::filesystem::path> commandProgram(const Machine& machine, const AssistantRow& row) {
  return row.hasCommands ? findProgram(machine, row.programs.front()) : std::nullopt;
}

/// Codex and Gemini CLI would drop what else the entry has. Claude Code takes it over, but from the words of
/// a command, which every user of the machine can read while it runs.
bool wouldLoseOrTell(const AssistantRow& row, const AssistantEntry& entry) {
  return row.id == AssistantID::claudeCode ? hasSecrets(entry) : !entry.isPlain && entry.command;
}

ConnectingWay wayTo(const Machine& machine, const AssistantRow& row, const AssistantReading& reading,
                    Goal goal) {
  const ConnectingWay byHand =
      row.shape == EntryShape::tomlTable ? ConnectingWay::block : ConnectingWay::file;
  const bool isNotUnderstood = row.shape == EntryShape::tomlTable && !reading.problem.empty();
  const bool isLeftToHands = isNotUnderstood || reading.hasComments ||
                             (goal == Goal::connect && reading.entry && wouldLoseOrTell(row, *reading.entry));
  return commandProgram(machine, row) && !isLeftToHands ? ConnectingWay::ownCommand : byHand;
}

Connection connectionOf(const Machine& machine, const AssistantReading& reading) {
  if (!reading.problem.empty()) {
    return Connection::unknown;
  }
  if (!reading.entry) {
    return Connection::none;
  }
  return startsHelper(machine, *reading.entry) ? Connection::here : Connection::elsewhere;
}

std::string otherCommandOf(const AssistantEntry& entry) {
  if (!entry.command) {
    return entry.address;
  }
  if (entry.arguments == std::vector<std::string>{"serve"}) {
    return *entry.command;
  }
  std::vector<std::string> words{*entry.command};
  words.insert(words.end(), entry.arguments.begin(), entry.arguments.end());
  return shellLine(words);
}

/// Absent when the file cannot be read. Says why in `problem`.
std::optional<AssistantReading> readOrTell(const Machine& machine, const AssistantRow& row,
                                           std::exception_ptr& problem) {
  try {
    AssistantReading reading = readEntry(machine, row);
    if (!reading.problem.empty()) {
      problem =
          std::make_exception_ptr(AssistantError(AssistantError::Kind::notTOML, row.id, reading.problem));
    }
    return reading;
  } catch (const JSONEditError&) {
    problem = std::current_exception();
  } catch (const ConfigurationFileError&) {
    problem = std::current_exception();
  }
  return std::nullopt;
}

AssistantState stateOf(const Machine& machine, const AssistantRow& row) {
  AssistantState state{.id = row.id, .name = row.name};
  state.file = placeOf(machine, row).file;
  state.isInstalled = isInstalled(machine, row);
  const std::optional<AssistantReading> reading = readOrTell(machine, row, state.problem);
  if (!reading) {
    state.connection = Connection::unknown;
    return state;
  }
  state.connection = connectionOf(machine, *reading);
  if (reading->entry) {
    state.isSwitchedOff = reading->entry->isSwitchedOff;
    state.otherCommand = state.connection == Connection::elsewhere ? otherCommandOf(*reading->entry) : "";
  }
  const bool isHere = state.connection == Connection::here;
  state.way = wayTo(machine, row, *reading, isHere ? Goal::disconnect : Goal::connect);
  return state;
}

void checkHelper(const Machine& machine, AssistantID id) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(machine.helper, error) ||
      ::access(machine.helper.c_str(), X_OK) != 0) {
    throw AssistantError(AssistantError::Kind::noHelper, id, machine.helper.string());
  }
  if (!isValidUTF8(machine.helper.string())) {
    throw AssistantError(AssistantError::Kind::helperNotUTF8, id, repairedUTF8(machine.helper.string()));
  }
}

/// A client that never ran makes its folder itself, with what else belongs there.
void checkFolder(const AssistantState& state) {
  std::error_code error;
  const std::filesystem::path folder = state.file.parent_path();
  if (!state.isInstalled || !std::filesystem::is_directory(folder, error)) {
    throw AssistantError(AssistantError::Kind::neverStarted, state.id, folder.string());
  }
}

FileChange proposedChange(const Machine& machine, const AssistantRow& row, Goal goal,
                          const std::filesystem::path& file) {
  return proposeChange(file, [&](std::string_view text) {
    return goal == Goal::connect ? withEntry(text, row, machine.helper.string())
                                 : withoutJSONMember(text, entryPath(row));
  });
}

}  // namespace

AssistantError::AssistantError(Kind kind, AssistantID assistant, std::string details,
                               std::optional<std::filesystem::path> backup)
    : std::runtime_error(std::string("cannot change the configuration of ") + assistantRow(assistant).name +
                         (details.empty() ? "" : ": " + details)),
      kind_(kind),
      assistant_(assistant),
      details_(std::move(details)),
      backup_(std::move(backup)) {}

bool ConnectionPlan::isNothing() const {
  return commands.empty() && block.empty() && (!change || change->isNothing());
}

AssistantState assistantState(const Machine& machine, AssistantID id) {
  return stateOf(machine, assistantRow(id));
}

std::vector<AssistantState> findAssistants(const Machine& machine) {
  std::vector<AssistantState> states;
  for (const AssistantRow& row : assistantRows()) {
    states.push_back(stateOf(machine, row));
  }
  return states;
}

ConnectionPlan plan(const Machine& machine, AssistantID id, Goal goal) {
  const AssistantRow& row = assistantRow(id);
  if (goal == Goal::connect) {
    checkHelper(machine, id);
  }
  const AssistantState state = stateOf(machine, row);
  const AssistantReading reading = readEntry(machine, row);
  ConnectionPlan planned{.id = id, .goal = goal};
  planned.way = wayTo(machine, row, reading, goal);
  planned.file = state.file;
  const Connection wanted = goal == Goal::connect ? Connection::here : Connection::none;
  if (connectionOf(machine, reading) == wanted) {
    return planned;
  }
  planned.entryBefore = reading.value();
  switch (planned.way) {
    case ConnectingWay::ownCommand: {
      const std::filesystem::path program = commandProgram(machine, row).value();
      planned.commands = goal == Goal::connect ? connectCommands(machine, row, program, reading.entry)
                                               : disconnectCommands(row, program);
      break;
    }
    case ConnectingWay::file:
      checkFolder(state);
      checkNotRunning(machine, id);
      planned.change = proposedChange(machine, row, goal, state.file);
      break;
    case ConnectingWay::block:
      planned.block = goal == Goal::disconnect && reading.entry
                          ? reading.lines
                          : connectionBlock(BlockFormat::codexTOML, machine.helper);
      break;
  }
  return planned;
}

}  // namespace tarnwell
