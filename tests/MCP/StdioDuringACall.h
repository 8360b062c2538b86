#pragma once

#include <array>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

#include "MCP/StdioFixture.h"

namespace tarnwell::test {

/// The transport runs from `begin` to `end`.
class StdioDuringACall : public Stdio {
 protected:
  StdioDuringACall() {
    config.safety.readOnly = false;
    config.safety.allowMove = true;
  }
  ~StdioDuringACall() override { end(); }

  /// Starts the transport with this line. Returns when the server pauses.
  FakeIMAPServer& begin(std::string_view line, Dialogue dialogue) {
    first_ = std::make_unique<FakeIMAPServer>(std::move(dialogue));
    useServer(*first_);
    transport_ = std::thread([this] {
      MCPTransportStdio(server_, in_.reader(), out_.writer()).run();
      out_.closeWriter();
    });
    reader_ = std::thread([this] { keepOutput(); });
    in_.write(line);
    EXPECT_TRUE(first_->awaitPause());
    return *first_;
  }

  /// The calls that begin from now on meet this server.
  FakeIMAPServer& thenServe(Dialogue dialogue) {
    second_ = std::make_unique<FakeIMAPServer>(std::move(dialogue));
    useServer(*second_);
    return *second_;
  }

  /// Writes the lines. When it returns, they have been read, and what they cancel is taken out: the reader
  /// read the empty line after it had taken in the others.
  void sendAndAwaitReading(std::string_view lines) {
    in_.write(lines);
    in_.awaitEmpty();
    in_.write("\n");
    in_.awaitEmpty();
  }

  /// Waits until this text is in the output.
  bool awaitOutput(std::string_view text) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20),
                             [&] { return output_.find(text) != std::string::npos; });
  }

  /// What was written so far.
  std::string output() {
    const std::lock_guard lock(mutex_);
    return output_;
  }

  /// Ends the input and waits for the transport. Returns all that was answered.
  std::string end() {
    in_.closeWriter();
    if (first_) {
      first_->resume();
    }
    for (std::thread* thread : {&transport_, &reader_}) {
      if (thread->joinable()) {
        thread->join();
      }
    }
    return output_;
  }

 private:
  void keepOutput() {
    std::array<char, 4096> chunk;
    for (ssize_t count; (count = read(out_.reader(), chunk.data(), chunk.size())) > 0;) {
      const std::lock_guard lock(mutex_);
      output_.append(chunk.data(), static_cast<std::size_t>(count));
      changed_.notify_all();
    }
  }

  void useServer(const FakeIMAPServer& server) {
    config.imapPort = server.port();
    save();
  }

  std::unique_ptr<FakeIMAPServer> first_;
  std::unique_ptr<FakeIMAPServer> second_;
  std::thread transport_;
  std::thread reader_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::string output_;
};

}  // namespace tarnwell::test
