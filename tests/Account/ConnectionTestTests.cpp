#include "Account/ConnectionTest.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "support/FakeIMAPServer.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using enum SessionStage;
using Result = ConnectionOutcome::Result;

AppConfig configFor(std::int64_t port, const std::string& host = "localhost") {
  AppConfig config;
  config.email = testEmail;
  config.imapHost = host;
  config.imapPort = port;
  return config;
}

Dialogue wholeSession() {
  return loginDialogue() + Dialogue{expect("A0004 LOGOUT\r\n"), answer("* BYE\r\nA0004 OK done\r\n")};
}

TEST(ConnectionTest, successTellsWhatTheServerCan) {
  FakeIMAPServer server(wholeSession());
  std::vector<SessionStage> reached;
  const ConnectionOutcome outcome =
      testConnection(configFor(server.port()), Secret(testPassword),
                     {.reached = [&](SessionStage stage) { reached.push_back(stage); }});
  EXPECT_TRUE(outcome.succeeded());
  EXPECT_FALSE(outcome.error);
  EXPECT_EQ(outcome.reached, inboxOpened);
  EXPECT_TRUE(outcome.supportsMove);
  EXPECT_THAT(outcome.capabilities, testing::ElementsAre("IMAP4REV1", "MOVE", "UIDPLUS"));
  EXPECT_THAT(reached, testing::ElementsAre(nameFound, connected, secured, signedIn, inboxOpened));
  EXPECT_EQ(server.mismatch(), "");
}

struct FailureRow {
  const char* name;
  Dialogue dialogue;
  FakeServerOptions options;
  std::optional<SessionStage> reached;
  IMAPError::Kind kind;
};

class FailedConnection : public testing::TestWithParam<FailureRow> {};

TEST_P(FailedConnection, tellsTheLastStageAndTheError) {
  FakeIMAPServer server(GetParam().dialogue, GetParam().options);
  const ConnectionOutcome outcome = testConnection(configFor(server.port()), Secret(testPassword));
  EXPECT_EQ(outcome.result, Result::failed);
  EXPECT_EQ(outcome.reached, GetParam().reached);
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->kind(), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(
    Table, FailedConnection,
    testing::Values(FailureRow{"certificateOfNobody",
                               {},
                               {.certificate = {.selfSigned = true}},
                               connected,
                               IMAPError::Kind::connectionFailed},
                    FailureRow{"noTLS",
                               {answer("* OK ready\r\n")},
                               {.plainText = true},
                               connected,
                               IMAPError::Kind::connectionFailed},
                    FailureRow{"noGreeting", {closeHere()}, {}, secured, IMAPError::Kind::connectionClosed},
                    FailureRow{"wrongPassword",
                               {answer("* OK ready\r\n"),
                                expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                                answer("A0001 NO [AUTHENTICATIONFAILED] no\r\n"), expect("A0002 LOGOUT\r\n"),
                                answer("A0002 OK done\r\n")},
                               {},
                               secured,
                               IMAPError::Kind::authenticationFailed},
                    FailureRow{
                        "noInbox",
                        {answer("* OK ready\r\n"),
                         expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                         answer("A0001 OK done\r\n"), expect("A0002 CAPABILITY\r\nA0003 EXAMINE INBOX\r\n"),
                         answer("* CAPABILITY IMAP4rev1\r\nA0002 OK done\r\nA0003 NO none\r\n"),
                         expect("A0004 LOGOUT\r\n"), answer("A0004 OK done\r\n")},
                        {},
                        signedIn,
                        IMAPError::Kind::commandFailed}),
    rowName);

TEST(ConnectionTest, unknownNameReachesNoStage) {
  const ConnectionOutcome outcome = testConnection(configFor(993, "no.such.name.invalid"), Secret("x"));
  EXPECT_EQ(outcome.result, Result::failed);
  EXPECT_FALSE(outcome.reached);
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->kind(), IMAPError::Kind::connectionFailed);
}

TEST(ConnectionTest, refusedPortIsFoundButNotConnected) {
  std::uint16_t port = 0;
  {
    port = FakeIMAPServer({}).port();
  }
  const ConnectionOutcome outcome = testConnection(configFor(port), Secret("x"));
  EXPECT_EQ(outcome.reached, nameFound);
}

TEST(ConnectionTest, portOutOfRangeIsAnInvalidArgument) {
  const ConnectionOutcome outcome = testConnection(configFor(65536), Secret("x"));
  ASSERT_TRUE(outcome.error);
  EXPECT_EQ(outcome.error->kind(), IMAPError::Kind::invalidArgument);
  EXPECT_FALSE(outcome.reached);
}

TEST(ConnectionTest, cancelledTestIsNoFailure) {
  FakeIMAPServer server({answer("* OK ready\r\n"),
                         expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"), pauseHere(),
                         stallHere()});
  const SessionWatch watch;
  std::thread canceller([&] {
    server.awaitPause();
    watch.cancellation.cancel();
  });
  const ConnectionOutcome outcome = testConnection(configFor(server.port()), Secret(testPassword), watch);
  canceller.join();
  EXPECT_EQ(outcome.result, Result::cancelled);
  EXPECT_FALSE(outcome.error);
  EXPECT_EQ(outcome.reached, secured);
  server.resume();
}

}  // namespace
}  // namespace tarnwell::test
