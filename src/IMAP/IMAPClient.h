#pragma once

/// One authenticated session on the user's mailbox (RFC 3501).
///
///     IMAPClient client("imap.example.org", 993, "user@example.org", std::move(password), timeout);
///     client.connect();
///     client.selectInbox(IMAPClient::Access::readOnly);
///     for (const IMAPMessage& message : client.fetchMessages(client.searchInbox(criteria, 20))) ...
///     client.disconnect();
///
/// Only the inbox is ever selected. Commands are made here and nowhere else, from a closed set; user texts
/// go out as literals or escaped in quotes, so no text can become a second command. There is no command
/// that expunges, and none that creates, renames or deletes a mailbox.
///
/// Every operation but `disconnect` throws `IMAPError`. The session is not repaired after a failure; the
/// caller disconnects. Texts of the server enter an error only through `safeSummary`, with the password
/// masked.
///
/// Threads: one at a time; several clients may exist at once.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Secret.h"
#include "IMAP/Connection/IMAPConnection.h"
#include "IMAP/Decoding/Readings.h"
#include "IMAP/IMAPSearchCriteria.h"
#include "IMAP/MoveOutcome.h"
#include "IMAP/Responses/IMAPFolder.h"
#include "IMAP/Responses/IMAPMessage.h"
#include "IMAP/Responses/IMAPParser.h"

namespace tarnwell {

class IMAPClient {
 public:
  using ConnectionFactory = std::function<std::unique_ptr<IMAPConnection>()>;

  /// Touches no network. `timeout` bounds every single wait. The port is checked by `connect`.
  IMAPClient(std::string host, std::int64_t port, std::string email, Secret password,
             std::chrono::duration<double> timeout);

  /// Over any connection.
  IMAPClient(ConnectionFactory makeConnection, std::string email, Secret password);

  /// Connects, checks the greeting, logs in, asks for the capabilities. Throws `invalidArgument` for a port
  /// outside 0 to 65535 before anything is connected, `authenticationFailed` when the login is refused.
  /// Called again it begins a new session, which knows nothing of the one before.
  void connect();

  /// The capability names, upper-cased and sorted; empty before `connect`.
  std::vector<std::string> serverCapabilities() const;
  /// The server names MOVE (RFC 6851).
  bool supportsMove() const;

  /// In the server's order; what is no readable LIST response is left out.
  std::vector<IMAPFolder> listFolders();

  enum class Access { readOnly, readWrite };

  /// EXAMINE for `readOnly`, SELECT for `readWrite`.
  void selectInbox(Access access);

  /// The UIDs of the matching messages, newest first, at most `limit` (not negative) of them.
  std::vector<std::uint32_t> searchInbox(const IMAPSearchCriteria& criteria, std::size_t limit);

  /// The summaries of these messages in the order of `uids`, without those the server does not know.
  std::vector<IMAPMessage> fetchMessages(const std::vector<std::uint32_t>& uids);
  std::optional<IMAPMessage> fetchMessage(std::uint32_t uid);

  struct BodyText {
    /// Decoded, HTML reduced to text; empty without a body.
    std::string text;
    /// The message has a text part, and it is not empty.
    bool hadBody = false;
    /// What the text was made of.
    TextDecoding::BodySource source{};
  };

  /// The readable text of a message, left unread. Throws `unexpectedResponse` for an unknown UID.
  BodyText fetchBodyText(std::uint32_t uid);
  /// The same for a message whose summary is at hand.
  BodyText fetchBodyText(const IMAPMessage& message);

  using BodyReader = std::function<void(const IMAPMessage&, BodyText)>;
  /// The same for several, one after the other: `read` is called for each, first for those without a text.
  /// Each body is asked for when the one before it has come and before that is decoded and read, so that the
  /// server works meanwhile; `read` must not use the client. Two commands are never under way.
  void fetchBodyTexts(const std::vector<const IMAPMessage*>& messages, const BodyReader& read);

  /// Whether COPY and the \Deleted flag may stand in for a MOVE that the server rejects.
  enum class CopyFallback { forbidden, allowed };

  /// Moves one message out of the inbox into an existing mailbox, named as the server spells it. Throws
  /// `moveRejected` when the server says no and the fallback is forbidden.
  MoveOutcome move(std::uint32_t uid, std::string_view toFolderPath, CopyFallback fallback);

  /// Sets the \Seen flag of one message.
  void markRead(std::uint32_t uid);

  /// Says LOGOUT if the session still lives, then closes. Never fails.
  void disconnect() noexcept;

  /// A text in double quotes, backslashes and quotes escaped. Throws `invalidArgument` when it holds a
  /// control character.
  static std::string quoted(std::string_view text);

  /// A day as in "5-Mar-2024" (UTC).
  static std::string imapDate(Instant instant);

  /// A server's text, fit for an error: control and format characters as blanks, trimmed, "***" in place of
  /// the password as it is and as it stands on the wire, and then at most 200 user-perceived characters.
  static std::string safeSummary(std::string_view text, const Secret& password = Secret());

 private:
  /// One piece of a command line: copied as it is, or sent as a synchronising literal.
  struct IMAPArg {
    enum class Kind { raw, literal };
    Kind kind;
    std::string text;
  };

  /// Takes what it wants of an untagged response, literals in place. Each is handed over when it arrives and
  /// gone afterwards, so that a flood of them takes no memory.
  using ResponseReader = std::function<void(std::string line)>;
  static void passOver(const std::string& /*line*/) {}

  static std::vector<IMAPArg> buildSearchArgs(const IMAPSearchCriteria& criteria);
  std::string serverText(std::string_view text) const { return safeSummary(text, password_); }
  void ensureOK(const IMAPParser::Completion& completion, std::string_view command) const;
  static void appendQuoted(Secret& line, std::string_view text);
  static std::optional<std::string_view> extractFirstLiteral(std::string_view response);

  std::string nextTag();
  IMAPParser::Completion execute(std::string_view command, const ResponseReader& read = passOver);
  IMAPParser::Completion executeArgs(const std::vector<IMAPArg>& arguments, const ResponseReader& read);
  std::string send(std::string_view command);
  IMAPParser::Completion readUntilTagged(const std::string& tag, const ResponseReader& read);
  void requestContinuation(Secret& line, std::size_t literalSize);

  IMAPConnection& connection();
  void requireInbox() const;
  void readGreeting();
  void logIn();
  void loadCapabilities();
  void readCapabilities(std::string_view response);
  void copyThenFlagDeleted(std::uint32_t uid, const std::string& target);
  std::string requestBody(const IMAPMessage& message);
  std::optional<std::string> readBody(const std::string& tag);

  ConnectionFactory makeConnection_;
  std::string email_;
  Secret password_;
  std::unique_ptr<IMAPConnection> connection_;
  unsigned tagCounter_ = 0;
  std::set<std::string> capabilities_;
  std::optional<std::string> selectedMailbox_;
};

}  // namespace tarnwell
