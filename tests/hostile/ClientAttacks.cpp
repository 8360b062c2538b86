/// Attacks by the MCP client: lines of any size and content, and a client that goes away.

#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <iostream>
#include <thread>

#include "hostile/ProcessFacts.h"
#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

/// One line of input: `head`, `filling` repeated `times` times, `tail` and a line feed. Made while it is
/// sent.
struct StrangeLine {
  std::string name;
  std::string attack;
  std::string outcome;
  std::string head;
  std::string filling{};
  std::size_t times = 0;
  std::string tail{};
  std::string answer;
};

constexpr const char* parseError =
    R"({"error":{"code":-32700,"message":"Parse error"},"id":null,"jsonrpc":"2.0"})";
constexpr const char* pong = R"({"id":7,"jsonrpc":"2.0","result":{}})";
constexpr const char* pingWithParameters = R"({"jsonrpc":"2.0","id":7,"method":"ping","params":)";

void play(const StrangeLine& row) {
  Home home;
  ServeProgram program(home);
  program.send(row.head);
  for (std::size_t number = 0; number < row.times; ++number) {
    program.send(row.filling);
  }
  program.send(row.tail + "\n");
  EXPECT_EQ(program.readLine().substr(0, 1000), row.answer);
  expectSound(home, program);
  expectQuietEnd(program);
}

Attack byLine(StrangeLine row) {
  Attack attack{row.name, row.attack, row.outcome, {}};
  attack.play = [row = std::move(row)] { play(row); };
  return attack;
}

const std::string megabyte(1000 * 1000, 'x');

std::vector<Attack> strangeLines() {
  return {
      byLine({.name = "requestOfAHundredMegabytes",
              .attack = "a request line of 100 MB",
              .outcome = "answers it",
              .head = std::string(pingWithParameters) + R"({"text":")",
              .filling = megabyte,
              .times = 100,
              .tail = "\"}}",
              .answer = pong}),
      byLine({.name = "hundredMegabytesWithoutSense",
              .attack = "a line of 100 MB that is no JSON",
              .outcome = "answers with a parse error",
              .head = {},
              .filling = megabyte,
              .times = 100,
              .answer = parseError}),
      byLine({.name = "tenThousandListsDeep",
              .attack = "lists 10,000 deep",
              .outcome = "answers with a parse error",
              .head = pingWithParameters + std::string(10000, '[') + std::string(10000, ']') + "}",
              .answer = parseError}),
      byLine({.name = "tenMillionOpenBrackets",
              .attack = "ten million opening brackets",
              .outcome = "answers with a parse error",
              .head = pingWithParameters,
              .filling = std::string(1000 * 1000, '['),
              .times = 10,
              .answer = parseError}),
      byLine({.name = "invalidUTF8",
              .attack = "bytes that are no UTF-8",
              .outcome = "answers with a parse error",
              .head = "{\"jsonrpc\":\"2.0\",\"id\":\"\xFF\xFE\",\"method\":\"ping\"}",
              .answer = parseError}),
      byLine({.name = "zeroByte",
              .attack = "a zero byte within a request",
              .outcome = "answers with a parse error",
              .head = std::string("{\"jsonrpc\":\"2.0\",\0\"id\":7,\"method\":\"ping\"}", 41),
              .answer = parseError}),
      byLine({.name = "duplicateKeys",
              .attack = "an object that names a key twice",
              .outcome = "takes the last one",
              .head = R"({"jsonrpc":"2.0","id":1,"id":7,"method":"nothing","method":"ping"})",
              .answer = pong}),
      byLine({.name = "numberBeyondAll",
              .attack = "the number 1e400",
              .outcome = "answers with a parse error",
              .head = pingWithParameters + std::string("1e400}"),
              .answer = parseError}),
      byLine({.name = "numberOfAMillionDigits",
              .attack = "a number of a million digits",
              .outcome = "answers with a parse error",
              .head = pingWithParameters + std::string(1000 * 1000, '9') + "}",
              .answer = parseError}),
  };
}

/// A session that lists no folder. The server waits before its last answer but one.
Dialogue slowListing() {
  return loginDialogue() + Dialogue{
                               expect("A0004 LIST \"\" \"*\"\r\n"), pauseHere(),
                               answer("A0004 OK done\r\n"),         expect("A0005 LOGOUT\r\n"),
                               answer("A0005 OK bye\r\n"),
                           };
}

constexpr const char* noFolders =
    R"({"id":1,"jsonrpc":"2.0","result":{"content":[{"text":"{\n  \"count\": 0,\n  \"folders\": []\n}",)"
    R"("type":"text"}],"isError":false,"structuredContent":{"count":0,"folders":[]}}})";

/// The input ends during the call. The server answers only afterwards.
void endInputDuringACall() {
  FakeIMAPServer server(slowListing());
  Home home;
  home.useServer(server.port());
  ServeProgram program(home);
  program.sendCall("list_folders");
  ASSERT_TRUE(server.awaitPause());
  program.endInput();
  server.resume();
  EXPECT_EQ(program.readLine(), noFolders);
  EXPECT_EQ(server.mismatch(), "");
  expectQuietEnd(program);
}

void endInputWithinALine() {
  Home home;
  ServeProgram program(home);
  program.send(R"({"jsonrpc":"2.0","id":7,"method":"ping"})");
  program.endInput();
  EXPECT_EQ(program.readLine(), pong);
  expectQuietEnd(program);
}

/// The client sends a hundred thousand requests during a call, and reads no answer before it has ended.
void floodDuringACall() {
  FakeIMAPServer server(slowListing());
  Home home;
  ServeProgram program(home);
  expectSound(home, program);
  home.useServer(server.port());
  const long ordinary = processFigure(program.processID(), "VmHWM");
  program.send(R"({"id":1,"method":"tools/call","params":{"name":"list_folders"}})"
               "\n");
  ASSERT_TRUE(server.awaitPause());
  constexpr int requests = 100'000;
  std::future<void> sender = std::async(std::launch::async, [&program] {
    for (int id = 2; id < requests + 2; ++id) {
      program.send("{\"id\":" + std::to_string(id) + ",\"method\":\"ping\"}\n");
    }
  });
  std::this_thread::sleep_for(std::chrono::seconds(1));  // time for a program that would read everything
  const long flooded = processFigure(program.processID(), "VmHWM");
  server.resume();
  EXPECT_EQ(program.readLine(), noFolders);
  for (int id = 2; id < requests + 2; ++id) {
    const std::string expected = "{\"id\":" + std::to_string(id) + R"(,"jsonrpc":"2.0","result":{}})";
    if (const std::string answer = program.readLine(); answer != expected) {
      ADD_FAILURE() << answer << " instead of " << expected;
      break;
    }
  }
  sender.get();
  std::cout << "memory: " << ordinary << " KiB, " << flooded << " KiB in the flood\n";
  if (!isSanitized) {
    EXPECT_LT(flooded - ordinary, 3 * 1024);
  }
  expectSound(home, program);
  expectQuietEnd(program);
}

/// The client sends a move behind a call that runs, and cancels it before its turn.
void cancelAMoveThatWaits() {
  FakeIMAPServer listing(slowListing());
  FakeIMAPServer moving(honest(moveSession()));
  Home home;
  home.useServer(listing.port());
  ServeProgram program(home);
  program.send(R"({"id":1,"method":"tools/call","params":{"name":"list_folders"}})"
               "\n");
  ASSERT_TRUE(listing.awaitPause());
  home.useServer(moving.port());
  program.send(R"({"id":2,"method":"tools/call","params":{"name":"move_message",)"
               R"("arguments":{"uid":7,"targetFolder":"Archive"}}})"
               "\n"
               R"({"method":"notifications/cancelled","params":{"requestId":2,"reason":"time-out"}})"
               "\n");
  program.awaitInputRead();
  listing.resume();
  EXPECT_EQ(program.readLine(), noFolders);
  EXPECT_EQ(listing.mismatch(), "");
  expectSound(home, program);
  EXPECT_EQ(moving.acceptCount(), 0);
  expectQuietEnd(program);
}

/// Nobody reads the answers any more. The running session still ends normally, and so does another one.
void closeOutputDuringACall() {
  FakeIMAPServer server(slowListing());
  Home home;
  home.useServer(server.port());
  ServeProgram program(home);
  for (int session = 1; session <= 2; ++session) {
    program.sendCall("list_folders");
    ASSERT_TRUE(server.awaitPause());
    if (session == 1) {
      program.closeOutput();
    }
    EXPECT_EQ(server.acceptCount(), session);
    server.resume();
    EXPECT_EQ(server.mismatch(), "");
  }
  expectQuietEnd(program);
}

}  // namespace

std::vector<Attack> clientAttacks() {
  std::vector<Attack> attacks = strangeLines();
  attacks.insert(attacks.end(),
                 {{"floodDuringACall", "100,000 requests during a call",
                   "lets the client wait, within 3 MiB more; answers all in order", floodDuringACall},
                  {"cancelledMove", "a move is sent during a call and cancelled before its turn",
                   "does not move; gives no answer to it", cancelAMoveThatWaits},
                  {"inputEndsDuringACall", "the client closes the standard input during a call",
                   "finishes the call, says LOGOUT, answers, ends with status 0", endInputDuringACall},
                  {"inputEndsWithinALine", "the standard input ends within a line",
                   "takes it for a whole line, answers, ends with status 0", endInputWithinALine},
                  {"outputCloses", "the client closes the standard output during a call",
                   "finishes the call, says LOGOUT, goes on until its input ends, ends with status 0",
                   closeOutputDuringACall}});
  return attacks;
}

}  // namespace tarnwell::test
