// The real clients' own commands, in an empty home directory and without a network: connecting, replacing,
// disconnecting, and bringing back what was there. Finds the clients in PATH (see run).

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "Assistants/Assistants.h"
#include "JSONEditor/JSONEditor.h"
#include "support/Files.h"
#include "support/PrivateNetwork.h"
#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;

struct ClientRow {
  const char* name;
  AssistantID id;
  const char* file;
  /// A configuration with an entry of the user's own.
  const char* text;
  /// What its commands keep of it.
  std::vector<std::string> kept;
};

class OwnCommands : public testing::TestWithParam<ClientRow> {
 protected:
  OwnCommands() {
    machine.home = root() / "home";
    machine.environment = [](const char* name) {
      const char* value = std::string_view(name) == "PATH" ? std::getenv(name) : nullptr;
      return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
    };
    machine.runningPrograms = [] { return std::vector<RunningProgram>(); };
    machine.helper = putHelper("an app");
    machine.layout = FolderLayout::linuxDesktop;
    std::filesystem::create_directories(file().parent_path());
  }

  std::filesystem::path root() const { return std::filesystem::canonical(directory_.path()); }
  std::filesystem::path file() const { return root() / "home" / GetParam().file; }
  /// Claude Code writes its file at other times too.
  bool comesBackByBytes() const { return GetParam().id != AssistantID::claudeCode; }
  std::string text() const { return fileContents(file()); }
  void put(const std::string& text) const { std::ofstream(file(), std::ios::binary) << text; }
  AssistantState state() const { return assistantState(machine, GetParam().id); }

  /// A program that could be the helper.
  std::filesystem::path putHelper(const std::string& folder) const {
    const std::filesystem::path helper = root() / folder / "tarnwell";
    std::filesystem::create_directories(helper.parent_path());
    std::ofstream(helper) << "#!/bin/sh\n";
    std::filesystem::permissions(helper, std::filesystem::perms::owner_all);
    return helper;
  }

  ConnectionDone reach(Goal goal) const {
    const ConnectionPlan planned = plan(machine, GetParam().id, goal);
    EXPECT_EQ(planned.way, ConnectingWay::ownCommand);
    EXPECT_FALSE(planned.isNothing());
    for (const std::vector<std::string>& command : planned.commands) {
      std::printf("  %s\n", shellLine(command).c_str());
    }
    ConnectionDone done = carryOut(machine, planned);
    EXPECT_EQ(state().connection, goal == Goal::connect ? Connection::here : Connection::none);
    EXPECT_TRUE(plan(machine, GetParam().id, goal).isNothing());
    expectKept();
    return done;
  }
  void expectKept() const {
    for (const std::string& part : GetParam().kept) {
      EXPECT_THAT(text(), testing::HasSubstr(part));
    }
  }

  Machine machine;

 private:
  TemporaryDirectory directory_;
};

TEST_P(OwnCommands, connectAndDisconnect) {
  put(GetParam().text);
  ASSERT_TRUE(state().isInstalled);
  EXPECT_EQ(state().connection, Connection::none);
  const ConnectionDone connected = reach(Goal::connect);
  const std::string afterwards = text();

  const ConnectionDone disconnected = reach(Goal::disconnect);
  undo(machine, disconnected);
  EXPECT_EQ(state().connection, Connection::here);

  // The client may add what it counts and when it started, so its file is as it was only without these.
  undo(machine, connected);
  EXPECT_EQ(state().connection, Connection::none);
  expectKept();
  if (comesBackByBytes() && text() != GetParam().text) {
    EXPECT_NE(text(), afterwards) << "the bytes were brought back, and not the right ones";
  }
}

TEST_P(OwnCommands, undoBringsBackTheBytesOrTheEntry) {
  put(GetParam().text);
  ConnectionDone done = reach(Goal::connect);
  undo(machine, done);
  EXPECT_EQ(state().connection, Connection::none);
  if (comesBackByBytes()) {
    EXPECT_EQ(text(), GetParam().text);
  }
  // The user changes the file between.
  done = reach(Goal::connect);
  put(text() + "\n");
  undo(machine, done);
  EXPECT_EQ(state().connection, Connection::none);
  expectKept();
}

TEST_P(OwnCommands, entryOfAnotherHelperIsReplacedAndComesBack) {
  const std::filesystem::path first = machine.helper;
  put(GetParam().text);
  reach(Goal::connect);
  machine.helper = putHelper("メール 'app'");
  EXPECT_EQ(state().connection, Connection::elsewhere);
  EXPECT_EQ(state().otherCommand, first.string());
  const ConnectionDone done = reach(Goal::connect);
  undo(machine, done);
  EXPECT_EQ(state().connection, Connection::elsewhere);
  EXPECT_EQ(state().otherCommand, first.string());
  expectKept();
}

TEST_P(OwnCommands, firstEntryOfAllMakesTheFile) {
  const ConnectionDone done = [this] {
    const ConnectionPlan planned = plan(machine, GetParam().id, Goal::connect);
    return carryOut(machine, planned);
  }();
  EXPECT_EQ(state().connection, Connection::here);
  undo(machine, done);
  EXPECT_EQ(state().connection, Connection::none);
  EXPECT_EQ(std::filesystem::exists(file()), !comesBackByBytes());
}

struct MembersRow {
  const char* name;
  /// What the old entry has beside its command.
  const char* members;
  ConnectingWay way;
};

class OwnCommandsOfClaudeCode : public testing::TestWithParam<MembersRow> {};

/// Claude Code takes a whole entry, so the old one comes back with all that it had. Variables may be secret
/// and are no words of a command, so these come back in the file.
TEST_P(OwnCommandsOfClaudeCode, membersOfTheOldEntryStayAndComeBack) {
  const TemporaryDirectory directory;
  Machine machine;
  machine.home = std::filesystem::canonical(directory.path());
  machine.environment = [](const char* name) {
    const char* value = std::string_view(name) == "PATH" ? std::getenv(name) : nullptr;
    return value != nullptr ? std::optional<std::string>(value) : std::nullopt;
  };
  machine.runningPrograms = [] { return std::vector<RunningProgram>(); };
  machine.helper = machine.home / "tarnwell";
  machine.layout = FolderLayout::linuxDesktop;
  std::ofstream(machine.helper) << "#!/bin/sh\n";
  std::filesystem::permissions(machine.helper, std::filesystem::perms::owner_all);
  const std::string entry = R"({"type":"stdio","command":"/old/tarnwell","args":["serve"],)" +
                            std::string(GetParam().members) + "}";
  std::ofstream(machine.home / ".claude.json") << R"({"mcpServers":{"tarnwell":)" + entry + "}}";
  const JSONPath path = {"mcpServers", "tarnwell"};
  const auto current = [&] { return jsonMember(fileContents(machine.home / ".claude.json"), path).value(); };

  const JSONValue old = JSONValue::decode(entry).value();
  JSONValue connected = old;
  (*connected.objectValue())["command"] = machine.helper.string();
  const ConnectionPlan planned = plan(machine, AssistantID::claudeCode, Goal::connect);
  EXPECT_EQ(planned.way, GetParam().way);
  ConnectionDone done = carryOut(machine, planned);
  EXPECT_EQ(current(), connected);
  undo(machine, done);
  EXPECT_EQ(current(), old);

  done = carryOut(machine, plan(machine, AssistantID::claudeCode, Goal::disconnect));
  EXPECT_EQ(done.plan.way, ConnectingWay::ownCommand);
  undo(machine, done);
  EXPECT_EQ(current(), old);
}

INSTANTIATE_TEST_SUITE_P(
    all, OwnCommandsOfClaudeCode,
    testing::Values(MembersRow{"environment", R"("env":{"A":"b c"})", ConnectingWay::file},
                    MembersRow{"limit", R"("env":{},"timeout":5000)", ConnectingWay::ownCommand}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    all, OwnCommands,
    testing::Values(
        ClientRow{
            "claudeCode",
            AssistantID::claudeCode,
            ".claude.json",
            R"({"hasCompletedOnboarding": true, "mcpServers": {"mine": {"command": "/my/server", "args": []}}})",
            {R"("hasCompletedOnboarding": true)", R"("/my/server")"}},
        ClientRow{"codex",
                  AssistantID::codex,
                  ".codex/config.toml",
                  "# my model\nmodel = 'x' # why\n\n[mcp_servers.mine]\ncommand = \"/my/server\"\n",
                  {"# my model\nmodel = 'x' # why\n", "[mcp_servers.mine]\ncommand = \"/my/server\"\n"}},
        ClientRow{"geminiCLI",
                  AssistantID::geminiCLI,
                  ".gemini/settings.json",
                  "{\n  // my theme\n  \"ui\": {\"theme\": \"GitHub\"},\n  \"mcpServers\": {\"mine\": "
                  "{\"command\": "
                  "\"/my/server\"}}\n}\n",
                  {"// my theme", "GitHub", "/my/server"}}),
    rowName);

}  // namespace
}  // namespace tarnwell::test

int main(int count, char** words) {
  testing::InitGoogleTest(&count, words);
  tarnwell::test::enterPrivateNetwork();
  return RUN_ALL_TESTS();
}
