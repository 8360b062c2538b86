#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>

#include "Platform/Process.h"
#include "Platform/RunningPrograms.h"
#include "support/ChildProgram.h"
#include "support/ForkedProcess.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

std::optional<RunningProgram> find(std::int64_t process) {
  const std::vector<RunningProgram> programs = runningPrograms();
  const auto found = std::ranges::find(programs, process, &RunningProgram::processID);
  return found != programs.end() ? std::optional(*found) : std::nullopt;
}

TEST(RunningPrograms, includeThisOne) {
  const std::optional<RunningProgram> own = find(::getpid());
  ASSERT_TRUE(own);
  EXPECT_EQ(own->parentID, ::getppid());
  EXPECT_EQ(own->executable, executablePath());
  EXPECT_EQ(own->name, executablePath()->filename().string().substr(0, 15));
}

TEST(RunningPrograms, tellWhoStartedAProgram) {
  const ChildProgram child({"/bin/sleep", "600"}, {});
  const std::optional<RunningProgram> found = find(child.processID());
  ASSERT_TRUE(found);
  EXPECT_EQ(found->parentID, ::getpid());
}

TEST(RunningPrograms, leaveOutThoseThatEnded) {
  ChildProgram child({"/bin/true"}, {});
  child.readAll();  // until it has ended; nobody has waited for it
  while (find(child.processID())) {
  }
  EXPECT_EQ(child.wait(), 0);
}

TEST(RunningPrograms, nameCannotPretendToBeAnotherLine) {
  EXPECT_EQ(inForkedProcess([] {
              ::prctl(PR_SET_NAME, "a\nPPid:\t1\n");
              const std::optional<RunningProgram> own = find(::getpid());
              return own && own->parentID == ::getppid() ? own->name : "deceived";
            }),
            "a\nPPid:\t1\n");
}

TEST(RunningPrograms, includeProgramsThatAreClosedToOthers) {
  EXPECT_EQ(inForkedProcess([] {
              ::prctl(PR_SET_DUMPABLE, 0);
              return std::string(find(::getpid()) ? "there" : "missing");
            }),
            "there");
}

TEST(RunningPrograms, keepTheirPathWhenTheFileIsReplaced) {
  const TemporaryDirectory directory;
  const std::filesystem::path program = std::filesystem::canonical(directory.path()) / "sleeper";
  std::filesystem::copy_file("/bin/sleep", program);
  const ChildProgram child({program, "600"}, {});
  std::filesystem::remove(program);
  EXPECT_EQ(find(child.processID()).value().executable, program);
}

}  // namespace
}  // namespace tarnwell::test
