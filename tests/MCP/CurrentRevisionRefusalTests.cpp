/// What a request of the current revision must say of itself, and which defect is named first.

#include <gtest/gtest.h>

#include "MCP/CurrentDispatcher.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

struct RefusalRow {
  const char* name;
  std::string message;
  int code;
  const char* text;
  /// The member "id" of the answer. Empty when there is none.
  std::string id = "1";
};

std::vector<RefusalRow> refusalRows() {
  constexpr int invalidRequest = -32600;
  constexpr int notFound = -32601;
  constexpr int invalid = -32602;
  constexpr int unsupported = -32022;
  const char* badID = "The id is neither a text nor an integer.";
  const char* badVersion2 = "'jsonrpc' is not '2.0'.";
  const char* badVersion = "Unsupported protocol version";
  const auto withID = [](std::string id) { return request("server/discover", "", {.id = std::move(id)}); };
  const auto withVersion = [](std::string version) {
    return request("server/discover", "", {.version = std::move(version)});
  };
  const auto withMeta = [](std::string more) {
    return request("server/discover", "", {.moreMeta = "," + std::move(more)});
  };
  const char* badKeyOfVersion = "Missing or invalid in '_meta': io.modelcontextprotocol/protocolVersion";
  const char* badCapabilities = "Missing or invalid in '_meta': io.modelcontextprotocol/clientCapabilities";
  const char* badInfo = "Missing or invalid in '_meta': io.modelcontextprotocol/clientInfo";
  const char* badLevel = "Missing or invalid in '_meta': io.modelcontextprotocol/logLevel";
  const char* badToken = "Missing or invalid in '_meta': progressToken";
  const std::string noRevision = withVersion(R"("1900-01-01")");
  return {
      {"NullID", withID("null"), invalidRequest, badID, ""},
      {"FractionID", withID("1.5"), invalidRequest, badID, ""},
      {"TrueID", withID("true"), invalidRequest, badID, ""},
      {"ListID", withID("[1]"), invalidRequest, badID, ""},
      {"ObjectID", withID("{}"), invalidRequest, badID, ""},
      {"OldJSONRPC", request("server/discover", "", {.jsonrpc = R"("1.0")"}), invalidRequest, badVersion2},
      {"NumberJSONRPC", request("server/discover", "", {.jsonrpc = "2.0"}), invalidRequest, badVersion2},
      {"NullJSONRPC", request("server/discover", "", {.jsonrpc = "null"}), invalidRequest, badVersion2},
      {"IDBeforeJSONRPC", request("x", "", {.id = "null", .jsonrpc = "null"}), invalidRequest, badID, ""},
      {"IDBeforeVersion", request("x", "", {.id = "null", .version = R"("x")"}), invalidRequest, badID, ""},
      {"JSONRPCBeforeVersion", request("x", "", {.jsonrpc = "null", .version = R"("x")"}), invalidRequest,
       badVersion2},

      {"OldestVersion", noRevision, unsupported, badVersion},
      {"VersionWithAHandshake", withVersion(R"("2025-11-25")"), unsupported, badVersion},
      {"LaterVersion", withVersion(R"("2026-07-29")"), unsupported, badVersion},
      {"EmptyVersion", withVersion(R"("")"), unsupported, badVersion},
      {"VersionWithABlank", withVersion(R"("2026-07-28 ")"), unsupported, badVersion},
      {"VersionBeforeCapabilities", request("x", "", {.version = R"("x")", .capabilities = ""}), unsupported,
       badVersion},
      {"VersionBeforeMethod", request("ping", "", {.version = R"("x")"}), unsupported, badVersion},
      {"InitializeOfAnotherVersion", request("initialize", "", {.version = R"("2025-11-25")"}), unsupported,
       badVersion},

      {"NumberAsVersion", withVersion("20260728"), invalid, badKeyOfVersion},
      {"NullAsVersion", withVersion("null"), invalid, badKeyOfVersion},
      {"NoCapabilities", request("server/discover", "", {.capabilities = ""}), invalid, badCapabilities},
      {"NullCapabilities", request("server/discover", "", {.capabilities = "null"}), invalid,
       badCapabilities},
      {"ListOfCapabilities", request("server/discover", "", {.capabilities = "[]"}), invalid,
       badCapabilities},
      {"VersionTypeBeforeCapabilities", request("x", "", {.version = "5", .capabilities = ""}), invalid,
       badKeyOfVersion},
      {"MetaBeforeMethod", request("ping", "", {.capabilities = ""}), invalid, badCapabilities},

      {"InfoIsAText", withMeta(R"("io.modelcontextprotocol/clientInfo":"x")"), invalid, badInfo},
      {"InfoWithoutAVersion", withMeta(R"("io.modelcontextprotocol/clientInfo":{"name":"x"})"), invalid,
       badInfo},
      {"InfoWithANumberAsName", withMeta(R"("io.modelcontextprotocol/clientInfo":{"name":1,"version":"1"})"),
       invalid, badInfo},
      {"UnknownLogLevel", withMeta(R"("io.modelcontextprotocol/logLevel":"loud")"), invalid, badLevel},
      {"NumberAsLogLevel", withMeta(R"("io.modelcontextprotocol/logLevel":7)"), invalid, badLevel},
      {"NullAsToken", withMeta(R"("progressToken":null)"), invalid, badToken},
      {"FractionAsToken", withMeta(R"("progressToken":1.5)"), invalid, badToken},
      {"NumberAsTraceparent", withMeta(R"("traceparent":1)"), invalid,
       "Missing or invalid in '_meta': traceparent"},
      {"NullAsTracestate", withMeta(R"("tracestate":null)"), invalid,
       "Missing or invalid in '_meta': tracestate"},
      {"ObjectAsBaggage", withMeta(R"("baggage":{})"), invalid, "Missing or invalid in '_meta': baggage"},

      {"Initialize", request("initialize", R"("protocolVersion":"2026-07-28")"), notFound,
       "Method not found: initialize"},
      {"Ping", request("ping"), notFound, "Method not found: ping"},
      {"SetLevel", request("logging/setLevel"), notFound, "Method not found: logging/setLevel"},
      {"Resources", request("resources/list"), notFound, "Method not found: resources/list"},
      {"Prompts", request("prompts/list"), notFound, "Method not found: prompts/list"},
      {"Completion", request("completion/complete"), notFound, "Method not found: completion/complete"},
      {"Subscriptions", request("subscriptions/listen"), notFound, "Method not found: subscriptions/listen"},
      {"Capitals", request("Tools/List"), notFound, "Method not found: Tools/List"},
      {"EmptyMethod", request(""), notFound, "Method not found: "},
      {"NotificationAsRequest", request("notifications/cancelled", R"("requestId":1)"), notFound,
       "Method not found: notifications/cancelled"},
      {"MethodBeforeItsParameters", request("tools/Call", R"("name":5)"), notFound,
       "Method not found: tools/Call"},

      {"Cursor", request("tools/list", R"("cursor":"2")"), invalid, "Unknown cursor."},
      {"NullCursor", request("tools/list", R"("cursor":null)"), invalid, "Unknown cursor."},
      {"NoName", request("tools/call"), invalid, "tools/call requires a 'name'."},
      {"NumberAsName", request("tools/call", R"("name":5)"), invalid, "tools/call requires a 'name'."},
      {"UnknownTool", request("tools/call", R"("name":"delete_everything")"), invalid,
       "Unknown tool: delete_everything"},
      {"ToolInCapitals", request("tools/call", R"("name":"GET_STATUS")"), invalid,
       "Unknown tool: GET_STATUS"},
      {"ListOfArguments", request("tools/call", R"("name":"get_status","arguments":[])"), invalid,
       "'arguments' is not an object."},
      {"NullArguments", request("tools/call", R"("name":"get_status","arguments":null)"), invalid,
       "'arguments' is not an object."},
      {"UnknownToolBeforeArguments", request("tools/call", R"("name":"x","arguments":5)"), invalid,
       "Unknown tool: x"},
  };
}

class Refusal : public CurrentDispatcher, public testing::WithParamInterface<RefusalRow> {};

TEST_P(Refusal, namesTheFirstDefect) {
  const JSONValue answer = *JSONValue::decode(answerTo(GetParam().message));
  EXPECT_EQ(answer["jsonrpc"], JSONValue("2.0"));
  EXPECT_EQ(answer.member("result"), nullptr);
  EXPECT_EQ(answer["error"]["code"], JSONValue(GetParam().code));
  EXPECT_EQ(answer["error"]["message"], JSONValue(GetParam().text));
  const JSONValue* id = answer.member("id");
  EXPECT_EQ(id ? id->serialized() : "", GetParam().id);
  EXPECT_TRUE(LogBuffer::shared().snapshot().empty()) << "nothing ran";
}

INSTANTIATE_TEST_SUITE_P(Table, Refusal, testing::ValuesIn(refusalRows()), rowName);

}  // namespace
}  // namespace tarnwell::test
