#pragma once

/// Holds calls up until the test lets them go.
///
/// Threads: any.

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace tarnwell::test {

/// Calls that come to it wait until it is opened.
class Gate {
 public:
  void pass() {
    std::unique_lock lock(mutex_);
    ++arrivals_;
    changed_.notify_all();
    changed_.wait(lock, [this] { return isOpen_; });
  }

  void open() {
    const std::lock_guard lock(mutex_);
    isOpen_ = true;
    changed_.notify_all();
  }

  /// False when so many calls have not come after a while.
  bool awaitArrivals(int count) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(20), [&] { return arrivals_ >= count; });
  }

  int arrivals() {
    const std::lock_guard lock(mutex_);
    return arrivals_;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  int arrivals_ = 0;
  bool isOpen_ = false;
};

}  // namespace tarnwell::test
