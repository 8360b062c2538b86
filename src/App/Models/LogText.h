#pragma once

/// Recognises the texts that this program logs, so that the app can say them in the reader's language.
///
///     recognised("tool search_inbox: 16 messages, 5 withheld (247 ms)");
///     // .phrase = foundMessages, .name = "search_inbox", .count = 16, .withheld = 5, .milliseconds = 247
///
/// Threads: any.

#include <QString>

namespace tarnwell {

enum class LogPhrase {
  /// A text that is not one of ours.
  other,
  // The helper and its assistant.
  helperStarting,
  helperReady,
  assistantConnected,  // name: the protocol's version
  assistantLeft,
  helperStopped,
  // Calls. name: the tool.
  callTried,  // by the user
  callBegan,
  callCancelled,
  callOutlivedItsConnection,  // no name
  writeAllowed,
  writePreviewed,
  writeRefusedReadOnly,
  writeRefusedBySetting,
  // What a call gave, after `milliseconds`.
  foundMessages,  // count, withheld
  foundFolders,   // count
  readText,       // count: characters
  textWithheld,
  hadNoText,
  statusConfigured,
  statusNotConfigured,
  changeMade,
  changePreviewed,
  changeRefused,
  callStopped,  // cancelled after it had begun
  callEnded,    // detail: what it gave, in a text that is not one of ours
  callFailed,
  callMetKeyringError,
  callBroke,
  // The mail server. name: the masked address.
  signedIn,
  // Settings and password. detail: the reason.
  settingsUnreadable,  // no detail
  settingsSetAside,
  testNotSaved,
  passwordNotRead,
  passwordNotPutBack,
  passwordOfOtherAccountNotRemoved,
  // The local endpoint.
  endpointListening,  // name: the address
  endpointFailed,     // detail: the address and the reason
  endpointStopped,
};

struct LogText {
  LogPhrase phrase = LogPhrase::other;
  QString name{};
  /// Words that nobody here wrote or translates, such as those of a mail server.
  QString detail{};
  qint64 count = 0;
  qint64 withheld = 0;
  qint64 milliseconds = 0;

  bool operator==(const LogText&) const = default;
};

LogText recognised(const QString& message);

}  // namespace tarnwell
