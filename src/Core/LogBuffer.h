#pragma once

/// The newest 500 log entries, kept in memory for a program that embeds this one.
///
/// Levels and entries have a JSON form:
///
///     {"id": "0b4c3a9e-5d0f-4f5b-9c36-2d1f0a7b8c9d", "date": "2024-05-01T09:30:00Z", "level": "info",
///      "category": "imap", "message": "Authenticated to IMAP for us***@example.org"}
///
/// Threads: all operations may be called from any thread at once.

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

/// "debug", "info", "notice" or "error"; also the JSON form.
std::string_view rawValue(LogLevel level);
/// Absent for any other text.
std::optional<LogLevel> logLevel(std::string_view rawValue);

struct LogEntry {
  /// Fresh and random for each entry (RFC 9562, version 4).
  std::array<std::uint8_t, 16> id;
  std::chrono::system_clock::time_point date;
  LogLevel level;
  /// The category's raw value, such as "imap".
  std::string category;
  /// As passed to the logging call.
  std::string message;

  bool operator==(const LogEntry&) const = default;
};

/// The JSON forms. The date is cut to whole seconds; the identifier is the text of RFC 9562, section 4,
/// written in small letters and read in any. Every key is needed, and unknown ones are ignored. For a value
/// of the wrong type `from_json` throws `std::invalid_argument`, whose text names the key; the record is then
/// as it was.
void to_json(nlohmann::json& json, LogLevel level);
void from_json(const nlohmann::json& json, LogLevel& level);
void to_json(nlohmann::json& json, const LogEntry& entry);
void from_json(const nlohmann::json& json, LogEntry& entry);

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
