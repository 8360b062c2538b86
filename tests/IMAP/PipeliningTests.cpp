/// Which commands go out together, and that no answer is taken for another command's.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <deque>
#include <functional>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/InboxSession.h"
#include "support/FakeIMAPServer.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::Le;

using Access = IMAPClient::Access;
using Answers = std::vector<std::string>;

/// What went over the wire: for each moment in which the client waits, the commands that it sent since the
/// moment before, and the bytes of all commands that have no answer yet.
struct Wire {
  std::vector<std::string> bursts;
  std::size_t bytesUnderWay = 0;
  std::size_t mostBytesUnderWay = 0;
};

/// A server without a network. It answers a command as soon as the client waits, one answer for each wait.
class InstantServer : public ByteStream {
 public:
  /// Returns the answer to a command: the untagged responses and the completion.
  using Answer = std::function<std::string(const std::string& tag, const std::string& command)>;

  InstantServer(Wire& wire, Answer answer) : wire_(wire), answer_(std::move(answer)) {}

  void endBy(std::chrono::steady_clock::time_point) override {}
  void connect() override { answers_.push_back({"* OK ready\r\n", 0}); }
  void close() noexcept override {}

  void send(std::string_view bytes) override {
    received_ += bytes;
    for (std::size_t end; (end = received_.find("\r\n")) != std::string::npos;) {
      take(received_.substr(0, end), end + 2);
      received_.erase(0, end + 2);
    }
    wire_.mostBytesUnderWay = std::max(wire_.mostBytesUnderWay, wire_.bytesUnderWay);
  }

  std::string_view receive() override {
    if (!burst_.empty()) {
      wire_.bursts.push_back(std::exchange(burst_, {}));
    }
    if (answers_.empty()) {
      throw IMAPError::timeout();
    }
    current_ = std::move(answers_.front());
    answers_.pop_front();
    wire_.bytesUnderWay -= current_.commandSize;
    return current_.bytes;
  }

 private:
  struct Reply {
    std::string bytes;
    std::size_t commandSize;
  };

  void take(const std::string& line, std::size_t size) {
    burst_ += (burst_.empty() ? "" : ", ") + line.substr(line.find(' ') + 1);
    wire_.bytesUnderWay += size;
    const bool announcesLiteral = line.ends_with('}');
    answers_.push_back({announcesLiteral ? "+ go on\r\n" : answerTo(line), size});
    if (!announcesLiteral) {
      begun_.clear();
    } else if (begun_.empty()) {
      begun_ = line;
    }
  }

  /// `line` is a command, or what follows the literal of the command that has begun.
  std::string answerTo(const std::string& line) const {
    const std::string& command = begun_.empty() ? line : begun_;
    const std::size_t blank = command.find(' ');
    return answer_(command.substr(0, blank), command.substr(blank + 1));
  }

  Wire& wire_;
  Answer answer_;
  std::string received_;
  std::string begun_;
  std::string burst_;
  std::deque<Reply> answers_;
  Reply current_{};
};

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
    untagged = "* 1 FETCH (BODY[1] {5}\r\nhello)\r\n";
  } else if (command.starts_with("UID MOVE")) {
    return tag + " NO not here\r\n";
  }
  return untagged + tag + " OK done\r\n";
}

IMAPClient clientOf(Wire& wire, const InstantServer::Answer& answer) {
  return {[&wire, answer] {
            return std::make_unique<IMAPConnection>(std::make_unique<InstantServer>(wire, answer));
          },
          testEmail, Secret(testPassword)};
}

std::vector<const IMAPMessage*> pointersTo(const std::vector<IMAPMessage>& messages) {
  std::vector<const IMAPMessage*> pointers;
  for (const IMAPMessage& message : messages) {
    pointers.push_back(&message);
  }
  return pointers;
}

std::vector<std::string> bodiesOf(IMAPClient& client, const std::vector<IMAPMessage>& messages) {
  std::vector<std::string> bodies;
  client.fetchBodyTexts(pointersTo(messages),
                        [&](const IMAPMessage& message, const IMAPClient::BodyText& body) {
                          bodies.push_back(std::to_string(message.uid) + " " + body.text);
                        });
  return bodies;
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
  IMAPClient client = clientOf(wire, smallMailbox);
  EXPECT_THAT(withInbox(client, Access::readOnly, search), ElementsAre("9 hello", "7 hello", "5 hello"));
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
  IMAPClient client = clientOf(wire, smallMailbox);
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

std::vector<IMAPMessage> messagesWithText(std::size_t count, const std::string& section) {
  std::vector<IMAPMessage> messages(count);
  for (std::size_t i = 0; i < count; ++i) {
    messages[i].uid = static_cast<std::uint32_t>(i + 1);
    messages[i].bodyInfo.preferredText =
        IMAPTextPart{.section = section, .encoding = "7bit", .charset = {}, .isHTML = false};
  }
  return messages;
}

TEST(Pipelining, hundredBodiesAreAskedForAtOnce) {
  Wire wire;
  IMAPClient client = clientOf(wire, smallMailbox);
  const auto bodies = withInbox(client, Access::readOnly, [](IMAPClient& session) {
    return bodiesOf(session, messagesWithText(100, "1"));
  });
  EXPECT_EQ(bodies.size(), 100u);
  EXPECT_EQ(bodies.back(), "100 hello");
  EXPECT_EQ(wire.bursts.size(), 4u) << "LOGIN, the selection, the bodies, LOGOUT";
}

TEST(Pipelining, commandsUnderWayAreBounded) {
  Wire wire;
  IMAPClient client = clientOf(wire, [](const std::string& tag, const std::string& command) {
    const bool asksForBody = command.find("BODY.PEEK") != std::string::npos;
    return (asksForBody ? "* 1 FETCH (BODY[1] {2}\r\nhi)\r\n" : "") + tag + " OK\r\n";
  });
  const std::string longSection(1000, '1');
  const auto bodies = withInbox(client, Access::readOnly, [&](IMAPClient& session) {
    return bodiesOf(session, messagesWithText(60, longSection));
  });
  EXPECT_EQ(bodies.size(), 60u);
  EXPECT_THAT(wire.mostBytesUnderWay, AllOf(Ge(15'000u), Le(16'384u)));
}

TEST(Pipelining, commandLongerThanTheBoundGoesAlone) {
  Wire wire;
  IMAPClient client = clientOf(wire, smallMailbox);
  withInbox(client, Access::readOnly, [](IMAPClient& session) {
    return bodiesOf(session, messagesWithText(3, std::string(20'000, '1')));
  });
  EXPECT_EQ(wire.bursts.size(), 6u);
}

// --- Answers in any order --------------------------------------------------------------------------------

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
  IMAPClient client("localhost", server.port(), testEmail, Secret(testPassword), std::chrono::seconds(10));
  std::vector<IMAPMessage> messages = messagesWithText(3, "1");
  messages[0].uid = 9;
  messages[1].uid = 7;
  messages[2].uid = 5;
  const auto bodies = withInbox(client, Access::readOnly, [&](IMAPClient& session) {
    EXPECT_TRUE(session.supportsMove());
    return bodiesOf(session, messages);
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
        OrderRow{"textThatLooksLikeAnAnswer",
                 "* 3 FETCH (UID 9 BODY[1] {12}\r\n\r\nA0005 NO\r\n)\r\n" + ok4 + seven + ok5 + five + ok6,
                 {"9 \r\nA0005 NO\r\n", "7 seven", "5 five"}}),
    rowName);

}  // namespace
}  // namespace tarnwell::test
