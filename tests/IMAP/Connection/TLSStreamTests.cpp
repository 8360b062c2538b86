#include "IMAP/Connection/TLSStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <openssl/ssl.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>

#include "IMAP/Connection/IMAPError.h"
#include "support/FakeIMAPServer.h"
#include "support/RowName.h"
#include "support/ScopedEnvironment.h"
#include "support/TemporaryDirectory.h"
#include "support/TestCertificates.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::StartsWith;

constexpr auto patience = 60s;
/// A bound that runs out in a test, after a connection that must not be late on a busy machine.
constexpr auto enoughToConnect = 2s;

/// What an operation throws; no kind when it throws nothing.
struct Failure {
  std::optional<IMAPError::Kind> kind;
  std::string description;
};

Failure failureOf(const std::function<void()>& operation) {
  try {
    operation();
    return {};
  } catch (const IMAPError& error) {
    return {error.kind(), error.description()};
  }
}

struct RefusalRow {
  const char* name;
  std::string host;
  FakeServerOptions options;
  const char* expectedText;
};

class RefusedServer : public testing::TestWithParam<RefusalRow> {};

TEST_P(RefusedServer, failsToConnectAtOnceWithAClearTextAndIsToldNothing) {
  const RefusalRow& row = GetParam();
  FakeIMAPServer server({stallHere()}, row.options);
  TLSStream stream(row.host, server.port(), patience);
  const Failure failure = failureOf([&] { stream.connect(); });
  EXPECT_EQ(failure.kind, IMAPError::Kind::connectionFailed);
  EXPECT_THAT(failure.description, StartsWith("Could not connect to the IMAP server: " + row.host + ":" +
                                              std::to_string(server.port()) + ": "));
  EXPECT_THAT(failure.description, HasSubstr(row.expectedText));
  stream.close();
  server.mismatch();
  EXPECT_THAT(server.received(), testing::Not(HasSubstr("LOGIN")));
}

INSTANTIATE_TEST_SUITE_P(
    Table, RefusedServer,
    testing::Values(RefusalRow{"certificateForAnotherHost",
                               "localhost",
                               {.certificate = {.subjectAltName = "DNS:mail.example.org"}},
                               "(hostname mismatch)"},
                    RefusalRow{"certificateForAnotherAddress",
                               "127.0.0.1",
                               {.certificate = {.subjectAltName = "IP:127.0.0.2"}},
                               "(IP address mismatch)"},
                    RefusalRow{"nameThatCoversTheHostOnlyByPartOfALabel",
                               "localhost",
                               {.certificate = {.subjectAltName = "DNS:local*"}},
                               "(hostname mismatch)"},
                    RefusalRow{"expiredCertificate",
                               "localhost",
                               {.certificate = {.validFrom = -20, .validUntil = -10}},
                               "(certificate has expired)"},
                    RefusalRow{"certificateOfTheFuture",
                               "localhost",
                               {.certificate = {.validFrom = 10, .validUntil = 20}},
                               "(certificate is not yet valid)"},
                    RefusalRow{"selfSignedCertificate",
                               "localhost",
                               {.certificate = {.selfSigned = true}},
                               "(self-signed certificate)"},
                    RefusalRow{"nothingNewerThanTLS11",
                               "localhost",
                               {.maximumTLSVersion = TLS1_1_VERSION},
                               "TLS failed ("}),
    rowName);

TEST(TLSStream, plainTextGreetingIsNoTLS) {
  FakeIMAPServer server({answer("* OK ready\r\n"), stallHere()}, {.plainText = true});
  TLSStream stream("localhost", server.port(), patience);
  EXPECT_THAT(failureOf([&] { stream.connect(); }).description,
              HasSubstr("TLS failed (wrong version number"));
}

TEST(TLSStream, unknownAuthorityIsRefused) {
  FakeIMAPServer server({stallHere()});
  const TemporaryDirectory directory;
  std::ofstream(directory / "nobody.pem") << "";
  const ScopedEnvironment environment({{"SSL_CERT_FILE", (directory / "nobody.pem").string()}});
  TLSStream stream("localhost", server.port(), patience);
  const Failure failure = failureOf([&] { stream.connect(); });
  EXPECT_THAT(failure.description, HasSubstr("(unable to get local issuer certificate)"));
}

/// OpenSSL would wait for the pipe's writer.
TEST(TLSStream, fileOfCertificatesThatIsAPipeIsToldAtOnce) {
  FakeIMAPServer server({stallHere()});
  const TemporaryDirectory directory;
  const std::string pipe = (directory / "pipe").string();
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const ScopedEnvironment environment({{"SSL_CERT_FILE", pipe}});
  TLSStream stream("localhost", server.port(), patience);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(failureOf([&] { stream.connect(); }).description,
            "Could not connect to the IMAP server: localhost:" + std::to_string(server.port()) +
                ": SSL_CERT_FILE names no regular file (" + pipe + ")");
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
  EXPECT_EQ(server.acceptCount(), 0);
}

/// The file is another one for a while, and has the same name all the time.
TEST(TLSStream, changedTrustStoreIsNoticed) {
  TestCertificates::shared();  // names a file of the test's own
  const std::filesystem::path trusted = getenv("SSL_CERT_FILE");
  const std::filesystem::path aside = trusted.string() + ".aside";
  const auto connect = [] {
    FakeIMAPServer server({answer("hello"), stallHere()});
    TLSStream stream("localhost", server.port(), patience);
    stream.connect();
  };
  connect();
  std::filesystem::rename(trusted, aside);
  const Failure withoutFile = failureOf(connect);
  std::ofstream(trusted) << "no certificate\n";
  const Failure withoutCertificate = failureOf(connect);
  std::filesystem::rename(aside, trusted);
  EXPECT_THAT(withoutFile.description, HasSubstr("SSL_CERT_FILE names no regular file ("));
  EXPECT_THAT(withoutCertificate.description, HasSubstr("(unable to get local issuer certificate)"));
  connect();
}

TEST(TLSStream, tls12IsEnough) {
  FakeIMAPServer server({answer("hello"), stallHere()}, {.maximumTLSVersion = TLS1_2_VERSION});
  TLSStream stream("127.0.0.1", server.port(), patience);
  stream.connect();
  EXPECT_EQ(stream.receive().substr(0, 1), "h");
}

TEST(TLSStream, refusedPortFailsAtOnce) {
  boost::asio::io_context context;
  using boost::asio::ip::tcp;
  tcp::socket bound(context, tcp::endpoint(boost::asio::ip::address_v4::loopback(), 0));
  const std::uint16_t port = bound.local_endpoint().port();  // bound, but nobody listens
  TLSStream stream("127.0.0.1", port, 600s);
  const Failure failure = failureOf([&] { stream.connect(); });
  EXPECT_EQ(failure.kind, IMAPError::Kind::connectionFailed);
  EXPECT_THAT(failure.description, HasSubstr("Connection refused"));
}

/// Too long a label for the domain name system, so that no server is asked.
TEST(TLSStream, unknownHostFailsWithItsName) {
  const std::string host = std::string(64, 'x') + ".invalid";
  TLSStream stream(host, 993, 60s);
  const Failure failure = failureOf([&] { stream.connect(); });
  EXPECT_EQ(failure.kind, IMAPError::Kind::connectionFailed);
  EXPECT_THAT(failure.description, HasSubstr(host + ":993: "));
}

TEST(TLSStream, hostNameThatIsNoNameIsNotConnectedTo) {
  for (const std::string& host : {std::string(""), std::string("a b"),
                                  std::string("localhost\0.example.org", 22), std::string(300, 'x')}) {
    FakeIMAPServer server({stallHere()});
    TLSStream stream(host, server.port(), patience);
    const Failure failure = failureOf([&] { stream.connect(); });
    EXPECT_EQ(failure.kind, IMAPError::Kind::connectionFailed) << host;
    EXPECT_THAT(failure.description, HasSubstr(std::to_string(server.port()))) << host;
    EXPECT_EQ(server.acceptCount(), 0) << host;
  }
}

TEST(TLSStream, muteServerEndsInATimeoutWhileConnecting) {
  FakeIMAPServer server({}, {.mute = true});
  TLSStream stream("localhost", server.port(), 50ms);
  EXPECT_EQ(failureOf([&] { stream.connect(); }).kind, IMAPError::Kind::timeout);
}

TEST(TLSStream, silenceEndsInATimeoutAndTheStreamIsDead) {
  FakeIMAPServer server({stallHere()});
  TLSStream stream("localhost", server.port(), enoughToConnect);
  stream.connect();
  EXPECT_EQ(failureOf([&] { stream.receive(); }).kind, IMAPError::Kind::timeout);
  EXPECT_EQ(failureOf([&] { stream.send("x"); }).kind, IMAPError::Kind::connectionFailed);
}

/// A failure under a long bound must surface when it happens: this test would outlast its own time limit.
TEST(TLSStream, failureUnderALongBoundSurfacesAtOnce) {
  FakeIMAPServer server({resetHere()});
  TLSStream stream("localhost", server.port(), 600s);
  stream.connect();
  const Failure failure = failureOf([&] {
    while (!stream.receive().empty()) {
    }
  });
  EXPECT_EQ(failure.kind, IMAPError::Kind::connectionFailed);
  EXPECT_THAT(failure.description, HasSubstr("Connection reset by peer"));
}

TEST(TLSStream, peerThatClosesGivesNoBytesWithAndWithoutTheClosingMessage) {
  for (const Step& end : {closeHere(), cutHere()}) {
    FakeIMAPServer server({end});
    TLSStream stream("localhost", server.port(), patience);
    stream.connect();
    EXPECT_EQ(stream.receive(), "");
  }
}

/// Each side sends more than the system takes in between, and neither reads.
TEST(TLSStream, sendingToAPeerThatDoesNotReadEndsInATimeout) {
  const std::string flood(std::size_t{64} << 20, 'x');
  FakeIMAPServer server({answer(flood)});
  TLSStream stream("localhost", server.port(), enoughToConnect);
  stream.connect();
  EXPECT_EQ(failureOf([&] { stream.send(flood); }).kind, IMAPError::Kind::timeout);
  EXPECT_EQ(failureOf([&] { stream.send("x"); }).kind, IMAPError::Kind::connectionFailed);
}

TEST(TLSStream, closedTwiceIsDead) {
  FakeIMAPServer server({stallHere()});
  TLSStream stream("localhost", server.port(), patience);
  stream.connect();
  stream.close();
  stream.close();
  EXPECT_EQ(failureOf([&] { stream.send("x"); }).kind, IMAPError::Kind::connectionFailed);
  EXPECT_EQ(server.mismatch(), "") << "the server is still waiting";
}

TEST(TLSStream, closedBeforeConnectingConnects) {
  FakeIMAPServer server({answer("* OK ready\r\n"), closeHere()});
  TLSStream stream("localhost", server.port(), patience);
  stream.close();
  stream.connect();
  EXPECT_EQ(stream.receive(), "* OK ready\r\n");
}

}  // namespace
}  // namespace tarnwell::test
