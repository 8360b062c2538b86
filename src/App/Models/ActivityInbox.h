#pragma once

/// Where entries from other threads wait until the window has time for them.
///
///     inbox->open(thread_.poster(), [this] { takeSoon(); });
///     own.onAppend([inbox](const LogEntry& entry) { inbox->push(activityEntry(entry)); });
///
/// Keeps the newest only, so a flood of entries takes no more memory than a few.
///
/// Threads: `open`, `close` and `take` on that of the receiver, `push` and `post` on any. Share it with a
/// `std::shared_ptr`, because a thread may push while the receiver goes away.

#include <cstddef>
#include <deque>
#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "App/Models/ActivityEntry.h"
#include "App/Models/OwnerThread.h"

namespace tarnwell {

class ActivityInbox {
 public:
  explicit ActivityInbox(std::size_t limit) : limit_(limit) {}

  /// Calls `wake` on the receiver's thread after a `push` into the empty inbox.
  void open(OwnerThread::Poster receiver, std::function<void()> wake);
  /// Nothing is called any more, and nothing is kept.
  void close();

  void push(ActivityEntry entry);
  /// Runs the call on the receiver's thread, unless there is no receiver by then.
  void post(std::function<void()> call);

  /// The oldest `count` entries, or fewer. `rest` tells how many are left.
  struct Taken {
    std::vector<ActivityEntry> entries;
    std::size_t rest = 0;
  };
  Taken take(std::size_t count);

 private:
  void postLocked(std::function<void()> call);

  const std::size_t limit_;
  std::mutex mutex_;
  std::optional<OwnerThread::Poster> receiver_;
  std::function<void()> wake_;
  std::deque<ActivityEntry> waiting_;
};

}  // namespace tarnwell
