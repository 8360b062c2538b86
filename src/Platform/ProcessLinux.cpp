#include "Platform/Process.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>
#include <system_error>

namespace tarnwell {
namespace {

void openMissingStandardStreams() {
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
      // The lowest free number is given out, which is this one.
      (void)::open("/dev/null", O_RDWR);
    }
  }
}

bool isSocket(const char* path) {
  struct stat status {};
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

}  // namespace

void prepareProcess() {
  openMissingStandardStreams();
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
  findSessionBus();
}

std::optional<std::filesystem::path> executablePath() {
  // The link of a program whose file was removed names no file, and this fails.
  std::error_code error;
  auto path = std::filesystem::canonical("/proc/self/exe", error);
  if (error) {
    return std::nullopt;
  }
  return path;
}

std::string_view invocationName() { return program_invocation_name; }

}  // namespace tarnwell
