/// A search whose commands go out together, and a server that fails at each of its answers.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

#include "IMAP/InboxSession.h"
#include "support/BrokenSession.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

using Access = IMAPClient::Access;
using Kind = IMAPError::Kind;

constexpr const char* structure = " BODYSTRUCTURE (\"text\" \"plain\" NIL NIL NIL \"7bit\" 5 1))\r\n";

/// One completion of the server.
struct Completion {
  const char* untagged;
  const char* tag;
  /// How the error of a refusal names the command.
  const char* command;
};

/// Commands that go out together, and their answers.
struct Exchange {
  const char* commands;
  std::vector<Completion> completions;
};

const std::string summaries = std::string("* 3 FETCH (UID 9") + structure + "* 2 FETCH (UID 7" + structure +
                              "* 1 FETCH (UID 5" + structure;

const std::vector<Exchange>& exchanges() {
  static const std::vector<Exchange> all{
      {"A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n", {{"", "A0001", "LOGIN"}}},
      {"A0002 CAPABILITY\r\nA0003 EXAMINE INBOX\r\n",
       {{"* CAPABILITY IMAP4rev1\r\n", "A0002", "CAPABILITY"}, {"* 3 EXISTS\r\n", "A0003", "EXAMINE"}}},
      {"A0004 UID SEARCH ALL\r\n", {{"* SEARCH 5 7 9\r\n", "A0004", "UID"}}},
      {"A0005 UID FETCH 9,7,5 (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)\r\n",
       {{summaries.c_str(), "A0005", "UID"}}},
      {"A0006 UID FETCH 9 (BODY.PEEK[1])\r\nA0007 UID FETCH 7 (BODY.PEEK[1])\r\n"
       "A0008 UID FETCH 5 (BODY.PEEK[1])\r\n",
       {{"* 3 FETCH (UID 9 BODY[1] {4}\r\nnine)\r\n", "A0006", "UID"},
        {"* 2 FETCH (UID 7 BODY[1] {5}\r\nseven)\r\n", "A0007", "UID"},
        {"* 1 FETCH (UID 5 BODY[1] {4}\r\nfive)\r\n", "A0008", "UID"}}},
  };
  return all;
}

Step completed(const Completion& completion, const std::string& status = "OK") {
  return answer(std::string(completion.untagged) + completion.tag + " " + status + " text\r\n");
}

Dialogue wholeSearch() {
  Dialogue dialogue{answer("* OK ready\r\n")};
  for (const Exchange& exchange : exchanges()) {
    dialogue.push_back(expect(exchange.commands));
    for (const Completion& completion : exchange.completions) {
      dialogue.push_back(completed(completion));
    }
  }
  return dialogue;
}

Dialogue withLogout(Dialogue dialogue, const std::string& tag) {
  return std::move(dialogue) +
         Dialogue{expect(tag + " LOGOUT\r\n"), answer("* BYE\r\n" + tag + " OK\r\n"), closeHere()};
}

std::vector<std::string> search(const FakeIMAPServer& server, Timeout timeout, SessionLimits limits = {}) {
  IMAPClient client("localhost", server.port(), testEmail, Secret(testPassword), timeout, limits);
  return withInbox(client, Access::readOnly, [](IMAPClient& session) {
    const std::vector<IMAPMessage> messages = session.fetchMessages(session.searchInbox({}, 20));
    std::vector<const IMAPMessage*> pointers;
    for (const IMAPMessage& message : messages) {
      pointers.push_back(&message);
    }
    std::vector<std::string> bodies;
    session.fetchBodyTexts(
        pointers, [&](const IMAPMessage&, const IMAPClient::BodyText& body) { bodies.push_back(body.text); });
    return bodies;
  });
}

TEST(BrokenPipeline, wholeSearchPlaysThrough) {
  FakeIMAPServer server(withLogout(wholeSearch(), "A0009"));
  EXPECT_THAT(search(server, 10s), ElementsAre("nine", "seven", "five"));
  EXPECT_EQ(server.mismatch(), "");
}

TEST(BrokenPipeline, slowServerIsReadToItsEnd) {
  Dialogue dialogue = withLogout(wholeSearch(), "A0009");
  for (Step& step : dialogue) {
    if (step.kind == Step::Kind::answer) {
      step.kind = Step::Kind::answerSlowly;
    }
  }
  FakeIMAPServer server(dialogue);
  EXPECT_THAT(search(server, 10s), ElementsAre("nine", "seven", "five"));
  EXPECT_EQ(server.mismatch(), "");
}

/// A server that answers the commands under way one after the other, each only after a pause.
TEST(BrokenPipeline, answersOneAtATimeAreTakenOneAtATime) {
  Dialogue dialogue;
  std::size_t pauses = 0;
  for (const Step& step : withLogout(wholeSearch(), "A0009")) {
    if (step.kind == Step::Kind::answer) {
      dialogue.push_back(pauseHere());
      ++pauses;
    }
    dialogue.push_back(step);
  }
  FakeIMAPServer server(dialogue);
  std::thread slow([&] {
    for (std::size_t i = 0; i < pauses && server.awaitPause(); ++i) {
      std::this_thread::sleep_for(20ms);
      server.resume();
    }
  });
  EXPECT_THAT(search(server, 10s), ElementsAre("nine", "seven", "five"));
  slow.join();
  EXPECT_EQ(server.mismatch(), "");
}

// --- Refusals --------------------------------------------------------------------------------------------

/// The answers after a refusal are read, and then the session ends with LOGOUT.
TEST(BrokenPipeline, refusalIsToldAsThatOfItsCommandAndTheSessionEndsInOrder) {
  for (const char* status : {"NO", "BAD"}) {
    Dialogue before{answer("* OK ready\r\n")};
    for (const Exchange& exchange : exchanges()) {
      before.push_back(expect(exchange.commands));
      for (std::size_t refused = 0; refused < exchange.completions.size(); ++refused) {
        Dialogue dialogue = before;
        for (std::size_t i = 0; i < exchange.completions.size(); ++i) {
          dialogue.push_back(completed(exchange.completions[i], i == refused ? status : "OK"));
        }
        const int lastTag = std::stoi(std::string(exchange.completions.back().tag).substr(1));
        FakeIMAPServer server(withLogout(dialogue, "A000" + std::to_string(lastTag + 1)));
        const Completion& completion = exchange.completions[refused];
        SCOPED_TRACE(std::string(completion.tag) + " " + status);
        const std::string command = completion.command;
        try {
          search(server, 10s);
          ADD_FAILURE() << "no error";
        } catch (const IMAPError& error) {
          EXPECT_EQ(error, command == "LOGIN" ? IMAPError::authenticationFailed()
                                              : IMAPError::commandFailed(command, "text"));
        }
        EXPECT_EQ(server.mismatch(), "");
      }
      for (const Completion& completion : exchange.completions) {
        before.push_back(completed(completion));
      }
    }
  }
}

TEST(BrokenPipeline, answersThatNeverComeHoldARefusedSessionOnlyForTheBoundOfLogout) {
  Dialogue dialogue = wholeSearch();
  dialogue.resize(dialogue.size() - exchanges().back().completions.size());
  dialogue.push_back(answer("A0006 NO gone\r\n"));
  dialogue.push_back(expect("A0009 LOGOUT\r\n"));
  dialogue.push_back(stallHere());
  FakeIMAPServer server(dialogue);
  const auto start = std::chrono::steady_clock::now();
  try {
    search(server, 60s, {.whole = 60s, .logout = 200ms});
    ADD_FAILURE() << "no error";
  } catch (const IMAPError& error) {
    EXPECT_EQ(error, IMAPError::commandFailed("UID", "gone"));
  }
  EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
  EXPECT_EQ(server.mismatch(), "");
}

// --- Failures --------------------------------------------------------------------------------------------

struct BreakRow {
  const char* name;
  /// What the server does in the place of each answer.
  Dialogue end;
  Timeout timeout;
  std::vector<Kind> kinds;
};

class Break : public testing::TestWithParam<BreakRow> {};

TEST_P(Break, atEveryAnswerIsReportedAndLeavesTheSessionSilently) {
  const BreakRow& row = GetParam();
  for (Dialogue broken : brokenAtEveryAnswer(wholeSearch(), row.end.front())) {
    SCOPED_TRACE("after " + std::to_string(broken.size() - 1) + " steps");
    broken.insert(broken.end(), row.end.begin() + 1, row.end.end());
    const BrokenSession outcome = playBroken(
        broken, row.timeout, [](const FakeIMAPServer& server, Timeout timeout) { search(server, timeout); });
    ASSERT_TRUE(outcome.error);
    EXPECT_THAT(row.kinds, Contains(outcome.error->kind())) << outcome.error->description();
    EXPECT_EQ(outcome.mismatch, "");
    EXPECT_THAT(outcome.received, Not(HasSubstr("LOGOUT")));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Table, Break,
    testing::Values(BreakRow{"close", {closeHere()}, 10s, {Kind::connectionClosed}},
                    BreakRow{"cut", {cutHere()}, 10s, {Kind::connectionClosed, Kind::connectionFailed}},
                    BreakRow{"reset", {resetHere()}, 600s, {Kind::connectionClosed, Kind::connectionFailed}},
                    BreakRow{"silence", {stallHere()}, 200ms, {Kind::timeout}},
                    BreakRow{
                        "bye", {answer("* BYE going down\r\n"), closeHere()}, 10s, {Kind::connectionClosed}},
                    BreakRow{"halfALiteral",
                             {answer("* 3 FETCH (UID 9 BODY[1] {100}\r\nhalf of it"), closeHere()},
                             10s,
                             // In the place of the greeting it is a line that may be one.
                             {Kind::connectionClosed}},
                    BreakRow{"halfALiteralAndSilence",
                             {answer("* 3 FETCH (UID 9 BODY[1] {100}\r\nhalf of it"), stallHere()},
                             200ms,
                             {Kind::timeout}}),
    rowName);

// --- Deadlines -------------------------------------------------------------------------------------------

struct DripRow {
  const char* name;
  Dialogue end;
};

class Drip : public testing::TestWithParam<DripRow> {};

/// Every byte comes in time, and the session still ends.
TEST_P(Drip, atEveryAnswerEndsWithTheSession) {
  for (Dialogue broken : brokenAtEveryAnswer(wholeSearch(), GetParam().end.front())) {
    SCOPED_TRACE("after " + std::to_string(broken.size() - 1) + " steps");
    broken.insert(broken.end(), GetParam().end.begin() + 1, GetParam().end.end());
    const auto start = std::chrono::steady_clock::now();
    const BrokenSession outcome =
        playBroken(broken, 300ms, [](const FakeIMAPServer& server, Timeout timeout) {
          search(server, 600s, {.whole = timeout, .logout = 600s});
        });
    ASSERT_TRUE(outcome.error);
    EXPECT_EQ(*outcome.error, IMAPError::timeout());
    EXPECT_EQ(outcome.mismatch, "");
    EXPECT_LT(std::chrono::steady_clock::now() - start, 60s);
  }
}

INSTANTIATE_TEST_SUITE_P(Table, Drip,
                         testing::Values(DripRow{"lines", {dripHere("* OK still here\r\n", 5ms)}},
                                         DripRow{"oneEndlessLine", {dripHere("* x", 5ms)}},
                                         DripRow{"literal",
                                                 {answer("* 3 FETCH (UID 9 BODY[1] {100000}\r\n"),
                                                  dripHere("x", 5ms)}}),
                         rowName);

TEST(BrokenPipeline, drippingFarewellHoldsTheResultOnlyForTheBoundOfLogout) {
  FakeIMAPServer server(wholeSearch() +
                        Dialogue{expect("A0009 LOGOUT\r\n"), dripHere("* OK still here\r\n", 5ms)});
  const auto start = std::chrono::steady_clock::now();
  EXPECT_THAT(search(server, 60s, {.whole = 60s, .logout = 200ms}), ElementsAre("nine", "seven", "five"));
  EXPECT_LT(std::chrono::steady_clock::now() - start, 30s);
  EXPECT_EQ(server.mismatch(), "");
}

TEST(BrokenPipeline, silenceBeforeTheHandshakeEndsWithTheSession) {
  FakeIMAPServer server({}, {.mute = true});
  try {
    search(server, 600s, {.whole = 200ms});
    ADD_FAILURE() << "no error";
  } catch (const IMAPError& error) {
    EXPECT_EQ(error, IMAPError::timeout());
  }
}

TEST(BrokenPipeline, limitsAreThoseThatClientsCanWaitFor) {
  EXPECT_EQ(SessionLimits().whole, 50s);
  EXPECT_EQ(SessionLimits().logout, 2s);
}

}  // namespace
}  // namespace tarnwell::test
