#include "IMAP/Connection/IMAPError.h"

#include <gtest/gtest.h>

#include <vector>

namespace tarnwell {
namespace {

TEST(IMAPError, describesItself) {
  struct Row {
    IMAPError error;
    IMAPError::Kind kind;
    std::string description;
  };
  using Kind = IMAPError::Kind;
  const std::vector<Row> rows{
      {IMAPError::connectionFailed("refused"), Kind::connectionFailed,
       "Could not connect to the IMAP server: refused"},
      {IMAPError::tlsFailed("bad"), Kind::tlsFailed, "TLS handshake failed: bad"},
      {IMAPError::commandFailed("SELECT", " [NONEXISTENT]  no such \n"), Kind::commandFailed,
       "IMAP SELECT failed:  [NONEXISTENT]  no such \n"},
      {IMAPError::unexpectedResponse("* BYE"), Kind::unexpectedResponse, "Unexpected IMAP response: * BYE"},
      {IMAPError::folderNotFound("Old"), Kind::folderNotFound, "Folder not found: Old"},
      {IMAPError::moveRejected("UID"), Kind::moveRejected,
       "The mail server rejected the move (UID). This is a server-side limitation \xE2\x80\x94 it is NOT "
       "fixed "
       "by changing read-only, dry-run, or the allow toggles. To move anyway without permanent deletion, "
       "enable \"Move on servers without MOVE (COPY + mark deleted)\" in Safety settings. (The bridge never "
       "performs a physical delete / EXPUNGE.)"},
      {IMAPError::invalidArgument("x"), Kind::invalidArgument, "Invalid argument: x"},
      {IMAPError::notConfigured(), Kind::notConfigured,
       "No iCloud account is configured. Open the app and save your email + app password."},
      {IMAPError::timeout(), Kind::timeout, "The IMAP server did not respond in time."},
      {IMAPError::connectionClosed(), Kind::connectionClosed, "The IMAP connection was closed unexpectedly."},
      {IMAPError::authenticationFailed(), Kind::authenticationFailed,
       "Authentication failed. Check the email address and Apple app-specific password."},
      {IMAPError::mailboxNotSelected(), Kind::mailboxNotSelected, "No mailbox is selected."},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.description);
    EXPECT_EQ(row.error.kind(), row.kind);
    EXPECT_EQ(row.error.description(), row.description);
    EXPECT_STREQ(row.error.what(), row.description.c_str());
  }
}

TEST(IMAPError, equalsByKindAndDescription) {
  EXPECT_TRUE(IMAPError::timeout() == IMAPError::timeout());
  EXPECT_FALSE(IMAPError::timeout() == IMAPError::connectionClosed());
  EXPECT_FALSE(IMAPError::folderNotFound("a") == IMAPError::folderNotFound("b"));
}

}  // namespace
}  // namespace tarnwell
