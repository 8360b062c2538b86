#include "MCP/HTTP/MCPHTTPServer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <thread>

#include "MCP/HTTP/HTTPFixture.h"
#include "MCP/JSONRPC.h"

namespace tarnwell::test {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;
using testing::StartsWith;

class HTTPEndpoint : public HTTPTest {
 protected:
  HTTPEndpoint() { startHTTP(); }
};

const HTTPResponse notAllowed{405, "text/plain", "This endpoint accepts JSON-RPC via POST."};

// What is answered

TEST_F(HTTPEndpoint, requestsAreAnsweredByTheirMethod) {
  const std::string parseError = JSONRPC::failure(std::nullopt, -32700, "Parse error").serialized();
  const std::pair<std::string, std::string> rows[] = {
      {post(ping), answerWith(pong)},
      {"POST /any/other/path HTTP/1.1\r\ncontent-length: 24\r\n\r\n{\"id\":1,\"method\":\"ping\"}",
       answerWith(pong)},
      {post(R"({"method":"ping"})"), HTTPResponse{202}.serialized()},
      {post("nonsense"), answerWith(parseError)},
      {"POST / HTTP/1.1\r\n\r\n", answerWith(parseError)},
      {"POST / HTTP/1.1\r\nContent-Length: many\r\n\r\n" + std::string(ping), answerWith(parseError)},
      {"OPTIONS /mcp HTTP/1.1\r\nOrigin: http://localhost:5173\r\n\r\n", HTTPResponse{204}.serialized()},
      {"GET /mcp HTTP/1.1\r\n\r\n", notAllowed.serialized()},
      {"GET / HTTP/1.0\r\n\r\n", notAllowed.serialized()},
      {"DELETE /a/b?c HTTP/1.1\r\nContent-Length: 1\r\n\r\nx", notAllowed.serialized()},
      {"post /mcp HTTP/1.1\r\n\r\n", notAllowed.serialized()},
      {"\r\n\r\n", notAllowed.serialized()},
      {std::string("\xff\0\x01\r\n\r\n", 7), notAllowed.serialized()},
  };
  for (const auto& [request, answer] : rows) {
    EXPECT_EQ(answerTo(request), answer) << request;
  }
}

TEST_F(HTTPEndpoint, badRequestsAreRefused) {
  const std::pair<std::string, int> rows[] = {
      {"POST / HTTP/1.1\r\nX: " + std::string(16384, 'x'), 431},
      {"POST / HTTP/1.1\n" + std::string(16384, '\n'), 431},
      {"POST / HTTP/1.1\r\nContent-Length: 4194305\r\n\r\n", 413},
      {"POST / HTTP/1.1\r\nContent-Length: 99999999999999999999999\r\n\r\n", 413},
      {"POST / HTTP/1.1\r\nContent-Length: 1\r\nContent-Length: 2\r\n\r\nxy", 400},
      {"POST / HTTP/1.1\r\nHost: evil.example:8765\r\nContent-Length: 24\r\n\r\n", 403},
      {"POST / HTTP/1.1\r\nHost: 127.0.0.1\r\nOrigin: https://evil.example\r\n\r\n", 403},
      {"OPTIONS / HTTP/1.1\r\nHost: 127.0.0.1\r\nOrigin: null\r\n\r\n", 403},
      {"GET / HTTP/1.1\r\nHost: localhost\r\nHost: evil.example\r\n\r\n", 403},
  };
  for (const auto& [request, status] : rows) {
    EXPECT_EQ(answerTo(request), HTTPResponse{status}.serialized()) << request.substr(0, 100);
  }
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong)) << "the next request";
}

TEST_F(HTTPEndpoint, largestBodyIsAccepted) {
  std::string body = R"({"id":1,"method":"ping","params":")";
  body += std::string(4'194'304 - body.size() - 2, 'x') + "\"}";
  EXPECT_EQ(answerTo(post(body)), answerWith(pong));
}

// A refusal must reach a client that is still busy sending: the bytes left unread must not reset the
// connection.
TEST_F(HTTPEndpoint, refusalReachesAClientThatSendsOn) {
  for (int round = 0; round < 20; ++round) {
    LoopbackClient client = connect();
    client.send("POST / HTTP/1.1\r\nContent-Length: 5000000\r\n\r\n");
    EXPECT_TRUE(client.send(std::string(5'000'000, 'x')));
    client.finishSending();
    EXPECT_EQ(client.readAll(), HTTPResponse{413}.serialized());
  }
}

TEST_F(HTTPEndpoint, connectionCarriesOneRequest) {
  const std::string second = "GET / HTTP/1.1\r\n\r\n";
  EXPECT_EQ(answerTo(post(ping) + post(ping) + second), answerWith(pong));
  EXPECT_EQ(answerTo("POST / HTTP/1.1\r\nTransfer-Encoding: chunked\r\nContent-Length: 24\r\n\r\n" +
                     std::string(ping) + second),
            answerWith(pong));
}

TEST_F(HTTPEndpoint, requestMayComeByteByByte) {
  LoopbackClient client = connect();
  client.sendByteByByte(post(ping));
  EXPECT_EQ(client.readAll(), answerWith(pong));
}

TEST_F(HTTPEndpoint, clientThatHasFinishedSendingIsAnswered) {
  LoopbackClient client = connect();
  client.send(post(ping));
  client.finishSending();
  EXPECT_EQ(client.readAll(), answerWith(pong));
}

TEST_F(HTTPEndpoint, incompleteRequestIsDroppedWithoutAnAnswer) {
  for (const char* request : {"", "POST", "POST / HTTP/1.1\r\nContent-Length: 5\r\n\r\nhell"}) {
    LoopbackClient client = connect();
    client.send(request);
    client.finishSending();
    EXPECT_EQ(client.readAll(), "") << request;
  }
}

TEST_F(HTTPEndpoint, waitingClientIsInvitedToSendItsBody) {
  const std::string head = "POST / HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 24\r\n\r\n";
  const std::string invitation{HTTPResponse::interimContinue};
  LoopbackClient waiting = connect();
  waiting.send(head);
  EXPECT_EQ(waiting.readExactly(invitation.size()), invitation);
  waiting.send(ping);
  EXPECT_EQ(waiting.readAll(), answerWith(pong));
  EXPECT_EQ(answerTo(head + ping), answerWith(pong)) << "it did not wait";
  EXPECT_EQ(answerTo("POST / HTTP/1.1\r\nExpect: 100-continue\r\nContent-Length: 4194305\r\n\r\n"),
            HTTPResponse{413}.serialized());
}

TEST_F(HTTPEndpoint, onlyTheLoopbackAddressIsListenedOn) {
  constexpr std::uint32_t otherLoopbackAddress = 0x7f000002;
  EXPECT_TRUE(connect().isConnected());
  EXPECT_FALSE(LoopbackClient(portOf(http()), otherLoopbackAddress).isConnected());
}

// Who holds up whom

TEST_F(HTTPEndpoint, slowCallHoldsUpOnlyTheCallsAfterIt) {
  LoopbackClient slow = connect();
  slow.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  LoopbackClient second = connect();
  second.send(post(ping));
  EXPECT_EQ(answerTo("GET / HTTP/1.1\r\n\r\n"), notAllowed.serialized());
  EXPECT_EQ(answerTo("OPTIONS / HTTP/1.1\r\n\r\n"), HTTPResponse{204}.serialized());
  gate.open();
  EXPECT_THAT(slow.readAll(), HasSubstr("\"isError\":true"));
  EXPECT_EQ(second.readAll(), answerWith(pong));
}

TEST_F(HTTPEndpoint, callsRunOneAtATime) {
  LoopbackClient first = connect();
  LoopbackClient second = connect();
  first.send(post(slowCall));
  second.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  EXPECT_EQ(answerTo("GET / HTTP/1.1\r\n\r\n"), notAllowed.serialized());
  EXPECT_EQ(gate.arrivals(), 1);
  gate.open();
  EXPECT_THAT(first.readAll(), HasSubstr("\"id\":2"));
  EXPECT_THAT(second.readAll(), HasSubstr("\"id\":2"));
}

TEST_F(HTTPEndpoint, slowSendersHoldUpNobody) {
  std::vector<LoopbackClient> slow;
  for (int count = 0; count < 50; ++count) {
    slow.push_back(connect());
    slow.back().send(post(ping).substr(0, static_cast<std::size_t>(count)));
  }
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong));
  for (std::size_t sent = 0; sent < slow.size(); ++sent) {
    slow[sent].send(post(ping).substr(sent));
    EXPECT_EQ(slow[sent].readAll(), answerWith(pong));
  }
}

TEST_F(HTTPEndpoint, hundredClientsAtOnceAreAllAnswered) {
  std::atomic<int> answered = 0;
  std::vector<std::thread> clients;
  for (int id = 0; id < 100; ++id) {
    clients.emplace_back([this, id, &answered] {
      const std::string request = JSONValue(JSONObject{{"id", id}, {"method", "ping"}}).serialized();
      const std::string response = JSONRPC::success(JSONValue(id), JSONObject{}).serialized();
      answered += answerTo(post(request)) == answerWith(response) ? 1 : 0;
    });
  }
  for (std::thread& client : clients) {
    client.join();
  }
  EXPECT_EQ(answered, 100);
}

TEST_F(HTTPEndpoint, clientsThatGoAwayHoldUpNobody) {
  LoopbackClient slow = connect();
  slow.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  for (int round = 0; round < 20; ++round) {
    connect().close();
    connect().reset();
    LoopbackClient inTheHead = connect();
    inTheHead.send("POST / HTTP/1.1\r\n");
    inTheHead.reset();
    LoopbackClient waitingForItsAnswer = connect();
    waitingForItsAnswer.send(post(ping));
    waitingForItsAnswer.reset();
  }
  slow.reset();
  gate.open();
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong));
}

/// While the process has no descriptor left, connections wait; the server goes on when it has.
/// An answer before shows that both threads run: their start needs descriptors too, at least under the
/// sanitizers.
TEST_F(HTTPEndpoint, exhaustedDescriptorsOnlyDelay) {
  LoopbackClient before = connect();
  before.send(post(ping));
  ASSERT_EQ(before.readAll(), answerWith(pong));
  rlimit usual{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &usual), 0);
  const int nextFree = dup(STDERR_FILENO);
  close(nextFree);
  const rlimit oneMore{.rlim_cur = static_cast<rlim_t>(nextFree) + 1, .rlim_max = usual.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &oneMore), 0);
  LoopbackClient client = connect();  // takes the last one
  client.send(post(ping));
  std::this_thread::sleep_for(milliseconds(50));
  ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &usual), 0);
  EXPECT_EQ(client.readAll(), answerWith(pong));
}

// Time-outs

class HTTPTimeout : public HTTPTest {
 protected:
  static constexpr milliseconds timeout{1000};
  HTTPTimeout() { startHTTP(0, timeout); }
};

TEST_F(HTTPTimeout, lateRequestIsDroppedWithoutAnAnswer) {
  LoopbackClient silent = connect();
  LoopbackClient inTheBody = connect();
  inTheBody.send("POST / HTTP/1.1\r\nContent-Length: 5\r\n\r\nhell");
  EXPECT_EQ(silent.readAll(), "");
  EXPECT_EQ(inTheBody.readAll(), "");
}

/// The bound is for the whole request: single bytes do not move it.
TEST_F(HTTPTimeout, senderOfSingleBytesIsDroppedToo) {
  LoopbackClient client = connect();
  int sent = 0;
  constexpr int tooMany = 2000;  // 20 seconds
  while (sent < tooMany && client.send("x")) {
    ++sent;
    std::this_thread::sleep_for(milliseconds(10));
  }
  EXPECT_LT(sent, tooMany);
}

TEST_F(HTTPTimeout, callMayTakeLongerThanItsRequest) {
  LoopbackClient client = connect();
  client.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  std::this_thread::sleep_for(2 * timeout);
  gate.open();
  EXPECT_THAT(client.readAll(), StartsWith("HTTP/1.1 200 OK\r\n"));
}

}  // namespace
}  // namespace tarnwell::test
