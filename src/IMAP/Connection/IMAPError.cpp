#include "IMAP/Connection/IMAPError.h"

#include <utility>

namespace tarnwell {

IMAPError IMAPError::connectionFailed(std::string text) {
  return {Kind::connectionFailed, "Could not connect to the IMAP server: " + std::move(text)};
}

IMAPError IMAPError::tlsFailed(std::string text) {
  return {Kind::tlsFailed, "TLS handshake failed: " + std::move(text)};
}

IMAPError IMAPError::commandFailed(std::string command, std::string detail) {
  return {Kind::commandFailed, "IMAP " + std::move(command) + " failed: " + std::move(detail)};
}

IMAPError IMAPError::unexpectedResponse(std::string text) {
  return {Kind::unexpectedResponse, "Unexpected IMAP response: " + std::move(text)};
}

IMAPError IMAPError::folderNotFound(std::string name) {
  return {Kind::folderNotFound, "Folder not found: " + std::move(name)};
}

/// Deliberate: the text tells the user which setting helps, and that the others do not.
IMAPError IMAPError::moveRejected(std::string detail) {
  return {Kind::moveRejected,
          "The mail server rejected the move (" + std::move(detail) +
              "). This is a server-side limitation — it is NOT fixed by changing read-only, dry-run, or the "
              "allow toggles. To move anyway without permanent deletion, enable \"" +
              std::string(copyFallbackLabel) +
              "\" in Safety settings. (The bridge never performs a physical delete / EXPUNGE.)"};
}

IMAPError IMAPError::invalidArgument(std::string text) {
  return {Kind::invalidArgument, "Invalid argument: " + std::move(text)};
}

IMAPError IMAPError::notConfigured() {
  return {Kind::notConfigured,
          "No iCloud account is configured. Open the app and save your email + app password."};
}

IMAPError IMAPError::timeout() { return {Kind::timeout, "The IMAP server did not respond in time."}; }

IMAPError IMAPError::connectionClosed() {
  return {Kind::connectionClosed, "The IMAP connection was closed unexpectedly."};
}

IMAPError IMAPError::authenticationFailed() {
  return {Kind::authenticationFailed,
          "Authentication failed. Check the email address and Apple app-specific password."};
}

IMAPError IMAPError::mailboxNotSelected() { return {Kind::mailboxNotSelected, "No mailbox is selected."}; }

}  // namespace tarnwell
