#include "App/Models/OwnerThread.h"

#include <QCoreApplication>
#include <QEvent>

namespace tarnwell {

/// What both sides share.
struct OwnerThread::Link {
  std::mutex mutex;
  std::deque<std::unique_ptr<Call>> calls;
  std::unique_ptr<Receiver> receiver;  // absent when the owner is gone

  std::unique_ptr<Call> next() {
    const std::lock_guard lock(mutex);
    if (!receiver || calls.empty()) {
      return nullptr;
    }
    std::unique_ptr<Call> call = std::move(calls.front());
    calls.pop_front();
    return call;
  }
};

class OwnerThread::Receiver : public QObject {
 public:
  explicit Receiver(std::weak_ptr<Link> link) : link_(std::move(link)) {}

  /// One call for each event, so that what the system wants meanwhile has its turn. The call may destroy this
  /// object.
  bool event(QEvent* event) override {
    if (event->type() != QEvent::User) {
      return QObject::event(event);
    }
    if (const std::shared_ptr<Link> link = link_.lock()) {
      if (const std::unique_ptr<Call> call = link->next()) {
        call->run();
      }
    }
    return true;
  }

 private:
  std::weak_ptr<Link> link_;
};

OwnerThread::OwnerThread() : link_(std::make_shared<Link>()) {
  link_->receiver = std::make_unique<Receiver>(link_);
}

/// The calls that are dropped are destroyed without the lock: they may hold anything.
OwnerThread::~OwnerThread() {
  std::deque<std::unique_ptr<Call>> dropped;  // destroyed after the lock
  std::unique_ptr<Receiver> receiver;
  const std::lock_guard lock(link_->mutex);
  dropped.swap(link_->calls);
  receiver.swap(link_->receiver);
}

void OwnerThread::Poster::post(std::unique_ptr<Call> call) const {
  const std::lock_guard lock(link_->mutex);
  if (link_->receiver) {
    link_->calls.push_back(std::move(call));
    QCoreApplication::postEvent(link_->receiver.get(), new QEvent(QEvent::User));
  }
}

}  // namespace tarnwell
