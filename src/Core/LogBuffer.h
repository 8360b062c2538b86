#pragma once

/// The newest 500 log entries, kept in memory for a program that embeds this one.
///
/// Threads: all operations may be called from any thread at once.

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell {

enum class LogLevel { debug, info, notice, error };

/// "debug", "info", "notice" or "error"; also the JSON form.
std::string_view rawValue(LogLevel level);

struct LogEntry {
  /// Fresh and random for each entry (RFC 9562, version 4).
  std::array<std::uint8_t, 16> id;
  std::chrono::system_clock::time_point date;
  LogLevel level;
  /// The category's raw value, such as "imap".
  std::string category;
  /// As passed to the logging call.
  std::string message;
};

class LogBuffer {
 public:
  static constexpr std::size_t limit = 500;
  using Callback = std::function<void(const LogEntry&)>;

  static LogBuffer& shared();

  /// Drops the oldest entry when the buffer is full. The callback runs on the calling thread after the
  /// lock is released, so it may log or take a snapshot itself.
  void append(const LogEntry& entry);

  /// A copy of the entries, oldest first.
  std::vector<LogEntry> snapshot() const;

  void clear();

  /// Called after each append, possibly by several threads at once. An empty callback ends the calls.
  void onAppend(Callback callback);
  Callback onAppend() const;

 private:
  mutable std::mutex lock_;
  std::deque<LogEntry> storage_;
  Callback onAppend_;
};

}  // namespace tarnwell
