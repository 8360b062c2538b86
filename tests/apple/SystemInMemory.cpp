#include <crt_externs.h>
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
