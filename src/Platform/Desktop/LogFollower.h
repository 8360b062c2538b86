#pragma once

/// Follows the entries of one subsystem in the system's log, of all programs of this user: first the newest
/// that are there, oldest of them first, then whatever comes.
///
///     LogFollower follower({.subsystem = "app.tarnwell.Tarnwell"}, [](LogFollower::News news) { ... });
///
/// On Linux this is the journal. An entry arrives within about a quarter of a second, because the journal
/// tells of news in that rhythm. On macOS a program cannot follow the unified log: the only news is
/// `LogAccess::notSupported`.
///
/// Threads: opening and reading a large journal takes time, so the follower does both on a thread of its own
/// and calls `heard` there. `LogFollower` itself belongs to one thread. Its destructor does not wait for the
/// journal. After it, `heard` is not called.

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/SystemLog.h"

namespace tarnwell {

struct FollowedEntry {
  /// When the system's log received it.
  std::chrono::system_clock::time_point date;
  SystemLogType type = SystemLogType::standard;
  std::string category{};
  std::string message{};
  /// 0 when the log does not tell it.
  std::int64_t processID = 0;
};

/// Whether entries can be read, or why not.
enum class LogAccess {
  readable,
  /// No journal takes entries on this system.
  noJournal,
  /// There is a journal, but this user may not read it and has none of their own. Users have one of their own
  /// only where the journal is kept on disk.
  notAllowed,
  /// The journal cannot be opened or read for another reason.
  broken,
  /// This program cannot follow the log of this system.
  notSupported,
};

class LogFollower {
 public:
  struct Query {
    std::string subsystem;
    /// How many of the entries that are there already are read.
    std::size_t newest = 2'000;
    /// How many entries one call of `heard` brings at most.
    std::size_t batch = 250;
    /// Skips entries of this process that are not older than this.
    std::optional<std::chrono::system_clock::time_point> withoutOwnSince{};
  };
  struct News {
    LogAccess access = LogAccess::readable;
    std::vector<FollowedEntry> entries{};
  };
  using Heard = std::function<void(News)>;

  /// The first call of `heard` tells the access, even when there is no entry.
  LogFollower(Query query, Heard heard);
  ~LogFollower();
  LogFollower(const LogFollower&) = delete;
  LogFollower& operator=(const LogFollower&) = delete;

 private:
  struct Link;
  std::shared_ptr<Link> link_;
};

}  // namespace tarnwell
