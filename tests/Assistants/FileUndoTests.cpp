/// Undo of a file that was edited, after somebody else has changed it.

#include <gmock/gmock.h>

#include "Assistants/Assistants.h"
#include "Assistants/FakeMachine.h"
#include "JSONEditor/JSONEditor.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Goal = ConnectionPlan::Goal;

std::string replaced(std::string text, const std::string& old, const std::string& by) {
  for (std::size_t place = 0; (place = text.find(old, place)) != text.npos; place += by.size()) {
    text.replace(place, old.size(), by);
  }
  return text;
}

class EditedFiles : public testing::Test {
 protected:
  std::filesystem::path put(const std::string& text) const {
    return fake.put(".cursor/mcp.json", replaced(text, "HELPER", fake.machine.helper.string()));
  }
  std::string text() const {
    return replaced(fileContents(fake.home() / ".cursor/mcp.json"), fake.machine.helper.string(), "HELPER");
  }
  ConnectionDone reach(Goal goal) const {
    return carryOut(fake.machine, plan(fake.machine, AssistantID::cursor, goal));
  }
  bool isRefused(const ConnectionDone& done) const {
    try {
      undo(fake.machine, done);
    } catch (const AssistantError& error) {
      EXPECT_EQ(error.kind(), AssistantError::Kind::changed);
      return true;
    }
    return false;
  }

  FakeMachine fake;
};

constexpr const char* old = R"({"args":["x"],"command":"/old","env":{"A":"b"}})";

struct EditRow {
  const char* name;
  Goal goal;
  /// The entry before, and the texts that somebody else left since and that undo leaves.
  const char* before;
  const char* since;
  const char* after;
};

class EditsOfOthers : public EditedFiles, public testing::WithParamInterface<EditRow> {};

std::string holding(const char* entry) {
  return *entry == '\0' ? "{\"mcpServers\":{}}" : std::string(R"({"mcpServers":{"tarnwell":)") + entry + "}}";
}

TEST_P(EditsOfOthers, stayAndTheEntryIsBroughtBack) {
  put(holding(GetParam().before));
  const ConnectionDone done = reach(GetParam().goal);
  put(GetParam().since);
  EXPECT_FALSE(isRefused(done));
  EXPECT_EQ(text(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(
    all, EditsOfOthers,
    testing::Values(
        EditRow{"added", Goal::connect, "",
                "{ // mine\n  \"mcpServers\": {\n    \"a\": {},\n    \"tarnwell\": {\"command\": "
                "\"HELPER\", \"args\": [\"serve\"]},\n  },\n}\n",
                "{ // mine\n  \"mcpServers\": {\n    \"a\": {},\n  },\n}\n"},
        EditRow{"replaced", Goal::connect, R"({"args":["x"],"command":"/old"})",
                R"({"mcpServers":{"tarnwell":{"command":"HELPER","args":["serve"]},"a":{}}})",
                R"({"mcpServers":{"a":{},"tarnwell":{"args":["x"],"command":"/old"}}})"},
        EditRow{"removed", Goal::disconnect, old, R"({"mcpServers":{"a":{}}})",
                R"({"mcpServers":{"a":{},"tarnwell":{"args":["x"],"command":"/old","env":{"A":"b"}}}})"},
        EditRow{"broughtBackAlready", Goal::connect, "", R"({"mcpServers":{"a":{}}})",
                R"({"mcpServers":{"a":{}}})"},
        EditRow{"newEntryRemovedSince", Goal::connect, R"({"command":"/old"})", R"({"mcpServers":{"a":{}}})",
                R"({"mcpServers":{"a":{},"tarnwell":{"command":"/old"}}})"}),
    rowName);

struct OwnRow {
  const char* name;
  Goal goal;
  const char* before;
  const char* since;
};

class EntriesOfOthers : public EditedFiles, public testing::WithParamInterface<OwnRow> {};

TEST_P(EntriesOfOthers, areNotDestroyed) {
  put(holding(GetParam().before));
  const ConnectionDone done = reach(GetParam().goal);
  put(holding(GetParam().since));
  EXPECT_TRUE(isRefused(done));
  EXPECT_EQ(text(), holding(GetParam().since));
}

INSTANTIATE_TEST_SUITE_P(all, EntriesOfOthers,
                         testing::Values(OwnRow{"connected", Goal::connect, "", R"({"command":"/own"})"},
                                         OwnRow{"connectedWithMore", Goal::connect, "",
                                                R"({"command":"HELPER","args":["serve"],"timeout":5})"},
                                         OwnRow{"replaced", Goal::connect, old, R"({"command":"/own"})"},
                                         OwnRow{"disconnected", Goal::disconnect, old,
                                                R"({"command":"/own"})"}),
                         rowName);

TEST_F(EditedFiles, fileThatWasMadeAndRemovedStaysAway) {
  std::filesystem::remove(put(""));
  const ConnectionDone done = reach(Goal::connect);
  std::filesystem::remove(fake.home() / ".cursor/mcp.json");
  EXPECT_FALSE(isRefused(done));
  EXPECT_FALSE(std::filesystem::exists(fake.home() / ".cursor/mcp.json"));
}

TEST_F(EditedFiles, fileThatIsBrokenSinceStaysAsItIs) {
  put(holding(old));
  const ConnectionDone done = reach(Goal::disconnect);
  put("{");
  EXPECT_THROW(undo(fake.machine, done), JSONEditError);
  EXPECT_EQ(text(), "{");
}

}  // namespace
}  // namespace tarnwell::test
