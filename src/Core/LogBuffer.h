#pragma once

/// The newest 500 log entries, in memory, for a program that embeds this one.
///
/// Levels and entries have a JSON form:
///
///     {"id": "0b4c3a9e-5d0f-4f5b-9c36-2d1f0a7b8c9d", "date": "2024-05-01T09:30:00Z", "level": "info",
///      "category": "imap", "message": "Authenticated to IMAP for us***@example.org"}
///
/// Threads: any, at the same time.

#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell {

enum class LogLevel { debug, info, notice, error };

/// "debug", "info", "notice" or "error". The JSON form is the same.
std::string_view rawValue(LogLevel level);
/// Absent for any other text.
std::optional<LogLevel> logLevel(std::string_view rawValue);

struct LogEntry {
  /// Random, new for each entry (RFC 9562, version 4).
  std::array<std::uint8_t, 16> id;
  std::chrono::system_clock::time_point date;
  LogLevel level;
  /// The category's raw value, such as "imap".
  std::string category;
  /// Exactly as passed to the logging call.
  std::string message;

  bool operator==(const LogEntry&) const = default;
};

/// The JSON forms. The date is rounded down to whole seconds. The identifier is written in lower case (RFC
/// 9562, section 4) and read in either case. Every key is required; unknown keys are ignored. For a missing
/// or wrong value `from_json` throws `std::invalid_argument` naming the key, and leaves the record unchanged.
void to_json(nlohmann::json& json, LogLevel level);
void from_json(const nlohmann::json& json, LogLevel& level);
void to_json(nlohmann::json& json, const LogEntry& entry);
void from_json(const nlohmann::json& json, LogEntry& entry);

class LogBuffer {
 public:
  static constexpr std::size_t limit = 500;
  using Callback = std::function<void(const LogEntry&)>;

  static LogBuffer& shared();

  /// Drops the oldest entry when the buffer is full. The callback runs on the calling thread, after the lock
  /// is released. So it may itself log or take a snapshot.
  void append(const LogEntry& entry);

  /// A copy of the entries, oldest first.
  std::vector<LogEntry> snapshot() const;

  void clear();

  /// Sets the function to call after each append, possibly from several threads at once. Empty: no calls.
  void onAppend(Callback callback);
  Callback onAppend() const;

 private:
  mutable std::mutex lock_;
  std::deque<LogEntry> storage_;
  Callback onAppend_;
};

}  // namespace tarnwell
