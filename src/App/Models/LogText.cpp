#include "App/Models/LogText.h"

#include <QLatin1String>
#include <QStringView>
#include <algorithm>
#include <cstddef>
#include <optional>

namespace tarnwell {
namespace {

/// What a hole in a pattern takes, and where it goes.
enum class Hole : char { name = 'N', detail = 'D', count = 'C', withheld = 'W' };

/// A capital letter after "%" is a hole. A name holds no blank, a number only digits, a detail anything.
struct Pattern {
  LogPhrase phrase;
  const char* text;
};

/// The first one that fits counts.
constexpr Pattern messages[] = {
    {LogPhrase::helperStarting, "tarnwell serve starting"},
    {LogPhrase::helperReady, "stdio MCP server started"},
    {LogPhrase::assistantConnected, "initialize (protocol %N)"},
    {LogPhrase::assistantLeft, "stdio input stream ended"},
    {LogPhrase::helperStopped, "stdio MCP server stopped"},
    {LogPhrase::callTried, "tried by the user: %N"},
    {LogPhrase::callBegan, "tool call: %N"},
    {LogPhrase::callCancelled, "cancelled by the client before it began: %N"},
    {LogPhrase::callOutlivedItsConnection, "a call was not run: its connection closed before it began"},
    {LogPhrase::writeAllowed, "write %N: execute"},
    {LogPhrase::writePreviewed, "write %N: dry-run"},
    {LogPhrase::writeRefusedReadOnly, "write %N: blocked(read-only)"},
    {LogPhrase::writeRefusedBySetting, "write %N: blocked(disabled)"},
    {LogPhrase::callEnded, "tool %N: %D ms)"},
    {LogPhrase::callFailed, "tool %N failed: %D"},
    {LogPhrase::callMetKeyringError, "tool %N keychain error %D"},
    {LogPhrase::callBroke, "tool %N error: %D"},
    {LogPhrase::signedIn, "Authenticated to IMAP for %N"},
    {LogPhrase::settingsUnreadable, "Config file unreadable; using defaults"},
    {LogPhrase::settingsSetAside, "Config file set aside: %D; using defaults"},
    {LogPhrase::testNotSaved, "test outcome not saved: %D"},
    {LogPhrase::passwordNotRead, "app password not read: %D"},
    {LogPhrase::passwordNotPutBack, "app password not put back: %D"},
    {LogPhrase::passwordOfOtherAccountNotRemoved, "app password of the account before not removed: %D"},
    {LogPhrase::endpointListening, "localhost MCP HTTP server listening on %N"},
    {LogPhrase::endpointFailed, "HTTP listener failed: %D"},
    {LogPhrase::endpointStopped, "localhost MCP HTTP server stopped"},
};

/// What a call gave, in the words between "tool ...: " and the time.
constexpr Pattern outcomes[] = {
    {LogPhrase::foundMessages, "%C messages, %W withheld"},
    {LogPhrase::foundMessages, "%C message, %W withheld"},
    {LogPhrase::foundMessages, "%C messages"},
    {LogPhrase::foundMessages, "%C message"},
    {LogPhrase::foundFolders, "%C folders"},
    {LogPhrase::foundFolders, "%C folder"},
    {LogPhrase::readText, "a text of %C characters"},
    {LogPhrase::textWithheld, "withheld"},
    {LogPhrase::textWithheld, "1 message, withheld"},
    {LogPhrase::hadNoText, "no text"},
    {LogPhrase::statusConfigured, "configured"},
    {LogPhrase::statusNotConfigured, "not configured"},
    {LogPhrase::changeMade, "executed"},
    {LogPhrase::changePreviewed, "previewed"},
    {LogPhrase::changeRefused, "blocked"},
    {LogPhrase::callStopped, "cancelled"},
};

bool isNumber(QStringView text) {
  constexpr qsizetype longest = 18;
  return !text.isEmpty() && text.size() <= longest &&
         std::all_of(text.begin(), text.end(), [](QChar digit) { return digit >= u'0' && digit <= u'9'; });
}

/// Puts the text into the field of the hole. False when it does not fit.
bool fill(LogText& result, char hole, QStringView text) {
  switch (static_cast<Hole>(hole)) {
    case Hole::name:
      result.name = text.toString();
      return !text.isEmpty() && !text.contains(u' ');
    case Hole::detail:
      result.detail = text.toString();
      return true;
    case Hole::count:
      result.count = text.toLongLong();
      return isNumber(text);
    case Hole::withheld:
      result.withheld = text.toLongLong();
      return isNumber(text);
  }
  return false;
}

/// A hole ends where the text after it first occurs. The last text must end the message.
std::optional<LogText> match(const Pattern& pattern, QStringView message) {
  LogText result{.phrase = pattern.phrase};
  QLatin1String rest(pattern.text);
  for (;;) {
    const qsizetype percent = rest.indexOf('%');
    const QLatin1String fixed = percent < 0 ? rest : rest.first(percent);
    if (!message.startsWith(fixed)) {
      return std::nullopt;
    }
    message = message.sliced(fixed.size());
    if (percent < 0) {
      return message.isEmpty() ? std::optional(result) : std::nullopt;
    }
    const char hole = rest[percent + 1].toLatin1();
    rest = rest.sliced(percent + 2);
    const qsizetype next = rest.indexOf('%');
    const qsizetype end = next >= 0                ? message.indexOf(rest.first(next))
                          : rest.isEmpty()         ? message.size()
                          : message.endsWith(rest) ? message.size() - rest.size()
                                                   : -1;
    if (end < 0 || !fill(result, hole, message.first(end))) {
      return std::nullopt;
    }
    message = message.sliced(end);
  }
}

template <std::size_t size>
std::optional<LogText> firstMatch(const Pattern (&patterns)[size], QStringView message) {
  for (const Pattern& pattern : patterns) {
    if (std::optional<LogText> text = match(pattern, message)) {
      return text;
    }
  }
  return std::nullopt;
}

/// Reads what a call gave from the detail "16 messages, 5 withheld (247".
std::optional<LogText> outcomeOf(const LogText& ended) {
  const qsizetype bracket = ended.detail.lastIndexOf(u'(');
  const QStringView time = QStringView(ended.detail).sliced(bracket + 1);
  if (bracket < 1 || !isNumber(time)) {
    return std::nullopt;
  }
  const QString words = ended.detail.first(bracket - 1);
  LogText outcome =
      firstMatch(outcomes, words).value_or(LogText{.phrase = LogPhrase::callEnded, .detail = words});
  outcome.name = ended.name;
  outcome.milliseconds = time.toLongLong();
  return outcome;
}

}  // namespace

LogText recognised(const QString& message) {
  std::optional<LogText> text = firstMatch(messages, message);
  if (text && text->phrase == LogPhrase::callEnded) {
    text = outcomeOf(*text);
  }
  return text.value_or(LogText{});
}

}  // namespace tarnwell
