#pragma once

/// Asynchronous calls of GLib's libraries, waited for one after the other within one bound. Linux only;
/// included by source files alone, since it brings GLib's headers with it.
///
///     BoundedCalls calls(std::chrono::milliseconds(1800));
///     auto result = calls.result([&](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
///       secret_service_ensure_session(service, cancel, done, data);
///     });
///     GError* error = nullptr;
///     secret_service_ensure_session_finish(service, result.get(), &error);
///     throwIfFailed(error);
///
/// While an object lives, the replies to calls begun on its thread come to a queue of its own, which runs
/// only inside `result`. Objects on one thread end in the reverse order of their beginning.
///
/// Threads: one for each object. No thread is started here; GLib has its own for the connection.

#include <chrono>
#include <cstdint>
#include <exception>
#include <memory>

#include "Platform/SecretServiceLibrary.h"

namespace tarnwell {

/// Releases one reference to an object of GLib.
struct ObjectRelease {
  void operator()(gpointer object) const { g_object_unref(object); }
};
template <class T>
using ObjectPointer = std::unique_ptr<T, ObjectRelease>;

/// Why a call did not succeed, as a code of `SecretStatus`.
class SecretServiceError : public std::exception {
 public:
  explicit SecretServiceError(std::int32_t status) : status_(status) {}

  std::int32_t status() const { return status_; }
  const char* what() const noexcept override { return "the secret service reported an error"; }

 private:
  std::int32_t status_;
};

/// Frees the error, if there is one, and throws the `SecretServiceError` that it stands for.
void throwIfFailed(GError* error);

class BoundedCalls {
 public:
  /// When the bound has passed, the call under way is cancelled. One that has not reported by the end of
  /// the grace is abandoned.
  explicit BoundedCalls(std::chrono::milliseconds bound, std::chrono::milliseconds grace);
  ~BoundedCalls();
  BoundedCalls(const BoundedCalls&) = delete;
  BoundedCalls& operator=(const BoundedCalls&) = delete;

  /// Begins a call by `start(cancellable, callback, data)` and waits for its result, which the finishing
  /// function of the call then reads. Throws `SecretServiceError` for an abandoned one.
  template <class Start>
  ObjectPointer<GAsyncResult> result(const Start& start) {
    auto pending = std::make_shared<Pending>();
    start(cancellable_.get(), &onReady, new std::shared_ptr<Pending>(pending));
    waitFor(*pending);
    return std::move(pending->result);
  }

 private:
  /// Owned by the waiting side and by the callback, whichever ends later: an abandoned call that reports
  /// after all writes to memory that is still there.
  struct Pending {
    ObjectPointer<GAsyncResult> result;
  };

  struct ContextRelease {
    void operator()(GMainContext* context) const { g_main_context_unref(context); }
  };
  struct TimerRelease {
    void operator()(GSource* timer) const;
  };
  using Timer = std::unique_ptr<GSource, TimerRelease>;

  static void onReady(GObject* source, GAsyncResult* result, gpointer data);
  Timer startTimer(std::chrono::milliseconds delay, GSourceFunc action, gpointer data);
  void waitFor(const Pending& pending);

  std::unique_ptr<GMainContext, ContextRelease> context_;
  ObjectPointer<GCancellable> cancellable_;
  bool isAbandoned_ = false;
  Timer cancelTimer_;
  Timer abandonTimer_;
};

}  // namespace tarnwell
