#include "Core/LogBuffer.h"

namespace tarnwell {

LogBuffer& LogBuffer::shared() {
  // Never destroyed, because a thread may still log while the process ends.
  static LogBuffer& buffer = *new LogBuffer;
  return buffer;
}

void LogBuffer::append(const LogEntry& entry) {
  Callback callback;
  {
    std::lock_guard guard(lock_);
    callback = onAppend_;
    storage_.push_back(entry);
    if (storage_.size() > limit) {
      storage_.pop_front();
    }
  }
  if (callback) {
    callback(entry);
  }
}

std::vector<LogEntry> LogBuffer::snapshot() const {
  std::lock_guard guard(lock_);
  return {storage_.begin(), storage_.end()};
}

void LogBuffer::clear() {
  std::lock_guard guard(lock_);
  storage_.clear();
}

void LogBuffer::onAppend(Callback callback) {
  // The swap keeps the old callback alive until the lock is released: its destructor may log.
  std::lock_guard guard(lock_);
  onAppend_.swap(callback);
}

LogBuffer::Callback LogBuffer::onAppend() const {
  std::lock_guard guard(lock_);
  return onAppend_;
}

}  // namespace tarnwell
