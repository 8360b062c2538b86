/// The current revision on standard input: what is given up, and what is answered meanwhile.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "MCP/CurrentRevisionMessages.h"
#include "MCP/SearchDialogue.h"
#include "MCP/StdioDuringACall.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

/// Far below the 10 seconds that a wait may take, and far above what a busy machine needs.
constexpr auto soon = 3s;

constexpr const char* moveArguments = R"({"uid":9,"targetFolder":"Archive"})";

/// `first` are steps before the answer to MOVE.
Dialogue moving(const Dialogue& first = {}) {
  return loginDialogue("SELECT INBOX") +
         Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"),
                  answer("* LIST () \"/\" INBOX\r\n* LIST () \"/\" Archive\r\nA0004 OK done\r\n"),
                  expect("A0005 UID MOVE 9 \"Archive\"\r\n")} +
         first +
         Dialogue{answer("A0005 OK moved\r\n"), expect("A0006 LOGOUT\r\n"), answer("A0006 OK bye\r\n")};
}

/// The place of the answer that has this text.
Dialogue::iterator answerWith(Dialogue& whole, std::string_view text) {
  return std::ranges::find_if(whole, [text](const Step& step) {
    return step.kind == Step::Kind::answer && step.bytes.find(text) != std::string::npos;
  });
}

/// The dialogue with a pause before the answer that has this text.
Dialogue pausingBefore(Dialogue whole, std::string_view text) {
  whole.insert(answerWith(whole, text), pauseHere());
  return whole;
}

/// The dialogue up to a step. There the server pauses, and says nothing more.
Dialogue silentBefore(const Dialogue& whole, std::size_t step) {
  Dialogue dialogue(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(step));
  dialogue.push_back(pauseHere());
  dialogue.push_back(stallHere());
  return dialogue;
}

/// The same before the answer that has this text.
Dialogue silentBefore(Dialogue whole, std::string_view text) {
  return silentBefore(whole, static_cast<std::size_t>(answerWith(whole, text) - whole.begin()));
}

class StdioCurrentRevision : public StdioDuringACall {
 protected:
  /// Cancels the call 1 while the server pauses, and lets the server go on. Returns when a later call has its
  /// answer: the cancelled one came to its end before the input did.
  void cancelAndAwaitALaterCall(FakeIMAPServer& server) {
    sendAndAwaitReading(lineOfCancel("1"));
    server.resume();
    in_.write(lineOfCall("get_status", "2"));
    EXPECT_TRUE(awaitOutput("\"id\":2,"));
  }
};

struct StepRow {
  std::string name;
  std::size_t step;
};

std::vector<StepRow> answersOf(const Dialogue& dialogue) {
  std::vector<StepRow> rows;
  for (std::size_t step = 0; step < dialogue.size(); ++step) {
    if (dialogue[step].kind == Step::Kind::answer) {
      rows.push_back({"BeforeStep" + std::to_string(step), step});
    }
  }
  return rows;
}

class CancelledSearch : public StdioDuringACall, public testing::WithParamInterface<StepRow> {};

/// The server falls silent before each of its answers in turn.
TEST_P(CancelledSearch, isGivenUpAtOnceAndNotAnswered) {
  begin(lineOfCall("search_inbox", "1", "{}", R"(,"progressToken":1)"),
        silentBefore(search(3), GetParam().step));
  in_.write(lineOfCall("get_status", "2"));
  const Clock::time_point begin = Clock::now();
  in_.write(lineOfCancel("1") + request("server/discover", "", {.id = "3"}) + "\n");
  EXPECT_TRUE(awaitOutput("\"id\":2,")) << "the next call has its turn";
  EXPECT_LT(Clock::now() - begin, soon);
  RecordProperty("milliseconds", std::to_string((Clock::now() - begin) / 1ms));
  // The answer 3 is written after the cancellation was read. On a slow machine progress may come before it.
  EXPECT_TRUE(awaitOutput("\"id\":3,"));
  const std::string answers = end();
  const std::size_t cancelled = answers.find("\"id\":3,");
  EXPECT_THAT(answers, Not(HasSubstr("\"id\":1,")));
  EXPECT_THAT(answers.substr(cancelled), Not(HasSubstr("\"method\"")));
  std::vector<std::string> lines = NDJSONFramer().push(answers);
  std::erase_if(lines, [](const std::string& line) { return line.find("\"method\"") != std::string::npos; });
  EXPECT_EQ(lines.size(), 2u) << answers;
}

INSTANTIATE_TEST_SUITE_P(AtEveryStep, CancelledSearch, testing::ValuesIn(answersOf(search(3))), rowName);

TEST_F(StdioCurrentRevision, cancelledCallIsToldInTheLog) {
  FakeIMAPServer& searched = begin(lineOfCall("search_inbox", "1"), pausingBefore(search(0), "* SEARCH"));
  cancelAndAwaitALaterCall(searched);
  end();
  std::vector<std::string> messages;
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    if (entry.category == "tool") {
      messages.push_back(entry.message);
    }
  }
  ASSERT_EQ(messages.size(), 4u) << "two of each call";
  EXPECT_THAT(messages[1], testing::MatchesRegex("tool search_inbox: cancelled \\([0-9]+ ms\\)"));
}

TEST_F(StdioCurrentRevision, cancelledCallThatWaitsIsNeitherRunNorAnswered) {
  FakeIMAPServer& searched = begin(lineOfCall("search_inbox", "1"), Dialogue{pauseHere()} + search(1));
  FakeIMAPServer& listed = thenServe(search(0));
  sendAndAwaitReading(lineOfCall("search_inbox", "\"a\"") + lineOfCancel("\"a\"") +
                      lineOfCall("get_status", "3"));
  searched.resume();
  EXPECT_TRUE(awaitOutput("\"id\":3,"));
  const std::string answers = end();
  EXPECT_EQ(searched.mismatch(), "");
  EXPECT_EQ(listed.acceptCount(), 0);
  EXPECT_THAT(answers, HasSubstr("\"id\":1,"));
  EXPECT_THAT(answers, Not(HasSubstr("\"id\":\"a\",")));
}

TEST_F(StdioCurrentRevision, moveOnTheWireIsFinishedAndAnswered) {
  FakeIMAPServer& moved = begin(lineOfCall("move_message", "1", moveArguments), moving({pauseHere()}));
  sendAndAwaitReading(lineOfCancel("1"));
  moved.resume();
  EXPECT_TRUE(awaitOutput("\"id\":1,"));
  EXPECT_THAT(end(), HasSubstr("Executed."));
  EXPECT_EQ(moved.mismatch(), "");
}

TEST_F(StdioCurrentRevision, moveIsNotSentAfterTheCancellation) {
  FakeIMAPServer& moved =
      begin(lineOfCall("move_message", "1", moveArguments), pausingBefore(moving(), "* LIST"));
  cancelAndAwaitALaterCall(moved);
  EXPECT_THAT(end(), Not(HasSubstr("\"id\":1,")));
  EXPECT_THAT(moved.received(), HasSubstr("LIST"));
  EXPECT_THAT(moved.received(), Not(HasSubstr("MOVE")));
}

/// Both calls fail, and are cancelled while the session with the mail server ends.
TEST_F(StdioCurrentRevision, failureBeforeTheCancellationIsNotAnswered) {
  const auto failing = [](const std::string& selection, const std::string& command) {
    return loginDialogue(selection) + Dialogue{expect("A0004 " + command + "\r\n"), answer("A0004 NO no\r\n"),
                                               expect("A0005 LOGOUT\r\n"), pauseHere(),
                                               answer("A0005 OK bye\r\n")};
  };
  FakeIMAPServer& searched =
      begin(lineOfCall("search_inbox", "1"), failing("EXAMINE INBOX", "UID SEARCH ALL"));
  FakeIMAPServer& moved = thenServe(failing("SELECT INBOX", "LIST \"\" \"*\""));
  cancelAndAwaitALaterCall(searched);
  in_.write(lineOfCall("move_message", "3", moveArguments));
  EXPECT_TRUE(moved.awaitPause());
  sendAndAwaitReading(lineOfCancel("3"));
  moved.resume();
  in_.write(lineOfCall("get_status", "4"));
  EXPECT_TRUE(awaitOutput("\"id\":4,"));
  const std::string answers = end();
  EXPECT_THAT(answers, Not(HasSubstr("\"id\":1,")));
  EXPECT_THAT(answers, Not(HasSubstr("\"id\":3,")));
}

/// The server refuses the change, which the cancellation came too late to prevent.
TEST_F(StdioCurrentRevision, refusedChangeIsAnswered) {
  Dialogue dialogue = moving();
  *answerWith(dialogue, "moved") = answer("A0005 NO no\r\n");
  FakeIMAPServer& moved =
      begin(lineOfCall("move_message", "1", moveArguments), pausingBefore(dialogue, "bye"));
  cancelAndAwaitALaterCall(moved);
  EXPECT_THAT(end(), HasSubstr("\"id\":1,"));
}

TEST_F(StdioCurrentRevision, endOfTheInputGivesUpWhatNeedsTheServer) {
  begin(lineOfCall("search_inbox", "1"), silentBefore(search(1), "BODY["));
  FakeIMAPServer& moved = thenServe(moving());
  in_.write(lineOfCall("move_message", "2", moveArguments) + lineOfCall("get_status", "3") +
            lineOfCall("search_inbox", "4"));
  const Clock::time_point begin = Clock::now();
  in_.closeWriter();
  EXPECT_TRUE(awaitOutput("\"id\":3,"));
  const std::string answers = end();
  EXPECT_LT(Clock::now() - begin, soon);
  EXPECT_EQ(std::count(answers.begin(), answers.end(), '\n'), 1) << answers;
  EXPECT_EQ(moved.acceptCount(), 0);
}

TEST_F(StdioCurrentRevision, lastLineWithoutALineFeedIsAnsweredUnlessItNeedsTheServer) {
  for (const char* tool : {"get_status", "list_folders"}) {
    Pipe in;
    Pipe out;
    FakeIMAPServer server(search(0));
    config.imapPort = server.port();
    save();
    std::string line = lineOfCall(tool, "1");
    line.pop_back();
    in.write(line);
    in.closeWriter();
    MCPTransportStdio(server_, in.reader(), out.writer()).run();
    out.closeWriter();
    EXPECT_EQ(out.readAll().empty(), std::string(tool) == "list_folders");
    EXPECT_EQ(server.acceptCount(), 0);
  }
}

TEST_F(StdioCurrentRevision, whatNeedsNoToolIsAnsweredDuringACall) {
  FakeIMAPServer& searched = begin(lineOfCall("search_inbox", "1"), Dialogue{pauseHere()} + search(1));
  in_.write(request("server/discover", "", {.id = "2"}) + "\n" + request("tools/list", "", {.id = "3"}) +
            "\n" + request("ping", "", {.id = "4"}) + "\n" + request("server/discover", "", {.id = "null"}) +
            "\n");
  EXPECT_TRUE(awaitOutput("-32600"));
  const std::string meanwhile = output();
  EXPECT_EQ(std::count(meanwhile.begin(), meanwhile.end(), '\n'), 4);
  EXPECT_LT(meanwhile.find("\"id\":2,"), meanwhile.find("\"id\":3,"));
  EXPECT_LT(meanwhile.find("\"id\":3,"), meanwhile.find("\"id\":4,"));
  searched.resume();
  EXPECT_TRUE(awaitOutput("\"id\":1,"));
  end();
  EXPECT_EQ(searched.mismatch(), "");
}

/// The reader and the handler write at the same time.
TEST_F(StdioCurrentRevision, linesOfTwoThreadsAreNeverMixed) {
  constexpr std::size_t rounds = 300;
  FakeIMAPServer& searched =
      begin(lineOfCall("search_inbox", "\"first\""), Dialogue{pauseHere()} + search(1));
  searched.resume();
  for (std::size_t round = 0; round < rounds; ++round) {
    in_.write(lineOfCall("get_status", std::to_string(2 * round)) +
              request("tools/list", "", {.id = std::to_string(2 * round + 1)}) + "\n");
  }
  EXPECT_TRUE(awaitOutput("\"id\":" + std::to_string(2 * (rounds - 1)) + ","));
  const std::string answers = end();
  std::vector<bool> isAnswered(2 * rounds);
  NDJSONFramer().push(answers, [&](std::string_view line) {
    const std::optional<JSONValue> answer = JSONValue::decode(line);
    ASSERT_TRUE(answer) << line;
    if (const std::optional<std::int64_t> id = (*answer)["id"].intValue()) {
      isAnswered.at(static_cast<std::size_t>(*id)) = true;
    }
  });
  EXPECT_EQ(std::ranges::count(isAnswered, false), 0);
  EXPECT_EQ(std::ranges::count(answers, '\n'), 2 * static_cast<std::ptrdiff_t>(rounds) + 1);
}

/// Requests of an older revision wait for the call, and keep their order.
TEST_F(StdioCurrentRevision, olderRequestsStayInOrderBetweenThem) {
  FakeIMAPServer& searched = begin(lineOfCall("search_inbox", "1"), Dialogue{pauseHere()} + search(1));
  in_.write("{\"id\":5,\"method\":\"ping\"}\n" + request("server/discover", "", {.id = "2"}) +
            "\n{\"id\":6,\"method\":\"ping\"}\n{nonsense\n" + lineOfCall("get_status", "7"));
  EXPECT_TRUE(awaitOutput("\"id\":2,"));
  EXPECT_THAT(output(), Not(HasSubstr(pong(5))));
  searched.resume();
  EXPECT_TRUE(awaitOutput("\"id\":7,"));
  const std::string answers = end();
  EXPECT_LT(answers.find("\"id\":1,"), answers.find(pong(5)));
  EXPECT_LT(answers.find(pong(5)), answers.find(pong(6)));
  EXPECT_LT(answers.find(pong(6)), answers.find("-32700"));
  EXPECT_LT(answers.find("-32700"), answers.find("\"id\":7,"));
}

}  // namespace
}  // namespace tarnwell::test
