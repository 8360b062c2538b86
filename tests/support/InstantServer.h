#pragma once

/// A server without a network, which shows what the client sends before it waits.
///
///     Wire wire;
///     IMAPClient client = instantClient(wire, [](const std::string& tag, const std::string& command) {
///       return tag + " OK done\r\n";
///     });
///     ... use the client ...
///     wire.bursts  // "CAPABILITY, EXAMINE INBOX", ...
///
/// Threads: one at a time.

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/IMAPClient.h"
#include "support/FakeIMAPServer.h"

namespace tarnwell::test {

/// What went over the wire: for each moment in which the client waits, the commands that it sent since the
/// moment before, and the bytes of all commands that have no answer yet.
struct Wire {
  std::vector<std::string> bursts;
  /// The bytes that were under way when each burst began.
  std::vector<std::size_t> bytesBefore;
  /// At each burst, the time until every wait ends.
  std::vector<std::chrono::duration<double>> timeLeft;
  std::size_t bytesUnderWay = 0;
  std::size_t mostBytesUnderWay = 0;
};

/// A server without a network. It answers a command as soon as the client waits, one answer for each wait.
class InstantServer : public ByteStream {
 public:
  using Clock = std::chrono::steady_clock;
  /// Returns the answer to a command: the untagged responses and the completion.
  using Answer = std::function<std::string(const std::string& tag, const std::string& command)>;

  InstantServer(Wire& wire, Answer answer) : wire_(wire), answer_(std::move(answer)) {}

  void endBy(Clock::time_point instant) override { end_ = instant; }
  void connect() override { answers_.push_back({"* OK ready\r\n", 0}); }
  void close() noexcept override {}

  void send(std::string_view bytes) override {
    received_ += bytes;
    for (std::size_t end; (end = received_.find("\r\n")) != std::string::npos;) {
      take(received_.substr(0, end), end + 2);
      received_.erase(0, end + 2);
    }
    wire_.mostBytesUnderWay = std::max(wire_.mostBytesUnderWay, wire_.bytesUnderWay);
  }

  std::string_view receive() override {
    if (!burst_.empty()) {
      wire_.bursts.push_back(std::exchange(burst_, {}));
    }
    if (answers_.empty()) {
      throw IMAPError::timeout();
    }
    current_ = std::move(answers_.front());
    answers_.pop_front();
    wire_.bytesUnderWay -= current_.commandSize;
    return current_.bytes;
  }

 private:
  struct Reply {
    std::string bytes;
    std::size_t commandSize;
  };

  void take(const std::string& line, std::size_t size) {
    if (burst_.empty()) {
      wire_.bytesBefore.push_back(wire_.bytesUnderWay);
      wire_.timeLeft.push_back(end_ - Clock::now());
    }
    burst_ += (burst_.empty() ? "" : ", ") + line.substr(line.find(' ') + 1);
    wire_.bytesUnderWay += size;
    const bool announcesLiteral = line.ends_with('}');
    answers_.push_back({announcesLiteral ? "+ go on\r\n" : answerTo(line), size});
    if (!announcesLiteral) {
      begun_.clear();
    } else if (begun_.empty()) {
      begun_ = line;
    }
  }

  /// `line` is a command, or what follows the literal of the command that has begun.
  std::string answerTo(const std::string& line) const {
    const std::string& command = begun_.empty() ? line : begun_;
    const std::size_t blank = command.find(' ');
    return answer_(command.substr(0, blank), command.substr(blank + 1));
  }

  Wire& wire_;
  Answer answer_;
  Clock::time_point end_ = Clock::time_point::max();
  std::string received_;
  std::string begun_;
  std::string burst_;
  std::deque<Reply> answers_;
  Reply current_{};
};

inline IMAPClient instantClient(Wire& wire, const InstantServer::Answer& answer, SessionLimits limits = {}) {
  return {[&wire, answer] {
            return std::make_unique<IMAPConnection>(std::make_unique<InstantServer>(wire, answer));
          },
          testEmail, Secret(testPassword), limits};
}

}  // namespace tarnwell::test
