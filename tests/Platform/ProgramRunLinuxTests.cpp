#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <ostream>
#include <string>
#include <string_view>
#include <thread>

#include "Platform/ProgramRun.h"
#include "support/Files.h"
#include "support/ForkedProcess.h"
#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

using End = ProgramOutcome::End;
using namespace std::chrono_literals;

struct ChildRow {
  const char* name;
  const char* script;
};

void PrintTo(const ChildRow& row, std::ostream* stream) { *stream << row.name; }

class ProgramRunChild : public testing::TestWithParam<ChildRow> {};
INSTANTIATE_TEST_SUITE_P(
    all, ProgramRunChild,
    testing::Values(ChildRow{"endsWhenAsked", "echo before; sleep 600 & echo $! >child; wait"},
                    // It ignores what the program itself ends of.
                    ChildRow{"refusesToEnd",
                             "trap '' TERM; sleep 600 & echo $! >child; trap - TERM; echo before; wait"}),
    rowName);

TEST_P(ProgramRunChild, endsWithTheProgramThatTakesTooLong) {
  const TemporaryDirectory directory;
  const auto begin = std::chrono::steady_clock::now();
  const ProgramOutcome outcome = runProgram({.command = {"/bin/sh", "-c", GetParam().script},
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
  if (HasFailure()) {
    (void)::kill(child, SIGKILL);
  }
}

TEST(ProgramRun, endsAlsoWhereTheSystemDoesNotTellHow) {
  EXPECT_EQ(inForkedProcess([] {
              ::alarm(30);  // it used to wait for ever
              ::signal(SIGCHLD, SIG_IGN);
              const ProgramOutcome outcome = runProgram({.command = {"/bin/sh", "-c", "echo end"}});
              return outcome.output + std::to_string(outcome.status) + (outcome.succeeded() ? " well" : "");
            }),
            "end\n-1");
}

/// Not asked of a shell, which sees to this signal itself.
TEST(ProgramRun, programHearsOfItsOwnChildren) {
  const std::string status = inForkedProcess([] {
    ::alarm(30);
    ::signal(SIGCHLD, SIG_IGN);
    return runProgram({.command = {"/bin/cat", "/proc/self/status"}}).output;
  });
  const std::string_view field = "SigIgn:\t";
  const std::size_t ignored = status.find(field);
  ASSERT_NE(ignored, std::string::npos) << status;
  EXPECT_EQ(std::stoull(status.substr(ignored + field.size(), 16), nullptr, 16) & (1ULL << (SIGCHLD - 1)), 0U)
      << status;
}

}  // namespace
}  // namespace tarnwell::test
