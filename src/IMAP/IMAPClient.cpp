#include "IMAP/IMAPClient.h"

#include <algorithm>
#include <utility>

#include "Core/AppLogger.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Responses/Words.h"
#include "Text/ASCIICase.h"
#include "Text/Text.h"

namespace tarnwell {

namespace {

std::chrono::steady_clock::time_point after(std::chrono::duration<double> seconds) {
  using Clock = std::chrono::steady_clock;
  return Clock::now() + std::chrono::duration_cast<Clock::duration>(seconds);
}

std::string_view selectionCommand(IMAPClient::Access access) {
  return access == IMAPClient::Access::readOnly ? "EXAMINE INBOX" : "SELECT INBOX";
}

}  // namespace

IMAPClient::IMAPClient(std::string host, std::int64_t port, std::string email, Secret password,
                       std::chrono::duration<double> timeout, SessionLimits limits)
    : IMAPClient(
          [host = std::move(host), port, timeout] {
            if (!std::in_range<std::uint16_t>(port)) {
              throw IMAPError::invalidArgument("IMAP port " + std::to_string(port) + " is out of range");
            }
            return std::make_unique<IMAPConnection>(host, port, timeout);
          },
          std::move(email), std::move(password), limits) {}

IMAPClient::IMAPClient(ConnectionFactory makeConnection, std::string email, Secret password,
                       SessionLimits limits)
    : makeConnection_(std::move(makeConnection)),
      email_(std::move(email)),
      password_(std::move(password)),
      limits_(limits) {}

void IMAPClient::connect() {
  beginSession();
  ensureOK(execute("CAPABILITY", [this](const std::string& line) { readCapabilities(line); }), "CAPABILITY");
  logAuthenticated();
}

void IMAPClient::connectToInbox(Access access) {
  beginSession();
  const std::string capability = queue("CAPABILITY");
  const std::string_view selection = selectionCommand(access);
  queue(selection);
  sendQueued();
  while (!underWay_.empty()) {
    const Tagged answer = readTagged([this](const std::string& line) { readCapabilities(line); });
    const bool isCapability = answer.tag == capability;
    ensureOK(answer.completion, isCapability ? "CAPABILITY" : selection);
    if (isCapability) {
      logAuthenticated();
    }
  }
  selectedMailbox_ = "INBOX";
  watch_.report(SessionStage::inboxOpened);
}

void IMAPClient::beginSession() {
  capabilities_.clear();
  selectedMailbox_.reset();
  queued_.clear();
  underWay_.clear();
  hasBegunChange_ = false;
  connection_ = makeConnection_();
  sessionEnd_ = after(limits_.whole);
  connection_->endBy(sessionEnd_);
  connection_->watch(watch_);
  connection_->connect();
  readGreeting();
  logIn();
  watch_.report(SessionStage::signedIn);
}

void IMAPClient::logAuthenticated() const {
  AppLogger::info(AppLogger::Category::imap, "Authenticated to IMAP for " + AppLogger::redact(email_));
}

/// Deliberate: accepts any untagged greeting, also BYE and PREAUTH. The next commands show what is wrong.
void IMAPClient::readGreeting() {
  const std::string greeting = connection().readLogicalLine();
  if (!greeting.starts_with('*')) {
    throw IMAPError::unexpectedResponse(serverText(greeting));
  }
}

void IMAPClient::logIn() {
  Secret command("LOGIN ");
  appendQuoted(command, email_);
  command.append(' ');
  appendQuoted(command, password_.view());
  if (execute(command.view()).status != IMAPParser::Completion::Status::ok) {
    throw IMAPError::authenticationFailed();
  }
}

void IMAPClient::readCapabilities(std::string_view response) {
  takeWord(response);
  if (!equalsIgnoringASCIICase(takeWord(response), "CAPABILITY")) {
    return;
  }
  // test-connection prints the names, so they must not hold terminal controls.
  for (std::string_view name; !(name = takeWord(response)).empty();) {
    capabilities_.insert(uppercased(serverText(name)));
  }
}

std::vector<std::string> IMAPClient::serverCapabilities() const {
  return {capabilities_.begin(), capabilities_.end()};
}

bool IMAPClient::supportsMove() const { return capabilities_.contains("MOVE"); }

std::vector<IMAPFolder> IMAPClient::listFolders() {
  std::vector<IMAPFolder> folders;
  const auto read = [&folders](const std::string& line) {
    const IMAPTokens tokens = IMAPParser::tokenize(line);
    if (std::optional<IMAPFolder> folder = IMAPParser::parseList(tokens.elements())) {
      folders.push_back(std::move(*folder));
    }
  };
  ensureOK(execute("LIST \"\" \"*\"", read), "LIST");
  return folders;
}

void IMAPClient::selectInbox(Access access) {
  const std::string_view command = selectionCommand(access);
  ensureOK(execute(command), command);
  selectedMailbox_ = "INBOX";
  watch_.report(SessionStage::inboxOpened);
}

/// After a failure answers may be under way. They are dropped, so none is taken for that of another command.
void IMAPClient::beginInInbox() {
  if (selectedMailbox_ != "INBOX") {
    throw IMAPError::mailboxNotSelected();
  }
  while (!underWay_.empty()) {
    readTagged(passOver);
  }
}

void IMAPClient::disconnect() noexcept {
  if (connection_ && connection_->isAlive()) {
    try {
      connection_->endBy(std::min(sessionEnd_, after(limits_.logout)));
      execute("LOGOUT");
    } catch (const std::exception&) {
      // The session ends here in any case.
    }
  }
  if (connection_) {
    connection_->close();
  }
  connection_.reset();
  selectedMailbox_.reset();
}

}  // namespace tarnwell
