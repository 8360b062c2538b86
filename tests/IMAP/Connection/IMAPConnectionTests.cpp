#include "IMAP/Connection/IMAPConnection.h"

#include <gtest/gtest.h>

#include <deque>

#include "IMAP/Connection/IMAPError.h"

namespace tarnwell::test {
namespace {

/// Hands out prepared pieces, then the end or an error.
class ScriptedStream : public ByteStream {
 public:
  explicit ScriptedStream(std::deque<std::string> pieces, std::optional<IMAPError> ending = std::nullopt)
      : pieces_(std::move(pieces)), ending_(std::move(ending)) {}

  void endBy(std::chrono::steady_clock::time_point) override {}
  void connect() override {}
  void send(std::string_view bytes) override {
    if (ending_) {
      throw *ending_;
    }
    sent += bytes;
  }
  std::string_view receive() override {
    if (pieces_.empty()) {
      if (ending_) {
        throw *ending_;
      }
      return {};
    }
    current_ = std::move(pieces_.front());
    pieces_.pop_front();
    return current_;
  }
  void close() noexcept override { isClosed = true; }

  std::string sent;
  bool isClosed = false;

 private:
  std::deque<std::string> pieces_;
  std::string current_;
  std::optional<IMAPError> ending_;
};

IMAPConnection connected(std::deque<std::string> pieces, std::optional<IMAPError> ending = std::nullopt) {
  IMAPConnection connection(std::make_unique<ScriptedStream>(std::move(pieces), std::move(ending)));
  connection.connect();
  return connection;
}

IMAPError::Kind readFailure(IMAPConnection& connection) {
  try {
    const std::string line = connection.readLogicalLine();
    ADD_FAILURE() << "read a line: " << line;
  } catch (const IMAPError& error) {
    return error.kind();
  }
  return IMAPError::Kind::tlsFailed;
}

TEST(IMAPConnection, literalComesBackInsideItsLogicalLine) {
  IMAPConnection connection = connected({"* 1 FETCH (BODY[TEXT] {5}\r\n", "hel", "lo)\r\n"});
  EXPECT_EQ(connection.readLogicalLine(), "* 1 FETCH (BODY[TEXT] {5}\r\nhello)");
}

TEST(IMAPConnection, severalLinesInOnePieceComeBackOnePerCall) {
  IMAPConnection connection = connected({"one\r\ntwo\r\nthr", "ee\r\n"});
  EXPECT_EQ(connection.readLogicalLine(), "one");
  EXPECT_EQ(connection.readLogicalLine(), "two");
  EXPECT_EQ(connection.readLogicalLine(), "three");
}

TEST(IMAPConnection, peerClosingInTheMiddleIsAClosedConnection) {
  for (const char* piece : {"", "* OK rea", "* OK ready\r", "* 1 FETCH {5}\r\nhel", "x {0}\r\n"}) {
    IMAPConnection connection = *piece ? connected({piece}) : connected({});
    EXPECT_EQ(readFailure(connection), IMAPError::Kind::connectionClosed) << piece;
    EXPECT_FALSE(connection.isAlive());
  }
}

TEST(IMAPConnection, anyFailureOfTheStreamEndsTheConnection) {
  IMAPConnection reading = connected({}, IMAPError::timeout());
  EXPECT_TRUE(reading.isAlive());
  EXPECT_EQ(readFailure(reading), IMAPError::Kind::timeout);
  EXPECT_FALSE(reading.isAlive());

  IMAPConnection writing = connected({}, IMAPError::connectionFailed("gone"));
  EXPECT_THROW(writing.sendBytes("x"), IMAPError);
  EXPECT_FALSE(writing.isAlive());
}

TEST(IMAPConnection, linesReceivedBeforeTheEndAreStillHandedOut) {
  IMAPConnection connection = connected({"* BYE\r\nA0001 NO\r\n"});
  EXPECT_EQ(connection.readLogicalLine(), "* BYE");
  EXPECT_EQ(connection.readLogicalLine(), "A0001 NO");
  EXPECT_EQ(readFailure(connection), IMAPError::Kind::connectionClosed);
}

TEST(IMAPConnection, closingIsTheEnd) {
  IMAPConnection connection = connected({"line\r\n"});
  connection.close();
  EXPECT_FALSE(connection.isAlive());
}

TEST(IMAPConnectionDeathTest, portOutOfRangeEndsTheProcess) {
  for (const std::int64_t port : {std::int64_t{-1}, std::int64_t{65536}, std::int64_t{1} << 40}) {
    EXPECT_DEATH(IMAPConnection("localhost", port, std::chrono::seconds(1)), "");
  }
}

TEST(IMAPConnection, portZeroMeansTheStandardPort) {
  EXPECT_EQ(IMAPConnection::endpointPort(0), 993);
  EXPECT_EQ(IMAPConnection::endpointPort(1143), 1143);
}

}  // namespace
}  // namespace tarnwell::test
