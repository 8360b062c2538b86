#include "App/Models/ActivityEntry.h"

#include <QCoreApplication>
#include <algorithm>
#include <ctime>

namespace tarnwell {
namespace {

using AppLogger::Category;

std::optional<Category> subjectOf(std::string_view rawValue) {
  for (const Category category :
       {Category::app, Category::mcp, Category::imap, Category::security, Category::tool, Category::http}) {
    if (AppLogger::rawValue(category) == rawValue) {
      return category;
    }
  }
  return std::nullopt;
}

/// The words of a server may hold characters that break a line or turn its direction.
QString onOneLine(const std::string& message) {
  QString text = QString::fromStdString(message);
  std::replace_if(
      text.begin(), text.end(),
      [](QChar character) {
        return character.isSpace() || character.category() == QChar::Other_Control ||
               character.category() == QChar::Other_Format;
      },
      u' ');
  return text;
}

LogLevel levelOf(SystemLogType type) {
  switch (type) {
    case SystemLogType::debug:
      return LogLevel::debug;
    case SystemLogType::info:
      return LogLevel::info;
    case SystemLogType::standard:
      return LogLevel::notice;
    case SystemLogType::error:
      return LogLevel::error;
  }
  return LogLevel::notice;
}

ActivityEntry entryOf(std::chrono::system_clock::time_point date, LogLevel level, const std::string& category,
                      const std::string& message, qint64 processID) {
  ActivityEntry entry{.date = date,
                      .level = level,
                      .subject = subjectOf(category),
                      .category = onOneLine(category),
                      .original = onOneLine(message),
                      .processID = processID};
  entry.text = recognised(entry.original);
  if (entry.text.phrase == LogPhrase::assistantLeft) {
    entry.level = LogLevel::info;
  }
  return entry;
}

}  // namespace

ActivityEntry activityEntry(const LogEntry& own) {
  ActivityEntry entry =
      entryOf(own.date, own.level, own.category, own.message, QCoreApplication::applicationPid());
  entry.isOwn = true;
  return entry;
}

ActivityEntry activityEntry(const FollowedEntry& followed) {
  return entryOf(followed.date, levelOf(followed.type), followed.category, followed.message,
                 followed.processID);
}

/// Every entry needs it as it arrives, and `QDateTime` takes many times as long.
QString localTime(std::chrono::system_clock::time_point date) {
  const std::time_t time = std::chrono::system_clock::to_time_t(date);
  std::tm local{};
  ::localtime_r(&time, &local);
  char text[40];
  const std::size_t length = std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &local);
  return QString::fromLatin1(text, static_cast<qsizetype>(length));
}

}  // namespace tarnwell
