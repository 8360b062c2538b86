#pragma once

/// How a message was moved to another folder.
/// Threads: a plain value.

namespace tarnwell {

enum class MoveOutcome {
  /// The server moved the message with MOVE (RFC 6851).
  moved,
  /// The message was copied and the original flagged \Deleted. The original is still in its folder.
  copiedAndFlaggedDeleted,
};

}  // namespace tarnwell
