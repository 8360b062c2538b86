/// The three changes to the mailbox: move, copy with a flag in its place, mark as read (RFC 3501,
/// section 6.4, and RFC 6851). Nothing here, or anywhere, expunges.

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/IMAPClient.h"

namespace tarnwell {

/// Deliberate: MOVE is sent whatever the capabilities say; the server's answer decides. An OK is believed,
/// also for a UID that is no longer there, which servers pass over in silence (RFC 3501, section 6.4.8).
MoveOutcome IMAPClient::move(std::uint32_t uid, std::string_view toFolderPath, CopyFallback fallback) {
  requireInbox();
  const std::string target = std::to_string(uid) + " " + quoted(toFolderPath);
  const IMAPParser::Completion completion = execute("UID MOVE " + target);
  if (completion.status == IMAPParser::Completion::Status::ok) {
    return MoveOutcome::moved;
  }
  if (fallback == CopyFallback::forbidden) {
    throw IMAPError::moveRejected(serverText(completion.text));
  }
  copyThenFlagDeleted(uid, target);
  return MoveOutcome::copiedAndFlaggedDeleted;
}

/// A copy that succeeded is not undone when the flag cannot be set: the message then stands in both places.
void IMAPClient::copyThenFlagDeleted(std::uint32_t uid, const std::string& target) {
  ensureOK(execute("UID COPY " + target), "UID COPY");
  ensureOK(execute("UID STORE " + std::to_string(uid) + " +FLAGS (\\Deleted)"), "UID STORE");
}

void IMAPClient::markRead(std::uint32_t uid) {
  requireInbox();
  ensureOK(execute("UID STORE " + std::to_string(uid) + " +FLAGS (\\Seen)"), "UID STORE");
}

}  // namespace tarnwell
