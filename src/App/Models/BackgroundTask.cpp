#include "App/Models/BackgroundTask.h"

namespace tarnwell {

void BackgroundTask::abandon() {
  ++number_;
  isRunning_ = false;
}

}  // namespace tarnwell
