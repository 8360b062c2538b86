// The former brings what the latter needs.
#include <sys/types.h>

#include <sys/ptrace.h>
#include <sys/resource.h>

#include "Platform/PrivateMemory.h"

namespace tarnwell {

/// Deliberate: a debugger that has started the program sees it end here.
void keepMemoryPrivate() {
  (void)::ptrace(PT_DENY_ATTACH, 0, nullptr, 0);
  const rlimit none{0, 0};
  (void)::setrlimit(RLIMIT_CORE, &none);
}

}  // namespace tarnwell
