#include "App/Models/ActivityInbox.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tarnwell {

void ActivityInbox::open(OwnerThread::Poster receiver, std::function<void()> wake) {
  const std::lock_guard lock(mutex_);
  receiver_ = std::move(receiver);
  wake_ = std::move(wake);
}

void ActivityInbox::close() {
  const std::lock_guard lock(mutex_);
  receiver_.reset();
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

void ActivityInbox::postLocked(std::function<void()> call) {
  if (receiver_) {
    receiver_->post(std::move(call));
  }
}

}  // namespace tarnwell
