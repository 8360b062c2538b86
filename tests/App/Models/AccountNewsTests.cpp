#include "App/Models/AccountNews.h"

#include <gtest/gtest.h>

#include "Core/KeychainStore.h"
#include "support/FakeIMAPServer.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Kind = AccountNews::Kind;

AppConfig configFor(std::int64_t port, const std::string& host = "localhost") {
  AppConfig config;
  config.email = testEmail;
  config.imapHost = host;
  config.imapPort = port;
  return config;
}

/// The kind for the outcome of a real test against this server.
Kind kindAt(FakeIMAPServer& server) {
  return kindOf(testConnection(configFor(server.port()), Secret(testPassword)));
}

const Dialogue loggedIn = {
    answer("* OK ready\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
    answer("A0001 OK done\r\n"), expect("A0002 CAPABILITY\r\nA0003 EXAMINE INBOX\r\n")};

struct ServerRow {
  const char* name;
  Dialogue dialogue;
  FakeServerOptions options;
  Kind kind;
};

class NewsOfATest : public testing::TestWithParam<ServerRow> {};

TEST_P(NewsOfATest, sayWhatIsWrong) {
  FakeIMAPServer server(GetParam().dialogue, GetParam().options);
  EXPECT_EQ(kindAt(server), GetParam().kind);
}

INSTANTIATE_TEST_SUITE_P(
    Table, NewsOfATest,
    testing::Values(
        ServerRow{"success",
                  loginDialogue() + Dialogue{expect("A0004 LOGOUT\r\n"), answer("A0004 OK done\r\n")},
                  {},
                  Kind::testSucceeded},
        ServerRow{
            "selfSignedCertificate", {}, {.certificate = {.selfSigned = true}}, Kind::certificateRefused},
        ServerRow{"certificateOfAnotherHost",
                  {},
                  {.certificate = {.subjectAltName = "DNS:other.example"}},
                  Kind::certificateRefused},
        ServerRow{"expiredCertificate",
                  {},
                  {.certificate = {.validFrom = -9, .validUntil = -2}},
                  Kind::certificateRefused},
        ServerRow{"noTLS", {answer("* OK ready\r\n")}, {.plainText = true}, Kind::notSecure},
        ServerRow{"notIMAP", {answer("220 mail.example.org ESMTP\r\n")}, {}, Kind::notIMAP},
        ServerRow{"hangsUpAtOnce", {closeHere()}, {}, Kind::connectionLost},
        ServerRow{"resets", {answer("* OK ready\r\n"), resetHere()}, {}, Kind::connectionLost},
        ServerRow{"wrongPassword",
                  {answer("* OK ready\r\n"), expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                   answer("A0001 NO [AUTHENTICATIONFAILED] no\r\n"), expect("A0002 LOGOUT\r\n"),
                   answer("A0002 OK done\r\n")},
                  {},
                  Kind::signInRefused},
        ServerRow{"noInbox",
                  loggedIn + Dialogue{answer("* CAPABILITY IMAP4rev1\r\nA0002 OK done\r\nA0003 NO none\r\n"),
                                      expect("A0004 LOGOUT\r\n"), answer("A0004 OK done\r\n")},
                  {},
                  Kind::inboxMissing},
        ServerRow{"hangsUpBeforeTheInbox", loggedIn + Dialogue{closeHere()}, {}, Kind::connectionLost}),
    rowName);

TEST(NewsOfATestWithoutAServer, sayWhatIsWrong) {
  std::uint16_t port = 0;
  {
    port = FakeIMAPServer({}).port();
  }
  EXPECT_EQ(kindOf(testConnection(configFor(port), Secret("x"))), Kind::notReachable);
  EXPECT_EQ(kindOf(testConnection(configFor(993, "no.such.name.invalid"), Secret("x"))), Kind::hostNotFound);
  EXPECT_EQ(kindOf(testConnection(configFor(65536), Secret("x"))), Kind::testFailed);
}

struct TimeoutRow {
  std::optional<SessionStage> reached;
  Kind kind;
};

TEST(NewsOfATimeout, dependOnTheStage) {
  for (const TimeoutRow& row :
       {TimeoutRow{std::nullopt, Kind::hostNotFound}, TimeoutRow{SessionStage::nameFound, Kind::notReachable},
        TimeoutRow{SessionStage::connected, Kind::tooSlow}, TimeoutRow{SessionStage::secured, Kind::tooSlow},
        TimeoutRow{SessionStage::signedIn, Kind::tooSlow}}) {
    ConnectionOutcome outcome{.result = ConnectionOutcome::Result::failed, .reached = row.reached};
    outcome.error = IMAPError::timeout();
    EXPECT_EQ(kindOf(outcome), row.kind) << static_cast<int>(row.reached.value_or(SessionStage::nameFound));
  }
}

struct ThrownRow {
  std::exception_ptr thrown;
  Kind kind;
};

KeychainError keychainError(std::int32_t status) { return KeychainError::unexpectedStatus(status, "why"); }

TEST(NewsOfAFailure, nameTheTroubleOfTheKeyring) {
  const ThrownRow rows[] = {
      {std::make_exception_ptr(keychainError(SecretStatus::notAvailable)), Kind::keyringMissing},
      {std::make_exception_ptr(keychainError(SecretStatus::interactionNotAllowed)), Kind::keyringLocked},
      {std::make_exception_ptr(keychainError(SecretStatus::internalError)), Kind::keyringRefused},
      {std::make_exception_ptr(KeychainError::decodingFailed()), Kind::keyringRefused},
      {std::make_exception_ptr(std::runtime_error("full disk")), Kind::notSaved},
  };
  for (const ThrownRow& row : rows) {
    const AccountNews news = newsOf(row.thrown, Kind::notSaved);
    EXPECT_EQ(news.kind, row.kind) << news.details.toStdString();
    EXPECT_FALSE(news.details.isEmpty());
    EXPECT_TRUE(news.isFailure());
  }
}

TEST(NewsOfAnUnlocking, followTheOutcome) {
  EXPECT_EQ(kindOf(UnlockOutcome::unlocked), Kind::unlocked);
  EXPECT_EQ(kindOf(UnlockOutcome::dismissed), Kind::unlockDismissed);
  EXPECT_EQ(kindOf(UnlockOutcome::noService), Kind::keyringMissing);
  EXPECT_EQ(kindOf(UnlockOutcome::refused), Kind::unlockRefused);
}

}  // namespace
}  // namespace tarnwell::test
