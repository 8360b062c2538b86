#include "Platform/Process.h"

#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <system_error>

#include "Platform/StandardStreams.h"

namespace tarnwell {
namespace {

bool isSocket(const char* path) {
  struct stat status{};
  return ::stat(path, &status) == 0 && S_ISSOCK(status.st_mode);
}

void findSessionBus() {
  if (std::getenv("DBUS_SESSION_BUS_ADDRESS") != nullptr || std::getenv("XDG_RUNTIME_DIR") != nullptr) {
    return;
  }
  std::string path = "/run/user/" + std::to_string(::getuid()) + "/bus";
  if (isSocket(path.c_str())) {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", ("unix:path=" + path).c_str(), 0);
  }
}

/// Without this call, glibc raises the threshold to the size of the largest block ever freed, up to 32 MiB.
/// Deliberate: the condition is on the C library, not on the system, because musl has no such setting.
void returnLargeBlocks() {
#ifdef M_MMAP_THRESHOLD
  ::mallopt(M_MMAP_THRESHOLD, 1 << 20);
#endif
}

}  // namespace

void prepareProcess() {
  secureStandardStreams();
  findSessionBus();
  returnLargeBlocks();
}

std::optional<std::filesystem::path> executablePath() {
  // Fails when the program's file was removed: the link then names no file.
  std::error_code error;
  auto path = std::filesystem::canonical("/proc/self/exe", error);
  if (error) {
    return std::nullopt;
  }
  return path;
}

std::string_view invocationName() { return program_invocation_name; }

}  // namespace tarnwell
