#include "Platform/PrivateMemory.h"

#include <sys/prctl.h>
#include <sys/resource.h>

#include "support/ForkedProcess.h"

namespace tarnwell::test {
namespace {

TEST(PrivateMemory, isDumpedNeitherNowNorLater) {
  EXPECT_EQ(inForkedProcess([] {
              const int before = ::prctl(PR_GET_DUMPABLE, 0, 0, 0, 0);
              keepMemoryPrivate();
              rlimit core{1, 1};
              ::getrlimit(RLIMIT_CORE, &core);
              return std::to_string(before) + " " + std::to_string(::prctl(PR_GET_DUMPABLE, 0, 0, 0, 0)) +
                     " " + std::to_string(core.rlim_cur) + " " + std::to_string(core.rlim_max);
            }),
            "1 0 0 0");
}

}  // namespace
}  // namespace tarnwell::test
