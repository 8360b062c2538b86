#include "App/Models/BackgroundTask.h"

namespace tarnwell {

BackgroundTask::~BackgroundTask() {
  const std::lock_guard lock(link_->mutex);
  link_->receiver.reset();  // what was posted to it is dropped with it
}

void BackgroundTask::abandon() {
  ++number_;
  isRunning_ = false;
}

}  // namespace tarnwell
