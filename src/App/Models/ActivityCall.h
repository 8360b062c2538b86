#pragma once

/// A call of a tool, as the lines of the log that speak of it tell it together.
///
/// Threads: plain values.

#include <QString>

#include "App/Models/LogText.h"

namespace tarnwell {

enum class CalledTool {
  /// One that this app does not know.
  other,
  getStatus,
  listFolders,
  searchInbox,
  getMessageSummary,
  getMessageBody,
  proposeInboxCleanup,
  moveMessage,
  markAsRead,
  trashMessage,
};

/// By the name in the log, such as "search_inbox".
CalledTool calledTool(const QString& name);

struct ActivityCall {
  enum class State {
    begun,
    /// It came to an outcome.
    ended,
    /// It is over without an outcome: the tool does not exist, or its arguments could not be used.
    unusable,
    /// Nobody knows: the log tells no outcome, and no reason for that.
    unknown,
    /// The helper ended in the middle of it.
    brokenOff,
  };

  CalledTool tool = CalledTool::other;
  State state = State::begun;
  /// What the safety settings decided about a change: one of the phrases that begin with "write". `other`
  /// when the log tells no decision.
  LogPhrase decision = LogPhrase::other;
  /// The user's own, on the page "Try it".
  bool isTrial = false;

  bool operator==(const ActivityCall&) const = default;
};

}  // namespace tarnwell
