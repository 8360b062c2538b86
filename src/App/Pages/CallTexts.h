#pragma once

/// A call of a tool in words, in the language of the window:
///
///     Searched the inbox: 16 messages, 5 withheld, 0.3 s
///     Move refused: read-only mode is on

#include <QCoreApplication>
#include <QString>

#include "App/Models/ActivityCall.h"

namespace tarnwell {

class CallTexts {
  Q_DECLARE_TR_FUNCTIONS(CallTexts)

 public:
  /// `text` is what the call came to, or its beginning.
  static QString row(const ActivityCall& call, const LogText& text);

  /// How long it took, with the unit.
  static QString seconds(const LogText& text);
  /// For a plural. What is larger than its largest number is that number.
  static int count(qint64 number);

 private:
  static QString words(const ActivityCall& call, const LogText& text);
  static QString begun(std::optional<ToolName> tool, const QString& name);
  static QString done(std::optional<ToolName> tool, const QString& name);
  static QString previewed(std::optional<ToolName> tool, const QString& name);
  /// The same as a noun, for what was not done.
  static QString action(std::optional<ToolName> tool, const QString& name);
  static QString outcome(const ActivityCall& call, const LogText& text);
  static QString refused(const QString& action, LogPhrase decision);
};

}  // namespace tarnwell
