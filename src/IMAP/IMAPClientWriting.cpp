/// The three changes to the mailbox: move, copy and flag, mark as read (RFC 3501, section 6.4, and RFC 6851).
/// No command here or elsewhere expunges.

#include <algorithm>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/IMAPClient.h"
#include "Platform/EndSignals.h"

namespace tarnwell {

/// Nobody would know whether a change happened that was given up between its command and its answer. So from
/// here on the session is not given up.
void IMAPClient::beginChange() {
  beginInInbox();
  watch_.cancellation.throwIfCancelled();
  connection().watch({});
  hasBegunChange_ = true;
}

/// Deliberate: sends MOVE whatever the capabilities say; the server's answer decides. Trusts an OK even for a
/// UID that no longer exists, because servers ignore such a UID silently (RFC 3501, section 6.4.8).
MoveOutcome IMAPClient::move(std::uint32_t uid, std::string_view toFolderPath, CopyFallback fallback) {
  beginChange();
  const std::string target = std::to_string(uid) + " " + quoted(toFolderPath);
  const IMAPParser::Completion completion = execute("UID MOVE " + target);
  if (completion.status == IMAPParser::Completion::Status::ok) {
    return MoveOutcome::moved;
  }
  if (fallback == CopyFallback::forbidden) {
    throw IMAPError::moveRejected(serverText(completion.text));
  }
  watch_.cancellation.throwIfCancelled();  // nothing has changed yet
  copyThenFlagDeleted(uid, target);
  return MoveOutcome::copiedAndFlaggedDeleted;
}

/// If the flag cannot be set, the copy stays: the message is then in both places. So a signal that asks the
/// program to end waits until both commands are answered, and the end of the session leaves time for the
/// flag.
void IMAPClient::copyThenFlagDeleted(std::uint32_t uid, const std::string& target) {
  constexpr std::chrono::seconds timeToFlag{5};
  const EndSignals::Postponed untilFlagged;
  ensureOK(execute("UID COPY " + target), "UID COPY");
  sessionEnd_ = std::max(sessionEnd_, std::chrono::steady_clock::now() + timeToFlag);
  connection().endBy(sessionEnd_);
  ensureOK(execute("UID STORE " + std::to_string(uid) + " +FLAGS (\\Deleted)"), "UID STORE");
}

void IMAPClient::markRead(std::uint32_t uid) {
  beginChange();
  ensureOK(execute("UID STORE " + std::to_string(uid) + " +FLAGS (\\Seen)"), "UID STORE");
}

}  // namespace tarnwell
