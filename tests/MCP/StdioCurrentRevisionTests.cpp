/// The current revision on standard input: what is given up, what is answered meanwhile, what is told of
/// progress.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "MCP/CurrentRevisionMessages.h"
#include "MCP/StdioDuringACall.h"
#include "MCP/Tools/FakeMail.h"
#include "support/RowName.h"
#include "support/SessionScript.h"

namespace tarnwell::test {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::Not;

/// Far below the 10 seconds that a wait may take, and far above what a busy machine needs.
constexpr auto soon = 3s;

std::string callOf(std::string_view tool, std::string_view id, std::string_view arguments = "{}",
                   std::string_view moreMeta = "") {
  return request("tools/call",
                 R"("name":")" + std::string(tool) + R"(","arguments":)" + std::string(arguments),
                 {.id = std::string(id), .moreMeta = std::string(moreMeta)}) +
         "\n";
}

std::string cancel(std::string_view id) {
  return R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":)" + std::string(id) +
         "}}\n";
}

constexpr const char* moveArguments = R"({"uid":9,"targetFolder":"Archive"})";

/// A search that finds the messages 1 to `count`.
Dialogue search(std::uint32_t count) {
  SessionScript script;
  std::string uids;
  std::string set;
  std::string summaries;
  for (std::uint32_t uid = 1; uid <= count; ++uid) {
    uids += " " + std::to_string(uid);
    set = std::to_string(uid) + (set.empty() ? "" : ",") + set;
    summaries += FakeMail{.uid = uid}.summary();
  }
  script.command("UID SEARCH ALL", "* SEARCH" + uids + "\r\n");
  script.command("UID FETCH " + set + " (UID FLAGS INTERNALDATE ENVELOPE BODYSTRUCTURE)", summaries);
  std::string commands;
  Dialogue answers;
  for (std::uint32_t uid = count; uid > 0; --uid) {
    const FakeMail mail{.uid = uid};
    const std::string number = std::to_string(6 + count - uid);
    const std::string tag = "A" + std::string(4 - number.size(), '0') + number;
    commands += tag + " " + mail.fetchBody() + "\r\n";
    answers.push_back(answer(mail.bodyPart() + tag + " OK done\r\n"));
  }
  const std::string number = std::to_string(6 + count);
  const std::string tag = "A" + std::string(4 - number.size(), '0') + number;
  return script.dialogue() + Dialogue{expect(commands)} + answers +
         Dialogue{expect(tag + " LOGOUT\r\n"), answer("* BYE\r\n" + tag + " OK done\r\n")};
}

/// `first` are steps before the answer to MOVE.
Dialogue moving(const Dialogue& first = {}) {
  return loginDialogue("SELECT INBOX") +
         Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"),
                  answer("* LIST () \"/\" INBOX\r\n* LIST () \"/\" Archive\r\nA0004 OK done\r\n"),
                  expect("A0005 UID MOVE 9 \"Archive\"\r\n")} +
         first +
         Dialogue{answer("A0005 OK moved\r\n"), expect("A0006 LOGOUT\r\n"), answer("A0006 OK bye\r\n")};
}

/// The dialogue up to a step. There the server pauses, and says nothing more.
Dialogue silentBefore(const Dialogue& whole, std::size_t step) {
  Dialogue dialogue(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(step));
  dialogue.push_back(pauseHere());
  dialogue.push_back(stallHere());
  return dialogue;
}

/// The same before the answer that has this text.
Dialogue silentBefore(const Dialogue& whole, std::string_view text) {
  const auto answer = std::ranges::find_if(whole, [text](const Step& step) {
    return step.kind == Step::Kind::answer && step.bytes.find(text) != std::string::npos;
  });
  return silentBefore(whole, static_cast<std::size_t>(answer - whole.begin()));
}

using StdioCurrentRevision = StdioDuringACall;

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
  begin(callOf("search_inbox", "1", "{}", R"(,"progressToken":1)"), silentBefore(search(3), GetParam().step));
  in_.write(callOf("get_status", "2"));
  const Clock::time_point begin = Clock::now();
  in_.write(cancel("1"));
  EXPECT_TRUE(awaitOutput("\"id\":2,")) << "the next call has its turn";
  EXPECT_LT(Clock::now() - begin, soon);
  RecordProperty("milliseconds", std::to_string((Clock::now() - begin) / 1ms));
  const std::string answers = end();
  EXPECT_THAT(answers, Not(HasSubstr("\"id\":1,")));
  EXPECT_EQ(std::count(answers.begin(), answers.end(), '\n'), 1);
}

INSTANTIATE_TEST_SUITE_P(AtEveryStep, CancelledSearch, testing::ValuesIn(answersOf(search(3))), rowName);

TEST_F(StdioCurrentRevision, cancelledCallIsToldInTheLog) {
  begin(callOf("search_inbox", "1"), silentBefore(search(0), "* SEARCH"));
  sendAndAwaitReading(cancel("1"));
  end();
  std::vector<std::string> messages;
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    if (entry.category == "tool") {
      messages.push_back(entry.message);
    }
  }
  ASSERT_EQ(messages.size(), 2u);
  EXPECT_THAT(messages[1], testing::MatchesRegex("tool search_inbox: cancelled \\([0-9]+ ms\\)"));
}

TEST_F(StdioCurrentRevision, cancelledCallThatWaitsIsNeitherRunNorAnswered) {
  FakeIMAPServer& searched = begin(callOf("search_inbox", "1"), Dialogue{pauseHere()} + search(1));
  FakeIMAPServer& listed = thenServe(search(0));
  sendAndAwaitReading(callOf("search_inbox", "\"a\"") + cancel("\"a\"") + callOf("get_status", "3"));
  searched.resume();
  EXPECT_TRUE(awaitOutput("\"id\":3,"));
  const std::string answers = end();
  EXPECT_EQ(searched.mismatch(), "");
  EXPECT_EQ(listed.acceptCount(), 0);
  EXPECT_THAT(answers, HasSubstr("\"id\":1,"));
  EXPECT_THAT(answers, Not(HasSubstr("\"id\":\"a\",")));
}

TEST_F(StdioCurrentRevision, moveOnTheWireIsFinishedAndAnswered) {
  FakeIMAPServer& moved = begin(callOf("move_message", "1", moveArguments), moving({pauseHere()}));
  sendAndAwaitReading(cancel("1"));
  moved.resume();
  EXPECT_TRUE(awaitOutput("\"id\":1,"));
  EXPECT_THAT(end(), HasSubstr("Executed."));
  EXPECT_EQ(moved.mismatch(), "");
}

TEST_F(StdioCurrentRevision, moveIsNotSentAfterTheCancellation) {
  FakeIMAPServer& moved = begin(callOf("move_message", "1", moveArguments), silentBefore(moving(), "* LIST"));
  sendAndAwaitReading(cancel("1"));
  EXPECT_EQ(end(), "");
  EXPECT_THAT(moved.received(), HasSubstr("LIST"));
  EXPECT_THAT(moved.received(), Not(HasSubstr("MOVE")));
}

TEST_F(StdioCurrentRevision, endOfTheInputGivesUpWhatNeedsTheServer) {
  begin(callOf("search_inbox", "1"), silentBefore(search(1), "BODY["));
  FakeIMAPServer& moved = thenServe(moving());
  in_.write(callOf("move_message", "2", moveArguments) + callOf("get_status", "3") +
            callOf("search_inbox", "4"));
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
    std::string line = callOf(tool, "1");
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
  FakeIMAPServer& searched = begin(callOf("search_inbox", "1"), Dialogue{pauseHere()} + search(1));
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

/// Requests of an older revision wait for the call, and keep their order.
TEST_F(StdioCurrentRevision, olderRequestsStayInOrderBetweenThem) {
  FakeIMAPServer& searched = begin(callOf("search_inbox", "1"), Dialogue{pauseHere()} + search(1));
  in_.write("{\"id\":5,\"method\":\"ping\"}\n" + request("server/discover", "", {.id = "2"}) +
            "\n{\"id\":6,\"method\":\"ping\"}\n{nonsense\n" + callOf("get_status", "7"));
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

/// A search of `count` messages whose bodies arrive `pause` apart.
Dialogue slowSearch(std::uint32_t count, std::chrono::milliseconds pause) {
  Dialogue dialogue;
  for (const Step& step : search(count)) {
    if (step.kind == Step::Kind::answer && step.bytes.find("BODY[") != std::string::npos) {
      dialogue.push_back(waitHere(pause));
    }
    dialogue.push_back(step);
  }
  return dialogue;
}

std::vector<JSONValue> linesOf(const std::string& output) {
  NDJSONFramer framer;
  std::vector<JSONValue> lines;
  framer.push(output, [&lines](std::string_view line) { lines.push_back(*JSONValue::decode(line)); });
  return lines;
}

/// The lines after a search of `count` messages, whose bodies arrive `pause` apart.
class Progress : public StdioDuringACall {
 protected:
  std::vector<JSONValue> linesOfSearch(std::string_view line, std::uint32_t count,
                                       std::chrono::milliseconds pause) {
    FakeIMAPServer& searched = begin(line, Dialogue{pauseHere()} + slowSearch(count, pause));
    searched.resume();
    EXPECT_TRUE(awaitOutput("structuredContent"));
    return linesOf(end());
  }

  static std::string searchWithToken(std::string_view token) {
    return callOf("search_inbox", "1", "{}", R"(,"progressToken":)" + std::string(token));
  }
};

struct TokenRow {
  const char* name;
  const char* token;
};

class ProgressToken : public Progress, public testing::WithParamInterface<TokenRow> {};

TEST_P(ProgressToken, isSentBackWithEachStepButTheLast) {
  const std::vector<JSONValue> lines = linesOfSearch(searchWithToken(GetParam().token), 4, 250ms);
  ASSERT_EQ(lines.size(), 4u);
  for (std::size_t step = 1; step <= 3; ++step) {
    EXPECT_EQ(
        lines[step - 1],
        JSONValue(JSONObject{{"jsonrpc", "2.0"},
                             {"method", "notifications/progress"},
                             {"params", JSONObject{{"progressToken", *JSONValue::decode(GetParam().token)},
                                                   {"progress", std::int64_t(step)},
                                                   {"total", 4}}}}));
  }
  EXPECT_EQ(lines[3]["id"], JSONValue(1));
}

INSTANTIATE_TEST_SUITE_P(Table, ProgressToken,
                         testing::Values(TokenRow{"Zero", "0"}, TokenRow{"Negative", "-7"},
                                         TokenRow{"Empty", R"("")"}, TokenRow{"Text", R"("p")"}),
                         rowName);

TEST_F(Progress, isToldFiveTimesASecondAtMost) {
  const Clock::time_point begin = Clock::now();
  const std::vector<JSONValue> lines = linesOfSearch(searchWithToken("1"), 20, 40ms);
  const auto fifthsOfASecond = (Clock::now() - begin) / 200ms;
  EXPECT_GT(lines.size(), 2u);
  EXPECT_LE(static_cast<long>(lines.size()) - 1, fifthsOfASecond);
  std::int64_t last = 0;
  for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
    const std::int64_t step = lines[i]["params"]["progress"].intValue().value_or(0);
    EXPECT_GT(step, last);
    EXPECT_LT(step, 20);
    last = step;
  }
}

TEST_F(Progress, isNotToldOfAShortCall) { EXPECT_EQ(linesOfSearch(searchWithToken("1"), 5, 1ms).size(), 1u); }

TEST_F(Progress, isNotToldUnasked) {
  EXPECT_EQ(linesOfSearch(callOf("search_inbox", "1"), 2, 300ms).size(), 1u);
}

TEST_F(Progress, isNotToldInAnOlderRevision) {
  EXPECT_EQ(linesOfSearch(R"({"jsonrpc":"2.0","id":1,"method":"tools/call","params":)"
                          R"({"name":"search_inbox","_meta":{"progressToken":1}}})"
                          "\n",
                          2, 300ms)
                .size(),
            1u);
}

}  // namespace
}  // namespace tarnwell::test
