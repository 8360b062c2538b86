#pragma once

/// Stands in for what an `ActivityModel` gets from outside: the words, and the system's log.

#include <QString>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "App/Models/ActivityModel.h"

namespace tarnwell::test {

using Moment = std::chrono::system_clock::time_point;

/// Seconds after a fixed moment of the past.
inline Moment moment(int seconds) { return Moment(std::chrono::seconds(1'700'000'000 + seconds)); }

/// A system log that a test writes. The model is its only follower.
class FakeSystemLog {
 public:
  ActivityModel::Follow follow() {
    return [this](LogFollower::Query query, LogFollower::Heard heard) {
      query_ = std::move(query);
      heard_ = std::move(heard);
      ++started_;
      return std::make_shared<int>();
    };
  }

  /// May be called on any thread.
  void tell(std::vector<FollowedEntry> entries, LogAccess access = LogAccess::readable) const {
    heard_({.access = access, .entries = std::move(entries)});
  }
  void tell(LogAccess access) const { tell({}, access); }

  const LogFollower::Query& query() const { return query_; }
  int started() const { return started_; }

 private:
  LogFollower::Query query_;
  LogFollower::Heard heard_;
  int started_ = 0;
};

/// The programs that run, as a test wants them.
class FakePrograms {
 public:
  ActivityModel::Programs programs() {
    return [this] {
      const std::lock_guard lock(mutex_);
      ++asked_;
      return running_;
    };
  }
  void run(std::vector<RunningProgram> running) {
    const std::lock_guard lock(mutex_);
    running_ = std::move(running);
  }
  int asked() const {
    const std::lock_guard lock(mutex_);
    return asked_;
  }

 private:
  mutable std::mutex mutex_;
  std::vector<RunningProgram> running_;
  int asked_ = 0;
};

inline FollowedEntry followedEntry(int seconds, std::string message, std::string category = "mcp",
                                   SystemLogType type = SystemLogType::info) {
  return {moment(seconds), type, std::move(category), std::move(message), 4711};
}

inline FollowedEntry entryOf(qint64 processID, Moment date, std::string message) {
  return {date, SystemLogType::info, "tool", std::move(message), processID};
}

inline LogEntry ownEntry(int seconds, std::string message, LogLevel level = LogLevel::info) {
  static std::uint8_t next = 0;
  static std::uint8_t high = 0;
  high = static_cast<std::uint8_t>(high + (next == 255 ? 1 : 0));
  return {{++next, high}, moment(seconds), level, "app", std::move(message)};
}

}  // namespace tarnwell::test
