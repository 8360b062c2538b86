#include "Assistants/ClientCommands.h"

#include <gmock/gmock.h>

#include "Assistants/FakeMachine.h"
#include "MCP/JSON/JSONValue.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;
using testing::ElementsAre;

/// A client whose command notes its words and then does what the test wants: it copies "next", a file in the
/// home directory, over its configuration.
class CommandsOfClients : public testing::Test {
 protected:
  std::filesystem::path program(const std::string& name) const { return fake.home() / ".local/bin" / name; }
  void putClient(const std::string& name, const std::string& file, const std::string& script = "") const {
    FakeMachine::putProgram(
        program(name), "echo \"$*\" >> \"$HOME/calls\"\n" + script +
                           "\n[ ! -e \"$HOME/next\" ] || /bin/cat \"$HOME/next\" > \"$HOME/" + file + "\"");
  }
  /// What the next command leaves behind.
  void willWrite(const std::string& text) const { fake.put("next", text); }
  std::string calls() const { return fileContents(fake.home() / "calls"); }
  std::string helper() const { return fake.machine.helper.string(); }
  std::string entry(const std::string& command, const std::string& more = "") const {
    return R"({"mcpServers":{"a":{"command":"b"},"tarnwell":{"command":")" + command +
           R"(","args":["serve"])" + more + "}}}";
  }
  std::string toml(const std::string& command, const std::string& more = "") const {
    return "# mine\nmodel = 'x'\n[mcp_servers.tarnwell]\ncommand = \"" + command +
           "\"\nargs = [\"serve\"]\n" + more;
  }
  AssistantError::Kind errorOf(const std::function<void()>& work) const {
    try {
      work();
    } catch (const AssistantError& error) {
      details = error.details();
      return error.kind();
    }
    throw std::runtime_error("nothing was thrown");
  }

  FakeMachine fake;
  mutable std::string details;
};

constexpr const char* none = R"({"mcpServers":{"a":{"command":"b"}}})";

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

struct BytesRow {
  const char* name;
  AssistantID id;
  const char* program;
  const char* file;
};

class BytesOfClients : public CommandsOfClients, public testing::WithParamInterface<BytesRow> {
 protected:
  std::string connected(const std::string& command) const {
    return GetParam().id == AssistantID::codex ? toml(command) : entry(command);
  }
  std::string unconnected() const {
    return GetParam().id == AssistantID::codex ? "model = 'x'\n# mine, which its command drops\n" : none;
  }
  std::string alone() const {
    return GetParam().id == AssistantID::codex
               ? "[mcp_servers.tarnwell]\ncommand = '" + helper() + "'\nargs = ['serve']\n"
               : R"({"mcpServers":{"tarnwell":{"command":")" + helper() + R"(","args":["serve"]}}})";
  }
  void put(const std::string& text) const { fake.put(GetParam().file, text); }
  std::string text() const { return fileContents(fake.home() / GetParam().file); }
};

TEST_P(BytesOfClients, comeBackWhenNobodyChangedTheFileSince) {
  putClient(GetParam().program, GetParam().file);
  for (const std::string& start : {connected("/old/tarnwell"), unconnected(), unconnected() + "\n"}) {
    put(start);
    willWrite(connected(helper()));
    const ConnectionDone done = carryOut(fake.machine, plan(fake.machine, GetParam().id, Goal::connect));
    EXPECT_EQ(text(), connected(helper()));
    EXPECT_EQ(fileContents(done.written.value().backup.value()), start);
    const std::string before = calls();
    undo(fake.machine, done);
    EXPECT_EQ(text(), start);
    EXPECT_EQ(calls(), before) << "no command is needed";
  }
}

TEST_P(BytesOfClients, fileThatWasNotThereGoesAgain) {
  putClient(GetParam().program, GetParam().file);
  put("");
  std::filesystem::remove(fake.home() / GetParam().file);
  willWrite(alone());
  const ConnectionDone done = carryOut(fake.machine, plan(fake.machine, GetParam().id, Goal::connect));
  undo(fake.machine, done);
  EXPECT_FALSE(std::filesystem::exists(fake.home() / GetParam().file));
}

/// Somebody else changed another setting at the same time.
TEST_P(BytesOfClients, doNotTakeBackWhatCameWhileTheCommandRan) {
  const bool isTOML = GetParam().id == AssistantID::codex;
  putClient(GetParam().program, GetParam().file);
  for (const std::string& since : {isTOML ? "model = 'y'\n" + alone() : alone(),
                                   isTOML ? "model = 'x'\n[[a]]\nb = 1\n[[a]]\n" + alone()
                                          : "{\"theme\":1," + connected(helper()).substr(1)}) {
    put(isTOML ? "model = 'x'\n[[a]]\nb = 2\n[[a]]\n" : none);
    willWrite(since);
    const ConnectionDone done = carryOut(fake.machine, plan(fake.machine, GetParam().id, Goal::connect));
    willWrite("");
    undo(fake.machine, done);
    EXPECT_EQ(text(), "") << "what the command wrote";
  }
}

TEST_P(BytesOfClients, entryComesBackByCommandWhenTheFileWasChanged) {
  putClient(GetParam().program, GetParam().file);
  put(connected("/old/tarnwell"));
  willWrite(connected(helper()));
  const ConnectionDone done = carryOut(fake.machine, plan(fake.machine, GetParam().id, Goal::connect));
  put(connected(helper()) + "\n");
  willWrite(connected("/old/tarnwell"));
  undo(fake.machine, done);
  EXPECT_THAT(calls(), testing::EndsWith(GetParam().id == AssistantID::codex
                                             ? "\nmcp add tarnwell -- /old/tarnwell serve\n"
                                             : "\nmcp add --scope user tarnwell /old/tarnwell serve\n"));
}

/// JSON is edited instead. TOML is left to the user.
TEST_P(BytesOfClients, entryThatNoCommandCanWriteComesBackInTheFile) {
  putClient(GetParam().program, GetParam().file);
  put(GetParam().id == AssistantID::codex ? toml("/old/tarnwell", "startup_timeout_sec = 9\n")
                                          : entry("/old/tarnwell", ",\"trust\":true"));
  willWrite(GetParam().id == AssistantID::codex ? "" : none);
  const ConnectionDone done = carryOut(fake.machine, plan(fake.machine, GetParam().id, Goal::disconnect));
  put(GetParam().id == AssistantID::codex ? "a = 1\n" : "{ }");
  const std::string before = calls();
  if (GetParam().id == AssistantID::codex) {
    EXPECT_EQ(errorOf([&] { undo(fake.machine, done); }), AssistantError::Kind::changed);
  } else {
    undo(fake.machine, done);
    EXPECT_EQ(fake.state(GetParam().id).otherCommand, "/old/tarnwell");
    EXPECT_THAT(text(), testing::HasSubstr("\"trust\": true"));
  }
  EXPECT_EQ(calls(), before);
}

INSTANTIATE_TEST_SUITE_P(all, BytesOfClients,
                         testing::Values(BytesRow{"codex", AssistantID::codex, "codex", ".codex/config.toml"},
                                         BytesRow{"gemini", AssistantID::geminiCLI, "gemini",
                                                  ".gemini/settings.json"}),
                         rowName);

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
