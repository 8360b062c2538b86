#include "Assistants/AssistantPlaces.h"

#include <gmock/gmock.h>

#include "Assistants/FakeMachine.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;

struct ProgramRow {
  const char* name;
  /// Below the test's root folder.
  const char* file;
  const char* searchPath = "";
  bool isFound = true;
};

class ProgramsOfClients : public testing::TestWithParam<ProgramRow> {};

TEST_P(ProgramsOfClients, areFoundWhereInstallersPutThem) {
  FakeMachine fake;
  const std::filesystem::path file = FakeMachine::putProgram(fake.root() / GetParam().file, "exit 0");
  if (*GetParam().searchPath != '\0') {
    fake.variables["PATH"] = "/nowhere:" + (fake.root() / GetParam().searchPath).string();
  }
  const auto expected = GetParam().isFound ? std::optional(file) : std::nullopt;
  EXPECT_EQ(findProgram(fake.machine, "codex"), expected);
  EXPECT_EQ(fake.state(AssistantID::codex).isInstalled, GetParam().isFound);
}

INSTANTIATE_TEST_SUITE_P(all, ProgramsOfClients,
                         testing::Values(ProgramRow{"path", "tools/codex", "tools"},  //
                                         ProgramRow{"notInPath", "tools/codex", "", false},
                                         ProgramRow{"local", "home/.local/bin/codex"},  //
                                         ProgramRow{"bin", "home/bin/codex"},           //
                                         ProgramRow{"npm", "home/.npm-global/bin/codex"},
                                         ProgramRow{"nvm", "home/.nvm/versions/node/v22.1.0/bin/codex"},
                                         ProgramRow{"volta", "home/.volta/bin/codex"},
                                         ProgramRow{"ownInstaller", "home/.claude/local/codex"},
                                         ProgramRow{"usrLocal", "system/usr/local/bin/codex"},
                                         ProgramRow{"system", "system/usr/bin/codex"},
                                         ProgramRow{"homebrew", "system/opt/homebrew/bin/codex"},
                                         ProgramRow{"folderOfThatName", "home/bin/codex/x", "", false}),
                         rowName);

TEST(ProgramsOfClients, pathComesFirst) {
  FakeMachine fake;
  FakeMachine::putProgram(fake.home() / ".local/bin/codex", "exit 0");
  const auto first = FakeMachine::putProgram(fake.root() / "first/codex", "exit 0");
  fake.variables["PATH"] = first.parent_path().string();
  EXPECT_EQ(findProgram(fake.machine, "codex"), first);
}

TEST(InstalledClients, areFoundByTheirApplicationOnMacOS) {
  for (const char* folder : {"system/Applications", "home/Applications"}) {
    FakeMachine fake;
    std::filesystem::create_directories(fake.root() / folder / "Cursor.app");
    EXPECT_FALSE(fake.state(AssistantID::cursor).isInstalled);
    fake.machine.layout = FolderLayout::macOS;
    EXPECT_TRUE(fake.state(AssistantID::cursor).isInstalled) << folder;
  }
}

TEST(InstalledClients, folderOfAnotherProgramIsNotGemini) {
  FakeMachine fake;
  fake.put(".gemini/antigravity/mcp_config.json", "{}");
  EXPECT_FALSE(fake.state(AssistantID::geminiCLI).isInstalled);
}

TEST(InstalledClients, clientThatNeverRanHasNoFolderToWriteTo) {
  FakeMachine fake;
  FakeMachine::putProgram(fake.home() / ".local/bin/cursor", "exit 0");
  EXPECT_TRUE(fake.state(AssistantID::cursor).isInstalled);
  try {
    plan(fake.machine, AssistantID::cursor, Goal::connect);
    FAIL() << "there is no folder";
  } catch (const AssistantError& error) {
    EXPECT_EQ(error.kind(), AssistantError::Kind::neverStarted);
    EXPECT_EQ(error.details(), (fake.home() / ".cursor").string());
  }
}

TEST(InstalledClients, missingFileIsMade) {
  FakeMachine fake;
  std::filesystem::create_directories(fake.home() / ".cursor");
  const ConnectionDone done = carryOut(fake.machine, plan(fake.machine, AssistantID::cursor, Goal::connect));
  EXPECT_EQ(fake.state(AssistantID::cursor).connection, Connection::here);
  undo(fake.machine, done);
  EXPECT_FALSE(std::filesystem::exists(fake.home() / ".cursor/mcp.json"));
}

struct VariableRow {
  const char* name;
  AssistantID id;
  const char* variable;
  const char* value;
  /// Below the test's root folder.
  const char* file;
};

class FoldersOfClients : public testing::TestWithParam<VariableRow> {};

TEST_P(FoldersOfClients, followTheEnvironment) {
  FakeMachine fake;
  const std::string value = GetParam().value;
  fake.variables[GetParam().variable] = value.starts_with('/') ? fake.root().string() + value : value;
  EXPECT_EQ(fake.state(GetParam().id).file, fake.root() / GetParam().file);
}

INSTANTIATE_TEST_SUITE_P(
    all, FoldersOfClients,
    testing::Values(
        VariableRow{"claudeCode", AssistantID::claudeCode, "CLAUDE_CONFIG_DIR", "/c", "c/.claude.json"},
        VariableRow{"codex", AssistantID::codex, "CODEX_HOME", "/c", "c/config.toml"},
        VariableRow{"gemini", AssistantID::geminiCLI, "GEMINI_CLI_HOME", "/c", "c/.gemini/settings.json"},
        VariableRow{"code", AssistantID::visualStudioCode, "XDG_CONFIG_HOME", "/c", "c/Code/User/mcp.json"},
        VariableRow{"zed", AssistantID::zed, "XDG_CONFIG_HOME", "/c", "c/zed/settings.json"},
        VariableRow{"cursor", AssistantID::cursor, "XDG_CONFIG_HOME", "/c", "home/.cursor/mcp.json"},
        VariableRow{"relative", AssistantID::codex, "CODEX_HOME", "c", "home/.codex/config.toml"}),
    rowName);

TEST(FoldersOfClients, lmStudioMayHaveItsOldOne) {
  FakeMachine fake;
  fake.put(".cache/lm-studio/x", "");
  EXPECT_EQ(fake.state(AssistantID::lmStudio).file, fake.home() / ".cache/lm-studio/mcp.json");
  fake.put(".lmstudio/x", "");
  EXPECT_EQ(fake.state(AssistantID::lmStudio).file, fake.home() / ".lmstudio/mcp.json");
}

struct ProcessRow {
  const char* name;
  RunningProgram program;
  const char* client;
};

class ProcessesOfClients : public testing::TestWithParam<ProcessRow> {};

TEST_P(ProcessesOfClients, haveTheNameOfTheirClient) {
  EXPECT_EQ(assistantName(GetParam().program).value_or(""), GetParam().client);
}

INSTANTIATE_TEST_SUITE_P(
    all, ProcessesOfClients,
    testing::Values(
        ProcessRow{"desktopOnMacOS",
                   {1, 1, "Claude", "/Applications/Claude.app/Contents/MacOS/Claude"},
                   "Claude Desktop"},
        ProcessRow{"helperOnMacOS",
                   {1, 1, "Claude Helper", "/Applications/Claude.app/Contents/Frameworks/x/Claude Helper"},
                   "Claude Desktop"},
        ProcessRow{
            "desktopOnLinux", {1, 1, "electron", "/usr/lib/claude-desktop/electron"}, "Claude Desktop"},
        ProcessRow{
            "claudeCode", {1, 1, "claude", "/home/u/.local/share/claude/versions/2.1.0"}, "Claude Code"},
        ProcessRow{"claudeCodeInDesktop",
                   {1, 1, "2.1.0", "/Users/u/Library/Application Support/Claude/claude-code/2.1.0/claude"},
                   "Claude Code"},
        ProcessRow{"npm",
                   {1, 1, "claude.exe", "/x/node_modules/@anthropic-ai/claude-code/bin/claude.exe"},
                   "Claude Code"},
        ProcessRow{"codex", {1, 1, "codex", ""}, "Codex"},
        ProcessRow{"code", {1, 1, "code", "/usr/share/code/code"}, "Visual Studio Code"},
        ProcessRow{"zed", {1, 1, "zed-editor", "/home/u/.local/zed.app/libexec/zed-editor"}, "Zed"},
        ProcessRow{"shell", {1, 1, "bash", "/usr/bin/bash"}, ""},
        ProcessRow{"nameInAFolder", {1, 1, "vim", "/home/claude/code/vim"}, ""},
        ProcessRow{"nothingKnown", {1, 1, "", ""}, ""}),
    rowName);

struct LockRow {
  const char* name;
  const char* link;
  bool isRunning;
  const char* executable = "/usr/lib/electron/electron";
};

class LocksOfClients : public testing::TestWithParam<LockRow> {};

/// Some packages start Claude Desktop as "electron".
TEST_P(LocksOfClients, tellThatItRuns) {
  FakeMachine fake;
  fake.put(".config/Claude/claude_desktop_config.json", "{}");
  fake.machine.hostName = "my-host";
  fake.running = {{4711, 1, "x", GetParam().executable}};
  std::filesystem::create_symlink(GetParam().link, fake.home() / ".config/Claude/SingletonLock");
  EXPECT_EQ(isRunning(fake.machine, assistantRow(AssistantID::claudeDesktop)), GetParam().isRunning);
}

INSTANTIATE_TEST_SUITE_P(all, LocksOfClients,
                         testing::Values(LockRow{"held", "my-host-4711", true},
                                         LockRow{"heldByNobodyKnows", "my-host-4711", true, ""},
                                         LockRow{"numberOfAnotherProgram", "my-host-4711", false, "/bin/vim"},
                                         LockRow{"ofAnotherMachine", "your-host-4711", false},
                                         LockRow{"ofALongerName", "x-my-host-4711", false},
                                         LockRow{"ofAProgramThatEnded", "my-host-4712", false},
                                         LockRow{"unreadable", "4711", false}),
                         rowName);

TEST(Machine, thisOneHasTheHelperBesideTheProgram) {
  const Machine machine = Machine::thisOne();
  EXPECT_TRUE(machine.home.is_absolute());
  EXPECT_EQ(machine.helper.filename(), "tarnwell");
  EXPECT_TRUE(machine.helper.is_absolute());
  EXPECT_NE(machine.hostName, "");
  EXPECT_FALSE(machine.environment("TARNWELL_NO_SUCH_VARIABLE"));
}

}  // namespace
}  // namespace tarnwell::test
