#pragma once

/// A call of a tool, as the lines of the log that speak of it tell it together.
///
/// Threads: plain values.

#include <optional>

#include "App/Models/LogText.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

struct ActivityCall {
  enum class State {
    begun,
    /// It came to an outcome.
    ended,
    /// It is over, and the log tells no outcome: the tool does not exist, or the line is lost.
    unusable,
    /// Nobody knows: the log tells no outcome, and no reason for that.
    unknown,
    /// The helper ended in the middle of it.
    brokenOff,
  };

  /// Absent for one that this app does not know.
  std::optional<ToolName> tool{};
  State state = State::begun;
  /// What the safety settings decided about a change: one of the phrases that begin with "write". `other`
  /// when the log tells no decision.
  LogPhrase decision = LogPhrase::other;
  /// The user's own, on the page "Try it".
  bool isTrial = false;

  bool operator==(const ActivityCall&) const = default;
};

}  // namespace tarnwell
