#pragma once

/// The texts of the page "Activity", in the language of the window.

#include <QCoreApplication>
#include <QString>

#include "App/Models/ActivityEntry.h"
#include "App/Models/ActivityProcesses.h"

namespace tarnwell {

class ActivityTexts : public ActivityWords {
  Q_DECLARE_TR_FUNCTIONS(ActivityTexts)

 public:
  QString heading(ActivityColumn column) const override;
  QString words(const ActivityEntry& entry, ActivityColumn column) const override;

  static QString level(LogLevel level);
  static QString subject(AppLogger::Category subject);
  /// For the choice of a process.
  static QString process(const ActivityProcess& process);
  /// For one that would else have the same name as another.
  static QString exactProcess(const ActivityProcess& process);
  /// Whether the entry is said in our words. Otherwise it is shown as it was logged.
  static bool isOurs(const ActivityEntry& entry) { return entry.text.phrase != LogPhrase::other; }
  static QString sentence(const ActivityEntry& entry);
  /// Of one line. Empty for a text that is not one of ours.
  static QString sentence(const LogText& text);

  /// What is missing when the system's log cannot be read, and why. Empty when it can be.
  static QString missing(LogAccess access);
  /// What can be done about it. May be empty.
  static QString remedy(LogAccess access);

 private:
  static QString named(const ActivityProcess& process, const QString& since);
};

}  // namespace tarnwell
