#include "App/Models/ReadOnlyTools.h"

#include <gtest/gtest.h>

#include <regex>

#include "App/support/FakeMailbox.h"
#include "MCP/MCPServer.h"
#include "support/RowName.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

/// Settings that permit every change.
class ReadOnlyToolsTest : public testing::Test {
 protected:
  ReadOnlyToolsTest() {
    store.update([](AppConfig& config) {
      config.email = testEmail;
      config.safety.readOnly = false;
      config.safety.allowMove = config.safety.allowMarkRead = config.safety.allowTrash = true;
    });
    mailbox.mails = {{.uid = 9}, {.uid = 7, .subject = "Your verification code"}};
  }

  ReadOnlyTools tools() const { return ReadOnlyTools(mailbox.tools(store)); }
  /// The commands that do more than read.
  std::vector<std::string> changes() const {
    static const std::regex reading(
        "LOGIN .*|CAPABILITY|EXAMINE INBOX|LIST \"\" \"\\*\"|UID SEARCH .*|"
        "UID FETCH [0-9,]+ \\((UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE|"
        "BODY\\.PEEK\\[[0-9.]+\\])\\)|LOGOUT");
    std::vector<std::string> found;
    for (const std::string& command : mailbox.commands()) {
      if (!std::regex_match(command, reading)) {
        found.push_back(command);
      }
    }
    return found;
  }

  TemporaryDirectory directory;
  ConfigStore store{directory.path()};
  FakeMailbox mailbox;
};

struct Attempt {
  const char* name;
  const char* arguments;
};
void PrintTo(const Attempt& row, std::ostream* stream) { *stream << row.name; }

class ReadOnlyToolsAttempt : public ReadOnlyToolsTest, public testing::WithParamInterface<Attempt> {};
INSTANTIATE_TEST_SUITE_P(
    Table, ReadOnlyToolsAttempt,
    testing::Values(Attempt{"asADialogueWouldSend", R"({"uid": 9, "targetFolder": "Archive"})"},
                    Attempt{"dryRunRefused", R"({"uid": 9, "targetFolder": "Archive", "dryRun": false})"},
                    Attempt{"dryRunAsANumber", R"({"uid": 9, "targetFolder": "Archive", "dryRun": 0})"},
                    Attempt{"dryRunNull", R"({"uid": 9, "targetFolder": "Archive", "dryRun": null})"},
                    Attempt{"dryRunInOtherLetters",
                            R"({"uid": 9, "targetFolder": "Archive", "DryRun": false, "dryrun": false})"},
                    Attempt{"dryRunWithin",
                            R"({"uid": "9", "targetFolder": "Archive", "arguments": {"dryRun": false}})"}),
    rowName);

TEST_P(ReadOnlyToolsAttempt, changesNothingWithAnyTool) {
  const JSONObject arguments = *JSONValue::decode(GetParam().arguments)->objectValue();
  for (const ToolName tool : allToolNames()) {
    const ToolCall call = tools().call(tool, arguments);
    EXPECT_FALSE(call.result.isError) << rawValue(tool) << call.answer;
    EXPECT_NE(call.result.structured["executed"], JSONValue(true)) << rawValue(tool);
    if (changesMailbox(tool)) {
      EXPECT_EQ(call.result.structured["dryRun"], JSONValue(true)) << rawValue(tool) << call.answer;
      EXPECT_EQ((*JSONValue::decode(call.request))["arguments"]["dryRun"], JSONValue(true));
    } else {
      EXPECT_EQ((*JSONValue::decode(call.request))["arguments"], JSONValue(arguments)) << rawValue(tool);
    }
  }
  EXPECT_EQ(changes(), std::vector<std::string>());
}

/// So the test above would see a change.
TEST_F(ReadOnlyToolsTest, theSameCallsWithoutTheGateDoChange) {
  const JSONValue arguments = JSONObject{{"uid", 9}, {"targetFolder", "Archive"}};
  for (const ToolName tool : allToolNames()) {
    const std::size_t before = changes().size();
    mailbox.tools(store).handle(rawValue(tool), arguments);
    EXPECT_EQ(changes().size() > before, changesMailbox(tool)) << rawValue(tool);
  }
}

/// The answer of a server to the request that the app shows, in both forms of the protocol.
struct Protocol {
  const char* name;
  const char* meta;
};
void PrintTo(const Protocol& row, std::ostream* stream) { *stream << row.name; }

class ReadOnlyToolsProtocol : public ReadOnlyToolsTest, public testing::WithParamInterface<Protocol> {};
INSTANTIATE_TEST_SUITE_P(Table, ReadOnlyToolsProtocol,
                         testing::Values(Protocol{"withHandshake", nullptr}, Protocol{"current", R"({
    "io.modelcontextprotocol/protocolVersion": "2026-07-28",
    "io.modelcontextprotocol/clientInfo": {"name": "test", "version": "1"},
    "io.modelcontextprotocol/clientCapabilities": {}})"}),
                         rowName);

TEST_P(ReadOnlyToolsProtocol, answerIsTheTextThatAnAssistantReceives) {
  mailbox.mails.push_back(
      {.uid = 5, .subject = "\u202eA\tB \U0001F600 \"quoted\" \\ / \x01", .body = "é\r\n"});
  MCPServer server(mailbox.tools(store));
  for (const ToolName tool : allToolNames()) {
    const ToolCall call = tools().call(tool, {{"uid", 5}, {"targetFolder", "Archive"}});
    JSONObject params = *JSONValue::decode(call.request)->objectValue();
    if (GetParam().meta) {
      params["_meta"] = *JSONValue::decode(GetParam().meta);
    }
    const JSONValue request =
        JSONObject{{"jsonrpc", "2.0"}, {"id", 1}, {"method", "tools/call"}, {"params", std::move(params)}};
    const std::optional<std::string> line = server.handleRaw(request.serialized());
    ASSERT_TRUE(line);
    const JSONValue result = (*JSONValue::decode(*line))["result"];
    const JSONArray* const content = result["content"].arrayValue();
    ASSERT_TRUE(content && content->size() == 1) << *line;
    EXPECT_EQ((*content)[0]["text"].stringValue(), call.answer) << rawValue(tool);
    EXPECT_EQ(result["structuredContent"], call.result.structured) << rawValue(tool);
  }
}

}  // namespace
}  // namespace tarnwell::test
