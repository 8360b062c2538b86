#include "Core/AppLogger.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <optional>
#include <random>
#include <utility>

#include "Core/BridgeConstants.h"
#include "Core/LogBuffer.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell::AppLogger {
namespace {

/// The log in use. The first one is never destroyed, because a thread may still log while the process ends.
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

/// A random identifier, version 4 (RFC 9562, section 5.4).
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

bool isASCIIPunctuation(char32_t codePoint) {
  return codePoint > ' ' && codePoint < 0x7F && !(codePoint >= '0' && codePoint <= '9') &&
         !((codePoint | 0x20) >= 'a' && (codePoint | 0x20) <= 'z');
}

/// True for characters that end an address: white space, control characters, the special characters of mail
/// (RFC 5322, section 3.2.3) except the full stop, and the punctuation of other scripts, also in full width.
bool isDelimiter(char32_t codePoint) {
  if (codePoint < 0x80) {
    return codePoint <= ' ' || codePoint == 0x7F ||
           std::string_view("()<>[]:;@\\,\"").find(static_cast<char>(codePoint)) != std::string_view::npos;
  }
  const auto isWithin = [codePoint](char32_t first, char32_t last) {
    return codePoint >= first && codePoint <= last;
  };
  return isWhitespace(codePoint) || isControlCharacter(codePoint) || isWithin(0x2010, 0x205E) ||
         isWithin(0x3001, 0x3003) || isWithin(0x3008, 0x301F) || isWithin(0xFF01, 0xFF0F) ||
         isWithin(0xFF1A, 0xFF20) || isWithin(0xFF3B, 0xFF40) || isWithin(0xFF5B, 0xFF65);
}

/// Chinese, Japanese and Korean characters.
bool isEastAsian(char32_t codePoint) {
  const auto isWithin = [codePoint](char32_t first, char32_t last) {
    return codePoint >= first && codePoint <= last;
  };
  return isWithin(0x2E80, 0xA4CF) || isWithin(0xAC00, 0xD7FF) || isWithin(0xF900, 0xFAFF) ||
         isWithin(0xFF66, 0xFFDC) || isWithin(0x20000, 0x3FFFF);
}

bool beginsDomain(std::string_view text) {
  std::size_t position = 0;
  return !text.empty() && (text[0] == '[' || !isDelimiter(nextCodePoint(text, position)));
}

/// Finds where the local part of an address would begin if the next character were an at sign.
class LocalPart {
 public:
  explicit LocalPart(std::size_t position = 0) : word_(position), narrow_(position) {}

  /// Takes the next code point, with its first byte and the byte after it.
  void pass(char32_t codePoint, std::size_t begin, std::size_t end) {
    quoted_.reset();
    if (codePoint == U'"') {
      quoted_ = std::exchange(quote_, begin);
    }
    isEastAsian_ = isEastAsian(codePoint);
    // A quotation mark or an equals sign before an address does not belong to it.
    if (isDelimiter(codePoint) || (word_ == begin && isASCIIPunctuation(codePoint))) {
      word_ = end;
    }
    if (isEastAsian_ || word_ == end) {
      narrow_ = end;
    }
  }

  std::size_t start() const { return quoted_.value_or(isEastAsian_ ? word_ : narrow_); }

 private:
  std::size_t word_;
  /// The end of the last East Asian character of the word.
  std::size_t narrow_;
  bool isEastAsian_ = false;
  /// `quote_` is the last quotation mark. `quoted_` is the one before it, set only while `quote_` is also the
  /// last character.
  std::optional<std::size_t> quote_;
  std::optional<std::size_t> quoted_;
};

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

std::string redactAddresses(std::string_view text) {
  std::string result;
  std::size_t copied = 0;
  LocalPart local;
  for (std::size_t position = 0; position < text.size();) {
    const std::size_t begin = position;
    const char32_t codePoint = nextCodePoint(text, position);
    if (codePoint != U'@') {
      local.pass(codePoint, begin, position);
      continue;
    }
    const std::size_t start = std::max(local.start(), copied);
    if (start < begin && beginsDomain(text.substr(position))) {
      result.append(text.substr(copied, start - copied)).append(redact(text.substr(start, position - start)));
      copied = position;
    }
    local = LocalPart(position);
  }
  return result.append(text.substr(copied));
}

}  // namespace tarnwell::AppLogger
