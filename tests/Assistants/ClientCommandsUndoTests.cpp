/// Undo of what a command did: the bytes of the file, or the entry.

#include <gmock/gmock.h>

#include "Assistants/ClientCommandsFixture.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Goal = ConnectionPlan::Goal;

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

}  // namespace
}  // namespace tarnwell::test
