#include "Assistants/Assistants.h"

#include "Assistants/AssistantPlaces.h"
#include "Assistants/AssistantTable.h"
#include "Assistants/FakeMachine.h"
#include "Assistants/TOMLReader.h"
#include "JSONEditor/JSONEditError.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;

struct ClientRow {
  const char* name;
  AssistantID id;
  const char* title;
  /// Below the home directory.
  const char* file;
  const char* fileOnMacOS;
  /// A text with another entry, and one's own between the two parts.
  const char* before;
  const char* entry;
  const char* after;
  bool rewritesFile = false;
};

const std::vector<ClientRow>& clients() {
  static const std::vector<ClientRow> rows = {
      {"claudeDesktop", AssistantID::claudeDesktop, "Claude Desktop",
       ".config/Claude/claude_desktop_config.json",
       "Library/Application Support/Claude/claude_desktop_config.json",
       "{\"mcpServers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"]}", "}}", true},
      {"claudeCode", AssistantID::claudeCode, "Claude Code", ".claude.json", ".claude.json",
       "{\"userID\": \"1\", \"mcpServers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"type\": \"stdio\", \"command\": \"HELPER\", \"args\": [\"serve\"], \"env\": {}}",
       "}}", true},
      {"codex", AssistantID::codex, "Codex", ".codex/config.toml", ".codex/config.toml", "model = \"x\"\n",
       "[mcp_servers.tarnwell]\ncommand = \"HELPER\"\nargs = [\"serve\"]\n",
       "[mcp_servers.a]\ncommand = \"b\"\n"},
      {"geminiCLI", AssistantID::geminiCLI, "Gemini CLI", ".gemini/settings.json", ".gemini/settings.json",
       "{\n  // mine\n  \"mcpServers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"]}", "}\n}\n"},
      {"visualStudioCode", AssistantID::visualStudioCode, "Visual Studio Code", ".config/Code/User/mcp.json",
       "Library/Application Support/Code/User/mcp.json", "{\n\t\"servers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"], \"type\": \"stdio\"}",
       "},\n\t\"inputs\": []\n}"},
      {"cursor", AssistantID::cursor, "Cursor", ".cursor/mcp.json", ".cursor/mcp.json",
       "{\"mcpServers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"]}", "}}"},
      {"windsurf", AssistantID::windsurf, "Windsurf", ".codeium/windsurf/mcp_config.json",
       ".codeium/windsurf/mcp_config.json", "{\"mcpServers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"]}", "}}"},
      {"zed", AssistantID::zed, "Zed", ".config/zed/settings.json", ".config/zed/settings.json",
       "// Zed settings\n{\n  \"theme\": \"One\",\n  \"context_servers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"]}", "},\n}\n"},
      {"lmStudio", AssistantID::lmStudio, "LM Studio", ".lmstudio/mcp.json", ".lmstudio/mcp.json",
       "{\"mcpServers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"]}", "}}"},
      {"cline", AssistantID::cline, "Cline",
       ".config/Code/User/globalStorage/saoudrizwan.claude-dev/settings/cline_mcp_settings.json",
       "Library/Application "
       "Support/Code/User/globalStorage/saoudrizwan.claude-dev/settings/cline_mcp_settings.json",
       "{\"mcpServers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"]}", "}}"},
      {"roo", AssistantID::roo, "Roo Code",
       ".config/Code/User/globalStorage/rooveterinaryinc.roo-cline/settings/mcp_settings.json",
       "Library/Application "
       "Support/Code/User/globalStorage/rooveterinaryinc.roo-cline/settings/mcp_settings.json",
       "{\"mcpServers\": {\"a\": {\"command\": \"b\"}",
       ", \"tarnwell\": {\"command\": \"HELPER\", \"args\": [\"serve\"]}", "}}"},
  };
  return rows;
}

std::string withHelper(std::string text, const std::filesystem::path& helper) {
  const std::size_t place = text.find("HELPER");
  return place == text.npos ? text : text.replace(place, 6, helper.string());
}

/// What the state has as its problem, which must be of this type.
template <class Error>
Error problemOf(const AssistantState& state) {
  try {
    std::rethrow_exception(state.problem);
  } catch (const Error& error) {
    return error;
  }
}

class Clients : public testing::TestWithParam<ClientRow> {
 protected:
  const ClientRow& row() const { return GetParam(); }
  AssistantState state() const { return fake.state(row().id); }
  template <class Error>
  Error problem() const {
    return problemOf<Error>(state());
  }
  bool isTOML() const { return row().id == AssistantID::codex; }
  std::string text(const std::filesystem::path& helper) const {
    return row().before + withHelper(row().entry, helper) + row().after;
  }
  std::string unconnected() const { return std::string(row().before) + row().after; }

  FakeMachine fake;
};

TEST_P(Clients, standInTheOrderOfTheirNumbers) {
  const std::vector<AssistantState> states = findAssistants(fake.machine);
  ASSERT_EQ(states.size(), clients().size());
  const AssistantState& state = states.at(static_cast<std::size_t>(row().id));
  EXPECT_EQ(state.id, row().id);
  EXPECT_EQ(state.name, row().title);
}

TEST_P(Clients, missing) {
  EXPECT_FALSE(state().isInstalled);
  EXPECT_EQ(state().connection, Connection::none);
  EXPECT_EQ(state().file, fake.home() / row().file);
  EXPECT_EQ(state().way, isTOML() ? ConnectingWay::block : ConnectingWay::file);
  if (!isTOML()) {
    EXPECT_THROW(plan(fake.machine, row().id, Goal::connect), AssistantError);
  }
}

TEST_P(Clients, fileOnMacOS) {
  fake.machine.layout = FolderLayout::macOS;
  EXPECT_EQ(state().file, fake.home() / row().fileOnMacOS);
  fake.put(row().fileOnMacOS, text(fake.machine.helper));
  EXPECT_TRUE(state().isInstalled);
  EXPECT_EQ(state().connection, Connection::here);
}

TEST_P(Clients, withoutEntry) {
  fake.put(row().file, unconnected());
  EXPECT_TRUE(state().isInstalled);
  EXPECT_EQ(state().connection, Connection::none);
  EXPECT_EQ(state().problem, nullptr);
}

TEST_P(Clients, connected) {
  fake.put(row().file, text(fake.machine.helper));
  EXPECT_EQ(state().connection, Connection::here);
  EXPECT_EQ(state().otherCommand, "");
  EXPECT_FALSE(state().isSwitchedOff);
  EXPECT_TRUE(plan(fake.machine, row().id, Goal::connect).isNothing());
}

TEST_P(Clients, connectedThroughALink) {
  std::filesystem::create_symlink(fake.machine.helper, fake.root() / "link");
  fake.put(row().file, text(fake.root() / "link"));
  EXPECT_EQ(state().connection, Connection::here);
}

TEST_P(Clients, connectedElsewhere) {
  fake.put(row().file, text("/old/tarnwell"));
  EXPECT_EQ(state().connection, Connection::elsewhere);
  EXPECT_EQ(state().otherCommand, "/old/tarnwell");
}

TEST_P(Clients, unreadableFile) {
  fake.put(row().file, "a = {\n  [}");
  EXPECT_EQ(state().connection, Connection::unknown);
  if (isTOML()) {
    const AssistantError error = problem<AssistantError>();
    EXPECT_EQ(error.kind(), AssistantError::Kind::notTOML);
    EXPECT_EQ(error.details(), "line 2: not TOML");
    EXPECT_EQ(state().way, ConnectingWay::block);
  } else {
    const JSONEditError error = problem<JSONEditError>();
    EXPECT_EQ(error.kind(), JSONEditError::Kind::notJSON);
    EXPECT_EQ(error.line(), 1U);
    EXPECT_EQ(error.column(), 1U);
    EXPECT_THROW(plan(fake.machine, row().id, Goal::connect), JSONEditError);
  }
}

TEST_P(Clients, fileThatIsTooLarge) {
  std::filesystem::resize_file(fake.put(row().file, unconnected()), maximumConfigurationFileSize + 1);
  EXPECT_EQ(state().connection, Connection::unknown);
  EXPECT_EQ(problem<ConfigurationFileError>().kind(), ConfigurationFileError::Kind::tooLarge);
}

TEST_P(Clients, fileThatEverybodyMayWrite) {
  ::chmod(fake.put(row().file, unconnected()).c_str(), 0666);
  EXPECT_EQ(state().connection, Connection::unknown);
  EXPECT_EQ(problem<ConfigurationFileError>().kind(), ConfigurationFileError::Kind::otherWriter);
  EXPECT_EQ(state().way, ConnectingWay::file) << "there is no plan, not even of a block";
  EXPECT_THROW(plan(fake.machine, row().id, Goal::connect), ConfigurationFileError);
}

TEST_P(Clients, running) {
  fake.put(row().file, unconnected());
  fake.running = {
      {1, 0, "systemd", "/usr/lib/systemd/systemd"},
      {7, 1, assistantRow(row().id).programs.empty() ? "x" : assistantRow(row().id).programs[0], "/x"}};
  if (!row().rewritesFile) {
    EXPECT_NO_THROW(checkNotRunning(fake.machine, row().id));
    return;
  }
  for (const Goal goal : {Goal::connect, Goal::disconnect}) {
    fake.put(row().file, goal == Goal::connect ? unconnected() : text(fake.machine.helper));
    try {
      plan(fake.machine, row().id, goal);
      FAIL() << "it runs";
    } catch (const AssistantError& error) {
      EXPECT_EQ(error.kind(), AssistantError::Kind::running);
      EXPECT_EQ(error.assistant(), row().id);
    }
  }
}

/// Plans, shows, writes, reads back and undoes, for both goals.
TEST_P(Clients, fileIsChangedAndBroughtBack) {
  if (isTOML()) {
    const ConnectionPlan planned = plan(fake.machine, row().id, Goal::connect);
    EXPECT_EQ(planned.way, ConnectingWay::block);
    EXPECT_EQ(planned.block, withHelper(row().entry, fake.machine.helper));
    EXPECT_THROW(carryOut(fake.machine, planned), AssistantError);
    return;
  }
  for (const Goal goal : {Goal::connect, Goal::disconnect}) {
    const std::string start = goal == Goal::connect ? unconnected() : text("/old/tarnwell");
    const std::filesystem::path file = fake.put(row().file, start);
    const ConnectionPlan planned = plan(fake.machine, row().id, goal);
    EXPECT_EQ(planned.way, ConnectingWay::file);
    EXPECT_EQ(planned.file, file);
    EXPECT_EQ(fileContents(file), start);
    const ConnectionDone done = carryOut(fake.machine, planned);
    EXPECT_EQ(fileContents(file), planned.change->after);
    EXPECT_EQ(state().connection, goal == Goal::connect ? Connection::here : Connection::none);
    EXPECT_TRUE(plan(fake.machine, row().id, goal).isNothing());
    if (goal == Goal::disconnect) {
      EXPECT_EQ(fileContents(file), unconnected());
    }
    undo(fake.machine, done);
    EXPECT_EQ(fileContents(file), start);
  }
}

TEST(Codex, configurationThatIsTooLargeForTheReaderSaysSo) {
  const FakeMachine fake;
  fake.put(".codex/config.toml", std::string(maximumTOMLSize + 1, '\n'));
  EXPECT_EQ(problemOf<AssistantError>(fake.state(AssistantID::codex)).details(), "too large");
}

INSTANTIATE_TEST_SUITE_P(all, Clients, testing::ValuesIn(clients()), rowName);

}  // namespace
}  // namespace tarnwell::test
