#include "support/WireGuard.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

#include "IMAP/Connection/IMAPConnection.h"
#include "support/FakeIMAPServer.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

/// A conversation: what begins with ">" is the client's, what begins with "<" the server's.
struct GuardRow {
  const char* name;
  std::vector<std::string> conversation;
  const char* violation;
};

class Guarded : public testing::TestWithParam<GuardRow> {
 protected:
  static std::string violationOf(const std::vector<std::string>& conversation, std::size_t pieceSize) {
    WireGuard guard;
    for (const std::string& turn : conversation) {
      for (std::size_t start = 1; start < turn.size(); start += pieceSize) {
        const std::string piece = turn.substr(start, pieceSize);
        turn[0] == '>' ? guard.clientSent(piece) : guard.serverSent(piece);
      }
    }
    return guard.violation();
  }
};

TEST_P(Guarded, conversationIsJudgedWholeAndByteByByte) {
  EXPECT_EQ(violationOf(GetParam().conversation, 4096), GetParam().violation);
  EXPECT_EQ(violationOf(GetParam().conversation, 1), GetParam().violation);
}

INSTANTIATE_TEST_SUITE_P(
    Table, Guarded,
    testing::Values(
        GuardRow{
            "allCommandsOfTheClient",
            {">A1 LOGIN \"a\" \"b\"\r\nA2 CAPABILITY\r\nA3 SELECT INBOX\r\nA4 EXAMINE INBOX\r\n",
             ">A5 LIST \"\" \"*\"\r\nA6 UID SEARCH ALL\r\nA7 UID FETCH 1 (UID)\r\nA8 UID MOVE 1 \"x\"\r\n",
             ">A9 UID COPY 1 \"x\"\r\nA10 UID STORE 1 +FLAGS (\\Deleted)\r\nA11 LOGOUT\r\n"},
            ""},
        GuardRow{"expunge", {">A1 EXPUNGE\r\n"}, "A1 EXPUNGE"},
        GuardRow{"uidExpunge", {">A1 UID EXPUNGE 1:*\r\n"}, "A1 UID EXPUNGE 1:*"},
        GuardRow{"close", {">A1 CLOSE\r\n"}, "A1 CLOSE"},
        GuardRow{"create", {">A1 CREATE x\r\n"}, "A1 CREATE x"},
        GuardRow{"delete_", {">A1 DELETE x\r\n"}, "A1 DELETE x"},
        GuardRow{"rename", {">A1 RENAME x y\r\n"}, "A1 RENAME x y"},
        GuardRow{"append", {">A1 APPEND x {5}\r\n"}, "A1 APPEND x {5}"},
        GuardRow{"setacl", {">A1 SETACL x y z\r\n"}, "A1 SETACL x y z"},
        GuardRow{"anyLetterCaseAndBareLineFeed", {">a1 uiD  eXpunge 1\n"}, "a1 uiD  eXpunge 1"},
        GuardRow{"inTheSecondLine", {">A1 NOOP\r\nA2 CLOSE\r\n"}, "A2 CLOSE"},
        GuardRow{"theFirstOneIsKept", {">A1 CLOSE\r\nA2 EXPUNGE\r\n"}, "A1 CLOSE"},
        GuardRow{"wordInAnArgument", {">A1 UID MOVE 1 \"EXPUNGE\"\r\n", ">EXPUNGE LOGIN CLOSE\r\n"}, ""},
        GuardRow{"untaggedExpungeOfTheServer", {">A1 UID MOVE 1 x\r\n", "<* 1 EXPUNGE\r\nA1 OK\r\n"}, ""},
        GuardRow{"insideALiteral",
                 {">A1 UID SEARCH TEXT {14}\r\n", "<+ go\r\n", ">\r\nA2 EXPUNGE\r\n\r\nA3 LOGOUT\r\n"},
                 ""},
        GuardRow{"restOfTheLineAfterALiteral",
                 {">A1 UID SEARCH FROM {1}\r\n", "<+\r\n", ">x CLOSE {1}\r\n", "<+\r\n", ">y DELETE\r\n"},
                 ""},
        GuardRow{"commandAfterALiteral",
                 {">A1 UID SEARCH TEXT {3}\r\n", "<+ go\r\n", ">tea\r\nA2 CLOSE\r\n"},
                 "A2 CLOSE"},
        GuardRow{"literalThatWasRefused",
                 {">A1 UID SEARCH TEXT {99}\r\n", "<A1 NO + no\r\n", ">A2 CLOSE\r\n"},
                 "A2 CLOSE"},
        GuardRow{"literalGrantedAfterAnotherLine",
                 {">A1 UID SEARCH TEXT {11}\r\n", "<* 3 EXISTS\r\n+ go\r\n", ">\r\nA2 CLOSE\r\n\r\n"},
                 ""},
        GuardRow{"emptyLiteral", {">A1 X {0}\r\n", "<+\r\n", "> CLOSE\r\nA2 CLOSE\r\n"}, "A2 CLOSE"},
        GuardRow{"literalWithoutWaiting", {">A1 X {11+}\r\n\r\nA2 CLOSE\r\n\r\nA3 CLOSE\r\n"}, "A3 CLOSE"},
        GuardRow{"bracesInsideQuotesAreNoLiteral", {">A1 X \"{9}\"\r\nA2 CLOSE\r\n"}, "A2 CLOSE"},
        GuardRow{
            "endlessNumberIsNoLiteral", {">A1 X {99999999999999999999999}\r\nA2 CLOSE\r\n"}, "A2 CLOSE"}),
    rowName);

/// Lets a connection send one line to the server, which dies at once afterwards.
void sendTo(Dialogue dialogue, const std::string& line) {
  FakeIMAPServer server(std::move(dialogue));
  IMAPConnection connection("localhost", server.port(), std::chrono::seconds(10));
  connection.connect();
  connection.sendBytes(line);
  connection.close();
  server.mismatch();
}

TEST(FakeIMAPServer, failsTheTestThatSentAForbiddenCommand) {
  EXPECT_NONFATAL_FAILURE(sendTo({expect("A0001 CLOSE\r\n")}, "A0001 CLOSE\r\n"), "A0001 CLOSE");
  EXPECT_NONFATAL_FAILURE(sendTo({stallHere()}, "A0001 UID EXPUNGE 1\r\n"), "A0001 UID EXPUNGE 1");
  EXPECT_NONFATAL_FAILURE(sendTo({}, "A0001 DELETE x\r\n"), "A0001 DELETE x");
  // Also when the dialogue broke off in the middle of the line.
  EXPECT_NONFATAL_FAILURE(sendTo({expect("A0001 LOGOUT\r\n")}, "A0001 EXPUNGE\r\n"), "A0001 EXPUNGE");
}

}  // namespace
}  // namespace tarnwell::test
