#include "App/Pages/CallTexts.h"

#include <QLocale>
#include <algorithm>
#include <limits>

namespace tarnwell {

QString CallTexts::seconds(const LogText& text) {
  constexpr double millisecondsPerSecond = 1'000;
  const double seconds = static_cast<double>(text.milliseconds) / millisecondsPerSecond;
  return seconds < 0.05 ? tr("under %1 s").arg(QLocale().toString(0.1, 'f', 1))
                        : tr("%1 s").arg(QLocale().toString(seconds, 'f', 1));
}

int CallTexts::count(qint64 number) {
  return static_cast<int>(std::min<qint64>(number, std::numeric_limits<int>::max()));
}

QString CallTexts::row(const ActivityCall& call, const LogText& text) {
  return call.isTrial ? tr("Try it: %1").arg(words(call, text)) : words(call, text);
}

QString CallTexts::words(const ActivityCall& call, const LogText& text) {
  switch (call.state) {
    case ActivityCall::State::begun:
      return begun(call.tool, text.name);
    case ActivityCall::State::ended:
      return outcome(call, text);
    case ActivityCall::State::unusable:
      if (!call.tool) {
        return tr("There is no tool with the name %1").arg(text.name);
      }
      [[fallthrough]];
    case ActivityCall::State::unknown:
      return tr("%1: no outcome in the log").arg(action(call.tool, text.name));
    case ActivityCall::State::brokenOff:
      return tr("%1 broken off: the helper ended").arg(action(call.tool, text.name));
  }
  return {};
}

QString CallTexts::begun(std::optional<ToolName> tool, const QString& name) {
  if (!tool) {
    return tr("Calling %1…").arg(name);
  }
  switch (*tool) {
    case ToolName::getStatus:
      return tr("Giving the status…");
    case ToolName::listFolders:
      return tr("Listing the folders…");
    case ToolName::searchInbox:
      return tr("Searching the inbox…");
    case ToolName::getMessageSummary:
      return tr("Reading the summary of a message…");
    case ToolName::getMessageBody:
      return tr("Reading a message…");
    case ToolName::proposeInboxCleanup:
      return tr("Looking for what could be cleaned up…");
    case ToolName::moveMessage:
      return tr("Moving a message…");
    case ToolName::markAsRead:
      return tr("Marking a message as read…");
    case ToolName::trashMessage:
      return tr("Putting a message into the trash…");
  }
  return {};
}

QString CallTexts::done(std::optional<ToolName> tool, const QString& name) {
  if (!tool) {
    return tr("Called %1").arg(name);
  }
  switch (*tool) {
    case ToolName::getStatus:
      return tr("Gave the status");
    case ToolName::listFolders:
      return tr("Listed the folders");
    case ToolName::searchInbox:
      return tr("Searched the inbox");
    case ToolName::getMessageSummary:
      return tr("Read the summary of a message");
    case ToolName::getMessageBody:
      return tr("Read a message");
    case ToolName::proposeInboxCleanup:
      return tr("Proposed what could be cleaned up");
    case ToolName::moveMessage:
      return tr("Moved a message");
    case ToolName::markAsRead:
      return tr("Marked a message as read");
    case ToolName::trashMessage:
      return tr("Put a message into the trash");
  }
  return {};
}

/// Only these three can be previewed.
QString CallTexts::previewed(std::optional<ToolName> tool, const QString& name) {
  if (tool == ToolName::moveMessage) {
    return tr("Previewed a move");
  }
  if (tool == ToolName::markAsRead) {
    return tr("Previewed marking a message as read");
  }
  return tool == ToolName::trashMessage ? tr("Previewed putting a message into the trash")
                                        : tr("Previewed %1").arg(name);
}

QString CallTexts::action(std::optional<ToolName> tool, const QString& name) {
  if (!tool) {
    return name;
  }
  switch (*tool) {
    case ToolName::getStatus:
      return tr("Status");
    case ToolName::listFolders:
      return tr("List of the folders");
    case ToolName::searchInbox:
      return tr("Search");
    case ToolName::getMessageSummary:
      return tr("Summary of a message");
    case ToolName::getMessageBody:
      return tr("Reading");
    case ToolName::proposeInboxCleanup:
      return tr("Clean-up proposal");
    case ToolName::moveMessage:
      return tr("Move");
    case ToolName::markAsRead:
      return tr("Marking as read");
    case ToolName::trashMessage:
      return tr("Move into the trash");
  }
  return {};
}

QString CallTexts::outcome(const ActivityCall& call, const LogText& text) {
  const QString did = done(call.tool, text.name);
  const QString time = seconds(text);
  switch (text.phrase) {
    case LogPhrase::foundMessages:
      if (call.tool == ToolName::getMessageSummary) {
        return tr("%1, %2").arg(did, time);
      }
      return text.withheld > 0 ? tr("%1: %Ln message(s), %2 withheld, %3", nullptr, count(text.count))
                                     .arg(did, QLocale().toString(text.withheld), time)
                               : tr("%1: %Ln message(s), %2", nullptr, count(text.count)).arg(did, time);
    case LogPhrase::foundFolders:
      return tr("%1: %Ln folder(s), %2", nullptr, count(text.count)).arg(did, time);
    case LogPhrase::readText:
      return tr("%1: %Ln character(s), %2", nullptr, count(text.count)).arg(did, time);
    case LogPhrase::textWithheld:
      return tr("%1: withheld, %2").arg(did, time);
    case LogPhrase::hadNoText:
      return tr("%1: it has no text, %2").arg(did, time);
    case LogPhrase::statusConfigured:
      return tr("%1: an account is set up, %2").arg(did, time);
    case LogPhrase::statusNotConfigured:
      return tr("%1: no account is set up, %2").arg(did, time);
    case LogPhrase::changeMade:
      return tr("%1, %2").arg(did, time);
    case LogPhrase::changePreviewed:
      return tr("%1, %2").arg(previewed(call.tool, text.name), time);
    case LogPhrase::changeRefused:
      return refused(action(call.tool, text.name), call.decision);
    case LogPhrase::callStopped:
      return tr("%1 cancelled, %2").arg(action(call.tool, text.name), time);
    case LogPhrase::callCancelled:
      return tr("%1 cancelled before it began").arg(action(call.tool, text.name));
    case LogPhrase::callFailed:
      return tr("%1 failed: %2").arg(action(call.tool, text.name), text.detail);
    case LogPhrase::callMetKeyringError:
      return tr("%1 failed, the keyring could not be used: %2")
          .arg(action(call.tool, text.name), text.detail);
    case LogPhrase::callBroke:
      return tr("%1 failed by a fault of the helper: %2").arg(action(call.tool, text.name), text.detail);
    default:
      return tr("%1: %2, %3").arg(did, text.detail, time);
  }
}

QString CallTexts::refused(const QString& action, LogPhrase decision) {
  switch (decision) {
    case LogPhrase::writeRefusedReadOnly:
      return tr("%1 refused: read-only mode is on").arg(action);
    case LogPhrase::writeRefusedBySetting:
      return tr("%1 refused: not allowed in the safety settings").arg(action);
    default:
      return tr("%1 refused").arg(action);
  }
}

}  // namespace tarnwell
