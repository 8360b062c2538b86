#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "Core/BridgeConstants.h"
#include "MCP/HTTP/HTTPFixture.h"

namespace tarnwell::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::Pair;

class HTTPLife : public HTTPTest {
 protected:
  static std::string address(const MCPHTTPServer& server) {
    return "127.0.0.1:" + std::to_string(portOf(server));
  }
};

TEST_F(HTTPLife, startAndStopAreLoggedAndTold) {
  MCPHTTPServer& server = startHTTP();
  EXPECT_TRUE(server.isRunning());
  EXPECT_THAT(changes, ElementsAre(StateChange(true, std::nullopt)));
  server.stop();
  EXPECT_FALSE(server.isRunning());
  EXPECT_THAT(changes, ElementsAre(StateChange(true, std::nullopt), StateChange(false, std::nullopt)));
  EXPECT_THAT(logged(),
              ElementsAre(Pair(LogLevel::info, "localhost MCP HTTP server listening on " + address(server)),
                          Pair(LogLevel::info, "localhost MCP HTTP server stopped")));
}

TEST_F(HTTPLife, nothingIsListenedOnBeforeTheStartAndAfterTheStop) {
  MCPHTTPServer& server = startHTTP();
  const std::uint16_t port = portOf(server);
  EXPECT_TRUE(LoopbackClient(port).isConnected());
  server.stop();
  EXPECT_FALSE(LoopbackClient(port).isConnected());
}

TEST_F(HTTPLife, portsBeyondTheRangeMean8765) {
  MCPServer dispatcher(MCPTools::shared());
  const std::pair<std::int64_t, const char*> rows[] = {
      {70000, "8765"},  {-1, "8765"}, {65536, "8765"}, {(std::int64_t{1} << 32) + 80, "8765"},
      {65535, "65535"}, {1, "1"},     {0, "0"}};
  for (const auto& [port, used] : rows) {
    EXPECT_EQ(MCPHTTPServer(dispatcher, port).endpointURL(),
              "http://127.0.0.1:" + std::string(used) + "/mcp");
  }
}

/// Another program may have the port already: then the failure must name it.
TEST_F(HTTPLife, port70000IsListenedOnAs8765) {
  MCPHTTPServer& server = startHTTP(70000);
  EXPECT_EQ(server.endpointURL(), "http://127.0.0.1:8765/mcp");
  ASSERT_EQ(logged().size(), 1u);
  EXPECT_THAT(logged()[0].second, HasSubstr("127.0.0.1:8765"));
  if (server.isRunning()) {
    EXPECT_EQ(answerTo(post(ping)), answerWith(pong));
  }
}

TEST_F(HTTPLife, takenPortIsAFailureThatCanBeTriedAgain) {
  MCPServer dispatcher(MCPTools::shared());
  auto first = std::make_unique<MCPHTTPServer>(dispatcher, 0);
  first->start();
  LogBuffer::shared().clear();

  MCPHTTPServer& second = startHTTP(portOf(*first));
  EXPECT_FALSE(second.isRunning());
  const std::string reason = address(second) + ": Address already in use";
  EXPECT_THAT(changes, ElementsAre(StateChange(false, reason)));
  EXPECT_THAT(logged(), ElementsAre(Pair(LogLevel::error, "HTTP listener failed: " + reason)));

  first.reset();
  second.start();
  EXPECT_TRUE(second.isRunning());
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong));
}

TEST_F(HTTPLife, secondStartDoesNothing) {
  MCPHTTPServer& server = startHTTP();
  const std::string url = server.endpointURL();
  server.start();
  EXPECT_EQ(server.endpointURL(), url);
  EXPECT_EQ(changes.size(), 1u);
  EXPECT_EQ(logged().size(), 1u);
}

TEST_F(HTTPLife, stopWithoutAStartTellsNobody) {
  MCPHTTPServer& server = startHTTP();
  server.stop();
  changes.clear();
  server.stop();
  EXPECT_THAT(changes, IsEmpty());
  EXPECT_FALSE(server.isRunning());
}

/// The answered connection is still known to the system on the server's side: the port must be free all the
/// same.
TEST_F(HTTPLife, startAfterAStopServesTheSamePort) {
  MCPServer dispatcher(MCPTools::shared());
  startHTTP();
  const std::uint16_t port = portOf(http());
  destroyHTTP();
  startHTTP(port);
  for (int round = 0; round < 20; ++round) {
    ASSERT_TRUE(http().isRunning()) << "round " << round;
    EXPECT_EQ(answerTo(post(ping)), answerWith(pong));
    http().stop();
    http().start();
  }
}

TEST_F(HTTPLife, stopClosesOpenConnectionsAtOnce) {
  startHTTP();
  LoopbackClient idle = connect();
  LoopbackClient sending = connect();
  sending.send("POST / HTTP/1.1\r\n");
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong)) << "both are accepted now";
  http().stop();
  EXPECT_THAT(idle.readAll(), testing::AnyOf("", "(reset)"));
  EXPECT_THAT(sending.readAll(), testing::AnyOf("", "(reset)"));
}

TEST_F(HTTPLife, stopFinishesTheCallThatRunsAndDropsTheOthers) {
  startHTTP();
  LoopbackClient running = connect();
  running.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  LoopbackClient waiting = connect();
  waiting.send(post(slowCall));
  awaitQueue();
  http().stop();  // the call is still at the gate: it is not waited for
  EXPECT_THAT(running.readAll(), testing::AnyOf("", "(reset)"));
  EXPECT_THAT(waiting.readAll(), testing::AnyOf("", "(reset)"));
  gate.open();
  destroyHTTP();
  EXPECT_EQ(gate.arrivals(), 1);
  EXPECT_THAT(LogBuffer::shared().snapshot().back().message, HasSubstr("tool list_folders failed"));
}

TEST_F(HTTPLife, restartDuringACallServesAfterIt) {
  startHTTP();
  LoopbackClient running = connect();
  running.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  http().stop();
  http().start();
  LoopbackClient next = connect();
  next.send(post(ping));
  gate.open();
  EXPECT_EQ(next.readAll(), answerWith(pong));
}

TEST_F(HTTPLife, destructionDuringACallWaitsForItAndForNothingElse) {
  startHTTP();
  LoopbackClient idle = connect();
  LoopbackClient running = connect();
  running.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  std::thread opener([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    gate.open();
  });
  destroyHTTP();
  EXPECT_THAT(LogBuffer::shared().snapshot().back().message, HasSubstr("tool list_folders failed"));
  opener.join();
}

TEST_F(HTTPLife, stopWhileClientsComeAndGoIsClean) {
  startHTTP();
  const std::uint16_t port = portOf(http());
  std::atomic<bool> goOn = true;
  std::vector<std::thread> clients;
  for (int count = 0; count < 4; ++count) {
    clients.emplace_back([&] {
      while (goOn) {
        LoopbackClient client(port);
        client.send(post(ping));
        client.readAll();
      }
    });
  }
  destroyHTTP();
  startHTTP(port);
  for (int round = 0; round < 30; ++round) {
    http().stop();
    http().start();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  goOn = false;
  for (std::thread& client : clients) {
    client.join();
  }
  EXPECT_TRUE(http().isRunning());
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong));
}

TEST_F(HTTPLife, callbackMayStopTheServerAndReplaceItself) {
  MCPServer dispatcher(MCPTools::shared());
  MCPHTTPServer server(dispatcher, 0);
  std::vector<std::string> told;
  server.onStateChange([&](bool isRunning, const std::optional<std::string>&) {
    told.push_back(isRunning ? "first: running" : "first: stopped");
    server.onStateChange([&](bool runs, const std::optional<std::string>&) {
      told.push_back(runs ? "second: running" : "second: stopped");
    });
    server.stop();
  });
  server.start();
  EXPECT_FALSE(server.isRunning());
  EXPECT_THAT(told, ElementsAre("first: running", "second: stopped"));
}

}  // namespace
}  // namespace tarnwell::test
