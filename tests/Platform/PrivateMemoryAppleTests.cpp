#include "Platform/PrivateMemory.h"

#include <sys/ptrace.h>
#include <sys/resource.h>

#include "apple/FrameworksInMemory.h"
#include "support/ForkedProcess.h"

namespace tarnwell::test {
namespace {

TEST(PrivateMemoryOnApple, deniesAttachingAndCoreFiles) {
  EXPECT_EQ(inForkedProcess([] {
              frameworksInMemory() = {};
              keepMemoryPrivate();
              rlimit core{1, 1};
              ::getrlimit(RLIMIT_CORE, &core);
              const bool isDenied = frameworksInMemory().traceRequests == std::vector<int>{PT_DENY_ATTACH};
              return std::string(isDenied ? "denied " : "open ") + std::to_string(core.rlim_cur) + " " +
                     std::to_string(core.rlim_max);
            }),
            "denied 0 0");
}

}  // namespace
}  // namespace tarnwell::test
