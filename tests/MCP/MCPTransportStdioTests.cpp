#include "MCP/MCPTransportStdio.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <thread>

#include "MCP/Tools/ToolFixture.h"

namespace tarnwell::test {
namespace {

class Pipe {
 public:
  Pipe() { EXPECT_EQ(pipe(ends_.data()), 0); }
  ~Pipe() {
    closeReader();
    closeWriter();
  }
  Pipe(const Pipe&) = delete;
  Pipe& operator=(const Pipe&) = delete;

  int reader() const { return ends_[0]; }
  int writer() const { return ends_[1]; }
  void closeReader() { closeEnd(0); }
  void closeWriter() { closeEnd(1); }

  void write(std::string_view bytes) {
    EXPECT_EQ(::write(writer(), bytes.data(), bytes.size()), ssize_t(bytes.size()));
  }

  std::string readAll() {
    std::string all;
    std::array<char, 4096> chunk;
    for (ssize_t count; (count = read(reader(), chunk.data(), chunk.size())) > 0;) {
      all.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return all;
  }

 private:
  void closeEnd(std::size_t end) {
    if (ends_[end] >= 0) {
      close(ends_[end]);
      ends_[end] = -1;
    }
  }

  std::array<int, 2> ends_{-1, -1};
};

class Stdio : public ToolTest {
 protected:
  Stdio() : server_(tools()) { signal(SIGPIPE, SIG_IGN); }

  std::string answersTo(std::string_view input) {
    in_.write(input);
    in_.closeWriter();
    MCPTransportStdio(server_, in_.reader(), out_.writer()).run();
    out_.closeWriter();
    return out_.readAll();
  }

  static std::string pong(int id) {
    return JSONRPC::success(JSONValue(id), JSONObject{}).serialized() + "\n";
  }

  MCPServer server_;
  Pipe in_;
  Pipe out_;
};

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
