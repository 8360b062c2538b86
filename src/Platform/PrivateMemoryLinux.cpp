#include <sys/prctl.h>
#include <sys/resource.h>

#include "Platform/PrivateMemory.h"

namespace tarnwell {

/// Neither call can fail: every process may lower its limit to zero.
void keepMemoryPrivate() {
  // This also makes root the owner of the files in /proc/PID (proc(5)).
  (void)::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
  const rlimit none{0, 0};
  (void)::setrlimit(RLIMIT_CORE, &none);
}

}  // namespace tarnwell
