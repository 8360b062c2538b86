/// What the client sends while a call runs.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "MCP/StdioDuringACall.h"

namespace tarnwell::test {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr const char* search =
    R"({"id":1,"method":"tools/call","params":{"name":"search_inbox","arguments":{}}})"
    "\n";
constexpr const char* move = R"({"id":2,"method":"tools/call","params":{"name":"move_message",)"
                             R"("arguments":{"uid":9,"targetFolder":"Archive"}}})"
                             "\n";
constexpr const char* list = R"({"id":2,"method":"tools/call","params":{"name":"list_folders"}})"
                             "\n";
constexpr const char* cancelTwo = R"({"method":"notifications/cancelled","params":{"requestId":2}})"
                                  "\n";
constexpr const char* folders = "* LIST () \"/\" INBOX\r\n* LIST () \"/\" Archive\r\n";

Dialogue searchThatPauses() {
  return loginDialogue() + Dialogue{expect("A0004 UID SEARCH ALL\r\n"), pauseHere(),
                                    answer("* SEARCH\r\nA0004 OK done\r\n"), expect("A0005 LOGOUT\r\n"),
                                    answer("A0005 OK bye\r\n")};
}

Dialogue listing() {
  return loginDialogue() + Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"),
                                    answer(std::string(folders) + "A0004 OK done\r\n"),
                                    expect("A0005 LOGOUT\r\n"), answer("A0005 OK bye\r\n")};
}

/// `first` are steps before the answer to MOVE.
Dialogue moving(const Dialogue& first = {}) {
  return loginDialogue("SELECT INBOX") +
         Dialogue{expect("A0004 LIST \"\" \"*\"\r\n"), answer(std::string(folders) + "A0004 OK done\r\n"),
                  expect("A0005 UID MOVE 9 \"Archive\"\r\n")} +
         first +
         Dialogue{answer("A0005 OK moved\r\n"), expect("A0006 LOGOUT\r\n"), answer("A0006 OK bye\r\n")};
}

/// Waits until the client can write no more.
void awaitStandstill(const std::atomic<int>& written) {
  for (int before = -1; before != written || before == 0;) {
    before = written;
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
  }
}

TEST_F(StdioDuringACall, cancelledMoveThatWaitsIsNeitherRunNorAnswered) {
  FakeIMAPServer& searched = begin(search, searchThatPauses());
  FakeIMAPServer& moved = thenServe(moving());
  sendAndAwaitReading(move + std::string(cancelTwo) + R"({"id":3,"method":"ping"})" + "\n");
  const std::string answers = end();
  EXPECT_EQ(searched.mismatch(), "");
  EXPECT_EQ(moved.acceptCount(), 0);
  EXPECT_THAT(answers, HasSubstr("\"id\":1,"));
  EXPECT_THAT(answers, Not(HasSubstr("\"id\":2,")));
  EXPECT_TRUE(answers.ends_with(pong(3))) << answers;
}

TEST_F(StdioDuringACall, moveThatWaitsIsRunInItsTurn) {
  FakeIMAPServer& searched = begin(search, searchThatPauses());
  FakeIMAPServer& moved = thenServe(moving());
  sendAndAwaitReading(move);
  EXPECT_EQ(moved.acceptCount(), 0) << "not before the call before it has ended";
  const std::string answers = end();
  EXPECT_EQ(searched.mismatch(), "");
  EXPECT_EQ(moved.mismatch(), "");
  EXPECT_EQ(moved.acceptCount(), 1);
  EXPECT_LT(answers.find("\"id\":1,"), answers.find("\"id\":2,"));
  EXPECT_THAT(answers, HasSubstr("Executed."));
}

TEST_F(StdioDuringACall, cancelledReadingCallIsRunAndAnswered) {
  begin(search, searchThatPauses());
  FakeIMAPServer& listed = thenServe(listing());
  sendAndAwaitReading(list + std::string(cancelTwo));
  EXPECT_THAT(end(), HasSubstr("\"id\":2,"));
  EXPECT_EQ(listed.mismatch(), "");
  EXPECT_EQ(listed.acceptCount(), 1);
}

TEST_F(StdioDuringACall, moveThatHasBegunIsFinishedAndAnswered) {
  FakeIMAPServer& moved = begin(move, moving({pauseHere()}));
  sendAndAwaitReading(cancelTwo);
  const std::string answers = end();
  EXPECT_EQ(moved.mismatch(), "");
  EXPECT_THAT(answers, HasSubstr("\"id\":2,"));
  EXPECT_THAT(answers, HasSubstr("Executed."));
}

TEST_F(StdioDuringACall, endOfTheInputAnswersAllThatWasReadBeforeItIsLogged) {
  begin(search, searchThatPauses());
  in_.write(
      "{nonsense\n"
      R"({"id":2,"method":"initialize"})"
      "\n"
      R"({"id":3,"method":"ping"})");
  const std::string answers = end();
  EXPECT_TRUE(answers.ends_with(pong(3))) << answers;
  EXPECT_EQ(std::count(answers.begin(), answers.end(), '\n'), 4);
  std::vector<std::string> messages;
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    if (entry.category == "mcp") {
      messages.push_back(entry.message);
    }
  }
  EXPECT_THAT(messages, testing::ElementsAre("stdio MCP server started", "initialize (protocol 2024-11-05)",
                                             "stdio input stream ended", "stdio MCP server stopped"));
}

/// The reader stops at its bounds, and the client then waits at its pipe. All is answered in order.
TEST_F(StdioDuringACall, floodWaitsAtThePipeAndIsAnsweredInOrder) {
  FakeIMAPServer& searched = begin(search, searchThatPauses());
  constexpr int requests = 20'000;
  std::atomic<int> written = 0;
  std::thread client([&] {
    for (int id = 2; id < requests + 2; ++id) {
      in_.write("{\"id\":" + std::to_string(id) + ",\"method\":\"ping\"}\n");
      ++written;
    }
    in_.closeWriter();
  });
  awaitStandstill(written);
  EXPECT_LT(written, requests / 2) << "the pipe and one piece of the reader hold 128 KiB";
  searched.resume();
  client.join();
  const std::string answers = end();
  std::string expected;
  for (int id = 2; id < requests + 2; ++id) {
    expected += pong(id);
  }
  EXPECT_TRUE(answers.ends_with(expected)) << answers.substr(0, 1000);
}

TEST_F(StdioDuringACall, longLineWaitsAtThePipeAndIsAnswered) {
  FakeIMAPServer& searched = begin(search, searchThatPauses());
  constexpr int pieces = 200;
  const std::string piece(std::size_t{64} * 1024, 'x');
  std::atomic<int> written = 0;
  std::thread client([&] {
    in_.write(R"({"id":2,"method":"ping","params":")");
    for (; written < pieces; ++written) {
      in_.write(piece);
    }
    in_.write("\"}\n");
    in_.closeWriter();
  });
  awaitStandstill(written);
  EXPECT_LT(written, 24) << "a mebibyte is read ahead, and the pipe holds a piece";
  searched.resume();
  client.join();
  EXPECT_TRUE(end().ends_with(pong(2)));
}

}  // namespace
}  // namespace tarnwell::test
