#include "Assistants/AssistantEntry.h"

#include "Assistants/FakeMachine.h"
#include "JSONEditor/JSONEditor.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;

struct EntryRow {
  const char* name;
  const char* entry;
  Connection connection;
  const char* otherCommand;
  bool isSwitchedOff = false;
  /// The entry after connecting.
  const char* after = nullptr;
};

class Entries : public testing::TestWithParam<EntryRow> {};

std::string withHelper(std::string text, const FakeMachine& fake) {
  const std::size_t place = text.find("HELPER");
  return place == text.npos ? text : text.replace(place, 6, fake.machine.helper.string());
}

TEST_P(Entries, areUnderstoodAndReplaced) {
  FakeMachine fake;
  const std::string key = R"({"mcpServers":{"tarnwell":)";
  fake.put(".cursor/mcp.json", key + withHelper(GetParam().entry, fake) + "}}");
  const AssistantState state = fake.state(AssistantID::cursor);
  EXPECT_EQ(state.connection, GetParam().connection);
  EXPECT_EQ(state.otherCommand, withHelper(GetParam().otherCommand, fake));
  EXPECT_EQ(state.isSwitchedOff, GetParam().isSwitchedOff);
  if (GetParam().after != nullptr) {
    carryOut(fake.machine, plan(fake.machine, AssistantID::cursor, Goal::connect));
    EXPECT_EQ(jsonMember(fileContents(fake.home() / ".cursor/mcp.json"), {"mcpServers", "tarnwell"}),
              JSONValue::decode(withHelper(GetParam().after, fake)));
  }
}

constexpr const char* ours = R"({"command":"HELPER","args":["serve"]})";

INSTANTIATE_TEST_SUITE_P(
    all, Entries,
    testing::Values(EntryRow{"here", ours, Connection::here, "", false, ours},
                    EntryRow{"switchedOff", R"({"command":"HELPER","args":["serve"],"disabled":true})",
                             Connection::here, "", true},
                    EntryRow{"notEnabled", R"({"command":"HELPER","args":["serve"],"enabled":false})",
                             Connection::here, "", true},
                    EntryRow{"wrongArguments", R"({"command":"HELPER","args":["status"]})",
                             Connection::elsewhere, "HELPER status", false, ours},
                    EntryRow{"noArguments", R"({"command":"/x"})", Connection::elsewhere, "/x", false, ours},
                    EntryRow{"throughAShell", R"({"command":"npx","args":["-y","a b"]})",
                             Connection::elsewhere, "npx -y 'a b'", false, ours},
                    EntryRow{"otherMembersStay",
                             R"({"env":{"A":"b"},"command":"/x","args":["serve"],"disabled":false})",
                             Connection::elsewhere, "/x", false,
                             R"({"env":{"A":"b"},"command":"HELPER","args":["serve"],"disabled":false})"},
                    EntryRow{"address", R"({"url":"http://127.0.0.1:1/mcp"})", Connection::elsewhere,
                             "http://127.0.0.1:1/mcp", false, ours},
                    EntryRow{"addressOfAnotherName", R"({"serverUrl":"http://a/","headers":{}})",
                             Connection::elsewhere, "http://a/", false, ours},
                    EntryRow{"otherTransport", R"({"type":"sse","command":"/x"})", Connection::elsewhere, "",
                             false, ours},
                    EntryRow{"oldForm", R"({"source":"custom","command":{"path":"/x","args":["serve"]}})",
                             Connection::elsewhere, "/x", false, ours},
                    EntryRow{"noObject", "7", Connection::elsewhere, "", false, ours},
                    EntryRow{"null", "null", Connection::elsewhere, "", false, ours}),
    rowName);

TEST(Entries, bareNameIsLookedUp) {
  FakeMachine fake;
  fake.put(".cursor/mcp.json", R"({"mcpServers":{"tarnwell":{"command":"tarnwell","args":["serve"]}}})");
  EXPECT_EQ(fake.state(AssistantID::cursor).connection, Connection::elsewhere);
  fake.variables["PATH"] = fake.machine.helper.parent_path().string();
  EXPECT_EQ(fake.state(AssistantID::cursor).connection, Connection::here);
}

struct CommentRow {
  const char* name;
  const char* text;
  ConnectingWay way;
};

class CommentsInTOML : public testing::TestWithParam<CommentRow> {};

/// Codex writes all entries anew, and drops the comments in them and above.
TEST_P(CommentsInTOML, areNotLeftToTheCommand) {
  const FakeMachine fake;
  FakeMachine::putProgram(fake.home() / "bin/codex", "exit 0");
  fake.put(".codex/config.toml", GetParam().text);
  EXPECT_EQ(plan(fake.machine, AssistantID::codex, Goal::connect).way, GetParam().way);
  EXPECT_EQ(fake.state(AssistantID::codex).way, GetParam().way);
}

INSTANTIATE_TEST_SUITE_P(
    all, CommentsInTOML,
    testing::Values(CommentRow{"none", "a = 1\n\n[mcp_servers.b]\nc = 'd'\n", ConnectingWay::ownCommand},
                    CommentRow{"noEntries", "# one\n\n[a]\n# two\n", ConnectingWay::ownCommand},
                    CommentRow{"before", "# one\na = 1 # two\n\n[mcp_servers.b]\n",
                               ConnectingWay::ownCommand},
                    CommentRow{"above", "a = 1\n# one\n\n[mcp_servers.b]\n", ConnectingWay::block},
                    CommentRow{"top", "# one\n[mcp_servers.b]\n", ConnectingWay::block},
                    CommentRow{"behind", "[mcp_servers.b] # one\n", ConnectingWay::block},
                    CommentRow{"inside", "[mcp_servers.b]\n  # one\nc = 'd'\n", ConnectingWay::block},
                    CommentRow{"after", "[mcp_servers.b]\n[e]\n# one\n", ConnectingWay::block},
                    CommentRow{"escapedName", "[\"mcp\\u005fservers\".b] # one\n", ConnectingWay::block},
                    CommentRow{"escapedNameOnly", "[\"mcp\\u005fservers\".b]\n", ConnectingWay::ownCommand},
                    CommentRow{"notTOML", "a = 1\nb\n", ConnectingWay::block}),
    rowName);

struct LinesRow {
  const char* name;
  const char* before;
  /// The entry.
  const char* lines;
  const char* after;
};

class EntriesInTOML : public testing::TestWithParam<LinesRow> {};

TEST_P(EntriesInTOML, areShownAsTheyStandToBeRemoved) {
  const FakeMachine fake;  // without the program of Codex
  const LinesRow& row = GetParam();
  fake.put(".codex/config.toml", std::string(row.before) + row.lines + row.after);
  const ConnectionPlan planned = plan(fake.machine, AssistantID::codex, Goal::disconnect);
  EXPECT_EQ(planned.way, ConnectingWay::block);
  EXPECT_EQ(planned.block, row.lines);
  fake.put(".codex/config.toml", std::string(row.before) + row.after);
  EXPECT_EQ(fake.state(AssistantID::codex).connection, Connection::none);
}

INSTANTIATE_TEST_SUITE_P(
    all, EntriesInTOML,
    testing::Values(
        LinesRow{"otherProgram", "a = 1\n", "[mcp_servers.tarnwell]\ncommand = '/old'\n", "\n[b]\nc = 2\n"},
        LinesRow{"tablesBelow", "",
                 "[mcp_servers.tarnwell]\ncommand = '/old' # mine\n# more\nargs = [\n  'serve',\n]\n\n"
                 "[mcp_servers.tarnwell.env]\nA = '''\n[b]\n'''\n",
                 "\n# of b\n[mcp_servers.b]\ncommand = 'b'\n"},
        LinesRow{"afterItsName", "[mcp_servers.b]\nc = '''\n[mcp_servers.tarnwell]\n'''\n",
                 "[mcp_servers.tarnwell]\r\ncommand = '/old'\r\n", "[d]\r\n"},
        LinesRow{"inOneLine", "[mcp_servers]\n", "tarnwell = { command = '/old' }\n",
                 "b = { command = 'b' }\n"},
        LinesRow{"dotted", "mcp_servers.b.command = 'b'\n",
                 "mcp_servers.tarnwell.command = '/old'\nmcp_servers.\"tarnwell\".args = []\n", "c = 1\n"},
        LinesRow{"withoutLineEnd", "", "[mcp_servers.tarnwell]\ncommand = '/old'", ""}),
    rowName);

TEST(EntryInTOML, thatStandsInTwoPlacesIsShownTogether) {
  const FakeMachine fake;
  fake.put(".codex/config.toml",
           "[mcp_servers.tarnwell]\ncommand = '/old'\n[b]\nc = 1\n[mcp_servers.tarnwell.env]\nA = 'b'\n");
  EXPECT_EQ(plan(fake.machine, AssistantID::codex, Goal::disconnect).block,
            "[mcp_servers.tarnwell]\ncommand = '/old'\n\n[mcp_servers.tarnwell.env]\nA = 'b'\n");
}

struct HelperRow {
  const char* name;
  const char* helper;
  bool isThere;
  AssistantError::Kind kind;
};

class Helpers : public testing::TestWithParam<HelperRow> {};

TEST_P(Helpers, thatNoClientCanStartAreRefused) {
  FakeMachine fake;
  fake.put(".cursor/mcp.json", "{}");
  fake.machine.helper = fake.root() / GetParam().helper;
  if (GetParam().isThere) {
    FakeMachine::putProgram(fake.machine.helper, "exit 0");
  }
  try {
    plan(fake.machine, AssistantID::cursor, Goal::connect);
    FAIL() << "it cannot be started";
  } catch (const AssistantError& error) {
    EXPECT_EQ(error.kind(), GetParam().kind);
    EXPECT_NE(error.details(), "");
  }
  EXPECT_TRUE(plan(fake.machine, AssistantID::cursor, Goal::disconnect).isNothing());
}

INSTANTIATE_TEST_SUITE_P(
    all, Helpers,
    testing::Values(HelperRow{"missing", "x/tarnwell", false, AssistantError::Kind::noHelper},
                    HelperRow{"folder", "app", false, AssistantError::Kind::noHelper},
                    HelperRow{"notUTF8", "caf\xE9/tarnwell", true, AssistantError::Kind::helperNotUTF8}),
    rowName);

}  // namespace
}  // namespace tarnwell::test
