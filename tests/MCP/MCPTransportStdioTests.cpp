#include "MCP/MCPTransportStdio.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

#include "MCP/StdioFixture.h"

namespace tarnwell::test {
namespace {

TEST_F(Stdio, blankLinesAreIgnored) { EXPECT_EQ(answersTo("\n\r\n\n"), ""); }

TEST_F(Stdio, requestsInOneReadAreAnsweredInOrder) {
  EXPECT_EQ(answersTo("{\"id\":1,\"method\":\"ping\"}\n{\"id\":2,\"method\":\"ping\"}\r\n"),
            pong(1) + pong(2));
}

TEST_F(Stdio, lastLineWithoutALineFeedIsAnswered) {
  EXPECT_EQ(answersTo("{\"id\":1,\"method\":\"ping\"}\n{\"id\":2,\"method\":\"ping\"}"), pong(1) + pong(2));
}

TEST_F(Stdio, notificationsGiveNoLine) {
  EXPECT_EQ(answersTo("{\"method\":\"ping\"}\n{\"id\":3,\"method\":\"ping\"}\n"), pong(3));
}

TEST_F(Stdio, badLineIsAnsweredAndReadingGoesOn) {
  EXPECT_EQ(answersTo("{nonsense\n{\"id\":3,\"method\":\"ping\"}\n"),
            "{\"error\":{\"code\":-32700,\"message\":\"Parse error\"},\"id\":null,\"jsonrpc\":\"2.0\"}\n" +
                pong(3));
}

TEST_F(Stdio, lifeIsLogged) {
  answersTo("");
  std::vector<std::pair<LogLevel, std::string>> entries;
  for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
    EXPECT_EQ(entry.category, "mcp");
    entries.emplace_back(entry.level, entry.message);
  }
  EXPECT_EQ(entries,
            (std::vector<std::pair<LogLevel, std::string>>{{LogLevel::info, "stdio MCP server started"},
                                                           {LogLevel::error, "stdio input stream ended"},
                                                           {LogLevel::info, "stdio MCP server stopped"}}));
}

TEST_F(Stdio, closedOutputIsIgnoredAndTheInputReadToItsEnd) {
  out_.closeReader();
  in_.write("{\"id\":1,\"method\":\"ping\"}\n{\"id\":2,\"method\":\"initialize\"}\n");
  in_.closeWriter();
  MCPTransportStdio(server_, in_.reader(), out_.writer()).run();
  const std::vector<LogEntry> entries = LogBuffer::shared().snapshot();
  ASSERT_GT(entries.size(), 1u);
  EXPECT_EQ(entries[1].message, "initialize (protocol 2024-11-05)");
}

TEST_F(Stdio, unreadableInputEndsTheLoop) {
  MCPTransportStdio(server_, -1, out_.writer()).run();
  EXPECT_EQ(LogBuffer::shared().snapshot().back().message, "stdio MCP server stopped");
}

/// Answers larger than a pipe, to a reader that is late, on descriptors that a parent made non-blocking.
TEST_F(Stdio, nonBlockingDescriptorsLoseNothingAndKeepTheirFlags) {
  fcntl(in_.reader(), F_SETFL, O_NONBLOCK);
  fcntl(out_.writer(), F_SETFL, O_NONBLOCK);
  constexpr int requests = 50;
  std::thread client([this] {
    for (int id = 0; id < requests; ++id) {
      in_.write("{\"id\":" + std::to_string(id) + ",\"method\":\"tools/list\"}\n");
    }
    in_.closeWriter();
  });
  std::string answers;
  std::thread reader([&] { answers = out_.readAll(); });
  MCPTransportStdio(server_, in_.reader(), out_.writer()).run();
  EXPECT_TRUE(fcntl(out_.writer(), F_GETFL) & O_NONBLOCK);
  out_.closeWriter();
  client.join();
  reader.join();
  EXPECT_EQ(std::count(answers.begin(), answers.end(), '\n'), requests);
}

TEST_F(Stdio, blockingDescriptorsStayBlocking) {
  answersTo("{\"id\":1,\"method\":\"ping\"}\n");
  EXPECT_FALSE(fcntl(in_.reader(), F_GETFL) & O_NONBLOCK);
}

}  // namespace
}  // namespace tarnwell::test
