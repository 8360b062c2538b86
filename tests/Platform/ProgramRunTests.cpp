#include "Platform/ProgramRun.h"

#include <signal.h>

#include <chrono>
#include <fstream>

#include "support/Files.h"
#include "support/ForkedProcess.h"
#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

using End = ProgramOutcome::End;
using namespace std::chrono_literals;

struct ProgramRow {
  const char* name;
  const char* script;
  End end;
  int status;
  const char* output = "";
  const char* errors = "";
};

class ProgramRuns : public testing::TestWithParam<ProgramRow> {};

TEST_P(ProgramRuns, tellHowTheProgramEnded) {
  const ProgramOutcome outcome =
      runProgram({.command = {"/bin/sh", "-c", GetParam().script}, .environment = {"A=b"}});
  EXPECT_EQ(outcome.end, GetParam().end);
  EXPECT_EQ(outcome.status, GetParam().status);
  EXPECT_EQ(outcome.output, GetParam().output);
  EXPECT_EQ(outcome.errors, GetParam().errors);
  EXPECT_EQ(outcome.succeeded(), GetParam().end == End::exited && GetParam().status == 0);
}

INSTANTIATE_TEST_SUITE_P(
    all, ProgramRuns,
    testing::Values(ProgramRow{"success", "echo one; echo two >&2", End::exited, 0, "one\n", "two\n"},
                    ProgramRow{"failure", "exit 7", End::exited, 7},
                    ProgramRow{"killed", "kill -9 $$", End::killed, SIGKILL},
                    ProgramRow{"readsNothing", "cat; echo end", End::exited, 0, "end\n"},
                    ProgramRow{"inTheRootFolder", "pwd", End::exited, 0, "/\n"},
                    ProgramRow{"onlyTheGivenEnvironment", "echo \"$A$HOME\"", End::exited, 0, "b\n"},
                    ProgramRow{"closesItsOutput", "exec >&- 2>&-; exit 3", End::exited, 3}),
    rowName);

TEST(ProgramRun, argumentsReachTheProgramAsTheyAre) {
  const ProgramOutcome outcome =
      runProgram({.command = {"/bin/sh", "-c", "printf '%s|' \"$@\"", "sh", "a b", "", "'\"\\$x\n", "é"}});
  EXPECT_EQ(outcome.output, "a b||'\"\\$x\n|é|");
}

TEST(ProgramRun, programThatCannotStartTellsWhy) {
  const TemporaryDirectory directory;
  const std::filesystem::path plain = directory / "plain";
  std::ofstream(plain) << "#!/bin/sh\n";
  EXPECT_EQ(runProgram({.command = {plain}}).end, End::notStarted);
  EXPECT_EQ(runProgram({.command = {plain}}).status, EACCES);
  EXPECT_EQ(runProgram({.command = {directory / "missing"}}).status, ENOENT);
  EXPECT_EQ(runProgram({.command = {"/bin/sh", "-c", ""}, .folder = directory / "missing"}).end,
            End::notStarted);
}

TEST(ProgramRun, longOutputIsCutAndTheProgramGoesOn) {
  const ProgramOutcome outcome = runProgram(
      {.command = {"/bin/sh", "-c", "head -c 1000000 /dev/zero; head -c 1000000 /dev/zero >&2; exit 5"},
       .environment = {"PATH=/usr/bin:/bin"},
       .outputLimit = 1000});
  EXPECT_EQ(outcome.status, 5);
  EXPECT_EQ(outcome.output, std::string(1000, '\0'));
  EXPECT_EQ(outcome.errors, std::string(1000, '\0'));
}

TEST(ProgramRun, programThatRefusesToEndIsForced) {
  const ProgramOutcome outcome =
      runProgram({.command = {"/bin/sh", "-c", "trap '' TERM; while :; do sleep 1; done"},
                  .environment = {"PATH=/usr/bin:/bin"},
                  .limit = 100ms});
  EXPECT_EQ(outcome.end, End::tookTooLong);
}

TEST(ProgramRun, programThatPrintsWithoutEndIsEnded) {
  const auto begin = std::chrono::steady_clock::now();
  const ProgramOutcome outcome =
      runProgram({.command = {"/bin/sh", "-c", "for one in 1 2 3 4 5 6; do cat /dev/zero & done; wait"},
                  .environment = {"PATH=/usr/bin:/bin"},
                  .limit = 100ms});
  EXPECT_EQ(outcome.end, End::tookTooLong);
  EXPECT_EQ(outcome.output.size(), ProgramRun{}.outputLimit);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
}

TEST(ProgramRun, doesNotWaitForWhatTheProgramLeavesBehind) {
  const TemporaryDirectory directory;
  const auto begin = std::chrono::steady_clock::now();
  const ProgramOutcome outcome =
      runProgram({.command = {"/bin/sh", "-c", "sleep 600 & echo $! >child; echo end"},
                  .environment = {"PATH=/usr/bin:/bin"},
                  .folder = directory.path()});
  EXPECT_TRUE(outcome.succeeded());
  EXPECT_EQ(outcome.output, "end\n");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
  EXPECT_EQ(::kill(std::stoi(fileContents(directory / "child")), SIGKILL), 0);
}

TEST(ProgramRun, ignoredSignalsAreThoseOfTheSystemAgain) {
  EXPECT_EQ(inForkedProcess([] {
              ::signal(SIGPIPE, SIG_IGN);
              sigset_t blocked;
              ::sigfillset(&blocked);
              ::sigprocmask(SIG_BLOCK, &blocked, nullptr);
              return runProgram({.command = {"/bin/sh", "-c", "kill -PIPE $$; echo survived"}}).end ==
                             ProgramOutcome::End::killed
                         ? std::string("as usual")
                         : std::string("ignored");
            }),
            "as usual");
}

TEST(ProgramRun, ownEnvironmentHasEachVariable) {
  ::setenv("TARNWELL_TEST_VARIABLE", "a=b", 1);
  EXPECT_THAT(ownEnvironment(), testing::Contains("TARNWELL_TEST_VARIABLE=a=b"));
  ::unsetenv("TARNWELL_TEST_VARIABLE");
}

}  // namespace
}  // namespace tarnwell::test
