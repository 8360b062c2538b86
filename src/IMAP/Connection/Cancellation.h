#pragma once

/// Gives up what waits for the network, from another thread.
///
///     Cancellation cancellation;                        // copies share one state
///     std::thread worker([cancellation] { ... wait ... });
///     cancellation.cancel();                            // the wait ends with `Cancelled`
///
/// Threads: any, at the same time.

#include <exception>
#include <functional>
#include <list>
#include <memory>
#include <mutex>

namespace tarnwell {

/// Thrown by a wait that was given up. It is no `IMAPError`, because nothing failed.
class Cancelled : public std::exception {
 public:
  const char* what() const noexcept override { return "cancelled"; }
};

class Cancellation {
 public:
  /// Ends every wait under way, and every later one at its beginning. A second call does nothing.
  void cancel() const;

  bool isCancelled() const;
  /// Throws `Cancelled`.
  void throwIfCancelled() const;

  /// Calls `wake` once when the cancellation comes while this object lives, on the thread that cancels. A
  /// cancellation that came before makes no call, so check after the registration. `wake` must be short and
  /// must not use the cancellation. After the destructor it does not run any more.
  class Waker {
   public:
    Waker(const Cancellation& cancellation, std::function<void()> wake);
    ~Waker();
    Waker(const Waker&) = delete;
    Waker& operator=(const Waker&) = delete;

   private:
    struct State;
    friend class Cancellation;
    std::shared_ptr<State> state_;
    std::list<std::function<void()>>::iterator place_;
  };

 private:
  std::shared_ptr<Waker::State> state_ = newState();
  static std::shared_ptr<Waker::State> newState();
};

}  // namespace tarnwell
