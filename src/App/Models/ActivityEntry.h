#pragma once

/// One row of the activity page: a line of this program's own log or of the system's, or a call in one row.
///
/// Threads: plain values.

#include <QString>
#include <chrono>
#include <optional>

#include "App/Models/ActivityCall.h"
#include "App/Models/LogText.h"
#include "Core/AppLogger.h"
#include "Core/LogBuffer.h"
#include "Platform/Desktop/LogFollower.h"

namespace tarnwell {

struct ActivityEntry {
  std::chrono::system_clock::time_point date{};
  /// As it is shown: a client's normal goodbye is logged as an error and is none.
  LogLevel level = LogLevel::info;
  /// Absent for a category that is not ours.
  std::optional<AppLogger::Category> subject{};
  QString category{};
  /// As it was logged, on one line: white space and control characters are blanks.
  QString original{};
  LogText text{};
  /// 0 when the log does not tell it.
  qint64 processID = 0;
  /// From this program's own log.
  bool isOwn = false;
  /// Present for a call in one row. `text` then has what it came to, or its beginning.
  std::optional<ActivityCall> call{};

  bool operator==(const ActivityEntry&) const = default;
};

ActivityEntry activityEntry(const LogEntry& own);
ActivityEntry activityEntry(const FollowedEntry& followed);

/// Such as "2024-05-01 09:30:00", in the local time zone.
QString localTime(std::chrono::system_clock::time_point date);

enum class ActivityColumn { time, level, subject, text };

/// How the parts of an entry are said. The models know no words.
class ActivityWords {
 public:
  virtual ~ActivityWords() = default;
  virtual QString heading(ActivityColumn column) const = 0;
  virtual QString words(const ActivityEntry& entry, ActivityColumn column) const = 0;
};

}  // namespace tarnwell
