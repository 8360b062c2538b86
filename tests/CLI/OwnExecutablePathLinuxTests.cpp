#include "CLI/CLIRunner.h"

#include <gtest/gtest.h>

#include "Platform/Process.h"
#include "support/ForkedProcess.h"
#include "support/MountNamespace.h"

namespace tarnwell::test {
namespace {

TEST(OwnExecutablePath, isTheFileOfThisProgram) {
  EXPECT_EQ(CLIRunner::ownExecutablePath(), executablePath());
  EXPECT_EQ(CLIRunner::ownExecutablePath().filename(), "cli_tests");
}

/// An empty /proc, as in a bare container.
TEST(OwnExecutablePath, comesFromTheCommandLineWhenTheSystemDoesNotTell) {
  const std::string expected = CLIRunner::ownExecutablePath();
  EXPECT_EQ(inForkedProcess([] {
              enterMountNamespace({"/proc"});
              return executablePath() ? "the system tells" : CLIRunner::ownExecutablePath().string();
            }),
            expected);
}

TEST(OwnExecutablePath, isTheBareNameInAWorkingDirectoryThatWasRemoved) {
  EXPECT_EQ(inForkedProcess([] {
              enterMountNamespace({"/proc", "/tmp"});
              std::filesystem::create_directory("/tmp/removed");
              std::filesystem::current_path("/tmp/removed");
              std::filesystem::remove("/tmp/removed");
              static char name[] = "some-name";
              program_invocation_name = name;
              return CLIRunner::ownExecutablePath().string();
            }),
            "some-name");
}

}  // namespace
}  // namespace tarnwell::test
