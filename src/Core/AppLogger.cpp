#include "Core/AppLogger.h"

#include <atomic>
#include <chrono>
#include <random>

#include "Core/BridgeConstants.h"
#include "Core/LogBuffer.h"
#include "Platform/Text.h"

namespace tarnwell::AppLogger {
namespace {

/// The log in use. The first one is never destroyed: a thread that is still running when the process
/// ends may log.
std::atomic<const SystemLog*>& systemLog() {
  static std::atomic<const SystemLog*> log = new SystemLog(std::string(BridgeConstants::bundleIdentifier));
  return log;
}

SystemLogType systemLogType(LogLevel level) {
  switch (level) {
    case LogLevel::debug:
      return SystemLogType::debug;
    case LogLevel::info:
      return SystemLogType::info;
    case LogLevel::notice:
      return SystemLogType::standard;
    case LogLevel::error:
      return SystemLogType::error;
  }
  return SystemLogType::standard;
}

/// A random identifier of version 4 (RFC 9562, section 5.4).
std::array<std::uint8_t, 16> freshIdentifier() {
  thread_local std::random_device random;
  std::array<std::uint8_t, 16> identifier;
  for (std::size_t index = 0; index < identifier.size(); index += 4) {
    std::uint32_t bits = random();
    for (std::size_t byte = 0; byte < 4; ++byte) {
      identifier[index + byte] = static_cast<std::uint8_t>(bits >> (8 * byte));
    }
  }
  identifier[6] = static_cast<std::uint8_t>((identifier[6] & 0x0F) | 0x40);  // version 4
  identifier[8] = static_cast<std::uint8_t>((identifier[8] & 0x3F) | 0x80);  // variant of the RFC
  return identifier;
}

void log(LogLevel level, Category category, std::string_view message) {
  const SystemLog& system = *systemLog().load();
  if (SystemLogType type = systemLogType(level); system.isEnabled(type, rawValue(category))) {
    system.write(type, rawValue(category), message);
  }
  LogBuffer::shared().append({.id = freshIdentifier(),
                              .date = std::chrono::system_clock::now(),
                              .level = level,
                              .category = std::string(rawValue(category)),
                              .message = std::string(message)});
}

}  // namespace

std::string_view rawValue(Category category) {
  switch (category) {
    case Category::app:
      return "app";
    case Category::mcp:
      return "mcp";
    case Category::imap:
      return "imap";
    case Category::security:
      return "security";
    case Category::tool:
      return "tool";
    case Category::http:
      return "http";
  }
  return "";
}

void debug(Category category, std::string_view message) { log(LogLevel::debug, category, message); }
void info(Category category, std::string_view message) { log(LogLevel::info, category, message); }
void notice(Category category, std::string_view message) { log(LogLevel::notice, category, message); }
void error(Category category, std::string_view message) { log(LogLevel::error, category, message); }

const SystemLog& replaceSystemLog(const SystemLog& log) { return *systemLog().exchange(&log); }

std::string redact(std::string_view email) {
  std::size_t atSign = email.find('@');
  if (atSign == std::string_view::npos) {
    return "***";
  }
  std::string masked(characterPrefix(email.substr(0, atSign), 2));
  return masked.append("***").append(email.substr(atSign));
}

}  // namespace tarnwell::AppLogger
