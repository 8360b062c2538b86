/// The three changes to the mailbox: move, copy and flag, mark as read (RFC 3501, section 6.4, and RFC 6851).
/// No command here or elsewhere expunges.

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/IMAPClient.h"
#include "Platform/EndSignals.h"

namespace tarnwell {

/// Deliberate: sends MOVE whatever the capabilities say; the server's answer decides. Trusts an OK even for a
/// UID that no longer exists, because servers ignore such a UID silently (RFC 3501, section 6.4.8).
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

/// If the flag cannot be set, the copy stays: the message is then in both places. A signal that asks the
/// program to end waits until both commands are answered, because the message would be in both places too.
void IMAPClient::copyThenFlagDeleted(std::uint32_t uid, const std::string& target) {
  const EndSignals::Postponed bothOrNone;
  ensureOK(execute("UID COPY " + target), "UID COPY");
  ensureOK(execute("UID STORE " + std::to_string(uid) + " +FLAGS (\\Deleted)"), "UID STORE");
}

void IMAPClient::markRead(std::uint32_t uid) {
  requireInbox();
  ensureOK(execute("UID STORE " + std::to_string(uid) + " +FLAGS (\\Seen)"), "UID STORE");
}

}  // namespace tarnwell
