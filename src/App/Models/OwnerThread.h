#pragma once

/// Lets other threads have something done on the thread of an owner.
///
///     OwnerThread thread_;                                       // a member of the owner
///     std::thread([poster = thread_.poster()] { poster.post([] { ... runs on the owner's thread ... }); });
///
/// What was posted to an owner that is gone by then is dropped. Everything runs in the order in which it was
/// posted. The calls wait in a queue of our own, and only the news of them goes through Qt: so the thread
/// sanitizer, which cannot see the locks inside Qt, sees the one here.
///
/// Threads: an owner's is the one that makes it; it needs an event loop. `post` may be called on any.

#include <QObject>
#include <deque>
#include <memory>
#include <mutex>
#include <utility>

namespace tarnwell {

class OwnerThread {
 private:
  struct Call {
    virtual ~Call() = default;
    virtual void run() = 0;
  };
  struct Link;

 public:
  OwnerThread();
  ~OwnerThread();
  OwnerThread(const OwnerThread&) = delete;
  OwnerThread& operator=(const OwnerThread&) = delete;

  /// A reference for another thread. Copies mean the same owner.
  class Poster {
   public:
    template <class Function>
    void post(Function function) const {
      struct Held : Call {
        explicit Held(Function held) : function(std::move(held)) {}
        void run() override { function(); }
        Function function;
      };
      post(std::unique_ptr<Call>(new Held(std::move(function))));
    }

   private:
    friend class OwnerThread;
    explicit Poster(std::shared_ptr<Link> link) : link_(std::move(link)) {}
    void post(std::unique_ptr<Call> call) const;

    std::shared_ptr<Link> link_;
  };
  Poster poster() const { return Poster(link_); }

 private:
  class Receiver;

  std::shared_ptr<Link> link_;
};

}  // namespace tarnwell
