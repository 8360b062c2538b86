#include <unistd.h>

#include "Platform/RunningPrograms.h"
#include "apple/FrameworksInMemory.h"

namespace tarnwell::test {
namespace {

TEST(RunningProgramsOnApple, areThoseOfTheUser) {
  FrameworksInMemory& frameworks = frameworksInMemory();
  frameworks = {};
  const std::uint32_t own = ::getuid();
  frameworks.processes = {
      {1, 0, own + 1, "launchd", "launchd", "/sbin/launchd", false},
      {7, 1, own, "Claude", "Claude", "/Applications/Claude.app/Contents/MacOS/Claude", false},
      {8, 7, own, "exactly 16 bytes", "", "", false},
      {9, 7, own, "gone", "gone", "/gone", true},
  };
  EXPECT_EQ(runningPrograms(),
            (std::vector<RunningProgram>{{7, 1, "Claude", "/Applications/Claude.app/Contents/MacOS/Claude"},
                                         {8, 7, "exactly 16 bytes", ""}}));
}

TEST(RunningProgramsOnApple, areNoneWhenTheSystemTellsNothing) {
  frameworksInMemory() = {};
  EXPECT_TRUE(runningPrograms().empty());
}

}  // namespace
}  // namespace tarnwell::test
