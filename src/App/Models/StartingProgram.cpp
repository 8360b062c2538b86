#include "App/Models/StartingProgram.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>

#include "Assistants/Assistants.h"

namespace tarnwell {
namespace {

/// Programs that run others, and so say nothing of who wanted it.
constexpr std::string_view carriers[] = {"sh",   "bash",    "dash",     "zsh",     "fish",   "env",
                                         "node", "systemd", "launchd",  "init",    "npm",    "npx",
                                         "bun",  "deno",    "electron", "python3", "python", "tarnwell-app"};

constexpr std::string_view helperName = "tarnwell";

const RunningProgram* find(std::int64_t processID, const std::vector<RunningProgram>& running) {
  const auto found = std::find_if(running.begin(), running.end(), [&](const RunningProgram& program) {
    return program.processID == processID;
  });
  return found == running.end() ? nullptr : &*found;
}

/// The name that the program gave itself, or that of its file where the system cut the first one.
QString ownName(const RunningProgram& program) {
  const std::string file = program.executable.filename().string();
  const bool isCarrier = std::any_of(std::begin(carriers), std::end(carriers), [&](std::string_view carrier) {
    return program.name == carrier || file == carrier;
  });
  if (isCarrier || file.starts_with("python3.")) {
    return {};
  }
  return QString::fromStdString(file.starts_with(program.name) ? file : program.name);
}

}  // namespace

QString startingProgram(qint64 helper, const std::vector<RunningProgram>& running) {
  const RunningProgram* program = find(helper, running);
  if (!program || (program->name != helperName && program->executable.filename() != helperName)) {
    return {};
  }
  constexpr int longestWay = 12;
  const RunningProgram* const parent = find(program->parentID, running);
  for (int step = 0; step < longestWay && program; ++step) {
    program = find(program->parentID, running);
    if (const std::optional<std::string> name = program ? assistantName(*program) : std::nullopt) {
      return QString::fromStdString(*name);
    }
  }
  return parent ? ownName(*parent) : QString();
}

}  // namespace tarnwell
