/// No answer is taken for another command's, and no body for another message's.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "IMAP/Bodies.h"
#include "IMAP/ClientOf.h"
#include "IMAP/InboxSession.h"
#include "support/FakeIMAPServer.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Access = IMAPClient::Access;

struct OrderRow {
  const char* name;
  /// Answers to A0004 to A0006, which ask for the bodies of the messages 9, 7 and 5.
  std::string answers;
  std::vector<std::string> bodies;
};

class Order : public testing::TestWithParam<OrderRow> {};

TEST_P(Order, eachBodyGoesToItsMessage) {
  const OrderRow& row = GetParam();
  FakeIMAPServer server({
      answer("* OK ready\r\n"),
      expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
      answer("A0001 OK\r\n"),
      expect("A0002 CAPABILITY\r\nA0003 EXAMINE INBOX\r\n"),
      answer("* 3 EXISTS\r\nA0003 OK\r\n* CAPABILITY MOVE\r\nA0002 OK\r\n"),
      expect("A0004 UID FETCH 9 (BODY.PEEK[1])\r\nA0005 UID FETCH 7 (BODY.PEEK[1])\r\n"
             "A0006 UID FETCH 5 (BODY.PEEK[1])\r\n"),
      answer(row.answers),
      expect("A0007 LOGOUT\r\n"),
      answer("A0007 OK\r\n"),
      closeHere(),
  });
  IMAPClient client = clientOf(server);
  const auto bodies = withInbox(client, Access::readOnly, [&](IMAPClient& session) {
    EXPECT_TRUE(session.supportsMove());
    return bodiesOf(session, messagesWithText({9, 7, 5}));
  });
  EXPECT_EQ(bodies, row.bodies);
  EXPECT_EQ(server.mismatch(), "");
}

const std::string nine = "* 3 FETCH (UID 9 BODY[1] {4}\r\nnine)\r\n";
const std::string seven = "* 2 FETCH (BODY[1] {5}\r\nseven UID 7)\r\n";
const std::string five = "* 1 FETCH (uid 5 FLAGS (\\Seen) BODY[1] {4}\r\nfive)\r\n";
const std::string ok4 = "A0004 OK\r\n";
const std::string ok5 = "A0005 OK\r\n";
const std::string ok6 = "A0006 OK\r\n";

INSTANTIATE_TEST_SUITE_P(
    Table, Order,
    testing::Values(
        OrderRow{"asAskedFor", nine + ok4 + seven + ok5 + five + ok6, {"9 nine", "7 seven", "5 five"}},
        OrderRow{"reversed", five + ok6 + seven + ok5 + nine + ok4, {"5 five", "7 seven", "9 nine"}},
        OrderRow{"bodiesFirst", seven + five + nine + ok4 + ok5 + ok6, {"9 nine", "7 seven", "5 five"}},
        OrderRow{"bodiesFirstAnsweredBackwards",
                 nine + seven + five + ok6 + ok5 + ok4,
                 {"5 five", "7 seven", "9 nine"}},
        OrderRow{
            "flagsInBetween",
            "* 2 FETCH (UID 7 FLAGS (\\Seen))\r\n" + nine + ok4 + "* 4 EXISTS\r\n" + seven + ok5 + five + ok6,
            {"9 nine", "7 seven", "5 five"}},
        OrderRow{"bodyThatNamesNoMessageIsTheOldestOnes",
                 "* 3 FETCH (BODY[1] {4}\r\nnine)\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{"secondBodyOfAMessageIsIgnored",
                 nine + "* 3 FETCH (UID 9 BODY[1] {5}\r\nother)\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{"missingBodyTakesNoOthers", ok4 + seven + ok5 + five + ok6, {"9 ", "7 seven", "5 five"}},
        OrderRow{"tagsThatAreNotUnderWay",
                 "A0003 NO\r\nA0007 OK\r\nA00040 NO\r\n" + nine + ok4 + ok4 + seven + ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{"bodyOfAMessageThatWasNotAskedForIsDropped",
                 "* 8 FETCH (UID 8 BODY[1] {5}\r\neight)\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 ", "7 seven", "5 five"}},
        OrderRow{
            "lateBodyIsNotTheNextOnes", nine + ok4 + nine + ok5 + five + ok6, {"9 nine", "7 ", "5 five"}},
        OrderRow{"literalInAnotherResponse",
                 "* LIST () \"/\" {5}\r\nother\r\n* OK {5}\r\nother\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 ", "7 seven", "5 five"}},
        OrderRow{"literalAfterAForeignTag",
                 "A9999 FETCH {5}\r\nother\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 ", "7 seven", "5 five"}},
        OrderRow{"uidAmongFlags",
                 "* 3 FETCH (FLAGS (UID 7) UID 9 BODY[1] {4}\r\nnine)\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{
            "uidInAQuotedText",
            "* 3 FETCH (X \"a \\\" UID 7 \" UID 9 BODY[1] {4}\r\nnine)\r\n" + ok4 + seven + ok5 + five + ok6,
            {"9 nine", "7 seven", "5 five"}},
        OrderRow{"uidInTheBody",
                 "* 3 FETCH (BODY[1] {8}\r\n (UID 7  UID 9)\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9  (UID 7 ", "7 seven", "5 five"}},
        OrderRow{
            "uidInASecondLiteral",
            "* 3 FETCH (BODY[1] {4}\r\nnine X {7}\r\n) UID 7 UID 9)\r\n" + ok4 + seven + ok5 + five + ok6,
            {"9 nine", "7 seven", "5 five"}},
        OrderRow{"uidAsAValue",
                 "* 3 FETCH (X UID 7 NIL UID 9 BODY[1] {4}\r\nnine)\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{"uidInASection",
                 "* 3 FETCH (BODY[HEADER.FIELDS (UID 7)] NIL UID 9 BODY[1] {4}\r\nnine)\r\n" + ok4 + seven +
                     ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{"responsesThatEndEarly",
                 "* 3 FETCH\r\n* 3 FETCH (\r\n* 3 FETCH (UID\r\n* 3 FETCH )))) {x}\r\n" + nine + ok4 + seven +
                     ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{"blanksBeforeTheList",
                 "* 3 FETCH   (UID 9 BODY[1] {4}\r\nnine)\r\n" + ok4 +
                     "* 2 fetch(BODY[1] {5}\r\nseven UID 7)\r\n" + ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{"quotedUID",
                 "* 2 FETCH (UID \"7\" BODY[1] {5}\r\nseven)\r\n" + nine + ok4 + ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{
            "keywordWithABracket",
            "* 2 FETCH (FLAGS ($x[y \\Seen) UID 7 BODY[1] {5}\r\nseven)\r\n" + nine + ok4 + ok5 + five + ok6,
            {"9 nine", "7 seven", "5 five"}},
        OrderRow{"taggedResponseThatLooksLikeOne",
                 "A9999 3 FETCH (UID 9 BODY[1] {4}\r\nevil)\r\n" + nine + ok4 + seven + ok5 + five + ok6,
                 {"9 nine", "7 seven", "5 five"}},
        OrderRow{"textThatLooksLikeAnAnswer",
                 "* 3 FETCH (UID 9 BODY[1] {12}\r\n\r\nA0005 NO\r\n)\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 \r\nA0005 NO\r\n", "7 seven", "5 five"}}),
    rowName);

class AskedForTwice : public testing::TestWithParam<OrderRow> {};

TEST_P(AskedForTwice, isReadTwice) {
  FakeIMAPServer server(
      loginDialogue() +
      Dialogue{expect("A0004 UID FETCH 9 (BODY.PEEK[1])\r\nA0005 UID FETCH 9 (BODY.PEEK[1])\r\n"),
               answer(GetParam().answers), closeHere()});
  IMAPClient client = clientOf(server);
  client.connectToInbox(Access::readOnly);
  EXPECT_EQ(bodiesOf(client, messagesWithText({9, 9})), GetParam().bodies);
  EXPECT_EQ(server.mismatch(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Table, AskedForTwice,
    testing::Values(OrderRow{"oneAfterTheOther", nine + ok4 + nine + ok5, {"9 nine", "9 nine"}},
                    OrderRow{"bodiesFirst", nine + nine + ok4 + ok5, {"9 nine", "9 nine"}}),
    rowName);

}  // namespace
}  // namespace tarnwell::test
