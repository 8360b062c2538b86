#include "App/Models/ActivityInbox.h"

#include <QMetaObject>
#include <algorithm>
#include <iterator>
#include <utility>

namespace tarnwell {

void ActivityInbox::open(QObject* receiver, std::function<void()> wake) {
  const std::lock_guard lock(mutex_);
  receiver_ = receiver;
  wake_ = std::move(wake);
}

void ActivityInbox::close() {
  const std::lock_guard lock(mutex_);
  receiver_ = nullptr;
  wake_ = nullptr;
  waiting_.clear();
}

void ActivityInbox::push(ActivityEntry entry) {
  const std::lock_guard lock(mutex_);
  if (!receiver_) {
    return;
  }
  if (waiting_.empty()) {
    postLocked(wake_);
  }
  if (waiting_.size() == limit_) {
    waiting_.pop_front();
  }
  waiting_.push_back(std::move(entry));
}

void ActivityInbox::post(std::function<void()> call) {
  const std::lock_guard lock(mutex_);
  postLocked(std::move(call));
}

ActivityInbox::Taken ActivityInbox::take(std::size_t count) {
  const std::lock_guard lock(mutex_);
  const auto end = waiting_.begin() + static_cast<std::ptrdiff_t>(std::min(count, waiting_.size()));
  Taken taken{.entries = {std::make_move_iterator(waiting_.begin()), std::make_move_iterator(end)}};
  waiting_.erase(waiting_.begin(), end);
  taken.rest = waiting_.size();
  return taken;
}

/// The receiver closes before it goes away, so it is there while the lock is held. What is posted to it goes
/// with it.
void ActivityInbox::postLocked(std::function<void()> call) {
  if (receiver_) {
    QMetaObject::invokeMethod(receiver_, std::move(call), Qt::QueuedConnection);
  }
}

}  // namespace tarnwell
