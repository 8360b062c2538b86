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

/// Puts the earlier entry, or that there was none, in the place of this one.
void restoreInFile(const Machine& machine, const AssistantRow& row, const std::optional<JSONValue>& now,
                   const std::optional<JSONValue>& earlier) {
  if (row.shape == EntryShape::tomlTable) {
    throw AssistantError(Kind::changed, row.id, "");
  }
  checkNotRunning(machine, row.id);
  const JSONPath path = entryPath(row);
  write(proposeChange(placeOf(machine, row).file, [&](std::string_view text) {
    if (!isSameEntry(jsonMember(text, path), now)) {
      throw AssistantError(Kind::changed, row.id, "");
    }
    const std::string rest = withoutJSONMember(text, path);
    return earlier ? withJSONMember(rest, path, *earlier) : rest;
  }));
}

/// Brings back the earlier entry, or that there was none, in the place of this one.
void restore(const Machine& machine, const AssistantRow& row, const std::filesystem::path& program,
             const std::optional<JSONValue>& now, const std::optional<JSONValue>& earlier) {
  const std::optional<AssistantEntry> entry = earlier ? std::optional(entryOf(*earlier)) : std::nullopt;
  const std::vector<ClientCommand> commands = restoreCommands(row, program, entry, now.has_value());
  if (commands.empty() && earlier) {
    restoreInFile(machine, row, now, earlier);
    return;
  }
  const std::string text = runAll(machine, row.id, commands);
  const AssistantReading reached = readEntry(machine, row);
  if (!reached.problem.empty() || !isSameEntry(reached.value(), earlier)) {
    throw AssistantError(Kind::withoutEffect, row.id, text);
  }
}

/// After a failure: one command may have removed the entry before another one failed. The commands that bring
/// it back may fail for the same reason; then its file is edited. When that fails too, the first failure is
/// the one to tell, and the copy of the file is left.
void bringBack(const Machine& machine, const AssistantRow& row, const std::filesystem::path& program,
               const std::optional<JSONValue>& earlier) {
  try {
    const AssistantReading now = readEntry(machine, row);
    if (isSameEntry(now.value(), earlier)) {
      return;
    }
    try {
      restore(machine, row, program, now.value(), earlier);
    } catch (const AssistantError&) {
      restoreInFile(machine, row, readEntry(machine, row).value(), earlier);
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

AssistantError withCopy(const AssistantError& failure, const std::optional<std::filesystem::path>& backup) {
  return {failure.kind(), failure.assistant(), failure.details(), backup};
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
  // A file that its client rewrites all the time needs no copy for the sake of its bytes.
  const bool needsCopy = planned.entryBefore || !row.rewritesFile;
  const std::optional<std::filesystem::path> backup = needsCopy ? backUp(planned.file) : std::nullopt;
  try {
    const std::string text = runAll(machine, planned.id, planned.commands);
    checkReached(machine, planned, text);
  } catch (const std::exception& failure) {
    bringBack(machine, row, program, planned.entryBefore);
    const bool isAsBefore = isWithoutCopy(backup, planned.file, before);
    if (const auto* error = dynamic_cast<const AssistantError*>(&failure); error && !isAsBefore) {
      throw withCopy(*error, backup);
    }
    throw;
  }
  return {.plan = planned,
          .written = changeOf(planned, std::move(before), backup),
          .entryAfter = readEntry(machine, row).value()};
}

/// A command may have taken its time, in which somebody else changed the rest of the file.
bool mayUndoBytes(const AssistantRow& row, const ConnectionDone& done) {
  if (!done.written || done.plan.way == ConnectingWay::file) {
    return done.written.has_value();
  }
  const FileChange& change = done.written->change;
  return !row.rewritesFile && isSameBesidesEntry(row, change.before.value_or(""), change.after);
}

/// No entry where one was left comes from an earlier try that failed halfway, or from the user; then nothing
/// is destroyed.
void undoEntry(const Machine& machine, const AssistantRow& row, const ConnectionDone& done) {
  const AssistantReading now = readEntry(machine, row);
  const std::optional<JSONValue>& earlier = done.plan.entryBefore;
  if (now.problem.empty() && isSameEntry(now.value(), earlier)) {
    return;
  }
  if (!now.problem.empty() || now.hasComments || (now.entry && !isSameEntry(now.value(), done.entryAfter))) {
    throw AssistantError(Kind::changed, row.id, "");
  }
  if (done.plan.way == ConnectingWay::file) {
    restoreInFile(machine, row, now.value(), earlier);
    return;
  }
  try {
    restore(machine, row, done.plan.commands.front().front(), now.value(), earlier);
  } catch (const AssistantError& failure) {
    throw withCopy(failure, done.written ? done.written->backup : std::nullopt);
  }
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
      return {.plan = planned,
              .written = write(*planned.change),
              .entryAfter = jsonMember(planned.change->after, entryPath(assistantRow(planned.id)))};
    case ConnectingWay::ownCommand:
      break;
  }
  return runPlanned(machine, planned);
}

void undo(const Machine& machine, const ConnectionDone& done) {
  const AssistantRow& row = assistantRow(done.plan.id);
  if (done.plan.isNothing()) {
    return;
  }
  if (done.plan.way == ConnectingWay::file) {
    checkNotRunning(machine, row.id);
  }
  if (mayUndoBytes(row, done)) {
    try {
      undo(*done.written);
      return;
    } catch (const ConfigurationFileError& error) {
      if (error.kind() != ConfigurationFileError::Kind::changed) {
        throw;
      }
    }
  }
  undoEntry(machine, row, done);
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
