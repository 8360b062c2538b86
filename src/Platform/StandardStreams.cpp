#include "Platform/StandardStreams.h"

#include <fcntl.h>

#include <cerrno>
#include <csignal>

namespace tarnwell {

void secureStandardStreams() {
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) < 0 && errno == EBADF) {
      // open(2) returns the lowest free number, which is this one.
      (void)::open("/dev/null", O_RDWR);
    }
  }
  std::signal(SIGPIPE, SIG_IGN);
  std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace tarnwell
