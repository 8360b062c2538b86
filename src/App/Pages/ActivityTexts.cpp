#include "App/Pages/ActivityTexts.h"

#include <QLocale>
#include <chrono>

#include "App/Pages/CallTexts.h"

namespace tarnwell {
namespace {

/// The day only where it is not today.
QString timeWords(std::chrono::system_clock::time_point date) {
  constexpr qsizetype day = 11;  // "2024-05-01 "
  const QString full = localTime(date);
  const bool isToday = full.startsWith(localTime(std::chrono::system_clock::now()).first(day));
  return isToday ? full.sliced(day) : full;
}

}  // namespace

QString ActivityTexts::heading(ActivityColumn column) const {
  switch (column) {
    case ActivityColumn::time:
      return tr("Time");
    case ActivityColumn::level:
      return tr("Level");
    case ActivityColumn::subject:
      return tr("Subject");
    case ActivityColumn::text:
      return tr("What happened");
  }
  return {};
}

QString ActivityTexts::words(const ActivityEntry& entry, ActivityColumn column) const {
  switch (column) {
    case ActivityColumn::time:
      return timeWords(entry.date);
    case ActivityColumn::level:
      return level(entry.level);
    case ActivityColumn::subject:
      return entry.subject ? subject(*entry.subject) : entry.category;
    case ActivityColumn::text:
      return isOurs(entry) ? sentence(entry) : entry.original;
  }
  return {};
}

QString ActivityTexts::level(LogLevel level) {
  switch (level) {
    case LogLevel::debug:
      return tr("Detail");
    case LogLevel::info:
      return tr("Info");
    case LogLevel::notice:
      return tr("Notice");
    case LogLevel::error:
      return tr("Error");
  }
  return {};
}

QString ActivityTexts::subject(AppLogger::Category subject) {
  switch (subject) {
    case AppLogger::Category::app:
      return tr("Settings");
    case AppLogger::Category::mcp:
      return tr("Assistant");
    case AppLogger::Category::imap:
      return tr("Mail server");
    case AppLogger::Category::security:
      return tr("Password");
    case AppLogger::Category::tool:
      return tr("Call");
    case AppLogger::Category::http:
      return tr("Local endpoint");
  }
  return {};
}

QString ActivityTexts::missing(LogAccess access) {
  switch (access) {
    case LogAccess::readable:
      return {};
    case LogAccess::noJournal:
      return tr(
          "Only the entries of this app are shown. No system journal runs on this computer, so the "
          "helpers of your assistants leave no record.");
    case LogAccess::notAllowed:
      return tr(
          "Only the entries of this app are shown. You may not read the system journal, and it keeps "
          "none of your own.");
    case LogAccess::broken:
      return tr("Only the entries of this app are shown. The system journal could not be read.");
    case LogAccess::notSupported:
      return tr("Only the entries of this app are shown. An app cannot follow the log of this system.");
  }
  return {};
}

QString ActivityTexts::remedy(LogAccess access) {
  switch (access) {
    case LogAccess::notAllowed:
      return tr(
          "An administrator can make you a member of the group systemd-journal. Or they can keep the "
          "journal on disk, with the line \"Storage=persistent\" in /etc/systemd/journald.conf; then each "
          "user has a journal of their own.");
    case LogAccess::notSupported:
      return tr("The app Console shows it: search for the subsystem app.tarnwell.Tarnwell.");
    case LogAccess::readable:
    case LogAccess::noJournal:
    case LogAccess::broken:
      return {};
  }
  return {};
}

QString ActivityTexts::process(const ActivityProcess& process) {
  constexpr qsizetype seconds = 3;  // ":00"
  const QString since = timeWords(process.since).chopped(seconds);
  return process.program.isEmpty() ? named(process, since) : tr("%1, since %2").arg(process.program, since);
}

QString ActivityTexts::exactProcess(const ActivityProcess& process) {
  const QString since = timeWords(process.since);
  return process.program.isEmpty() ? named(process, since)
                                   : tr("%1 (process %2), since %3")
                                         .arg(process.program, QString::number(process.processID), since);
}

QString ActivityTexts::named(const ActivityProcess& process, const QString& since) {
  const QString number = QString::number(process.processID);
  switch (process.kind) {
    case ActivityProcess::Kind::thisApp:
      return tr("This app");
    case ActivityProcess::Kind::helper:
      return tr("Helper %1, since %2").arg(number, since);
    case ActivityProcess::Kind::other:
      return tr("Program %1, since %2").arg(number, since);
  }
  return {};
}

QString ActivityTexts::sentence(const ActivityEntry& entry) {
  return entry.call ? CallTexts::row(*entry.call, entry.text) : sentence(entry.text);
}

QString ActivityTexts::sentence(const LogText& text) {
  switch (text.phrase) {
    case LogPhrase::other:
      return {};
    case LogPhrase::helperStarting:
      return tr("A helper starts for an assistant.");
    case LogPhrase::helperReady:
      return tr("The helper is ready.");
    case LogPhrase::assistantConnected:
      return tr("An assistant connected (protocol %1).").arg(text.name);
    case LogPhrase::assistantLeft:
      return tr("The assistant said goodbye.");
    case LogPhrase::helperStopped:
      return tr("The helper stopped.");
    case LogPhrase::callTried:
      return tr("You try %1.").arg(text.name);
    case LogPhrase::callBegan:
      return tr("%1 is called.").arg(text.name);
    case LogPhrase::callCancelled:
      return tr("The assistant cancelled %1 before it began.").arg(text.name);
    case LogPhrase::callOutlivedItsConnection:
      return tr("A call was not run: its connection closed before it began.");
    case LogPhrase::writeAllowed:
      return tr("The safety settings allow %1.").arg(text.name);
    case LogPhrase::writePreviewed:
      return tr("%1 is a preview: it will change nothing.").arg(text.name);
    case LogPhrase::writeRefusedReadOnly:
      return tr("%1 is refused: read-only mode is on.").arg(text.name);
    case LogPhrase::writeRefusedBySetting:
      return tr("%1 is refused: it is off in the safety settings.").arg(text.name);
    case LogPhrase::foundMessages:
      return text.withheld > 0
                 ? tr("%1 gave %Ln message(s), %2 withheld (%3).", nullptr, CallTexts::count(text.count))
                       .arg(text.name, QLocale().toString(text.withheld), CallTexts::seconds(text))
                 : tr("%1 gave %Ln message(s) (%2).", nullptr, CallTexts::count(text.count))
                       .arg(text.name, CallTexts::seconds(text));
    case LogPhrase::foundFolders:
      return tr("%1 gave %Ln folder(s) (%2).", nullptr, CallTexts::count(text.count))
          .arg(text.name, CallTexts::seconds(text));
    case LogPhrase::readText:
      return tr("%1 gave a text of %Ln character(s) (%2).", nullptr, CallTexts::count(text.count))
          .arg(text.name, CallTexts::seconds(text));
    case LogPhrase::textWithheld:
      return tr("%1 withheld the text of the message (%2).").arg(text.name, CallTexts::seconds(text));
    case LogPhrase::hadNoText:
      return tr("%1 found no text in the message (%2).").arg(text.name, CallTexts::seconds(text));
    case LogPhrase::statusConfigured:
      return tr("%1 answered that an account is set up (%2).").arg(text.name, CallTexts::seconds(text));
    case LogPhrase::statusNotConfigured:
      return tr("%1 answered that no account is set up (%2).").arg(text.name, CallTexts::seconds(text));
    case LogPhrase::changeMade:
      return tr("%1 changed the mailbox (%2).").arg(text.name, CallTexts::seconds(text));
    case LogPhrase::changePreviewed:
      return tr("%1 told what it would change, and changed nothing (%2).")
          .arg(text.name, CallTexts::seconds(text));
    case LogPhrase::changeRefused:
      return tr("%1 was refused and changed nothing (%2).").arg(text.name, CallTexts::seconds(text));
    case LogPhrase::callStopped:
      return tr("%1 was cancelled (%2).").arg(text.name, CallTexts::seconds(text));
    case LogPhrase::callEnded:
      return tr("%1 answered: %2 (%3).").arg(text.name, text.detail, CallTexts::seconds(text));
    case LogPhrase::callFailed:
      return tr("%1 failed: %2").arg(text.name, text.detail);
    case LogPhrase::callMetKeyringError:
      return tr("%1 could not use the keyring: %2").arg(text.name, text.detail);
    case LogPhrase::callBroke:
      return tr("%1 failed by a fault of the helper: %2").arg(text.name, text.detail);
    case LogPhrase::signedIn:
      return tr("Signed in to the mail server as %1.").arg(text.name);
    case LogPhrase::settingsUnreadable:
      return tr("The settings file cannot be read. The default settings hold.");
    case LogPhrase::settingsSetAside:
      return tr("The settings file is not trusted (%1). The default settings hold.").arg(text.detail);
    case LogPhrase::testNotSaved:
      return tr("The outcome of the connection test was not saved: %1").arg(text.detail);
    case LogPhrase::passwordNotRead:
      return tr("The app password was not read: %1").arg(text.detail);
    case LogPhrase::passwordNotPutBack:
      return tr("The app password from before was not put back: %1").arg(text.detail);
    case LogPhrase::passwordOfOtherAccountNotRemoved:
      return tr("The app password of the account before was not removed: %1").arg(text.detail);
    case LogPhrase::endpointListening:
      return tr("The local endpoint listens on %1.").arg(text.name);
    case LogPhrase::endpointFailed:
      return tr("The local endpoint failed: %1").arg(text.detail);
    case LogPhrase::endpointStopped:
      return tr("The local endpoint stopped.");
  }
  return {};
}

}  // namespace tarnwell
