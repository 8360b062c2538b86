/// The current revision of MCP over HTTP: headers that repeat the body, status codes, clients that leave.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MCP/CurrentRevisionMessages.h"
#include "MCP/HTTP/HTTPFixture.h"
#include "support/RowName.h"
#include "support/SessionScript.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

using Headers = std::vector<std::pair<std::string, std::string>>;

std::string posted(const Headers& headers, std::string_view body) {
  std::string text = "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\n";
  for (const auto& [name, value] : headers) {
    text += name + ": " + value + "\r\n";
  }
  return text + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

const std::string version = "2026-07-28";

/// The headers of a request with this method.
Headers headersOf(const std::string& method) {
  return {{"MCP-Protocol-Version", version}, {"Mcp-Method", method}};
}

Headers headersOfCall(const std::string& tool) {
  Headers headers = headersOf("tools/call");
  headers.emplace_back("Mcp-Name", tool);
  return headers;
}

std::string callOf(std::string_view tool, std::string_view arguments = "{}") {
  return request("tools/call",
                 R"("name":")" + std::string(tool) + R"(","arguments":)" + std::string(arguments));
}

struct AnswerRow {
  const char* name;
  Headers headers;
  std::string body;
  int status;
  /// A part of the body, or of an error its code. Empty: there is no body.
  std::string part;
};

std::vector<AnswerRow> answerRows() {
  const std::string discover = request("server/discover");
  const std::string ping = R"({"id":1,"method":"ping"})";
  const std::string initialize = R"({"id":1,"method":"initialize"})";
  const Headers ofDiscover = headersOf("server/discover");
  const Headers ofStatus = headersOfCall("get_status");
  const auto discoverWith = [&](const std::string& header, const std::string& value) {
    Headers headers = headersOf("server/discover");
    for (auto& [name, old] : headers) {
      if (name == header) {
        old = value;
      }
    }
    return headers;
  };
  const auto discoverAs = [](std::string claimed) {
    return request("server/discover", "", {.version = '"' + std::move(claimed) + '"'});
  };
  return {
      {"Discover", ofDiscover, discover, 200, R"("resultType":"complete")"},
      {"List", headersOf("tools/list"), request("tools/list"), 200, R"("title":"Search inbox")"},
      {"Call", ofStatus, callOf("get_status"), 200, R"("structuredContent")"},
      {"NamesInAnyCase",
       {{"mcp-protocol-version", version}, {"MCP-METHOD", "server/discover"}},
       discover,
       200,
       R"("resultType")"},
      {"BlanksAround",
       {{"MCP-Protocol-Version", " \t" + version + "\t "}, {"Mcp-Method", "  server/discover "}},
       discover,
       200,
       R"("resultType")"},
      {"NameOfAnotherMethodIsIgnored",
       {{"MCP-Protocol-Version", version}, {"Mcp-Method", "tools/list"}, {"Mcp-Name", "x"}},
       request("tools/list"),
       200,
       R"("resultType")"},
      {"NameAsBase64", headersOfCall("=?base64?Z2V0X3N0YXR1cw==?="), callOf("get_status"), 200,
       R"("resultType")"},
      {"NameAsBase64OfOnePad", headersOfCall("=?base64?bGlzdF9mb2xkZXJ4eHg=?="), callOf("list_folderxxx"),
       200, "-32602"},
      {"NameAsBase64WithoutPad", headersOfCall("=?base64?bGlzdF9mb2xkZXJz?="), callOf("list_folders"), 200,
       R"("resultType")"},
      {"NameOfUnicodeAsBase64", headersOfCall("=?base64?5Y+X5L+h?="), callOf("受信"), 200, "-32602"},
      {"SessionHeadersAreIgnored",
       {{"MCP-Protocol-Version", version},
        {"Mcp-Method", "server/discover"},
        {"Mcp-Session-Id", "x"},
        {"Last-Event-ID", "5"}},
       discover,
       200,
       R"("resultType")"},

      {"NoVersionHeader", {{"Mcp-Method", "server/discover"}}, discover, 400, "-32020"},
      {"NoHeaders", {}, discover, 400, "-32020"},
      {"OlderVersionHeader", discoverWith("MCP-Protocol-Version", "2025-11-25"), discover, 400, "-32020"},
      {"LaterVersionHeader", discoverWith("MCP-Protocol-Version", "2027-01-01"), discover, 400, "-32020"},
      {"TwoVersionHeaders",
       {{"MCP-Protocol-Version", version},
        {"MCP-Protocol-Version", version},
        {"Mcp-Method", "server/discover"}},
       discover,
       400,
       "-32020"},
      {"NoMethodHeader", {{"MCP-Protocol-Version", version}}, discover, 400, "-32020"},
      {"AnotherMethod", discoverWith("Mcp-Method", "tools/list"), discover, 400, "-32020"},
      {"MethodInCapitals", discoverWith("Mcp-Method", "Server/Discover"), discover, 400, "-32020"},
      {"MethodAsBase64", discoverWith("Mcp-Method", "=?base64?c2VydmVyL2Rpc2NvdmVy?="), discover, 400,
       "-32020"},
      {"CallAsBase64",
       {{"MCP-Protocol-Version", version},
        {"Mcp-Method", "=?base64?dG9vbHMvY2FsbA==?="},
        {"Mcp-Name", "get_status"}},
       callOf("get_status"),
       400,
       "-32020"},
      {"CallUnderAnotherMethod", discoverWith("Mcp-Method", "tools/list"), callOf("get_status"), 400,
       "-32020"},
      {"NoNameHeader", headersOf("tools/call"), callOf("get_status"), 400, "-32020"},
      {"AnotherName", headersOfCall("search_inbox"), callOf("get_status"), 400, "-32020"},
      {"NameInCapitals", headersOfCall("GET_STATUS"), callOf("get_status"), 400, "-32020"},
      {"NameAsBrokenBase64", headersOfCall("=?base64?Z2V0X3N0YXR1cw?="), callOf("get_status"), 400, "-32020"},
      {"NameAsBase64OfAnother", headersOfCall("=?base64?eA==?="), callOf("get_status"), 400, "-32020"},
      {"NameThatLooksLikeBase64", headersOfCall("=?base64?x?="), callOf("=?base64?x?="), 400, "-32020"},
      {"NameOfUnicodeAsItStands", headersOfCall("受信"), callOf("受信"), 400, "-32020"},

      {"UnsupportedVersion", discoverWith("MCP-Protocol-Version", "1900-01-01"), discoverAs("1900-01-01"),
       400, R"("supported":["2026-07-28"])"},
      {"ClaimOfAnOlderVersion", discoverWith("MCP-Protocol-Version", "2025-11-25"), discoverAs("2025-11-25"),
       400, "-32022"},
      {"VersionBeforeOtherHeaders", {{"MCP-Protocol-Version", "x"}}, discoverAs("x"), 400, "-32022"},
      {"NoCapabilities", ofDiscover, request("server/discover", "", {.capabilities = ""}), 400, "-32602"},
      {"HeadersBeforeCapabilities", headersOf("x"), request("server/discover", "", {.capabilities = ""}), 400,
       "-32020"},
      {"NumberAsVersion", ofDiscover, request("server/discover", "", {.version = "5"}), 400, "-32602"},
      {"NullID", {}, request("server/discover", "", {.id = "null"}), 400, R"({"error":{"code":-32600)"},
      {"OldJSONRPC", {}, request("server/discover", "", {.jsonrpc = "1"}), 400, "-32600"},
      {"NoJSON", ofDiscover, "nonsense", 400,
       R"({"error":{"code":-32700,"message":"Parse error"},"jsonrpc":"2.0"})"},
      {"ListOfRequests", ofDiscover, "[" + discover + "]", 400, "-32700"},

      {"UnknownMethod", headersOf("ping"), request("ping"), 404, "-32601"},
      {"InitializeWithAClaim", headersOf("initialize"), request("initialize"), 404, "-32601"},
      {"UnknownTool", headersOfCall("x"), callOf("x"), 200, "-32602"},
      {"NoName", headersOf("tools/call"), request("tools/call"), 200, "-32602"},
      {"ArgumentsAsAList", ofStatus, callOf("get_status", "[]"), 200, "-32602"},
      {"Cursor", headersOf("tools/list"), request("tools/list", R"("cursor":"2")"), 200, "-32602"},

      {"Notification", headersOf("x"), request("notifications/cancelled", "", {.id = ""}), 202, ""},
      {"NotificationWithoutHeaders", {}, request("x", "", {.id = "", .version = "5"}), 202, ""},

      {"HeaderWithoutClaim", headersOf("ping"), R"({"jsonrpc":"2.0","id":1,"method":"ping"})", 400,
       "Missing or invalid in '_meta': io.modelcontextprotocol/protocolVersion"},
      {"VersionHeaderAlone",
       {{"MCP-Protocol-Version", version}},
       R"({"jsonrpc":"2.0","id":1,"method":"ping"})",
       400,
       "-32602"},
      {"InitializeUnderTheVersionHeaderAlone",
       {{"MCP-Protocol-Version", version}},
       R"({"jsonrpc":"2.0","id":1,"method":"initialize"})",
       400,
       "-32020"},
      {"CallUnderTheVersionHeaderAlone",
       {{"MCP-Protocol-Version", version}},
       R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":{"name":"get_status"}})",
       400,
       "-32602"},
      {"LaterHeaderWithoutClaim",
       {{"MCP-Protocol-Version", "2027-01-01"}, {"Mcp-Method", "ping"}},
       R"({"jsonrpc":"2.0","id":1,"method":"ping"})",
       400,
       "Missing or invalid in '_meta': io.modelcontextprotocol/protocolVersion"},
      {"InitializeUnderTheHeader", headersOf("initialize"),
       R"({"jsonrpc":"2.0","id":1,"method":"initialize"})", 400, "-32020"},
      {"NotificationUnderTheHeader", headersOf("x"), R"({"method":"notifications/initialized"})", 202, ""},

      {"OlderHeader",
       {{"MCP-Protocol-Version", "2025-11-25"}},
       ping,
       200,
       R"({"id":1,"jsonrpc":"2.0","result":{}})"},
      {"HeaderThatIsNoDate", {{"MCP-Protocol-Version", "v9"}}, ping, 200, R"("result":{})"},
      {"HeaderThatIsLongerThanADate", {{"MCP-Protocol-Version", version + "0"}}, ping, 200, R"("result":{})"},
      {"OlderInitialize", {}, initialize, 200, R"("protocolVersion":"2024-11-05")"},
      {"OlderUnknownMethod", {}, R"({"id":1,"method":"x"})", 200, "-32601"},
      {"OlderNonsense", {{"MCP-Protocol-Version", "2025-11-25"}}, "nonsense", 200, R"("id":null)"},
  };
}

class CurrentRevisionOverHTTP : public HTTPTest, public testing::WithParamInterface<AnswerRow> {};

TEST_P(CurrentRevisionOverHTTP, isAnsweredWithStatusAndCode) {
  gate.open();
  startHTTP();
  const std::string answer = answerTo(posted(GetParam().headers, GetParam().body));
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 " + std::to_string(GetParam().status) + " ")) << answer;
  const std::string body = answer.substr(answer.find("\r\n\r\n") + 4);
  EXPECT_EQ(body.empty(), GetParam().part.empty());
  EXPECT_THAT(body, HasSubstr(GetParam().part));
  EXPECT_EQ(answer.find("Content-Type: application/json") != std::string::npos, !body.empty());
}

INSTANTIATE_TEST_SUITE_P(Table, CurrentRevisionOverHTTP, testing::ValuesIn(answerRows()), rowName);

TEST_F(HTTPTest, whatNeedsNoToolIsAnsweredDuringACall) {
  startHTTP();
  LoopbackClient running = connect();
  running.send(posted(headersOfCall("list_folders"), callOf("list_folders")));
  ASSERT_TRUE(gate.awaitArrivals(1));
  EXPECT_THAT(answerTo(posted(headersOf("server/discover"), request("server/discover"))), HasSubstr(" 200 "));
  EXPECT_THAT(answerTo(posted(headersOf("tools/list"), request("tools/list"))), HasSubstr("Search inbox"));
  EXPECT_THAT(answerTo(posted(headersOf("tools/list"), callOf("get_status"))), HasSubstr("-32020"));
  gate.open();
  EXPECT_THAT(running.readAll(), HasSubstr("\"isError\":true"));
}

struct LeavingRow {
  const char* name;
  void (*leave)(LoopbackClient&);
};

constexpr LeavingRow leavingRows[] = {
    {"Closing", [](LoopbackClient& client) { client.close(); }},
    {"Resetting", [](LoopbackClient& client) { client.reset(); }},
    {"FinishingItsSending", [](LoopbackClient& client) { client.finishSending(); }},
};

/// The endpoint over tools with a fake mail server.
class LeavingDuringACall : public ToolTest, public testing::WithParamInterface<LeavingRow> {
 protected:
  LeavingDuringACall() : server_(tools()), http_(server_, 0) {
    config.safety.readOnly = false;
    http_.start();
  }

  LoopbackClient connect() {
    const std::string url = http_.endpointURL();
    return LoopbackClient(static_cast<std::uint16_t>(std::stoi(url.substr(url.rfind(':') + 1))));
  }

  /// A client whose call the mail server holds up.
  LoopbackClient begin(const std::string& tool, const std::string& arguments, Dialogue dialogue) {
    mail_ = &serve(std::move(dialogue));
    save();
    LoopbackClient client = connect();
    client.send(posted(headersOfCall(tool), callOf(tool, arguments)));
    EXPECT_TRUE(mail_->awaitPause());
    return client;
  }

  FakeIMAPServer& mail() { return *mail_; }

  /// The answer to a call that waits for the one before.
  std::string nextAnswer() {
    LoopbackClient next = connect();
    next.send(posted(headersOfCall("get_status"), callOf("get_status")));
    return next.readAll();
  }

  static bool wasCancelled() {
    for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
      if (entry.message.find(": cancelled (") != std::string::npos) {
        return true;
      }
    }
    return false;
  }

  MCPServer server_;
  MCPHTTPServer http_;

 private:
  FakeIMAPServer* mail_ = nullptr;
};

TEST_P(LeavingDuringACall, givesTheCallUpAtEveryStep) {
  const Dialogue whole = SessionScript().command("LIST \"\" \"*\"", "* LIST () \"/\" INBOX\r\n").withLogout();
  for (std::size_t step = 0; step < whole.size(); ++step) {
    if (whole[step].kind != Step::Kind::answer) {
      continue;
    }
    SCOPED_TRACE("silent before step " + std::to_string(step));
    LogBuffer::shared().clear();
    const Dialogue begun(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(step));
    LoopbackClient client = begin("list_folders", "{}", begun + Dialogue{pauseHere(), stallHere()});
    GetParam().leave(client);
    EXPECT_THAT(nextAnswer(), HasSubstr("\"resultType\":\"complete\""));
    EXPECT_TRUE(wasCancelled());
    mail().resume();
  }
}

TEST_P(LeavingDuringACall, changeOnTheWireIsFinished) {
  LoopbackClient client = begin(
      "mark_as_read", R"({"uid":9})",
      loginDialogue("SELECT INBOX") + Dialogue{expect("A0004 UID FETCH 9 (UID FLAGS INTERNALDATE ENVELOPE "
                                                      "BODYSTRUCTURE)\r\n"),
                                               answer("* 1 FETCH (UID 9 FLAGS ())\r\nA0004 OK done\r\n"),
                                               expect("A0005 UID STORE 9 +FLAGS (\\Seen)\r\n"), pauseHere(),
                                               answer("A0005 OK done\r\n"), expect("A0006 LOGOUT\r\n"),
                                               answer("* BYE\r\nA0006 OK done\r\n")});
  GetParam().leave(client);
  std::this_thread::sleep_for(50ms);
  mail().resume();
  EXPECT_EQ(mail().mismatch(), "");
  EXPECT_THAT(nextAnswer(), HasSubstr("\"resultType\":\"complete\""));
  EXPECT_FALSE(wasCancelled());
}

INSTANTIATE_TEST_SUITE_P(Table, LeavingDuringACall, testing::ValuesIn(leavingRows), rowName);

using StoppingDuringACall = LeavingDuringACall;

TEST_F(StoppingDuringACall, givesTheCallUp) {
  LoopbackClient client = begin("list_folders", "{}", {pauseHere(), stallHere()});
  http_.stop();
  EXPECT_EQ(client.readAll(), "");
  http_.start();
  EXPECT_THAT(nextAnswer(), HasSubstr("\"resultType\":\"complete\""));
  EXPECT_TRUE(wasCancelled());
}

}  // namespace
}  // namespace tarnwell::test
