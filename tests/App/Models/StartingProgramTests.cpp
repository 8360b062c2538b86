#include "App/Models/StartingProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/RowName.h"

namespace tarnwell::test {
namespace {

struct Row {
  const char* name;
  /// From the helper upwards. Each is the parent of the one before, with the numbers 1, 2 and so on.
  std::vector<RunningProgram> chain;
  const char* program;
};

RunningProgram program(std::string name, std::string executable = {}) {
  return {.name = std::move(name), .executable = std::move(executable)};
}
const RunningProgram helper = program("tarnwell", "/usr/bin/tarnwell");

class StartingProgramOf : public testing::TestWithParam<Row> {};

TEST_P(StartingProgramOf, isTheOneThatAPersonKnows) {
  std::vector<RunningProgram> running = GetParam().chain;
  for (std::size_t each = 0; each < running.size(); ++each) {
    running[each].processID = static_cast<std::int64_t>(each + 1);
    running[each].parentID = static_cast<std::int64_t>(each + 2);
  }
  EXPECT_EQ(startingProgram(1, running), GetParam().program);
}

INSTANTIATE_TEST_SUITE_P(
    , StartingProgramOf,
    testing::Values(
        Row{"assistant", {helper, program("claude")}, "Claude Code"},
        Row{"letterCase", {helper, program("Claude")}, "Claude Desktop"},
        Row{"behindAShell", {helper, program("sh"), program("node"), program("claude")}, "Claude Code"},
        Row{"theNearest", {helper, program("claude"), program("bash"), program("code")}, "Claude Code"},
        Row{"byItsFile", {helper, program("MainThread", "/opt/Cursor/cursor")}, "Cursor"},
        Row{"partOfALargeProgram",
            {helper, program("Cursor Helper (Plugin)",
                             "/Applications/Cursor.app/Contents/Frameworks/Cursor Helper (Plugin)")},
            "Cursor"},
        Row{"otherProgram", {helper, program("my-agent")}, "my-agent"},
        Row{"nameThatTheSystemCut",
            {helper, program("a-long-name-of-", "/usr/bin/a-long-name-of-a-program")},
            "a-long-name-of-a-program"},
        Row{"nameThatTheProgramChose", {helper, program("my agent", "/usr/bin/ruby")}, "my agent"},
        Row{"shell", {helper, program("bash"), program("my-terminal")}, ""},
        Row{"interpreter", {helper, program("python3", "/usr/bin/python3.11")}, ""},
        Row{"nodeUnderAnotherName", {helper, program("MainThread", "/usr/bin/node")}, ""},
        Row{"firstProcess", {helper, program("systemd")}, ""}, Row{"parentThatIsGone", {helper}, ""},
        Row{"numberGivenToAnotherProgram", {program("vim"), program("claude")}, ""},
        Row{"helperUnderAnotherFile",
            {program("tarnwell", "/opt/bundle/server"), program("claude")},
            "Claude Code"},
        Row{"nothingRuns", {}, ""}),
    rowName);

TEST(StartingProgram, isNotLookedForInACircle) {
  const std::vector<RunningProgram> running{
      {.processID = 1, .parentID = 2, .name = "tarnwell"},
      {.processID = 2, .parentID = 3, .name = "sh"},
      {.processID = 3, .parentID = 2, .name = "sh"},
  };
  EXPECT_EQ(startingProgram(1, running), "");
}

}  // namespace
}  // namespace tarnwell::test
