#pragma once

/// The texts of the page "Try it", in the language of the window. All are plain text.

#include <QDateTime>
#include <QString>

#include "App/Models/TryItModel.h"

namespace tarnwell::TryItTexts {

/// What a search came to. And that an assistant sees the same, unless the settings have changed since.
QString summary(int messages, int withheld, bool isFromBefore);
/// How far a search came.
QString progress(const TryItModel::Progress& progress);

/// Of one message, for a row of a list.
QString subject(const TriedMessage& message);
QString sender(const TriedMessage& message);
/// Where the preview stands when there is none.
QString preview(const TriedMessage& message);
/// The time today, else the day. What cannot be read as a date stays as it is.
QString shortDate(const QString& date, const QDateTime& now);
QString longDate(const QString& date);
/// The whole row in words, for screen readers.
QString spoken(const TriedMessage& message, const QDateTime& now);

/// What a sign is and where it was found.
QString sign(const TriedSignal& sign);

/// What an assistant gets of the message, in one sentence. `text` may be null, while it is being read.
QString verdict(const TriedMessage& message, const TriedText* text);
/// How much of the text is shown, when it is not all. Otherwise empty.
QString extent(const TriedText& text);
/// The sentence that an assistant reads, as such.
QString quoted(const QString& told);

/// What would become of a change, and that nothing was changed.
QString outcome(const TriedOutcome& outcome);

/// What is wrong and what to do about it.
QString failure(const TriedFailure& failure);

/// What a call is for, with the name of its tool.
QString call(ToolName tool);

}  // namespace tarnwell::TryItTexts
