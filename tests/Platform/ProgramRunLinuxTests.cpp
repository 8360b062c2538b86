#include <chrono>
#include <string>
#include <thread>

#include "Platform/ProgramRun.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

using End = ProgramOutcome::End;
using namespace std::chrono_literals;

TEST(ProgramRun, programThatTakesTooLongIsEndedWithItsChildren) {
  const TemporaryDirectory directory;
  const auto begin = std::chrono::steady_clock::now();
  const ProgramOutcome outcome =
      runProgram({.command = {"/bin/sh", "-c", "echo before; sleep 600 & echo $! >child; wait"},
                  .environment = {"PATH=/usr/bin:/bin"},
                  .folder = directory.path(),
                  .limit = 300ms});
  EXPECT_EQ(outcome.end, End::tookTooLong);
  EXPECT_FALSE(outcome.succeeded());
  EXPECT_EQ(outcome.output, "before\n");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 60s);
  const pid_t child = std::stoi(fileContents(directory / "child"));
  const auto deadline = std::chrono::steady_clock::now() + 30s;
  // It may stay as an entry that nobody has waited for, which has no memory map any more.
  while (!fileContents("/proc/" + std::to_string(child) + "/maps").empty() &&
         std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(5ms);
  }
  EXPECT_EQ(fileContents("/proc/" + std::to_string(child) + "/maps"), "");
}

}  // namespace
}  // namespace tarnwell::test
