#include "Platform/SystemLog.h"

#include <os/log.h>

namespace tarnwell {
namespace {

os_log_type_t logType(SystemLogType type) {
  switch (type) {
    case SystemLogType::debug:
      return OS_LOG_TYPE_DEBUG;
    case SystemLogType::info:
      return OS_LOG_TYPE_INFO;
    case SystemLogType::standard:
      return OS_LOG_TYPE_DEFAULT;
    case SystemLogType::error:
      return OS_LOG_TYPE_ERROR;
  }
  return OS_LOG_TYPE_DEFAULT;
}

/// The system makes one object for each pair of names and keeps it as long as the process lives
/// (os_log_create(3)). So nothing is cached or released here.
os_log_t logObject(const std::string& subsystem, std::string_view category) {
  return os_log_create(subsystem.c_str(), std::string(category).c_str());
}

}  // namespace

struct SystemLog::State {
  std::string subsystem;
};

SystemLog::SystemLog(std::string subsystem, std::string /*address*/)
    : state_(std::make_unique<State>(State{std::move(subsystem)})) {}

SystemLog::~SystemLog() = default;

bool SystemLog::isEnabled(SystemLogType type, std::string_view category) const {
  return os_log_type_enabled(logObject(state_->subsystem, category), logType(type));
}

void SystemLog::write(SystemLogType type, std::string_view category, std::string_view message) const {
  const std::string text(message);
  os_log_with_type(logObject(state_->subsystem, category), logType(type), "%{public}s", text.c_str());
}

std::string SystemLog::defaultAddress() { return ""; }

}  // namespace tarnwell
