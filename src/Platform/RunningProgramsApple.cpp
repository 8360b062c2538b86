#include <libproc.h>
#include <sys/proc_info.h>
#include <unistd.h>

#include <cstddef>

#include "Platform/RunningPrograms.h"

namespace tarnwell {
namespace {

std::vector<pid_t> processes() {
  // Without a buffer it tells how many there are. Some room for those that start meanwhile.
  const int announced = ::proc_listallpids(nullptr, 0);
  std::vector<pid_t> numbers(announced > 0 ? static_cast<std::size_t>(announced) + 64 : 0);
  const int filled = ::proc_listallpids(numbers.data(), static_cast<int>(numbers.size() * sizeof(pid_t)));
  numbers.resize(filled > 0 ? static_cast<std::size_t>(filled) : 0);
  return numbers;
}

/// The text in a field that has no terminator when it is full.
template <std::size_t size>
std::string text(const char (&field)[size]) {
  return {field, ::strnlen(field, size)};
}

}  // namespace

std::vector<RunningProgram> runningPrograms() {
  std::vector<RunningProgram> programs;
  for (const pid_t process : processes()) {
    proc_bsdinfo information{};
    if (::proc_pidinfo(process, PROC_PIDTBSDINFO, 0, &information, sizeof information) !=
            static_cast<int>(sizeof information) ||
        information.pbi_ruid != ::getuid() || information.pbi_status == SZOMB) {
      continue;
    }
    RunningProgram program{.processID = process, .parentID = information.pbi_ppid};
    program.name = text(information.pbi_name);
    if (program.name.empty()) {
      program.name = text(information.pbi_comm);
    }
    char path[PROC_PIDPATHINFO_MAXSIZE];
    if (const int length = ::proc_pidpath(process, path, sizeof path); length > 0) {
      program.executable = std::string(path, static_cast<std::size_t>(length));
    }
    programs.push_back(std::move(program));
  }
  return programs;
}

}  // namespace tarnwell
