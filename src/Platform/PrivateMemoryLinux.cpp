#include <sys/prctl.h>
#include <sys/resource.h>

#include "Platform/PrivateMemory.h"

namespace tarnwell {

/// Neither call can fail: zero is a lower limit than any.
void keepMemoryPrivate() {
  // Also gives the files of /proc/PID to root (proc(5)).
  (void)::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
  const rlimit none{0, 0};
  (void)::setrlimit(RLIMIT_CORE, &none);
}

}  // namespace tarnwell
