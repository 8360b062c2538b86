#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

#include "Assistants/AssistantPlaces.h"
#include "Assistants/Assistants.h"
#include "Assistants/ClientCommands.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

using Kind = AssistantError::Kind;

std::string printed(const ProgramOutcome& outcome) {
  std::string text = repairedUTF8(outcome.output);
  if (!text.empty() && !text.ends_with('\n')) {
    text += '\n';
  }
  return std::string(trimmed(text + repairedUTF8(outcome.errors)));
}

AssistantError failure(AssistantID id, const ProgramOutcome& outcome) {
  switch (outcome.end) {
    case ProgramOutcome::End::notStarted:
      return {Kind::notStarted, id, std::generic_category().message(outcome.status)};
    case ProgramOutcome::End::tookTooLong:
      return {Kind::tookTooLong, id, printed(outcome)};
    case ProgramOutcome::End::killed:
      return {Kind::failed, id, "signal " + std::to_string(outcome.status) + "\n" + printed(outcome)};
    case ProgramOutcome::End::exited:
      break;
  }
  return {Kind::failed, id, printed(outcome)};
}

/// Returns what the last one printed.
std::string runAll(const Machine& machine, AssistantID id, const std::vector<ClientCommand>& commands) {
  std::string text;
  for (const ClientCommand& command : commands) {
    const ProgramOutcome outcome = runCommand(machine, command);
    if (!outcome.succeeded()) {
      throw failure(id, outcome);
    }
    text = printed(outcome);
  }
  return text;
}

bool isSameEntry(const std::optional<AssistantEntry>& one, const std::optional<AssistantEntry>& other) {
  return one.has_value() == other.has_value() && (!one || one->value == other->value);
}

/// After a failure: one command may have removed the entry before another one failed. When this fails too,
/// the first failure is the one to tell.
void bringBack(const Machine& machine, const AssistantRow& row, const std::filesystem::path& program,
               const std::optional<AssistantEntry>& earlier) {
  try {
    const AssistantReading now = readEntry(machine, row);
    if (!isSameEntry(now.entry, earlier)) {
      runAll(machine, row.id, restoreCommands(row, program, earlier, now.entry.has_value()));
    }
  } catch (const std::exception&) {
    return;
  }
}

void checkReached(const Machine& machine, const ConnectionPlan& planned, const std::string& text) {
  const AssistantState state = assistantState(machine, planned.id);
  const auto wanted = planned.goal == ConnectionPlan::Goal::connect ? AssistantState::Connection::here
                                                                    : AssistantState::Connection::none;
  if (state.connection != wanted) {
    throw AssistantError(Kind::withoutEffect, planned.id, text);
  }
}

/// Removes the copy of a file that is still what it was.
void removeNeedless(const std::optional<std::filesystem::path>& backup, const std::filesystem::path& file,
                    const std::optional<std::string>& before) {
  try {
    if (backup && readConfigurationFile(file) == before) {
      std::filesystem::remove(*backup);
    }
  } catch (const std::exception&) {
    return;  // it stays
  }
}

/// What the commands made of the file, with a copy of what it was.
WrittenFile changeOf(const ConnectionPlan& planned, std::optional<std::string> before,
                     const std::optional<std::filesystem::path>& backup) {
  FileChange change = proposeChange(planned.file, [](std::string_view text) { return std::string(text); });
  change.before = std::move(before);
  return {std::move(change), backup};
}

ConnectionDone runPlanned(const Machine& machine, const ConnectionPlan& planned) {
  const AssistantRow& row = assistantRow(planned.id);
  const std::filesystem::path program = planned.commands.front().front();
  const AssistantReading earlier = readEntry(machine, row);
  std::optional<std::string> before = readConfigurationFile(planned.file);
  // Claude Code keeps copies of its file itself.
  const std::optional<std::filesystem::path> backup = row.rewritesFile ? std::nullopt : backUp(planned.file);
  try {
    const std::string text = runAll(machine, planned.id, planned.commands);
    checkReached(machine, planned, text);
  } catch (const std::exception&) {
    bringBack(machine, row, program, earlier.entry);
    removeNeedless(backup, planned.file, before);
    throw;
  }
  ConnectionDone done{.plan = planned};
  done.undoCommands =
      restoreCommands(row, program, earlier.entry, planned.goal == ConnectionPlan::Goal::connect);
  if (!row.rewritesFile) {
    done.written = changeOf(planned, std::move(before), backup);
  }
  return done;
}

}  // namespace

ConnectionDone carryOut(const Machine& machine, const ConnectionPlan& planned) {
  if (planned.isNothing()) {
    return {.plan = planned};
  }
  switch (planned.way) {
    case ConnectingWay::block:
      throw AssistantError(Kind::onlyByHand, planned.id, "");
    case ConnectingWay::file: {
      checkNotRunning(machine, planned.id);
      ConnectionDone done{.plan = planned, .written = write(*planned.change)};
      checkReached(machine, planned, "");
      return done;
    }
    case ConnectingWay::ownCommand:
      break;
  }
  return runPlanned(machine, planned);
}

void undo(const Machine& machine, const ConnectionDone& done) {
  const AssistantID id = done.plan.id;
  if (done.plan.way == ConnectingWay::file) {
    checkNotRunning(machine, id);
  }
  if (done.written) {
    try {
      undo(*done.written);
      return;
    } catch (const ConfigurationFileError& error) {
      if (error.kind() != ConfigurationFileError::Kind::changed || done.plan.way == ConnectingWay::file) {
        throw;
      }
    }
  }
  if (done.plan.way == ConnectingWay::ownCommand && !done.plan.isNothing()) {
    if (done.undoCommands.empty()) {
      throw AssistantError(Kind::changed, id, "");
    }
    runAll(machine, id, done.undoCommands);
  }
}

std::string shellLine(const std::vector<std::string>& command) {
  constexpr std::string_view plain =
      "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-+=:,./@%";
  std::string line;
  for (const std::string& word : command) {
    line += line.empty() ? "" : " ";
    if (!word.empty() && word.find_first_not_of(plain) == word.npos) {
      line += word;
      continue;
    }
    line += '\'';
    for (const char byte : word) {
      line += byte == '\'' ? std::string("'\\''") : std::string(1, byte);
    }
    line += '\'';
  }
  return line;
}

}  // namespace tarnwell
