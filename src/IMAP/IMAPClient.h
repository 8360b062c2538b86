#pragma once

/// One authenticated session on the user's mailbox (RFC 3501).
///
///     IMAPClient client("imap.example.org", 993, "user@example.org", std::move(password), timeout);
///     client.connectToInbox(IMAPClient::Access::readOnly);
///     for (const IMAPMessage& message : client.fetchMessages(client.searchInbox(criteria, 20))) ...
///     client.disconnect();
///
/// The client selects only the inbox. It alone writes commands, from a closed set. It sends texts of the user
/// as literals or escaped in quotes, so no text can become a second command. There is no command that
/// expunges, and none that creates, renames or deletes a mailbox.
///
/// Every operation but `disconnect` throws `IMAPError`, and `Cancelled` when its watch gave the session up.
/// The client does not repair a session after a failure; the caller disconnects. Texts of the server enter an
/// error only through `safeSummary`, with the password masked.
///
/// Distance costs time, so a command that needs no earlier answer does not wait for one (RFC 3501, section
/// 5.5): CAPABILITY and the selection go out together, and so do the fetches of many bodies. LOGIN and the
/// commands that write are alone: they wait for every answer before them, and nothing is sent before theirs.
///
/// A session as a whole is bounded too, so a server that sends a byte now and then cannot hold it.
///
/// Threads: one at a time. Several clients may exist at once.

#include <chrono>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "Core/BridgeConstants.h"
#include "Core/Secret.h"
#include "IMAP/Connection/IMAPConnection.h"
#include "IMAP/Decoding/Readings.h"
#include "IMAP/IMAPSearchCriteria.h"
#include "IMAP/MoveOutcome.h"
#include "IMAP/Responses/IMAPFolder.h"
#include "IMAP/Responses/IMAPMessage.h"
#include "IMAP/Responses/IMAPParser.h"

namespace tarnwell {

/// How long a session may last, in seconds.
struct SessionLimits {
  /// From the beginning of `connect`. At its end every wait ends with `timeout`. Only a flag that completes a
  /// move by copy has at least 5 seconds.
  std::chrono::duration<double> whole = BridgeConstants::sessionTimeoutSeconds;
  /// For `disconnect`, within the bound of the whole session.
  std::chrono::duration<double> logout = BridgeConstants::logoutTimeoutSeconds;
};

class IMAPClient {
 public:
  using ConnectionFactory = std::function<std::unique_ptr<IMAPConnection>()>;

  /// Does not use the network. `timeout` bounds each single wait. `connect` checks the port.
  IMAPClient(std::string host, std::int64_t port, std::string email, Secret password,
             std::chrono::duration<double> timeout, SessionLimits limits = {});

  /// Uses the connections that the factory makes.
  IMAPClient(ConnectionFactory makeConnection, std::string email, Secret password, SessionLimits limits = {});

  /// Reports the stages of the next sessions to the watch. Its cancellation ends a session at its next wait:
  /// the operation throws `Cancelled`. A command that writes and is on the wire is finished all the same.
  void watch(SessionWatch watch) { watch_ = std::move(watch); }

  /// Connects, checks the greeting, logs in and asks for the capabilities. Throws `invalidArgument` before
  /// any connection for a port outside 0 to 65535, and `authenticationFailed` when the server refuses the
  /// login. A second call begins a new session that knows nothing of the first.
  void connect();

  /// The capability names in upper case, sorted. Empty before `connect`.
  std::vector<std::string> serverCapabilities() const;
  /// True when the server's capabilities contain MOVE (RFC 6851).
  bool supportsMove() const;

  /// The folders in the server's order. Skips responses that are not readable LIST responses.
  std::vector<IMAPFolder> listFolders();

  enum class Access { readOnly, readWrite };

  /// EXAMINE for `readOnly`, SELECT for `readWrite`.
  void selectInbox(Access access);

  /// The same as `connect` and `selectInbox`, in one round trip less.
  void connectToInbox(Access access);

  /// The UIDs of the matching messages, newest first, at most `limit` of them. `limit` is not negative.
  std::vector<std::uint32_t> searchInbox(const IMAPSearchCriteria& criteria, std::size_t limit);

  /// The summaries of these messages, in the order of `uids`. Leaves out messages that the server does not
  /// know.
  std::vector<IMAPMessage> fetchMessages(const std::vector<std::uint32_t>& uids);
  std::optional<IMAPMessage> fetchMessage(std::uint32_t uid);

  struct BodyText {
    /// Decoded, with HTML reduced to text. Empty without a body.
    std::string text;
    /// True when the message has a text part that is not empty.
    bool hadBody = false;
    /// The bytes and charsets from which the text was made.
    TextDecoding::BodySource source{};
  };

  /// The readable text of a message. Does not mark it read. Throws `unexpectedResponse` for an unknown UID.
  BodyText fetchBodyText(std::uint32_t uid);
  /// The same for a message whose summary is already there.
  BodyText fetchBodyText(const IMAPMessage& message);

  using BodyReader = std::function<void(const IMAPMessage&, BodyText)>;
  /// The same for several messages. Calls `read` once for each: first for those without a text, then for the
  /// others as their answers arrive. Asks for all bodies at once, so `read` must not use the client. Holds
  /// one body at a time when the server answers in order, as all do that were tried.
  void fetchBodyTexts(const std::vector<const IMAPMessage*>& messages, const BodyReader& read);

  /// Whether COPY and the \Deleted flag may replace a MOVE that the server rejects.
  enum class CopyFallback { forbidden, allowed };

  /// Moves one message from the inbox to an existing mailbox, named as the server spells it. Throws
  /// `moveRejected` when the server refuses and the fallback is forbidden.
  MoveOutcome move(std::uint32_t uid, std::string_view toFolderPath, CopyFallback fallback);

  /// Sets the \Seen flag of one message.
  void markRead(std::uint32_t uid);

  /// True from the moment when a change of this session goes out. Its outcome concerns the caller whatever
  /// was cancelled since.
  bool hasBegunChange() const { return hasBegunChange_; }

  /// Sends LOGOUT if the connection is still open, reads what is under way and its answer, then closes. Never
  /// fails.
  void disconnect() noexcept;

  /// The text in double quotes, with backslashes and quotes escaped. Throws `invalidArgument` for a text with
  /// a control character.
  static std::string quoted(std::string_view text);

  /// The UTC day of the instant, as in "5-Mar-2024".
  static std::string imapDate(Instant instant);

  /// Makes a server's text fit for an error. Replaces control and format characters by blanks, trims,
  /// replaces the password by "***", also in its escaped form, and keeps at most 200 user-perceived
  /// characters.
  static std::string safeSummary(std::string_view text, const Secret& password = Secret());

 private:
  /// One piece of a command line: copied unchanged, or sent as a synchronising literal.
  struct IMAPArg {
    enum class Kind { raw, literal };
    Kind kind;
    std::string text;
  };

  /// Reads an untagged response with its literals in place, and takes from it what it needs. Each response is
  /// passed on when it arrives and dropped afterwards. A flood of responses therefore takes no memory.
  using ResponseReader = std::function<void(std::string line)>;
  static void passOver(const std::string& /*line*/) {}

  static std::vector<IMAPArg> buildSearchArgs(const IMAPSearchCriteria& criteria);
  std::string serverText(std::string_view text) const { return safeSummary(text, password_); }
  void ensureOK(const IMAPParser::Completion& completion, std::string_view command) const;
  static void appendQuoted(Secret& line, std::string_view text);
  static std::optional<std::string_view> extractFirstLiteral(std::string_view response);

  /// The answer to one of the commands under way.
  struct Tagged {
    std::string tag;
    IMAPParser::Completion completion;
  };

  /// The fetch of one body.
  struct BodyRequest {
    const IMAPMessage* message;
    std::string command;
    std::string tag{};  // once it was sent
    std::optional<std::string> body{};
  };

  std::string nextTag();
  IMAPParser::Completion execute(std::string_view command, const ResponseReader& read = passOver);
  IMAPParser::Completion executeArgs(const std::vector<IMAPArg>& arguments, const ResponseReader& read);
  std::string queue(std::string_view command);
  void sendQueued();
  IMAPParser::Completion readUntilTagged(const std::string& tag, const ResponseReader& read);
  Tagged readTagged(const ResponseReader& read);
  void requestContinuation(Secret& line, std::size_t literalSize);

  IMAPConnection& connection();
  void beginInInbox();
  void beginChange();
  void beginSession();
  void readGreeting();
  void logIn();
  void readCapabilities(std::string_view response);
  void logAuthenticated() const;
  void copyThenFlagDeleted(std::uint32_t uid, const std::string& target);
  static void keepBody(std::deque<BodyRequest>& sent, std::string response);

  ConnectionFactory makeConnection_;
  std::string email_;
  Secret password_;
  SessionLimits limits_;
  SessionWatch watch_;
  std::chrono::steady_clock::time_point sessionEnd_;
  std::unique_ptr<IMAPConnection> connection_;
  unsigned tagCounter_ = 0;
  Secret queued_;                      // commands to send
  std::vector<std::string> underWay_;  // the tags of the commands without an answer
  std::set<std::string> capabilities_;
  std::optional<std::string> selectedMailbox_;
  bool hasBegunChange_ = false;
};

}  // namespace tarnwell
