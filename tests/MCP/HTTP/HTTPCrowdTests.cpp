// More connections than may be open at once.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MCP/HTTP/HTTPFixture.h"
#include "MCP/HTTP/LoopbackPort.h"

namespace tarnwell::test {
namespace {

using std::chrono::milliseconds;

class HTTPCrowd : public HTTPTest {
 protected:
  /// As many silent clients as may be connected at once.
  void fill() {
    while (crowd.size() < MCPHTTPServer::maximumConnections) {
      crowd.push_back(connect());
    }
  }
  /// True when the server has not answered this client after a while.
  static bool waits(LoopbackClient& client) { return !client.hasInput(milliseconds(200)); }

  std::vector<LoopbackClient> crowd;
};

TEST_F(HTTPCrowd, nextOneWaitsUntilOneEnds) {
  startHTTP();
  fill();
  LoopbackClient next = connect();
  next.send(post(ping));
  EXPECT_TRUE(next.isConnected()) << "the system keeps it";
  EXPECT_TRUE(waits(next));
  crowd.front().close();
  EXPECT_EQ(next.readAll(), answerWith(pong));
}

TEST_F(HTTPCrowd, lastOneThatMayBeOpenIsServed) {
  startHTTP();
  fill();
  crowd.back().send(post(ping));
  EXPECT_EQ(crowd.back().readAll(), answerWith(pong));
}

TEST_F(HTTPCrowd, thoseThatWaitAreServedInTheirOrder) {
  startHTTP();
  fill();
  std::vector<LoopbackClient> waiting;
  for (int count = 0; count < 20; ++count) {
    waiting.push_back(connect());
    waiting.back().send(post(ping));
  }
  EXPECT_TRUE(waits(waiting.front()));
  crowd.front().close();
  for (LoopbackClient& client : waiting) {
    EXPECT_EQ(client.readAll(), answerWith(pong));
    client.close();
  }
}

TEST_F(HTTPCrowd, silentOnesHoldUpTheOthersOnlyForTheirTime) {
  startHTTP(0, milliseconds(500));
  fill();
  LoopbackClient next = connect();
  next.send(post(ping));
  EXPECT_EQ(next.readAll(), answerWith(pong));
}

TEST_F(HTTPCrowd, restartForgetsThem) {
  startHTTP();
  fill();
  http().stop();
  http().start();
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong));
  crowd.clear();
  fill();
  LoopbackClient next = connect();
  next.send(post(ping));
  EXPECT_TRUE(waits(next));
  crowd.clear();
  EXPECT_EQ(next.readAll(), answerWith(pong));
}

TEST_F(HTTPCrowd, stopWhileSomeWaitIsClean) {
  startHTTP();
  fill();
  std::vector<LoopbackClient> waiting;
  for (int count = 0; count < 20; ++count) {
    waiting.push_back(connect());
  }
  http().stop();
  for (LoopbackClient& client : waiting) {
    EXPECT_THAT(client.readAll(), testing::AnyOf("", "(reset)"));
  }
}

// The port when the wanted one is taken

TEST(LoopbackPort, isTheNextFreeOne) {
  EXPECT_GE(freeLoopbackPort(18'000).value(), 18'000);
  const std::uint16_t first = freeLoopbackPort(0).value();
  MCPServer dispatcher(MCPTools::shared());
  MCPHTTPServer taken(dispatcher, first);
  taken.start();
  ASSERT_TRUE(taken.isRunning());
  EXPECT_GT(freeLoopbackPort(first).value(), first);
}

TEST(LoopbackPort, isNeverOneThatNeedsARight) { EXPECT_GE(freeLoopbackPort(1).value(), 1024); }

TEST(LoopbackPort, isFoundAfterTheLastNumberToo) { EXPECT_GE(freeLoopbackPort(65'535).value(), 1024); }

TEST_F(HTTPTest, failureIsNamed) {
  startHTTP();
  EXPECT_FALSE(http().startFailure());
  MCPServer dispatcher(MCPTools::shared());
  MCPHTTPServer second(dispatcher, portOf(http()));
  second.start();
  EXPECT_EQ(second.startFailure(), std::errc::address_in_use);
  destroyHTTP();
  second.start();
  EXPECT_FALSE(second.startFailure());
}

}  // namespace
}  // namespace tarnwell::test
