/// Which commands go out together.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>
#include <stdexcept>

#include "IMAP/Bodies.h"
#include "IMAP/InboxSession.h"
#include "support/InstantServer.h"

namespace tarnwell::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;

using Access = IMAPClient::Access;

std::string structureOf(const std::string& section) {
  return section == "1" ? R"(BODYSTRUCTURE ("text" "plain" NIL NIL NIL "7bit" 5 1))" : "";
}

/// A mailbox of three messages. Refuses MOVE.
std::string smallMailbox(const std::string& tag, const std::string& command) {
  std::string untagged;
  if (command == "CAPABILITY") {
    untagged = "* CAPABILITY IMAP4rev1\r\n";
  } else if (command.starts_with("UID SEARCH")) {
    untagged = "* SEARCH 5 7 9\r\n";
  } else if (command.ends_with("BODYSTRUCTURE)")) {
    for (const char* uid : {"9", "7", "5"}) {
      untagged += std::string("* 1 FETCH (UID ") + uid + " " + structureOf("1") + ")\r\n";
    }
  } else if (command.ends_with("(BODY.PEEK[1])")) {
    const std::string text = "hello of " + command.substr(10, command.find(" (") - 10);
    untagged = "* 1 FETCH (BODY[1] {" + std::to_string(text.size()) + "}\r\n" + text + ")\r\n";
  } else if (command.starts_with("UID MOVE")) {
    return tag + " NO not here\r\n";
  }
  return untagged + tag + " OK done\r\n";
}

std::vector<std::string> search(IMAPClient& client) {
  IMAPSearchCriteria criteria;
  criteria.subject = "tea";
  criteria.freeText = "milk";
  return bodiesOf(client, client.fetchMessages(client.searchInbox(criteria, 20)));
}

// --- What goes out together ------------------------------------------------------------------------------

TEST(Pipelining, searchWaitsOnlyForAnswersThatItNeeds) {
  Wire wire;
  IMAPClient client = instantClient(wire, smallMailbox);
  EXPECT_THAT(withInbox(client, Access::readOnly, search),
              ElementsAre("9 hello of 9", "7 hello of 7", "5 hello of 5"));
  EXPECT_THAT(
      wire.bursts,
      ElementsAre("LOGIN \"user@example.org\" \"app-pass-word\"", "CAPABILITY, EXAMINE INBOX",
                  "UID SEARCH SUBJECT {3}", "TEXT {4}", "milk",
                  "UID FETCH 9,7,5 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)",
                  "UID FETCH 9 (BODY.PEEK[1]), UID FETCH 7 (BODY.PEEK[1]), UID FETCH 5 (BODY.PEEK[1])",
                  "LOGOUT"));
}

TEST(Pipelining, nothingGoesTogetherWithAWrite) {
  Wire wire;
  IMAPClient client = instantClient(wire, smallMailbox);
  withInbox(client, Access::readWrite, [](IMAPClient& session) {
    session.fetchMessage(7);
    session.markRead(7);
    return session.move(7, "Tea", IMAPClient::CopyFallback::allowed);
  });
  EXPECT_THAT(wire.bursts,
              ElementsAre("LOGIN \"user@example.org\" \"app-pass-word\"", "CAPABILITY, SELECT INBOX",
                          "UID FETCH 7 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)",
                          "UID STORE 7 +FLAGS (\\Seen)", "UID MOVE 7 \"Tea\"", "UID COPY 7 \"Tea\"",
                          "UID STORE 7 +FLAGS (\\Deleted)", "LOGOUT"));
}

std::vector<std::uint32_t> firstUIDs(std::uint32_t count) {
  std::vector<std::uint32_t> uids(count);
  std::iota(uids.begin(), uids.end(), 1);
  return uids;
}

TEST(Pipelining, hundredBodiesAreAskedForAtOnce) {
  Wire wire;
  IMAPClient client = instantClient(wire, smallMailbox);
  const auto bodies = withInbox(client, Access::readOnly, [](IMAPClient& session) {
    return bodiesOf(session, messagesWithText(firstUIDs(100)));
  });
  EXPECT_EQ(bodies.size(), 100u);
  EXPECT_EQ(bodies.back(), "100 hello of 100");
  EXPECT_EQ(wire.bursts.size(), 4u) << "LOGIN, the selection, the bodies, LOGOUT";
}

TEST(Pipelining, commandsUnderWayAreBounded) {
  Wire wire;
  IMAPClient client = instantClient(wire, [](const std::string& tag, const std::string& command) {
    const bool asksForBody = command.find("BODY.PEEK") != std::string::npos;
    return (asksForBody ? "* 1 FETCH (BODY[1] {2}\r\nhi)\r\n" : "") + tag + " OK\r\n";
  });
  const std::string longSection(1000, '1');
  const auto bodies = withInbox(client, Access::readOnly, [&](IMAPClient& session) {
    return bodiesOf(session, messagesWithText(firstUIDs(60), longSection));
  });
  EXPECT_EQ(bodies.size(), 60u);
  EXPECT_THAT(wire.mostBytesUnderWay, AllOf(Ge(15'000u), Le(16'384u)));
}

TEST(Pipelining, commandLongerThanTheBoundGoesAlone) {
  Wire wire;
  IMAPClient client = instantClient(wire, smallMailbox);
  withInbox(client, Access::readOnly, [](IMAPClient& session) {
    return bodiesOf(session, messagesWithText(firstUIDs(3), std::string(20'000, '1')));
  });
  EXPECT_EQ(wire.bursts.size(), 6u);
}

TEST(Pipelining, flagAfterACopyHasTimeWhenTheSessionHasNone) {
  using namespace std::chrono_literals;
  Wire wire;
  IMAPClient client = instantClient(wire, smallMailbox, {.whole = 1ms});
  withInbox(client, Access::readWrite,
            [](IMAPClient& session) { return session.move(7, "Tea", IMAPClient::CopyFallback::allowed); });
  ASSERT_EQ(wire.bursts[3], "UID COPY 7 \"Tea\"");
  EXPECT_LT(wire.timeLeft[3], 1s);
  ASSERT_EQ(wire.bursts[4], "UID STORE 7 +FLAGS (\\Deleted)");
  EXPECT_THAT(wire.timeLeft[4], AllOf(Ge(4s), Le(5s)));
}

TEST(Pipelining, writeAfterAFailureWaitsForEveryAnswer) {
  Wire wire;
  IMAPClient client = instantClient(wire, smallMailbox);
  client.connectToInbox(Access::readWrite);
  const std::vector<IMAPMessage> messages = messagesWithText({9, 7, 5});
  const auto fail = [](const IMAPMessage&, const IMAPClient::BodyText&) { throw std::runtime_error("full"); };
  EXPECT_THROW(client.fetchBodyTexts({&messages[0], &messages[1], &messages[2]}, fail), std::runtime_error);
  EXPECT_GT(wire.bytesUnderWay, 0u);
  client.markRead(7);
  EXPECT_EQ(wire.bursts.back(), "UID STORE 7 +FLAGS (\\Seen)");
  EXPECT_EQ(wire.bytesBefore.back(), 0u);
}

TEST(Pipelining, answersThatAFailureLeftAreNotThoseOfTheNextBodies) {
  Wire wire;
  IMAPClient client = instantClient(wire, smallMailbox);
  client.connectToInbox(Access::readOnly);
  const std::vector<IMAPMessage> messages = messagesWithText({9, 7, 5});
  const auto fail = [](const IMAPMessage&, const IMAPClient::BodyText&) { throw std::runtime_error("full"); };
  EXPECT_THROW(client.fetchBodyTexts({&messages[0], &messages[1]}, fail), std::runtime_error);
  EXPECT_THAT(bodiesOf(client, messagesWithText({5})), ElementsAre("5 hello of 5"));
  client.disconnect();
  EXPECT_EQ(wire.bursts.back(), "LOGOUT");
}

}  // namespace
}  // namespace tarnwell::test
