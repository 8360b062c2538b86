#include "MCP/MCPServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Core/LogBuffer.h"
#include "MCP/Tools/MCPToolSchemas.h"
#include "MCP/Tools/ToolFixture.h"

namespace tarnwell::test {
namespace {

class Dispatcher : public ToolTest {
 protected:
  Dispatcher() : server_(tools()) {}

  /// The answer to one message; null text when there is none.
  std::string answerTo(std::string_view message) { return server_.handleRaw(message).value_or("(nothing)"); }

  JSONValue resultOf(std::string_view message) { return (*JSONValue::decode(answerTo(message)))["result"]; }

  MCPServer server_;
};

TEST_F(Dispatcher, unreadableMessagesAreParseErrorsWithANullId) {
  for (const char* message : {"", "{", "[]", R"({"id":7})", R"({"id":7,"method":5})", "\xff"}) {
    EXPECT_EQ(answerTo(message),
              R"({"error":{"code":-32700,"message":"Parse error"},"id":null,"jsonrpc":"2.0"})")
        << message;
  }
}

TEST_F(Dispatcher, notificationsAreNeitherRunNorAnswered) {
  for (const char* message :
       {R"({"method":"ping"})", R"({"method":"tools/call","params":{"name":"get_status"}})",
        R"({"method":"notifications/initialized"})", R"({"method":"no/such"})",
        R"({"method":"initialize"})"}) {
    EXPECT_EQ(answerTo(message), "(nothing)") << message;
  }
  EXPECT_TRUE(LogBuffer::shared().snapshot().empty()) << "nothing ran";
}

TEST_F(Dispatcher, clientNotificationsWithAnIdAreNotAnsweredEither) {
  for (const char* method : {"notifications/initialized", "notifications/cancelled", "initialized"}) {
    EXPECT_EQ(answerTo(JSONValue(JSONObject{{"id", 2}, {"method", method}}).serialized()), "(nothing)");
  }
}

TEST_F(Dispatcher, pingIsAnsweredWithAnEmptyObject) {
  EXPECT_EQ(answerTo(R"({"id":null,"method":"ping"})"), R"({"id":null,"jsonrpc":"2.0","result":{}})");
  EXPECT_EQ(answerTo(R"({"id":"a","method":"ping","params":5})"),
            R"({"id":"a","jsonrpc":"2.0","result":{}})");
}

TEST_F(Dispatcher, initializeEchoesAnyVersionThatIsAText) {
  const std::pair<const char*, const char*> rows[] = {
      {R"({"id":1,"method":"initialize","params":{"protocolVersion":"1999-01-01"}})", "1999-01-01"},
      {R"({"id":1,"method":"initialize","params":{"protocolVersion":""}})", ""},
      {R"({"id":1,"method":"initialize"})", "2024-11-05"},
      {R"({"id":1,"method":"initialize","params":{"protocolVersion":5}})", "2024-11-05"},
      {R"({"id":1,"method":"initialize","params":[]})", "2024-11-05"},
      {R"({"id":1,"method":"initialize","params":null})", "2024-11-05"},
  };
  for (const auto& [message, version] : rows) {
    EXPECT_EQ(resultOf(message),
              JSONValue(JSONObject{
                  {"protocolVersion", version},
                  {"capabilities", JSONObject{{"tools", JSONObject{{"listChanged", false}}}}},
                  {"serverInfo", JSONObject{{"name", "Tarnwell"}, {"version", "0.1.0"}}},
              }))
        << message;
    EXPECT_EQ(LogBuffer::shared().snapshot().back().message,
              "initialize (protocol " + std::string(version) + ")");
  }
}

TEST_F(Dispatcher, toolsListIsTheCatalogue) {
  EXPECT_EQ(resultOf(R"({"id":1,"method":"tools/list"})"),
            JSONValue(JSONObject{{"tools", MCPToolSchemas::toolsListJSON()}}));
}

TEST_F(Dispatcher, methodsAreCaseSensitiveAndUnknownOnesNamed) {
  for (const char* method : {"resources/list", "Ping", "tools/List", "server/discover", ""}) {
    EXPECT_EQ(
        answerTo(JSONValue(JSONObject{{"id", 4}, {"method", method}}).serialized()),
        JSONRPC::failure(JSONValue(4), -32601, std::string("Method not found: ") + method).serialized());
  }
}

TEST_F(Dispatcher, toolsCallNeedsAName) {
  for (const char* params : {"{}", "null", "[]", "5", R"({"name":5})", R"({"arguments":{}})"}) {
    EXPECT_EQ(answerTo(R"({"id":3,"method":"tools/call","params":)" + std::string(params) + "}"),
              JSONRPC::failure(JSONValue(3), -32602, "tools/call requires a 'name'.").serialized());
  }
  EXPECT_EQ(answerTo(R"({"id":3,"method":"tools/call"})"),
            JSONRPC::failure(JSONValue(3), -32602, "tools/call requires a 'name'.").serialized());
}

TEST_F(Dispatcher, toolResultComesAsTextAndAsStructure) {
  const JSONValue result = resultOf(R"({"id":5,"method":"tools/call","params":{"name":"get_status"}})");
  EXPECT_EQ(result["isError"], JSONValue(false));
  EXPECT_EQ(result["structuredContent"]["imapPort"], JSONValue(993));
  const JSONArray& content = *result["content"].arrayValue();
  ASSERT_EQ(content.size(), 1u);
  EXPECT_EQ(content[0]["type"], JSONValue("text"));
  EXPECT_EQ(content[0]["text"], JSONValue(result["structuredContent"].prettyString()));
}

TEST_F(Dispatcher, failingToolIsASuccessOnThisLevel) {
  const JSONValue result =
      resultOf(R"({"id":5,"method":"tools/call","params":{"name":"nope","arguments":7}})");
  EXPECT_EQ(result["isError"], JSONValue(true));
  EXPECT_EQ(result["structuredContent"], JSONValue(JSONObject{{"error", "Unknown tool: nope"}}));
}

}  // namespace
}  // namespace tarnwell::test
