#include "MCP/RequestQueue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "MCP/CurrentRevisionMessages.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::string ping(int id) { return R"({"id":)" + std::to_string(id) + R"(,"method":"ping"})"; }

std::string callOf(std::string_view tool, std::string_view id) {
  return R"({"id":)" + std::string(id) + R"(,"method":"tools/call","params":{"name":")" + std::string(tool) +
         R"("}})";
}

std::string move(std::string_view id) { return callOf("move_message", id); }

std::string cancel(std::string_view id) {
  return R"({"method":"notifications/cancelled","params":{"requestId":)" + std::string(id) + "}}";
}

std::string current(std::string_view tool, std::string_view id) {
  return request("tools/call", R"("name":")" + std::string(tool) + R"(")", {.id = std::string(id)});
}

void push(RequestQueue& queue, std::string_view line) {
  queue.push(JSONRPCRequest::parse(line), line.size());
}

/// The id of a message, "none" without one, "unreadable" for a line that is no message.
std::string idOf(const RequestQueue::Message& message) {
  if (!message.request) {
    return "unreadable";
  }
  return message.request->id ? message.request->id->serialized() : "none";
}

/// What is still handled, after the end of the input.
std::vector<std::string> restOf(RequestQueue& queue) {
  queue.end();
  std::vector<std::string> ids;
  while (const std::optional<RequestQueue::Message> message = queue.next()) {
    ids.push_back(idOf(*message));
  }
  return ids;
}

TEST(RequestQueue, givesEveryMessageInOrder) {
  RequestQueue queue;
  for (const std::string& line :
       {ping(1), std::string("{nonsense"), std::string(R"({"method":"ping"})"), ping(2)}) {
    push(queue, line);
  }
  EXPECT_THAT(restOf(queue), ElementsAre("1", "unreadable", "none", "2"));
}

TEST(RequestQueue, endsAtOnceWithoutAMessage) {
  RequestQueue queue;
  EXPECT_THAT(restOf(queue), IsEmpty());
  EXPECT_FALSE(queue.next()) << "and stays at its end";
}

struct CancelRow {
  const char* name;
  std::vector<std::string> lines;
  std::vector<std::string> handled;
};

std::vector<CancelRow> cancelRows() {
  return {
      {"Number", {move("1"), cancel("1"), ping(2)}, {"2"}},
      {"Text", {move(R"("a")"), cancel(R"("a")"), ping(2)}, {"2"}},
      {"Zero", {move("0"), cancel("0")}, {}},
      {"EmptyText", {move(R"("")"), cancel(R"("")")}, {}},
      {"Double", {move("1.5"), cancel("1.5")}, {}},
      {"TextForANumber", {move("1"), cancel(R"("1")")}, {"1"}},
      {"NumberForAText", {move(R"("1")"), cancel("1")}, {R"("1")"}},
      {"DoubleForAnInteger", {move("1"), cancel("1.0")}, {"1"}},
      {"IntegerForADouble", {move("1.0"), cancel("1")}, {"1.0"}},
      {"NullIsNoId", {move("null"), cancel("null")}, {"null"}},
      {"TrueIsNoId", {move("true"), cancel("true")}, {"true"}},
      {"ListIsNoId", {move("[1]"), cancel("[1]")}, {"[1]"}},
      {"MarkAsRead", {callOf("mark_as_read", "1"), cancel("1")}, {}},
      {"TrashMessage", {callOf("trash_message", "1"), cancel("1")}, {}},
      {"GetStatus", {callOf("get_status", "1"), cancel("1")}, {"1"}},
      {"ListFolders", {callOf("list_folders", "1"), cancel("1")}, {"1"}},
      {"SearchInbox", {callOf("search_inbox", "1"), cancel("1")}, {"1"}},
      {"GetMessageSummary", {callOf("get_message_summary", "1"), cancel("1")}, {"1"}},
      {"GetMessageBody", {callOf("get_message_body", "1"), cancel("1")}, {"1"}},
      {"ProposeInboxCleanup", {callOf("propose_inbox_cleanup", "1"), cancel("1")}, {"1"}},
      {"UnknownTool", {callOf("Move_Message", "1"), cancel("1")}, {"1"}},
      {"OtherMethod", {ping(1), cancel("1")}, {"1"}},
      {"OtherMethodWithAToolsName",
       {R"({"id":1,"method":"tools/list","params":{"name":"move_message"}})", cancel("1")},
       {"1"}},
      {"CallWithoutParameters", {R"({"id":1,"method":"tools/call"})", cancel("1")}, {"1"}},
      {"CallWithoutAnId",
       {R"({"method":"tools/call","params":{"name":"move_message"}})", cancel("1")},
       {"none"}},
      {"ReadBeforeTheRequest", {cancel("1"), move("1")}, {"1"}},
      {"Twice", {move("1"), cancel("1"), cancel("1"), ping(2)}, {"2"}},
      {"SameIdLater", {move("1"), cancel("1"), move("1")}, {"1"}},
      {"SameIdTwiceBefore", {move("1"), move("1"), cancel("1")}, {}},
      {"UnknownId", {move("1"), cancel("2")}, {"1"}},
      {"OneOfThree", {move("1"), move("2"), move("3"), cancel("2")}, {"1", "3"}},
      {"WithAReason",
       {move("1"), R"({"method":"notifications/cancelled","params":{"reason":"no","requestId":1}})"},
       {}},
      {"WithAnId",
       {move("1"), R"({"id":9,"method":"notifications/cancelled","params":{"requestId":1}})"},
       {}},
      {"WithoutParameters", {move("1"), R"({"method":"notifications/cancelled"})"}, {"1"}},
      {"ParametersThatAreNoObject",
       {move("1"), R"({"method":"notifications/cancelled","params":[1]})"},
       {"1"}},
      {"WithoutARequestId", {move("1"), R"({"method":"notifications/cancelled","params":{"id":1}})"}, {"1"}},
      {"CurrentReading", {current("search_inbox", "1"), cancel("1"), ping(2)}, {"2"}},
      {"CurrentStatus", {current("get_status", R"("a")"), cancel(R"("a")")}, {}},
      {"CurrentWriting", {current("move_message", "1"), cancel("1")}, {}},
      {"CurrentUnknownTool", {current("x", "1"), cancel("1")}, {}},
      {"CurrentZero", {current("get_status", "0"), cancel("0")}, {}},
      {"CurrentTextForANumber", {current("get_status", "1"), cancel(R"("1")")}, {"1"}},
      {"CurrentNumberForAText", {current("get_status", R"("1")"), cancel("1")}, {R"("1")"}},
      {"CurrentAmongOlderOnesWithItsID",
       {callOf("search_inbox", "1"), current("search_inbox", "1"), move("1"), ping(1), cancel("1")},
       {"1", "1"}},
      {"CurrentCancelledBeforeItCame", {cancel("1"), current("get_status", "1")}, {"1"}},
      {"CancelledByAMessageOfTheCurrentRevision",
       {current("get_status", "1"), move("2"),
        request("notifications/cancelled", R"("requestId":1)", {.id = ""}),
        request("notifications/cancelled", R"("requestId":2)", {.id = ""})},
       {}},
      {"OtherNotification", {move("1"), R"({"method":"cancelled","params":{"requestId":1}})"}, {"1", "none"}},
  };
}

class Cancelling : public testing::TestWithParam<CancelRow> {};

TEST_P(Cancelling, takesOutOnlyWhatTheClientNoLongerWants) {
  RequestQueue queue;
  for (const std::string& line : GetParam().lines) {
    push(queue, line);
  }
  EXPECT_EQ(restOf(queue), GetParam().handled);
}

INSTANTIATE_TEST_SUITE_P(Table, Cancelling, testing::ValuesIn(cancelRows()), rowName);

TEST(RequestQueue, callThatHasBegunIsNotTakenOutAndNeitherIsAnotherInItsPlace) {
  RequestQueue queue;
  push(queue, move("1"));
  const std::optional<RequestQueue::Message> begun = queue.next();
  ASSERT_TRUE(begun);
  push(queue, cancel("1"));
  push(queue, move("1"));
  EXPECT_EQ(idOf(*begun), "1");
  EXPECT_THAT(restOf(queue), ElementsAre("1"));
}

struct BegunRow {
  const char* name;
  std::string begun;
  std::vector<std::string> then;
  bool isCancelled;
};

std::vector<BegunRow> begunRows() {
  return {
      {"Current", current("search_inbox", "1"), {cancel("1")}, true},
      {"CurrentWithAText", current("move_message", R"("1")"), {cancel(R"("1")")}, true},
      {"CurrentAfterOthers", current("search_inbox", "1"), {ping(1), cancel("2"), cancel("1")}, true},
      {"AnotherID", current("search_inbox", "1"), {cancel("2")}, false},
      {"AnotherType", current("search_inbox", "1"), {cancel(R"("1")"), cancel("1.0")}, false},
      {"Older", callOf("search_inbox", "1"), {cancel("1")}, false},
      {"OlderWriting", move("1"), {cancel("1")}, false},
      {"NotAMessage", "{nonsense", {cancel("null")}, false},
  };
}

class CancellingWhatHasBegun : public testing::TestWithParam<BegunRow> {};

TEST_P(CancellingWhatHasBegun, concernsTheCurrentRevisionAlone) {
  RequestQueue queue;
  push(queue, GetParam().begun);
  const std::optional<RequestQueue::Message> begun = queue.next();
  for (const std::string& line : GetParam().then) {
    push(queue, line);
  }
  EXPECT_EQ(begun->cancellation.isCancelled(), GetParam().isCancelled);
}

INSTANTIATE_TEST_SUITE_P(Table, CancellingWhatHasBegun, testing::ValuesIn(begunRows()), rowName);

TEST(RequestQueue, finishedCallIsNotCancelled) {
  RequestQueue queue;
  push(queue, current("search_inbox", "1"));
  push(queue, current("search_inbox", "2"));
  const std::optional<RequestQueue::Message> finished = queue.next();
  const std::optional<RequestQueue::Message> begun = queue.next();
  push(queue, cancel("1"));
  EXPECT_FALSE(finished->cancellation.isCancelled());
  EXPECT_FALSE(begun->cancellation.isCancelled());
}

TEST(RequestQueue, endOfTheInputCancelsTheCurrentRevisionAlone) {
  RequestQueue queue;
  push(queue, current("search_inbox", "1"));
  push(queue, current("get_status", "2"));
  push(queue, callOf("search_inbox", "3"));
  std::vector<RequestQueue::Message> messages{*queue.next()};
  queue.end();
  while (std::optional<RequestQueue::Message> message = queue.next()) {
    messages.push_back(*std::move(message));
  }
  ASSERT_EQ(messages.size(), 3u) << "all are handled";
  EXPECT_TRUE(messages[0].cancellation.isCancelled());
  EXPECT_TRUE(messages[1].cancellation.isCancelled());
  EXPECT_FALSE(messages[2].cancellation.isCancelled());
}

/// Asks for room in another thread.
class Reader {
 public:
  Reader(RequestQueue& queue, std::size_t bytes)
      : done_(std::async(std::launch::async, [&queue, bytes] { queue.awaitRoom(bytes); })) {}

  /// Waits a moment: a reader that goes on at once is seen.
  bool waits() { return done_.wait_for(std::chrono::milliseconds(50)) == std::future_status::timeout; }
  bool goesOn() { return done_.wait_for(std::chrono::seconds(20)) == std::future_status::ready; }

 private:
  std::future<void> done_;
};

TEST(RequestQueue, readerWaitsWhenSoManyMessagesWait) {
  RequestQueue queue({.count = 2, .bytes = 1000});
  push(queue, ping(1));
  queue.awaitRoom(1);
  push(queue, ping(2));
  Reader reader(queue, 1);
  EXPECT_TRUE(reader.waits());
  ASSERT_TRUE(queue.next());
  EXPECT_TRUE(reader.goesOn()) << "the one that has begun does not wait";
}

TEST(RequestQueue, readerWaitsWhenSoManyBytesAreUnfinished) {
  RequestQueue queue({.count = 100, .bytes = 100});
  queue.push(std::nullopt, 60);
  queue.awaitRoom(40);
  Reader reader(queue, 41);
  EXPECT_TRUE(reader.waits());
  ASSERT_TRUE(queue.next());
  EXPECT_TRUE(reader.waits()) << "it has begun, and its memory is in use";
  queue.end();
  EXPECT_FALSE(queue.next());
  EXPECT_TRUE(reader.goesOn());
}

TEST(RequestQueue, lineOfAnyLengthIsAdmittedAlone) {
  RequestQueue queue({.count = 100, .bytes = 100});
  queue.awaitRoom(5000);
  queue.push(std::nullopt, 5000);
  Reader reader(queue, 1);
  EXPECT_TRUE(reader.waits());
  ASSERT_TRUE(queue.next());
  EXPECT_TRUE(reader.waits());
  queue.end();
  EXPECT_FALSE(queue.next());
  EXPECT_TRUE(reader.goesOn());
}

TEST(RequestQueue, cancelledCallGivesItsRoomBack) {
  RequestQueue queue({.count = 1, .bytes = 200});
  push(queue, move("1"));
  push(queue, cancel("1"));
  EXPECT_TRUE(Reader(queue, 200).goesOn());
  push(queue, ping(2));
  EXPECT_TRUE(queue.next());
}

TEST(RequestQueue, handlerWaitsForTheReader) {
  RequestQueue queue;
  auto handled = std::async(std::launch::async, [&queue] {
    std::vector<std::string> ids;
    while (const std::optional<RequestQueue::Message> message = queue.next()) {
      ids.push_back(idOf(*message));
    }
    return ids;
  });
  EXPECT_EQ(handled.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
  push(queue, ping(1));
  push(queue, ping(2));
  queue.end();
  EXPECT_THAT(handled.get(), ElementsAre("1", "2"));
}

TEST(RequestQueue, manyMessagesPassAFullQueueInOrder) {
  RequestQueue queue({.count = 3, .bytes = 120});
  constexpr int messages = 20'000;
  std::thread reader([&queue] {
    for (int id = 0; id < messages; ++id) {
      const std::string line = ping(id);
      queue.awaitRoom(line.size());
      push(queue, line);
    }
    queue.end();
  });
  int expected = 0;
  while (const std::optional<RequestQueue::Message> message = queue.next()) {
    ASSERT_EQ(idOf(*message), std::to_string(expected++));
  }
  EXPECT_EQ(expected, messages);
  reader.join();
}

}  // namespace
}  // namespace tarnwell::test
