#pragma once

/// Runs what waits off the thread that shows the window.
///
///     task_.run([setup, account] { setup.save(account, std::nullopt); },
///               [this](Outcome<void> outcome) { show(outcome); });
///
/// A newer run makes the answer of the older one worthless: it is dropped. So is the answer to a task that no
/// longer exists. Nobody waits for the thread, which ends when its work returns. So the work must not refer
/// to anything that may be gone by then, and the program must not run destructors of static objects at its
/// end.
///
/// Threads: that of the task's owner, which needs an event loop. `done` runs there.

#include <exception>
#include <functional>
#include <optional>
#include <thread>
#include <type_traits>
#include <utility>
#include <variant>

#include "App/Models/OwnerThread.h"

namespace tarnwell {

/// What a piece of work came to: a value, or the exception that it ended with.
template <class Value>
struct Outcome {
  std::optional<std::conditional_t<std::is_void_v<Value>, std::monostate, Value>> value{};
  std::exception_ptr failure{};
};

class BackgroundTask {
 public:
  BackgroundTask() = default;
  BackgroundTask(const BackgroundTask&) = delete;
  BackgroundTask& operator=(const BackgroundTask&) = delete;

  bool isRunning() const { return isRunning_; }

  /// Drops the answer of what runs.
  void abandon();

  /// For work that tells how far it came: a function for its thread. What it is given arrives at `shown` on
  /// the owner's thread, in order, before the answer of the run that begins next. A later run makes it
  /// worthless.
  template <class Value>
  std::function<void(Value)> reporter(std::function<void(Value)> shown) {
    return [this, poster = thread_.poster(), number = number_ + 1, shown = std::move(shown)](Value value) {
      poster.post([this, number, shown, value = std::move(value)] {
        if (number == number_) {
          shown(value);
        }
      });
    };
  }

  template <class Work, class Done>
  void run(Work work, Done done) {
    using Value = std::invoke_result_t<Work&>;
    const unsigned number = ++number_;
    isRunning_ = true;
    std::thread([this, poster = thread_.poster(), number, work = std::move(work),
                 done = std::move(done)]() mutable {
      poster.post([this, number, outcome = outcomeOf<Value>(work), done = std::move(done)]() mutable {
        // Runs only while the task exists.
        if (number == number_) {
          isRunning_ = false;
          done(std::move(outcome));
        }
      });
    }).detach();
  }

 private:
  template <class Value, class Work>
  static Outcome<Value> outcomeOf(Work& work) {
    Outcome<Value> outcome;
    try {
      if constexpr (std::is_void_v<Value>) {
        work();
        outcome.value.emplace();
      } else {
        outcome.value.emplace(work());
      }
    } catch (...) {
      outcome.failure = std::current_exception();
    }
    return outcome;
  }

  unsigned number_ = 0;
  bool isRunning_ = false;
  OwnerThread thread_;  // last, so that it drops its calls first
};

}  // namespace tarnwell
