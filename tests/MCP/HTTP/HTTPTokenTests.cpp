// The endpoint with a token, over real sockets.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MCP/HTTP/HTTPFixture.h"

namespace tarnwell::test {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class HTTPToken : public HTTPTest {
 protected:
  static constexpr const char* token = "fJ2_kQ-9Zz";
  HTTPToken() {
    startHTTP();
    http().requireToken(Secret(token));
  }

  static std::string post(std::string_view body, const std::string& given) {
    std::string request = HTTPTest::post(body);
    return request.insert(request.find("\r\n") + 2, "Authorization: Bearer " + given + "\r\n");
  }
  static std::string bytesOf(const HTTPResponse& response) {
    return response.serialized(HTTPAccess::withToken);
  }
  static std::string pongBytes() { return bytesOf({200, "application/json", pong}); }
};

const HTTPResponse missing{.status = 401, .challenge = "Bearer realm=\"tarnwell\""};
const HTTPResponse wrong{.status = 401, .challenge = "Bearer error=\"invalid_token\""};

TEST_F(HTTPToken, onlyWhoKnowsItIsServed) {
  const std::pair<std::string, HTTPResponse> rows[] = {
      {post(ping, token), {200, "application/json", pong}},
      {HTTPTest::post(ping), missing},
      {post(ping, "another"), wrong},
      {"GET /mcp HTTP/1.1\r\n\r\n", missing},
      {"GET /mcp HTTP/1.1\r\nAuthorization: Bearer " + std::string(token) + "\r\n\r\n",
       {405, "text/plain", "This endpoint accepts JSON-RPC via POST."}},
      {"OPTIONS /mcp HTTP/1.1\r\nOrigin: http://localhost:5173\r\n\r\n", {204}},
      {"POST / HTTP/1.1\r\nOrigin: https://evil.example\r\n\r\n", {403}},
      {"POST / HTTP/1.1\r\nAuthorization: Bearer a\r\nAuthorization: Bearer b\r\n\r\n",
       {.status = 400, .challenge = "Bearer error=\"invalid_request\""}},
  };
  for (const auto& [request, answer] : rows) {
    EXPECT_EQ(answerTo(request), bytesOf(answer)) << request;
  }
}

TEST_F(HTTPToken, answerIsWrittenOutOnce) {
  EXPECT_EQ(answerTo(HTTPTest::post(ping)),
            "HTTP/1.1 401 Unauthorized\r\n"
            "Content-Length: 0\r\n"
            "WWW-Authenticate: Bearer realm=\"tarnwell\"\r\n"
            "Connection: close\r\n"
            "Access-Control-Allow-Origin: *\r\n"
            "Access-Control-Allow-Methods: POST, OPTIONS\r\n"
            "Access-Control-Allow-Headers: Content-Type, Authorization\r\n"
            "\r\n");
}

/// The same requests to an endpoint that was never given a token: its answers say nothing of one.
TEST_F(HTTPToken, endpointWithoutOneAnswersAsIfThereWereNoSuchThing) {
  startHTTP();
  const std::string requests[] = {HTTPTest::post(ping),
                                  post(ping, token),
                                  post(ping, "another"),
                                  "POST / HTTP/1.1\r\nAuthorization: x\r\nAuthorization: y\r\n\r\n",
                                  "OPTIONS / HTTP/1.1\r\nAuthorization: Basic x\r\n\r\n",
                                  "GET / HTTP/1.1\r\n\r\n",
                                  "POST / HTTP/1.1\r\nContent-Length: 4194305\r\n\r\n"};
  for (const std::string& request : requests) {
    EXPECT_THAT(answerTo(request), AllOf(HasSubstr("\r\nAccess-Control-Allow-Headers: Content-Type\r\n\r\n"),
                                         Not(HasSubstr("WWW-Authenticate")), Not(HasSubstr("HTTP/1.1 401"))))
        << request;
  }
  EXPECT_EQ(answerTo(requests[1]), answerTo(requests[0]));
}

TEST_F(HTTPToken, isAskedForBeforeTheBodyIsInvited) {
  const std::string headers = "Expect: 100-continue\r\nContent-Length: 24\r\n\r\n";
  EXPECT_EQ(answerTo("POST / HTTP/1.1\r\n" + headers), bytesOf(missing));
  LoopbackClient knows = connect();
  knows.send("POST / HTTP/1.1\r\nAuthorization: Bearer " + std::string(token) + "\r\n" + headers);
  const std::string invitation{HTTPResponse::interimContinue};
  EXPECT_EQ(knows.readExactly(invitation.size()), invitation);
  knows.send(ping);
  EXPECT_EQ(knows.readAll(), pongBytes());
}

TEST_F(HTTPToken, isAskedForBeforeTheBodyHasCome) {
  LoopbackClient client = connect();
  client.send("POST / HTTP/1.1\r\nContent-Length: 4194304\r\n\r\n{");
  EXPECT_EQ(client.readAll(), bytesOf(missing));
}

TEST_F(HTTPToken, newOneCountsForTheNextHeaders) {
  LoopbackClient begun = connect();
  begun.send("POST / HTTP/1.1\r\nAuthorization: Bearer " + std::string(token) + "\r\n");
  LoopbackClient inTheBody = connect();
  const std::string request = post(ping, token);
  inTheBody.send(request.substr(0, request.size() - 1));
  EXPECT_EQ(answerTo("OPTIONS / HTTP/1.1\r\n\r\n"), bytesOf({204})) << "both are read now";

  http().requireToken(Secret("renewed"));
  EXPECT_EQ(answerTo(post(ping, token)), bytesOf(wrong));
  EXPECT_EQ(answerTo(post(ping, "renewed")), pongBytes());
  begun.send("\r\n");
  EXPECT_EQ(begun.readAll(), bytesOf(wrong));
  inTheBody.send(request.substr(request.size() - 1));
  EXPECT_EQ(inTheBody.readAll(), pongBytes());
}

TEST_F(HTTPToken, staysAfterARestart) {
  http().stop();
  http().start();
  EXPECT_EQ(answerTo(HTTPTest::post(ping)), bytesOf(missing));
  EXPECT_EQ(answerTo(post(ping, token)), pongBytes());
}

TEST_F(HTTPToken, emptyOneServesNobody) {
  http().requireToken(Secret());
  EXPECT_EQ(answerTo(HTTPTest::post(ping)), bytesOf(missing));
  EXPECT_EQ(answerTo(post(ping, "")), bytesOf(wrong));
}

TEST_F(HTTPToken, currentRevisionNeedsItToo) {
  const std::string headers = "MCP-Protocol-Version: 2026-07-28\r\nMcp-Method: server/discover\r\n\r\n";
  EXPECT_EQ(answerTo("POST / HTTP/1.1\r\n" + headers), bytesOf(missing));
  EXPECT_THAT(answerTo("POST / HTTP/1.1\r\nAuthorization: Bearer " + std::string(token) + "\r\n" + headers),
              StartsWith("HTTP/1.1 400 Bad Request\r\nContent-Length: "));
}

TEST_F(HTTPToken, isNeverLogged) {
  answerTo(post(ping, token));
  answerTo(post(slowCall, "another-token"));
  http().requireToken(Secret("renewed"));
  http().stop();
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    for (const char* text : {token, "another-token", "renewed"}) {
      EXPECT_THAT(entry.message, Not(HasSubstr(text)));
    }
  }
}

}  // namespace
}  // namespace tarnwell::test
