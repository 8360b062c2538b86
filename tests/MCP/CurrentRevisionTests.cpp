/// The current revision: which messages belong to it, and what each method answers.

#include "MCP/CurrentRevision.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MCP/CurrentDispatcher.h"
#include "MCP/Tools/MCPToolSchemas.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

constexpr const char* parseError =
    R"({"error":{"code":-32700,"message":"Parse error"},"id":null,"jsonrpc":"2.0"})";

std::string olderNotFound(std::string_view method) {
  return JSONRPC::failure(JSONValue(1), -32601, "Method not found: " + std::string(method)).serialized();
}

struct EraRow {
  const char* name;
  std::string message;
  /// The whole answer of the older revisions, or empty when the message is one of the current revision.
  std::string olderAnswer;
};

std::vector<EraRow> eraRows() {
  const auto discover = [](std::string_view params) {
    return R"({"jsonrpc":"2.0","id":1,"method":"server/discover","params":)" + std::string(params) + "}";
  };
  const std::string older = olderNotFound("server/discover");
  return {
      {"Claim", request("server/discover"), ""},
      {"ClaimOfAnotherRevision", request("server/discover", "", {.version = R"("1900-01-01")"}), ""},
      {"ClaimThatIsNoText", request("server/discover", "", {.version = "5"}), ""},
      {"ClaimThatIsNull", request("server/discover", "", {.version = "null"}), ""},
      {"NoParameters", R"({"jsonrpc":"2.0","id":1,"method":"server/discover"})", older},
      {"ParametersAsAList", discover(R"([{"_meta":{"io.modelcontextprotocol/protocolVersion":"x"}}])"),
       older},
      {"EmptyParameters", discover("{}"), older},
      {"MetaThatIsAText", discover(R"({"_meta":"io.modelcontextprotocol/protocolVersion"})"), older},
      {"MetaThatIsAList", discover(R"({"_meta":["io.modelcontextprotocol/protocolVersion"]})"), older},
      {"ProgressTokenAlone", discover(R"({"_meta":{"progressToken":1}})"), older},
      {"CapabilitiesAlone", discover(R"({"_meta":{"io.modelcontextprotocol/clientCapabilities":{}}})"),
       older},
      {"KeyWithoutPrefix", discover(R"({"_meta":{"protocolVersion":"2026-07-28"}})"), older},
      {"KeyInCapitals", discover(R"({"_meta":{"io.modelcontextprotocol/ProtocolVersion":"2026-07-28"}})"),
       older},
      {"KeyOutsideMeta", discover(R"({"io.modelcontextprotocol/protocolVersion":"2026-07-28"})"), older},
      {"ListOfRequests", "[" + request("server/discover") + "]", parseError},
      {"NoMethod",
       R"({"jsonrpc":"2.0","id":1,"params":{"_meta":{"io.modelcontextprotocol/protocolVersion":"2026-07-28"}}})",
       parseError},
  };
}

class Era : public CurrentDispatcher, public testing::WithParamInterface<EraRow> {};

TEST_P(Era, isThatOfTheClaim) {
  const std::string answer = answerTo(GetParam().message);
  if (!GetParam().olderAnswer.empty()) {
    EXPECT_EQ(answer, GetParam().olderAnswer);
  } else {
    EXPECT_NE(answer, olderNotFound("server/discover"));
    EXPECT_NE(answer, parseError);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, Era, testing::ValuesIn(eraRows()), rowName);

TEST_F(CurrentDispatcher, unsupportedVersionNamesWhatIsSupported) {
  EXPECT_EQ(answerTo(request("server/discover", "", {.version = R"("1900-01-01")"})),
            R"({"error":{"code":-32022,"data":{"requested":"1900-01-01","supported":["2026-07-28"]},)"
            R"("message":"Unsupported protocol version"},"id":1,"jsonrpc":"2.0"})");
}

struct AcceptedRow {
  const char* name;
  std::string message;
  std::string id = "1";
};

std::vector<AcceptedRow> acceptedRows() {
  const auto withID = [](std::string id) { return request("server/discover", "", {.id = std::move(id)}); };
  const auto withMeta = [](std::string more) {
    return request("server/discover", "", {.moreMeta = "," + std::move(more)});
  };
  return {
      {"Plain", request("server/discover")},
      {"ZeroID", withID("0"), "0"},
      {"NegativeID", withID("-9223372036854775808"), "-9223372036854775808"},
      {"TextID", withID(R"("server-discover-probe-1")"), R"("server-discover-probe-1")"},
      {"EmptyID", withID(R"("")"), R"("")"},
      {"Capabilities", request("server/discover", "", {.capabilities = R"({"sampling":{},"x":5})"})},
      {"Info", withMeta(R"("io.modelcontextprotocol/clientInfo":{"name":"x","version":"1","title":5})")},
      {"LogLevel", withMeta(R"("io.modelcontextprotocol/logLevel":"emergency")")},
      {"ZeroToken", withMeta(R"("progressToken":0)")},
      {"EmptyToken", withMeta(R"("progressToken":"")")},
      {"Trace", withMeta(R"("traceparent":"","tracestate":"a=b","baggage":"c")")},
      {"UnknownKeys", withMeta(R"("io.modelcontextprotocol/x":5,"org.example/y":null,"z":[])")},
      {"UnknownParameters", request("server/discover", R"("inputResponses":{},"requestState":5)")},
  };
}

class Accepted : public CurrentDispatcher, public testing::WithParamInterface<AcceptedRow> {};

TEST_P(Accepted, isAnswered) {
  EXPECT_EQ(answerTo(GetParam().message),
            R"({"id":)" + GetParam().id +
                R"(,"jsonrpc":"2.0","result":{"_meta":{"io.modelcontextprotocol/serverInfo":)"
                R"({"name":"Tarnwell","version":"0.1.0"}},"cacheScope":"public","capabilities":{"tools":{}},)"
                R"("resultType":"complete","supportedVersions":["2026-07-28"],"ttlMs":3600000}})");
}

INSTANTIATE_TEST_SUITE_P(Table, Accepted, testing::ValuesIn(acceptedRows()), rowName);

TEST_F(CurrentDispatcher, notificationsAreNeitherRunNorAnswered) {
  for (const char* method :
       {"notifications/cancelled", "notifications/initialized", "tools/call", "server/discover", "x"}) {
    for (const char* version : {R"("2026-07-28")", R"("x")", "5"}) {
      EXPECT_EQ(answerTo(request(method, R"("name":"get_status")", {.id = "", .version = version})),
                "(nothing)")
          << method;
    }
  }
  EXPECT_TRUE(LogBuffer::shared().snapshot().empty()) << "nothing ran";
}

TEST_F(CurrentDispatcher, listIsTheCatalogueWithTitlesAndHints) {
  const JSONValue result = resultOf(request("tools/list"));
  EXPECT_EQ(result["tools"], MCPToolSchemas::currentToolsListJSON());
  EXPECT_EQ(result["ttlMs"], JSONValue(3'600'000));
  EXPECT_EQ(result["cacheScope"], JSONValue("public"));
  EXPECT_EQ(result.objectValue()->size(), 5u) << "no next page";
}

TEST_F(CurrentDispatcher, toolResultComesAsTextAndAsStructure) {
  const JSONValue result = resultOf(request("tools/call", R"("name":"get_status")"));
  EXPECT_EQ(result["isError"], JSONValue(false));
  EXPECT_EQ(result["structuredContent"]["imapPort"], JSONValue(993));
  EXPECT_EQ((*result["content"].arrayValue())[0]["text"],
            JSONValue(result["structuredContent"].prettyString()));
  EXPECT_EQ(result.objectValue()->size(), 5u);
}

TEST_F(CurrentDispatcher, badValueOfAnArgumentIsAResultOfTheTool) {
  const JSONValue result =
      resultOf(request("tools/call", R"("name":"get_message_body","arguments":{"uid":"x"})"));
  EXPECT_EQ(result["isError"], JSONValue(true));
  EXPECT_EQ(result["structuredContent"], JSONValue(JSONObject{{"error", "Missing or invalid 'uid'."}}));
}

/// Every message of the older revisions gets the same bytes whether or not one of the current revision came
/// before it.
TEST_F(CurrentDispatcher, keepsNoStateBetweenMessages) {
  const std::vector<std::string> older{
      R"({"id":1,"method":"initialize","params":{"protocolVersion":"2026-07-28"}})",
      R"({"id":2,"method":"ping","params":{"_meta":{"progressToken":1}}})",
      R"({"id":3,"method":"tools/list"})",
      R"({"id":4,"method":"server/discover"})",
      R"({"id":5,"method":"tools/call","params":{"name":"get_status"}})",
      R"({"id":6,"method":"tools/call","params":{"name":"nope"}})",
      R"({"id":null,"method":"ping"})",
      R"({"method":"notifications/initialized"})",
      "{nonsense",
  };
  const std::vector<std::string> current{
      request("server/discover"),
      request("tools/list"),
      request("tools/call", R"("name":"get_status")"),
      request("initialize", "", {.version = R"("2025-11-25")"}),
      request("notifications/initialized", "", {.id = ""}),
  };
  const auto answersTo = [this](const std::vector<std::string>& messages) {
    std::vector<std::string> answers;
    for (const std::string& message : messages) {
      answers.push_back(answerTo(message));
    }
    return answers;
  };
  const std::vector<std::string> olderAlone = answersTo(older);
  const std::vector<std::string> currentAlone = answersTo(current);
  for (std::size_t i = 0; i < older.size(); ++i) {
    for (std::size_t j = 0; j < current.size(); ++j) {
      EXPECT_EQ(answerTo(current[j]), currentAlone[j]);
      EXPECT_EQ(answerTo(older[i]), olderAlone[i]);
    }
  }
  EXPECT_THAT(olderAlone[0], testing::HasSubstr(R"("protocolVersion":"2026-07-28")"));
}

}  // namespace
}  // namespace tarnwell::test
