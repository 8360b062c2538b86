/// Clients that close their connection, or their side of it, before they have their answer.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "MCP/HTTP/HTTPFixture.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using testing::HasSubstr;

class HTTPLeaving : public HTTPTest {};

struct LeavingRow {
  const char* name;
  void (*leave)(LoopbackClient&);
};

constexpr LeavingRow leavingRows[] = {
    {"Closing", [](LoopbackClient& client) { client.close(); }},
    {"Resetting", [](LoopbackClient& client) { client.reset(); }},
    {"FinishingItsSending", [](LoopbackClient& client) { client.finishSending(); }},
};

class HTTPLeavingWhileACallWaits : public HTTPLeaving, public testing::WithParamInterface<LeavingRow> {};

TEST_P(HTTPLeavingWhileACallWaits, theCallNeverRuns) {
  startHTTP();
  LoopbackClient running = connect();
  running.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  LoopbackClient waiting = connect();
  waiting.send(post(slowCall) + "more bytes than the request has");
  awaitQueue();
  GetParam().leave(waiting);
  awaitQueue();
  EXPECT_EQ(logged().back().second, "a call was not run: its connection closed before it began");
  gate.open();
  EXPECT_THAT(running.readAll(), HasSubstr("\"id\":2,"));
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong)) << "it comes after the call that does not run";
  EXPECT_EQ(gate.arrivals(), 1);
}

INSTANTIATE_TEST_SUITE_P(Table, HTTPLeavingWhileACallWaits, testing::ValuesIn(leavingRows), rowName);

TEST_F(HTTPLeaving, callThatWaitsRunsInItsTurn) {
  startHTTP();
  LoopbackClient running = connect();
  running.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  LoopbackClient waiting = connect();
  waiting.send(post(slowCall) + "more bytes than the request has");
  awaitQueue();
  gate.open();
  EXPECT_THAT(waiting.readAll(), HasSubstr("\"id\":2,"));
  EXPECT_EQ(gate.arrivals(), 2);
}

TEST_F(HTTPLeaving, clientThatFinishesItsSendingDuringItsCallIsAnswered) {
  startHTTP();
  LoopbackClient client = connect();
  client.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  client.send("more");
  client.finishSending();
  awaitQueue();
  gate.open();
  const std::string answer = client.readAll();
  EXPECT_TRUE(answer.starts_with("HTTP/1.1 200 OK\r\n") && answer.ends_with("}")) << answer;
}

/// No call is before it, so its call begins at once. A hundred times, because the end of the stream may be
/// seen at any moment.
TEST_F(HTTPLeaving, clientThatHasFinishedItsSendingIsAnsweredWhenNoCallIsBeforeIt) {
  startHTTP();
  for (int round = 0; round < 100; ++round) {
    LoopbackClient client = connect();
    client.send(post(ping));
    client.finishSending();
    ASSERT_EQ(client.readAll(), answerWith(pong)) << "round " << round;
  }
}

TEST_F(HTTPLeaving, callThatHasBegunIsFinishedWhenItsClientCloses) {
  startHTTP();
  LoopbackClient client = connect();
  client.send(post(slowCall));
  ASSERT_TRUE(gate.awaitArrivals(1));
  client.close();
  gate.open();
  EXPECT_EQ(answerTo(post(ping)), answerWith(pong));
  destroyHTTP();
  EXPECT_THAT(LogBuffer::shared().snapshot().back().message, HasSubstr("tool list_folders failed"));
}

}  // namespace
}  // namespace tarnwell::test
