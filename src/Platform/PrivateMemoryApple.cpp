// sys/ptrace.h needs the types of sys/types.h.
#include <sys/types.h>

#include <sys/ptrace.h>
#include <sys/resource.h>

#include "Platform/PrivateMemory.h"

namespace tarnwell {

/// Deliberate: the program ends here when a debugger has started it.
void keepMemoryPrivate() {
  (void)::ptrace(PT_DENY_ATTACH, 0, nullptr, 0);
  const rlimit none{0, 0};
  (void)::setrlimit(RLIMIT_CORE, &none);
}

}  // namespace tarnwell
