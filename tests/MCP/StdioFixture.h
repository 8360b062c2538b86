#pragma once

/// The stdio transport between two pipes, over tools with a fake server.

#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <string>
#include <string_view>
#include <thread>

#include "MCP/JSONRPC.h"
#include "MCP/MCPTransportStdio.h"
#include "MCP/Tools/ToolFixture.h"

namespace tarnwell::test {

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

  /// Waits while the pipe is full.
  void write(std::string_view bytes) {
    EXPECT_EQ(::write(writer(), bytes.data(), bytes.size()), ssize_t(bytes.size()));
  }

  /// Waits until everything written has been read.
  void awaitEmpty() {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    for (int unread = 1; ioctl(reader(), FIONREAD, &unread) == 0 && unread > 0;) {
      ASSERT_LT(std::chrono::steady_clock::now(), deadline) << unread << " bytes are not read";
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
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

}  // namespace tarnwell::test
