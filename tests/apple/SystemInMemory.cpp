#include <crt_externs.h>
#include <libproc.h>
#include <os/log.h>
#include <sys/ptrace.h>
#include <sysdir.h>

#include <algorithm>
#include <cstdarg>
#include <cstring>

#include "apple/FrameworksInMemory.h"

using tarnwell::test::frameworksInMemory;

struct OpaqueLog {
  std::string subsystem, category;
};

os_log_t os_log_create(const char* subsystem, const char* category) {
  static std::map<std::pair<std::string, std::string>, OpaqueLog> logs;
  return &logs.try_emplace({subsystem, category}, OpaqueLog{subsystem, category}).first->second;
}

bool os_log_type_enabled(os_log_t log, os_log_type_t type) {
  const auto& disabled = frameworksInMemory().disabledLogs;
  return std::ranges::find(disabled, std::pair(std::uint8_t{type}, log->category)) == disabled.end();
}

void os_log_with_type(os_log_t log, os_log_type_t type, const char* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const char* text = va_arg(arguments, const char*);
  frameworksInMemory().logCalls.push_back({log->subsystem, log->category, type, format, text});
  va_end(arguments);
}

sysdir_search_path_enumeration_state sysdir_start_search_path_enumeration(
    sysdir_search_path_directory_t directory, sysdir_search_path_domain_mask_t domains) {
  const bool isKnown =
      directory == SYSDIR_DIRECTORY_APPLICATION_SUPPORT && domains == SYSDIR_DOMAIN_MASK_USER;
  return isKnown ? 1 : 0;
}

sysdir_search_path_enumeration_state sysdir_get_next_search_path_enumeration(
    sysdir_search_path_enumeration_state next, char* path) {
  if (next == 0 || next > frameworksInMemory().applicationSupportDirectories.size()) {
    return 0;
  }
  std::strcpy(path, frameworksInMemory().applicationSupportDirectories[next - 1].c_str());
  return next + 1;
}

int ptrace(int request, pid_t, caddr_t, int) {
  frameworksInMemory().traceRequests.push_back(request);
  return 0;
}

char*** _NSGetArgv() {
  static char** arguments;
  arguments = frameworksInMemory().arguments.data();
  return &arguments;
}

namespace {

const tarnwell::test::ProcessInMemory* find(int process) {
  const auto& processes = frameworksInMemory().processes;
  const auto found = std::ranges::find(processes, process, &tarnwell::test::ProcessInMemory::number);
  return found != processes.end() && !found->hasEnded ? &*found : nullptr;
}

}  // namespace

int proc_listallpids(void* buffer, int size) {
  const auto& processes = frameworksInMemory().processes;
  const std::size_t room =
      buffer == nullptr ? processes.size() : static_cast<std::size_t>(size) / sizeof(int);
  const std::size_t count = std::min(room, processes.size());
  for (std::size_t i = 0; buffer != nullptr && i < count; ++i) {
    static_cast<int*>(buffer)[i] = processes[i].number;
  }
  return static_cast<int>(count);
}

int proc_pidinfo(int process, int flavor, std::uint64_t, void* buffer, int size) {
  const tarnwell::test::ProcessInMemory* found = find(process);
  if (found == nullptr || flavor != PROC_PIDTBSDINFO || size != sizeof(proc_bsdinfo)) {
    return 0;
  }
  proc_bsdinfo information{};
  information.pbi_ppid = found->parent;
  information.pbi_ruid = found->user;
  found->shortName.copy(information.pbi_comm, sizeof information.pbi_comm);
  found->name.copy(information.pbi_name, sizeof information.pbi_name);
  std::memcpy(buffer, &information, sizeof information);
  return sizeof information;
}

int proc_pidpath(int process, void* buffer, std::uint32_t size) {
  const tarnwell::test::ProcessInMemory* found = find(process);
  return found == nullptr ? 0 : static_cast<int>(found->path.copy(static_cast<char*>(buffer), size));
}
