#include "App/Models/EndpointModel.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QSignalSpy>

#include "App/support/EndpointModelFixture.h"

namespace tarnwell::test {
namespace {

using State = EndpointModel::State;
using Kind = EndpointNews::Kind;
using testing::AnyOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

class EndpointModelTest : public testing::Test, public EndpointModelFixture {};

// Starting and stopping

TEST_F(EndpointModelTest, nothingListensAndNothingIsReadBeforeTheStart) {
  open();
  EXPECT_EQ(model->state(), State::stopped);
  EXPECT_FALSE(model->isRunning());
  EXPECT_FALSE(connect().isConnected());
  EXPECT_THAT(items.calls, IsEmpty());
  EXPECT_EQ(model->token() || model->keyring(), false);
}

TEST_F(EndpointModelTest, firstStartMakesATokenAndServesWhoKnowsIt) {
  open();
  model->start();
  EXPECT_EQ(model->state(), State::starting);
  EXPECT_TRUE(model->isRunning());
  ASSERT_TRUE(become(State::running));
  EXPECT_EQ(model->news().kind, Kind::none);
  EXPECT_THAT(token(), MatchesRegex("[A-Za-z0-9_-]*"));
  EXPECT_EQ(token().size(), 43U);  // 32 bytes
  EXPECT_EQ(storedToken(), token());

  EXPECT_THAT(answerTo(request(token(), ping)), HasSubstr(pong));
  EXPECT_THAT(answerTo(request("another", ping)),
              HasSubstr("WWW-Authenticate: Bearer error=\"invalid_token\""));
  EXPECT_EQ(statusWith("another"), 401);
  EXPECT_EQ(statusWith(token() + "x"), 401);
  EXPECT_EQ(statusWith(token().substr(0, 42)), 401);
  EXPECT_THAT(answerTo("POST / HTTP/1.1\r\n\r\n"), HasSubstr("HTTP/1.1 401 Unauthorized"));
}

TEST_F(EndpointModelTest, toolsAreThoseOfAnAssistant) {
  open();
  ASSERT_TRUE(start());
  const std::string status = answerTo(
      request(token(), R"({"id":1,"method":"tools/call","params":{"name":"get_status","arguments":{}}})"));
  EXPECT_THAT(status, HasSubstr("\"configured\":true"));
  EXPECT_THAT(status, Not(HasSubstr(token())));
  EXPECT_THAT(answerTo(request(token(), R"({"id":1,"method":"tools/list"})")), HasSubstr("search_inbox"));
}

TEST_F(EndpointModelTest, laterStartsKeepTheToken) {
  open();
  ASSERT_TRUE(start());
  const std::string first = token();
  model->stop();
  ASSERT_TRUE(become(State::stopped));
  EXPECT_FALSE(connect().isConnected());
  ASSERT_TRUE(start());
  EXPECT_EQ(token(), first);
  EXPECT_EQ(statusWith(first), 200);
  open();  // another program
  ASSERT_TRUE(start());
  EXPECT_EQ(token(), first);
}

TEST_F(EndpointModelTest, manyStartsAndStopsAreClean) {
  open();
  for (int round = 0; round < 10; ++round) {
    ASSERT_TRUE(start());
    ASSERT_EQ(statusWith(token()), 200);
    model->stop();
    ASSERT_TRUE(become(State::stopped));
  }
}

TEST_F(EndpointModelTest, stopWhileItStartsCountsWhenItHasStarted) {
  open();
  model->start();
  QSignalSpy changes(&*model, &EndpointModel::changed);
  model->stop();
  EXPECT_EQ(model->state(), State::stopping) << "at once, so that the person sees the wish";
  EXPECT_EQ(changes.count(), 1);
  EXPECT_TRUE(model->isRunning());
  ASSERT_TRUE(become(State::stopped));
  EXPECT_FALSE(connect().isConnected());
  ASSERT_TRUE(start());
}

TEST_F(EndpointModelTest, secondStartAndSecondStopDoNothing) {
  open();
  ASSERT_TRUE(start());
  const QSignalSpy changes(&*model, &EndpointModel::changed);
  model->start();
  EXPECT_EQ(model->state(), State::running);
  EXPECT_EQ(changes.count(), 0);
  model->stop();
  model->stop();
  ASSERT_TRUE(become(State::stopped));
  model->stop();
  EXPECT_EQ(model->state(), State::stopped);
}

// A call that runs

TEST_F(EndpointModelTest, stopDuringACallReturnsAtOnceAndEndsAfterIt) {
  open();
  ASSERT_TRUE(start());
  LoopbackClient client = connect();
  client.send(request(token(), slowCall));
  ASSERT_TRUE(gate->awaitArrivals(1));

  QElapsedTimer timer;
  timer.start();
  model->stop();
  EXPECT_LT(timer.elapsed(), 500);
  EXPECT_EQ(model->state(), State::stopping);
  EXPECT_TRUE(model->isRunning());
  EXPECT_THAT(client.readAll(), AnyOf("", "(reset)"));
  EXPECT_FALSE(connect().isConnected()) << "the port is free before the call has ended";
  QCoreApplication::processEvents();
  EXPECT_EQ(model->state(), State::stopping);
  model->start();
  EXPECT_EQ(model->state(), State::stopping) << "not before it has ended";

  gate->open();
  ASSERT_TRUE(become(State::stopped));
  ASSERT_TRUE(start());
  EXPECT_EQ(statusWith(token()), 200);
}

TEST_F(EndpointModelTest, endOfTheProgramDuringACallWaitsForNothing) {
  for (const bool isStopped : {false, true}) {
    open();
    ASSERT_TRUE(start());
    LoopbackClient client = connect();
    client.send(request(token(), slowCall));
    ASSERT_TRUE(gate->awaitArrivals(1));
    if (isStopped) {
      model->stop();
    }
    QElapsedTimer timer;
    timer.start();
    model.reset();
    EXPECT_LT(timer.elapsed(), 500);
    EXPECT_FALSE(toolsOfModel.expired()) << "the call runs on";
    EXPECT_THAT(client.readAll(), AnyOf("", "(reset)"));
    gate->open();
    EXPECT_TRUE(until([this] { return toolsOfModel.expired(); }));
    gate = std::make_shared<Gate>();
  }
}

TEST_F(EndpointModelTest, endOfTheProgramWhileItStartsLeavesNothing) {
  open();
  const auto port = static_cast<std::uint16_t>(model->port());
  model->start();
  model.reset();
  EXPECT_TRUE(until([this] { return toolsOfModel.expired(); }));
  EXPECT_FALSE(LoopbackClient(port).isConnected());
}

}  // namespace
}  // namespace tarnwell::test
