#include <unistd.h>

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

#include "Platform/PrivateFiles.h"
#include "Platform/RunningPrograms.h"

namespace tarnwell {
namespace {

/// A process's own files of /proc are short. Unlike "cmdline" these do not wait for the process's memory.
constexpr std::size_t fileLimit = 16'384;

std::optional<std::int64_t> number(std::string_view text) {
  std::int64_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end != text.data() ? std::optional(value) : std::nullopt;
}

/// The first number of a line such as "PPid:\t17". The name, which a program chooses, stands in the first
/// line with its line feeds escaped, so it cannot pretend to be another line.
std::optional<std::int64_t> field(std::string_view status, std::string_view name) {
  const std::size_t place = status.find(std::string("\n").append(name).append(":\t"));
  return place == status.npos ? std::nullopt : number(status.substr(place + name.size() + 3));
}

std::filesystem::path fileOf(const std::filesystem::path& process) {
  std::error_code error;  // of programs that closed themselves to others, such as the helper
  std::string file = std::filesystem::read_symlink(process / "exe", error).string();
  constexpr std::string_view removed = " (deleted)";
  if (file.ends_with(removed)) {  // replaced by a newer version
    file.resize(file.size() - removed.size());
  }
  return file;
}

std::optional<RunningProgram> program(const std::filesystem::path& process) {
  const std::optional<std::int64_t> id = number(process.filename().string());
  const std::optional<FilePrefix> status = id ? readFilePrefix(process / "status", fileLimit) : std::nullopt;
  const std::optional<FilePrefix> name = status ? readFilePrefix(process / "comm", fileLimit) : std::nullopt;
  if (!name || field(status->text, "Uid") != static_cast<std::int64_t>(::getuid()) ||
      status->text.find("\nState:\tZ") != std::string::npos) {
    return std::nullopt;
  }
  RunningProgram found{.processID = *id, .parentID = field(status->text, "PPid").value_or(0)};
  found.name = name->text.substr(0, name->text.empty() ? 0 : name->text.size() - 1);
  found.executable = fileOf(process);
  return found;
}

}  // namespace

std::vector<RunningProgram> runningPrograms() {
  std::vector<RunningProgram> programs;
  std::error_code error;
  for (std::filesystem::directory_iterator entry("/proc", error), end; !error && entry != end;
       entry.increment(error)) {
    if (std::optional<RunningProgram> found = program(entry->path())) {
      programs.push_back(std::move(*found));
    }
  }
  return programs;
}

}  // namespace tarnwell
