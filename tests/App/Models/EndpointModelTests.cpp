#include "App/Models/EndpointModel.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QSignalSpy>
#include <fstream>

#include "App/support/EndpointModelFixture.h"
#include "MCP/HTTP/MCPHTTPServer.h"
#include "MCP/JSON/JSONValue.h"
#include "support/RowName.h"

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
  model->stop();
  EXPECT_EQ(model->state(), State::starting);
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

// The port

TEST_F(EndpointModelTest, takenPortIsNamedAndAFreeOneOffered) {
  open();
  MCPServer dispatcher(MCPTools::shared());
  MCPHTTPServer other(dispatcher, model->port());
  other.start();
  ASSERT_TRUE(other.isRunning());
  model->start();
  ASSERT_TRUE(become(State::failed));
  EXPECT_FALSE(model->isRunning());
  EXPECT_EQ(model->news().kind, Kind::portTaken);
  EXPECT_EQ(model->news().details, "Address already in use");
  const int free = model->news().freePort.value();
  EXPECT_GT(free, model->port());

  model->startAtFreePort();
  ASSERT_TRUE(become(State::running));
  EXPECT_EQ(model->port(), free);
  EXPECT_EQ(statusWith(token()), 200);
  EXPECT_TRUE(until([this] { return !settings->isSaving(); }));
  EXPECT_EQ(store.load().httpPort, free);
}

TEST_F(EndpointModelTest, takenPortCanBeTriedAgain) {
  open();
  MCPServer dispatcher(MCPTools::shared());
  auto other = std::make_unique<MCPHTTPServer>(dispatcher, model->port());
  other->start();
  model->start();
  ASSERT_TRUE(become(State::failed));
  other.reset();
  EXPECT_TRUE(start());
  EXPECT_EQ(model->news().kind, Kind::none);
}

TEST_F(EndpointModelTest, reasonsOfTheSystemHaveNames) {
  const std::pair<std::errc, Kind> rows[] = {{std::errc::address_in_use, Kind::portTaken},
                                             {std::errc::permission_denied, Kind::portNeedsRights},
                                             {std::errc::too_many_files_open, Kind::notStarted},
                                             {std::errc::address_not_available, Kind::notStarted}};
  for (const auto& [reason, kind] : rows) {
    const std::error_code code(static_cast<int>(reason), std::system_category());
    const EndpointNews news = endpointNewsOf(code, 1234);
    EXPECT_EQ(news.kind, kind) << code.message();
    EXPECT_EQ(news.details.toStdString(), code.message());
    EXPECT_EQ(news.freePort, 1234);
  }
}

TEST_F(EndpointModelTest, portChangesOnlyWhileItDoesNotRun) {
  open();
  const int before = model->port();
  ASSERT_TRUE(start());
  EXPECT_FALSE(model->mayChangePort());
  model->setPort(before + 1);
  EXPECT_EQ(model->port(), before);
  model->stop();
  ASSERT_TRUE(become(State::stopped));
  const int after = freeLoopbackPort(static_cast<std::uint16_t>(before + 1)).value();
  model->setPort(after);
  EXPECT_EQ(model->port(), after);
  EXPECT_EQ(model->address(), QStringLiteral("http://127.0.0.1:%1/mcp").arg(after));
  ASSERT_TRUE(start());
  EXPECT_EQ(statusWith(token()), 200);
}

TEST_F(EndpointModelTest, portsBeyondTheRangeMeanTheUsualOne) {
  const std::pair<std::int64_t, int> rows[] = {{70000, 8765}, {0, 8765}, {-1, 8765}, {65535, 65535}, {1, 1}};
  for (const auto& [inFile, shown] : rows) {
    store.update([&](AppConfig& config) { config.httpPort = inFile; });
    EXPECT_EQ(open().port(), shown);
  }
}

TEST_F(EndpointModelTest, settingsThatCannotBeSavedAreNamed) {
  open();
  const int before = model->port();
  std::filesystem::remove_all(store.configURL().parent_path());
  std::ofstream(store.configURL().parent_path()) << "no folder";
  model->setPort(before + 1);
  EXPECT_TRUE(until([this] { return model->news().kind == Kind::settingsNotSaved; }));
  EXPECT_FALSE(model->news().details.isEmpty());
}

// The token

TEST_F(EndpointModelTest, renewedTokenCountsAtOnceWhileItRuns) {
  open();
  ASSERT_TRUE(start());
  const std::string before = token();
  model->renewToken();
  EXPECT_TRUE(model->isRenewing());
  ASSERT_TRUE(until([this] { return !model->isRenewing(); }));
  EXPECT_EQ(model->state(), State::running);
  EXPECT_EQ(model->news().kind, Kind::tokenRenewed);
  EXPECT_NE(token(), before);
  EXPECT_EQ(storedToken(), token());
  EXPECT_EQ(statusWith(before), 401);
  EXPECT_EQ(statusWith(token()), 200);
}

TEST_F(EndpointModelTest, tokenCanBeRenewedWhileNothingRuns) {
  open();
  model->renewToken();
  ASSERT_TRUE(until([this] { return !model->isRenewing(); }));
  const std::string renewed = token();
  EXPECT_EQ(model->state(), State::stopped);
  ASSERT_TRUE(start());
  EXPECT_EQ(statusWith(renewed), 200);
}

TEST_F(EndpointModelTest, stopWhileTheTokenIsRenewedCountsAfterIt) {
  open();
  ASSERT_TRUE(start());
  model->renewToken();
  model->stop();
  ASSERT_TRUE(become(State::stopped));
  EXPECT_EQ(storedToken(), token());
}

TEST_F(EndpointModelTest, refusedRenewalLeavesTheTokenInPlace) {
  open();
  ASSERT_TRUE(start());
  const std::string before = token();
  items.answers = {std::nullopt, std::nullopt, SecretStatus::internalError};  // read, remove, add
  model->renewToken();
  ASSERT_TRUE(until([this] { return !model->isRenewing(); }));
  EXPECT_EQ(model->news().kind, Kind::keyring);
  EXPECT_EQ(model->news().keyring, AccountNews::Kind::keyringRefused);
  EXPECT_EQ(token(), before);
  EXPECT_EQ(storedToken(), before);
  EXPECT_EQ(statusWith(before), 200);
}

TEST_F(EndpointModelTest, storedTokenIsReadWhenThePageIsShown) {
  items.put({"app.tarnwell.Tarnwell.endpoint", "local-endpoint", std::nullopt}, "stored-by.hand~1");
  open();
  model->refresh();
  ASSERT_TRUE(until([this] { return model->token().has_value(); }));
  EXPECT_EQ(token(), "stored-by.hand~1");
  ASSERT_TRUE(start());
  EXPECT_EQ(statusWith("stored-by.hand~1"), 200);
}

TEST_F(EndpointModelTest, tokenThatCannotStandInAHeaderIsReplaced) {
  for (const char* stored : {"", "two words", "line\r\nX: y", "ü", "\xff\xfe", "quote\""}) {
    items.put({"app.tarnwell.Tarnwell.endpoint", "local-endpoint", std::nullopt}, stored);
    open();
    ASSERT_TRUE(start()) << stored;
    EXPECT_EQ(token().size(), 43U) << stored;
    EXPECT_EQ(statusWith(token()), 200) << stored;
  }
}

TEST_F(EndpointModelTest, passwordOfTheAccountStaysWhatItIs) {
  open();
  ASSERT_TRUE(start());
  model->renewToken();
  ASSERT_TRUE(until([this] { return !model->isRenewing(); }));
  EXPECT_EQ(items.at({"service", address, std::nullopt}), "app-pass-word");
}

TEST_F(EndpointModelTest, blockForTheClientIsJSON) {
  open();
  ASSERT_TRUE(start());
  const QString block = model->clientBlock(QString::fromStdString(token()));
  const std::optional<JSONValue> json = JSONValue::decode(block.toStdString());
  ASSERT_TRUE(json);
  const JSONValue& entry = (*json)["mcpServers"]["tarnwell"];
  EXPECT_EQ(entry["url"].stringValue(), model->address().toStdString());
  EXPECT_EQ(entry["headers"]["Authorization"].stringValue(), "Bearer " + token());
}

// The keyring

struct KeyringRow {
  const char* name;
  std::int32_t status;
  AccountNews::Kind kind;
};

class EndpointModelWithoutAKeyring : public EndpointModelTest,
                                     public testing::WithParamInterface<KeyringRow> {};

TEST_P(EndpointModelWithoutAKeyring, saysWhatIsTheMatterAndListensNowhere) {
  open();
  items.answers = {GetParam().status};
  model->start();
  ASSERT_TRUE(become(State::failed));
  EXPECT_EQ(model->news().kind, Kind::keyring);
  EXPECT_EQ(model->news().keyring, GetParam().kind);
  EXPECT_FALSE(connect().isConnected());
  EXPECT_TRUE(start()) << "it can be tried again";
}

INSTANTIATE_TEST_SUITE_P(
    Table, EndpointModelWithoutAKeyring,
    testing::Values(KeyringRow{"locked", SecretStatus::interactionNotAllowed,
                               AccountNews::Kind::keyringLocked},
                    KeyringRow{"absent", SecretStatus::notAvailable, AccountNews::Kind::keyringMissing},
                    KeyringRow{"refused", SecretStatus::internalError, AccountNews::Kind::keyringRefused}),
    rowName);

TEST_F(EndpointModelTest, stopWishedDuringAStartThatFailsIsForgotten) {
  open();
  items.answers = {SecretStatus::interactionNotAllowed};
  model->start();
  model->stop();
  ASSERT_TRUE(become(State::failed));
  EXPECT_TRUE(start());
  EXPECT_EQ(statusWith(token()), 200);
}

TEST_F(EndpointModelTest, unlockingTellsWhatItCameToAndReadsTheToken) {
  items.put({"app.tarnwell.Tarnwell.endpoint", "local-endpoint", std::nullopt}, "stored");
  *keyring = KeyringState::locked;
  items.answers = {SecretStatus::interactionNotAllowed};
  open();
  model->refresh();
  ASSERT_TRUE(until([this] { return model->keyring() == KeyringState::locked && items.calls.size() == 1; }));
  *keyring = KeyringState::ready;
  model->unlockKeyring();
  ASSERT_TRUE(until([this] { return model->token().has_value(); }));
  EXPECT_EQ(model->keyring(), KeyringState::ready);

  *keyring = KeyringState::locked;
  *unlocking = UnlockOutcome::dismissed;
  model->unlockKeyring();
  ASSERT_TRUE(until([this] { return model->news().keyring == AccountNews::Kind::unlockDismissed; }));
  EXPECT_EQ(model->news().kind, Kind::keyring);
}

}  // namespace
}  // namespace tarnwell::test
