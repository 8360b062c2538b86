#include "Assistants/AssistantPlaces.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <system_error>

#include "Platform/Process.h"
#include "Platform/UserDirectories.h"

namespace tarnwell {
namespace {

using std::filesystem::path;

/// A variable with a relative path would mean another folder for each program that reads it.
std::optional<path> folderVariable(const Machine& machine, const char* name) {
  const std::optional<std::string> value = machine.environment(name);
  return value && path(*value).is_absolute() ? std::optional<path>(*value) : std::nullopt;
}

std::optional<path> baseFolder(const Machine& machine, const AssistantPlace& place) {
  switch (place.base) {
    case BaseFolder::variable:
      return folderVariable(machine, place.variable);
    case BaseFolder::settings:
      if (machine.layout == FolderLayout::macOS) {
        return machine.home / "Library/Application Support";
      }
      return folderVariable(machine, "XDG_CONFIG_HOME").value_or(machine.home / ".config");
    case BaseFolder::dotConfig:
      return folderVariable(machine, "XDG_CONFIG_HOME").value_or(machine.home / ".config");
    case BaseFolder::home:
      break;
  }
  return machine.home;
}

bool isThere(const path& file) {
  std::error_code error;  // what may not be looked at counts as missing
  return std::filesystem::exists(file, error);
}

/// The folders of the versions that a version manager keeps, such as ~/.nvm/versions/node/v22.1.0/bin. All
/// are searched, so their order hardly matters.
std::vector<path> versionFolders(const path& folder, const char* programs) {
  std::vector<path> versions;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    versions.push_back(entry->path());
  }
  std::ranges::sort(versions, std::greater());
  for (path& version : versions) {
    version /= programs;
  }
  return versions;
}

bool isProgramFile(const path& file) {
  std::error_code error;
  return std::filesystem::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0;
}

bool hasComponent(const path& file, std::string_view name) {
  return !name.empty() && std::ranges::any_of(file, [&](const path& part) { return part == path(name); });
}

bool belongsTo(const RunningProgram& program, const AssistantRow& row) {
  const auto isItsName = [&](std::string_view name) {
    return name == program.name || path(name) == program.executable.filename();
  };
  return std::ranges::any_of(row.programs, isItsName) || std::ranges::any_of(row.processes, isItsName) ||
         hasComponent(program.executable, row.folder) ||
         (row.application != nullptr && hasComponent(program.executable, row.application));
}

/// A lock stays when its program is killed. Another program may have the number by now, and a home directory
/// may be shared between machines.
bool holdsLock(const Machine& machine, const AssistantRow& row, const RunningProgram& program) {
  std::error_code error;
  const path lock = placeOf(machine, row).trace / "SingletonLock";
  const std::string holder = std::filesystem::read_symlink(lock, error).string();
  const bool mayBeIt = program.executable.empty() || belongsTo(program, row) ||
                       program.executable.filename().string().starts_with("electron");
  return !error && mayBeIt && holder == machine.hostName + "-" + std::to_string(program.processID);
}

std::string ownHostName() {
  std::array<char, 256> name{};
  return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

}  // namespace

Machine Machine::thisOne() {
  Machine machine;
  const char* home = std::getenv("HOME");
  machine.home = home != nullptr && path(home).is_absolute() ? path(home) : homeDirectory();
  machine.environment = [](const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0' ? std::optional<std::string>(value) : std::nullopt;
  };
  machine.runningPrograms = tarnwell::runningPrograms;
  if (const std::optional<path> app = executablePath()) {
    machine.helper = app->parent_path() / "tarnwell";
  }
  machine.layout = ownFolderLayout();
  machine.hostName = ownHostName();
  return machine;
}

FoundPlace placeOf(const Machine& machine, const AssistantRow& row) {
  std::optional<FoundPlace> first;
  for (const AssistantPlace& place : row.places) {
    const std::optional<path> base = baseFolder(machine, place);
    if (!base) {
      continue;
    }
    FoundPlace found{*base / place.trace, *base / place.file};
    if (place.base == BaseFolder::variable || isThere(found.trace)) {
      return found;
    }
    if (!first) {
      first = std::move(found);
    }
  }
  return first.value();
}

std::vector<path> programFolders(const Machine& machine) {
  std::vector<path> folders;
  const auto add = [&](const path& folder) {
    if (folder.is_absolute() && std::ranges::find(folders, folder) == folders.end()) {
      folders.push_back(folder);
    }
  };
  const std::string searchPath = machine.environment("PATH").value_or("");
  for (std::size_t begin = 0; begin <= searchPath.size();) {
    const std::size_t end = std::min(searchPath.find(':', begin), searchPath.size());
    add(searchPath.substr(begin, end - begin));
    begin = end + 1;
  }
  for (const char* folder : {".local/bin", "bin", ".claude/local", ".npm-global/bin", ".npm-packages/bin",
                             ".volta/bin", ".bun/bin", ".local/share/pnpm", "Library/pnpm", ".yarn/bin",
                             ".asdf/shims", ".local/share/mise/shims", ".local/share/fnm/aliases/default/bin",
                             ".cargo/bin", ".nix-profile/bin", ".lmstudio/bin"}) {
    add(machine.home / folder);
  }
  for (const path& folder : versionFolders(machine.home / ".nvm/versions/node", "bin")) {
    add(folder);
  }
  for (const char* folder : {"usr/local/bin", "usr/bin", "bin", "opt/homebrew/bin", "opt/local/bin",
                             "home/linuxbrew/.linuxbrew/bin", "snap/bin"}) {
    add(machine.systemRoot / folder);
  }
  return folders;
}

std::optional<path> findProgram(const Machine& machine, std::string_view name) {
  for (const path& folder : programFolders(machine)) {
    if (path file = folder / name; isProgramFile(file)) {
      return file;
    }
  }
  return std::nullopt;
}

bool isInstalled(const Machine& machine, const AssistantRow& row) {
  if (isThere(placeOf(machine, row).trace)) {
    return true;
  }
  if (machine.layout == FolderLayout::macOS && row.application != nullptr &&
      (isThere(machine.systemRoot / "Applications" / row.application) ||
       isThere(machine.home / "Applications" / row.application))) {
    return true;
  }
  return std::ranges::any_of(row.programs,
                             [&](const char* name) { return findProgram(machine, name).has_value(); });
}

bool isRunning(const Machine& machine, const AssistantRow& row) {
  const std::vector<RunningProgram> programs = machine.runningPrograms();
  return std::ranges::any_of(programs, [&](const RunningProgram& program) {
    return belongsTo(program, row) || holdsLock(machine, row, program);
  });
}

void checkNotRunning(const Machine& machine, AssistantID id) {
  const AssistantRow& row = assistantRow(id);
  if (row.rewritesFile && isRunning(machine, row)) {
    throw AssistantError(AssistantError::Kind::running, id, "");
  }
}

std::optional<std::string> assistantName(const RunningProgram& program) {
  for (const AssistantRow& row : assistantRows()) {
    if (belongsTo(program, row)) {
      return row.name;
    }
  }
  return std::nullopt;
}

}  // namespace tarnwell
