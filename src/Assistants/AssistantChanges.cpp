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

/// The file as it is now, as a change of nothing.
FileChange fileNow(const std::filesystem::path& file) {
  return proposeChange(file, [](std::string_view text) { return std::string(text); });
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

ConnectionDone runPlanned(const Machine& machine, const ConnectionPlan& planned) {
  const AssistantRow& row = assistantRow(planned.id);
  const std::filesystem::path program = planned.commands.front().front();
  const AssistantReading earlier = readEntry(machine, row);
  const FileChange before = fileNow(planned.file);
  std::string text;
  try {
    text = runAll(machine, planned.id, planned.commands);
  } catch (const AssistantError&) {
    bringBack(machine, row, program, earlier.entry);
    throw;
  }
  checkReached(machine, planned, text);
  ConnectionDone done{.plan = planned};
  done.undoCommands =
      restoreCommands(row, program, earlier.entry, planned.goal == ConnectionPlan::Goal::connect);
  if (!row.rewritesFile) {
    FileChange change = fileNow(planned.file);
    change.before = before.before;
    done.written = WrittenFile{std::move(change), std::nullopt};
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
