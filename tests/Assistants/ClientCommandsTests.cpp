#include "Assistants/ClientCommands.h"

#include <gmock/gmock.h>

#include "Assistants/ClientCommandsFixture.h"
#include "MCP/JSON/JSONValue.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;
using testing::ElementsAre;

TEST_F(CommandsOfClients, claudeCodeIsConnectedAndDisconnected) {
  putClient("claude", ".claude.json");
  fake.put(".claude.json", none);
  EXPECT_EQ(fake.state(AssistantID::claudeCode).way, ConnectingWay::ownCommand);
  ConnectionPlan planned = plan(fake.machine, AssistantID::claudeCode, Goal::connect);
  EXPECT_THAT(planned.commands, ElementsAre(ElementsAre(program("claude").string(), "mcp", "add", "--scope",
                                                        "user", "tarnwell", "--", helper(), "serve")));
  willWrite(entry(helper()));
  ConnectionDone done = carryOut(fake.machine, planned);
  EXPECT_EQ(calls(), "mcp add --scope user tarnwell -- " + helper() + " serve\n");
  EXPECT_FALSE(done.written.value().backup) << "there was no entry";
  EXPECT_TRUE(
      carryOut(fake.machine, plan(fake.machine, AssistantID::claudeCode, Goal::connect)).plan.isNothing());

  willWrite(none);
  undo(fake.machine, done);
  EXPECT_THAT(calls(), testing::EndsWith("\nmcp remove --scope user tarnwell\n"));

  willWrite(entry(helper()));
  carryOut(fake.machine, planned);
  willWrite(none);
  planned = plan(fake.machine, AssistantID::claudeCode, Goal::disconnect);
  EXPECT_THAT(planned.commands, ElementsAre(ElementsAre(program("claude").string(), "mcp", "remove",
                                                        "--scope", "user", "tarnwell")));
  done = carryOut(fake.machine, planned);
  willWrite(entry(helper()));
  undo(fake.machine, done);
  EXPECT_THAT(calls(),
              testing::EndsWith("mcp remove --scope user tarnwell\nmcp add-json --scope user tarnwell "
                                "{\"args\":[\"serve\"],\"command\":\"" +
                                helper() + "\"}\n"));
}

/// Claude Code refuses an entry that is there already.
TEST_F(CommandsOfClients, claudeCodeKeepsTheOtherMembersOfAnOldEntry) {
  putClient("claude", ".claude.json");
  fake.put(".claude.json", entry("/old/tarnwell", R"(,"timeout":5)"));
  const ConnectionPlan planned = plan(fake.machine, AssistantID::claudeCode, Goal::connect);
  EXPECT_THAT(planned.commands,
              ElementsAre(ElementsAre(testing::_, "mcp", "remove", "--scope", "user", "tarnwell"),
                          ElementsAre(testing::_, "mcp", "add-json", "--scope", "user", "tarnwell",
                                      R"({"args":["serve"],"command":")" + helper() + R"(","timeout":5})")));
}

TEST_F(CommandsOfClients, oldEntryOfClaudeCodeComesBackWhenTheNewOneFails) {
  putClient("claude", ".claude.json",
            "case \"$2 $#\" in remove*) echo '{}' > \"$HOME/.claude.json\";; "
            "*) case \"$*\" in */old/*) exit 0;; *) echo out; echo because >&2; exit 3;; esac;; esac");
  fake.put(".claude.json", entry("/old/tarnwell"));
  const ConnectionPlan planned = plan(fake.machine, AssistantID::claudeCode, Goal::connect);
  EXPECT_EQ(errorOf([&] { carryOut(fake.machine, planned); }), AssistantError::Kind::failed);
  EXPECT_EQ(details, "out\nbecause");
  EXPECT_THAT(calls(), testing::EndsWith("mcp add-json --scope user tarnwell "
                                         "{\"args\":[\"serve\"],\"command\":\"/old/tarnwell\"}\n"));
}

TEST_F(CommandsOfClients, claudeCodeWithoutItsProgramHasToBeClosed) {
  fake.put(".claude.json", none);
  fake.running = {{5, 1, "claude", "/x/2.1.0"}};
  EXPECT_EQ(errorOf([&] { plan(fake.machine, AssistantID::claudeCode, Goal::connect); }),
            AssistantError::Kind::running);
  putClient("claude", ".claude.json");
  EXPECT_NO_THROW(plan(fake.machine, AssistantID::claudeCode, Goal::connect))
      << "its command may run beside it";
}

/// Their commands would drop what else the entry has.
TEST_F(CommandsOfClients, entryWithMoreMembersIsNotReplacedByACommand) {
  putClient("codex", ".codex/config.toml");
  putClient("gemini", ".gemini/settings.json");
  fake.put(".codex/config.toml", toml("/old/tarnwell", "[mcp_servers.tarnwell.env]\nA = \"b\"\n"));
  fake.put(".gemini/settings.json", entry("/old/tarnwell", ",\"includeTools\":[\"x\"]"));
  EXPECT_EQ(plan(fake.machine, AssistantID::codex, Goal::connect).way, ConnectingWay::block);
  const ConnectionPlan planned = plan(fake.machine, AssistantID::geminiCLI, Goal::connect);
  EXPECT_EQ(planned.way, ConnectingWay::file);
  carryOut(fake.machine, planned);
  EXPECT_EQ(fileContents(fake.home() / ".gemini/settings.json"),
            entry(helper(), ",\"includeTools\":[\"x\"]"));
  EXPECT_EQ(plan(fake.machine, AssistantID::codex, Goal::disconnect).way, ConnectingWay::ownCommand);
  EXPECT_EQ(plan(fake.machine, AssistantID::geminiCLI, Goal::disconnect).way, ConnectingWay::ownCommand);
}

struct FailureRow {
  const char* name;
  const char* script;
  AssistantError::Kind kind;
  const char* details;
};

class FailuresOfClients : public CommandsOfClients, public testing::WithParamInterface<FailureRow> {};

TEST_P(FailuresOfClients, areTold) {
  FakeMachine::putProgram(program("codex"), GetParam().script);
  fake.put(".codex/config.toml", "a = 1\n");
  fake.machine.commandLimit =
      std::chrono::milliseconds(GetParam().kind == AssistantError::Kind::tookTooLong ? 500 : 60'000);
  const ConnectionPlan planned = plan(fake.machine, AssistantID::codex, Goal::connect);
  EXPECT_EQ(errorOf([&] { carryOut(fake.machine, planned); }), GetParam().kind);
  EXPECT_EQ(details, GetParam().details);
  EXPECT_EQ(fileContents(fake.home() / ".codex/config.toml"), "a = 1\n");
  const std::filesystem::directory_iterator files(fake.home() / ".codex");
  EXPECT_EQ(std::distance(begin(files), end(files)), 1) << "no copy is left";
}

/// It makes its folder itself.
TEST_F(CommandsOfClients, codexThatNeverRanIsConnected) {
  FakeMachine::putProgram(
      program("codex"),
      "/bin/mkdir -p \"$HOME/.codex\"; /bin/cat \"$HOME/next\" > \"$HOME/.codex/config.toml\"");
  willWrite("[mcp_servers.tarnwell]\ncommand = '" + helper() + "'\nargs = ['serve']\n");
  const ConnectionDone done = carryOut(fake.machine, plan(fake.machine, AssistantID::codex, Goal::connect));
  EXPECT_FALSE(done.written.value().backup);
  EXPECT_EQ(fake.state(AssistantID::codex).connection, Connection::here);
  undo(fake.machine, done);
  EXPECT_FALSE(std::filesystem::exists(fake.home() / ".codex/config.toml"));
}

INSTANTIATE_TEST_SUITE_P(
    all, FailuresOfClients,
    testing::Values(FailureRow{"status", "echo ' no '; exit 1", AssistantError::Kind::failed, "no"},
                    FailureRow{"signal", "kill -9 $$", AssistantError::Kind::failed, "signal 9\n"},
                    FailureRow{"tooLong", "exec /bin/sleep 600", AssistantError::Kind::tookTooLong, ""},
                    FailureRow{"noEffect", "echo done", AssistantError::Kind::withoutEffect, "done"},
                    FailureRow{"notUTF8", "printf 'caf\\351'; exit 1", AssistantError::Kind::failed,
                               "caf\uFFFD"}),
    rowName);

TEST_F(CommandsOfClients, programThatIsGoneIsTold) {
  putClient("codex", ".codex/config.toml");
  fake.put(".codex/config.toml", "");
  const ConnectionPlan planned = plan(fake.machine, AssistantID::codex, Goal::connect);
  fake.put(".local/bin/codex", "#!/nowhere/interpreter\n");
  EXPECT_EQ(errorOf([&] { carryOut(fake.machine, planned); }), AssistantError::Kind::notStarted);
  EXPECT_EQ(details, "No such file or directory");
  std::filesystem::remove(program("codex"));
  EXPECT_EQ(errorOf([&] { carryOut(fake.machine, planned); }), AssistantError::Kind::changed);
}

TEST_F(CommandsOfClients, programThatMayNotBeRunIsNotFound) {
  putClient("codex", ".codex/config.toml");
  ::chmod(program("codex").c_str(), 0644);
  EXPECT_FALSE(fake.state(AssistantID::codex).isInstalled);
  EXPECT_EQ(fake.state(AssistantID::codex).way, ConnectingWay::block);
}

TEST_F(CommandsOfClients, clientFindsWhatItIsMadeOf) {
  fake.variables = {{"PATH", "/usr/bin:relative::/bin"},
                    {"CODEX_HOME", (fake.root() / "elsewhere").string()}};
  std::filesystem::create_directories(fake.home() / ".volta/bin");
  const std::filesystem::path script =
      FakeMachine::putProgram(fake.root() / "client/codex",
                              "echo \"$PATH|$HOME|$CODEX_HOME|${CLAUDE_CONFIG_DIR-none}|$NO_COLOR|$PWD\"");
  ::setenv("CLAUDE_CONFIG_DIR", "/of/this/process", 1);
  const ProgramOutcome outcome = runCommand(fake.machine, {script.string()});
  ::unsetenv("CLAUDE_CONFIG_DIR");
  const std::string root = fake.root().string();
  EXPECT_EQ(outcome.output, root + "/client:/usr/bin:/bin:" + root + "/home/.volta/bin|" + root + "/home|" +
                                root + "/elsewhere|none|1|/\n");
}

}  // namespace
}  // namespace tarnwell::test
