#include "IMAP/Connection/Cancellation.h"

#include <utility>

namespace tarnwell {

struct Cancellation::Waker::State {
  std::mutex mutex;
  bool isCancelled = false;
  std::list<std::function<void()>> wakers;
};

std::shared_ptr<Cancellation::Waker::State> Cancellation::newState() {
  return std::make_shared<Waker::State>();
}

void Cancellation::cancel() const {
  const std::lock_guard lock(state_->mutex);
  if (std::exchange(state_->isCancelled, true)) {
    return;
  }
  for (const std::function<void()>& wake : state_->wakers) {
    wake();
  }
}

bool Cancellation::isCancelled() const {
  const std::lock_guard lock(state_->mutex);
  return state_->isCancelled;
}

void Cancellation::throwIfCancelled() const {
  if (isCancelled()) {
    throw Cancelled();
  }
}

Cancellation::Waker::Waker(const Cancellation& cancellation, std::function<void()> wake)
    : state_(cancellation.state_) {
  const std::lock_guard lock(state_->mutex);
  place_ = state_->wakers.insert(state_->wakers.end(), std::move(wake));
}

Cancellation::Waker::~Waker() {
  const std::lock_guard lock(state_->mutex);
  state_->wakers.erase(place_);
}

}  // namespace tarnwell
