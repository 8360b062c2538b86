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

void restoreInFile(const Machine& machine, const AssistantRow& row, const JSONValue& earlier) {
  if (row.shape == EntryShape::tomlTable) {
    throw AssistantError(Kind::changed, row.id, "");
  }
  checkNotRunning(machine, row.id);
  const JSONPath path = entryPath(row);
  write(proposeChange(placeOf(machine, row).file, [&](std::string_view text) {
    return withJSONMember(withoutJSONMember(text, path), path, earlier);
  }));
}

/// Brings back the earlier entry, or that there was none. `isThereNow` tells whether there is another one.
void restore(const Machine& machine, const AssistantRow& row, const std::filesystem::path& program,
             const std::optional<JSONValue>& earlier, bool isThereNow) {
  const std::optional<AssistantEntry> entry = earlier ? std::optional(entryOf(*earlier)) : std::nullopt;
  const std::vector<ClientCommand> commands = restoreCommands(row, program, entry, isThereNow);
  if (commands.empty() && earlier) {
    restoreInFile(machine, row, *earlier);
    return;
  }
  const std::string text = runAll(machine, row.id, commands);
  const AssistantReading now = readEntry(machine, row);
  if (!now.problem.empty() || !isSameEntry(now.value(), earlier)) {
    throw AssistantError(Kind::withoutEffect, row.id, text);
  }
}

/// After a failure: one command may have removed the entry before another one failed. When this fails too,
/// the first failure is the one to tell.
void bringBack(const Machine& machine, const AssistantRow& row, const std::filesystem::path& program,
               const std::optional<JSONValue>& earlier) {
  try {
    const AssistantReading now = readEntry(machine, row);
    if (!isSameEntry(now.value(), earlier)) {
      restore(machine, row, program, earlier, now.entry.has_value());
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

/// Removes the copy of a file that is still what it was. Returns whether there is no copy any more.
bool isWithoutCopy(const std::optional<std::filesystem::path>& backup, const std::filesystem::path& file,
                   const std::optional<std::string>& before) {
  try {
    return !backup || (readConfigurationFile(file) == before && std::filesystem::remove(*backup));
  } catch (const std::exception&) {
    return false;
  }
}

/// The failure, which also names the copy.
AssistantError withCopy(const AssistantError& failure, const std::filesystem::path& backup) {
  const std::string printed = failure.details().empty() ? "" : failure.details() + "\n";
  return {failure.kind(), failure.assistant(), printed + "A copy of the file as it was: " + backup.string()};
}

/// The user agreed to what the commands do to the entry that was there, not to another one.
void checkUpToDate(const Machine& machine, const ConnectionPlan& planned) {
  const ConnectionPlan now = plan(machine, planned.id, planned.goal);
  if (now.way != planned.way || now.commands != planned.commands ||
      !isSameEntry(now.entryBefore, planned.entryBefore)) {
    throw AssistantError(Kind::changed, planned.id, "");
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
  checkUpToDate(machine, planned);
  const AssistantRow& row = assistantRow(planned.id);
  const std::filesystem::path program = planned.commands.front().front();
  std::optional<std::string> before = readConfigurationFile(planned.file);
  // Claude Code keeps copies of its file itself.
  const std::optional<std::filesystem::path> backup = row.rewritesFile ? std::nullopt : backUp(planned.file);
  try {
    const std::string text = runAll(machine, planned.id, planned.commands);
    checkReached(machine, planned, text);
  } catch (const std::exception& failure) {
    bringBack(machine, row, program, planned.entryBefore);
    const bool isAsBefore = isWithoutCopy(backup, planned.file, before);
    if (const auto* error = dynamic_cast<const AssistantError*>(&failure); error && !isAsBefore) {
      throw withCopy(*error, *backup);
    }
    throw;
  }
  ConnectionDone done{.plan = planned, .entryAfter = readEntry(machine, row).value()};
  if (!row.rewritesFile) {
    done.written = changeOf(planned, std::move(before), backup);
  }
  return done;
}

/// No entry where the commands left one comes from an earlier try that failed halfway, or from the user; then
/// nothing is destroyed.
void undoCommands(const Machine& machine, const ConnectionDone& done) {
  const AssistantRow& row = assistantRow(done.plan.id);
  const AssistantReading now = readEntry(machine, row);
  if (now.problem.empty() && isSameEntry(now.value(), done.plan.entryBefore)) {
    return;
  }
  if (!now.problem.empty() || now.hasComments || (now.entry && !isSameEntry(now.value(), done.entryAfter))) {
    throw AssistantError(Kind::changed, row.id, "");
  }
  restore(machine, row, done.plan.commands.front().front(), done.plan.entryBefore, now.entry.has_value());
}

}  // namespace

ConnectionDone carryOut(const Machine& machine, const ConnectionPlan& planned) {
  if (planned.isNothing()) {
    return {.plan = planned};
  }
  switch (planned.way) {
    case ConnectingWay::block:
      throw AssistantError(Kind::onlyByHand, planned.id, "");
    case ConnectingWay::file:
      checkNotRunning(machine, planned.id);
      return {.plan = planned, .written = write(*planned.change)};
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
    undoCommands(machine, done);
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
