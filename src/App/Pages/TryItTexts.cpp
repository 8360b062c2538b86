#include "App/Pages/TryItTexts.h"

#include <QCoreApplication>
#include <QLocale>

#include "App/Models/HarmlessText.h"
#include "App/Pages/SafetyTexts.h"

namespace tarnwell::TryItTexts {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(tarnwell::TryItTexts)
};

/// A category of the detector in words. One that is not known stays as it is.
QString category(const QString& name) {
  if (name == QLatin1String("otp") || name == QLatin1String("one_time_code")) {
    return Words::tr("one-time code");
  }
  if (name == QLatin1String("verification_code")) {
    return Words::tr("verification code");
  }
  if (name == QLatin1String("password_reset")) {
    return Words::tr("password reset");
  }
  if (name == QLatin1String("security_code")) {
    return Words::tr("security code");
  }
  if (name == QLatin1String("login_code")) {
    return Words::tr("sign-in code");
  }
  if (name == QLatin1String("recovery_code")) {
    return Words::tr("recovery code");
  }
  if (name == QLatin1String("security_alert")) {
    return Words::tr("security alert");
  }
  if (name == QLatin1String("two_factor")) {
    return Words::tr("two-factor sign-in");
  }
  if (name == QLatin1String("account_link")) {
    return Words::tr("link into an account");
  }
  return name;
}

QString withheldBecauseOf(const TriedSignal& sign) {
  switch (sign.place) {
    case TriedSignal::Place::subject:
      return Words::tr("Withheld: “%1” in the subject").arg(isolated(sign.term));
    case TriedSignal::Place::sender:
      return Words::tr("Withheld: “%1” in the sender").arg(isolated(sign.term));
    case TriedSignal::Place::text:
      break;
  }
  return Words::tr("Withheld: “%1” in the text").arg(isolated(sign.term));
}

QDateTime readDate(const QString& date) {
  // Many programs add the name of the time zone as a comment, which Qt does not read.
  return QDateTime::fromString(date.section(QLatin1Char('('), 0, 0).trimmed(), Qt::RFC2822Date).toLocalTime();
}

/// The switch whose setting forbids the change.
SafetySwitch switchOf(TriedChange change) {
  switch (change) {
    case TriedChange::move:
      return SafetySwitch::allowMove;
    case TriedChange::trash:
      return SafetySwitch::allowTrash;
    case TriedChange::markRead:
      break;
  }
  return SafetySwitch::allowMarkRead;
}

QString allowed(const TriedOutcome& outcome) {
  return outcome.change == TriedChange::markRead
             ? Words::tr("Allowed: an assistant could mark this message as read. Nothing was changed now.")
             : Words::tr("Allowed: an assistant could move this message to “%1”. Nothing was changed now.")
                   .arg(isolated(outcome.folder));
}

}  // namespace

QString summary(int messages, int withheld, bool isFromBefore) {
  if (messages == 0) {
    return isFromBefore ? Words::tr("No message was found.")
                        : Words::tr("No message was found. An assistant would find none either.");
  }
  const QString found = Words::tr("%n message(s)", "", messages);
  const QString kept = withheld == 0 ? Words::tr("none withheld") : Words::tr("%n withheld", "", withheld);
  return (isFromBefore ? Words::tr("%1, %2.") : Words::tr("%1, %2. An assistant sees exactly this."))
      .arg(found, kept);
}

QString progress(const TryItModel::Progress& progress) {
  return progress.total == 0 ? Words::tr("Asking the mail server…")
                             : Words::tr("%1 of %2 messages are read.")
                                   .arg(QLocale().toString(static_cast<qlonglong>(progress.done)),
                                        QLocale().toString(static_cast<qlonglong>(progress.total)));
}

QString subject(const TriedMessage& message) {
  return message.subject.isEmpty() ? Words::tr("No subject") : message.subject;
}

QString sender(const TriedMessage& message) {
  return message.sender.isEmpty() ? Words::tr("No sender") : message.sender;
}

QString preview(const TriedMessage& message) {
  if (message.isWithheld) {
    return withheldBecauseOf(message.signs.front());
  }
  return message.preview.isEmpty() ? Words::tr("No text") : message.preview;
}

QString shortDate(const QString& date, const QDateTime& now) {
  const QDateTime read = readDate(date);
  if (!read.isValid()) {
    return date;
  }
  return read.date() == now.date() ? QLocale().toString(read.time(), QLocale::ShortFormat)
                                   : QLocale().toString(read.date(), QLocale::ShortFormat);
}

QString longDate(const QString& date) {
  const QDateTime read = readDate(date);
  return read.isValid() ? Words::tr("%1, %2", "a day and a time")
                              .arg(QLocale().toString(read.date(), QLocale::LongFormat),
                                   QLocale().toString(read.time(), QLocale::ShortFormat))
                        : date;
}

QString spoken(const TriedMessage& message, const QDateTime& now) {
  QStringList parts{sender(message), subject(message), shortDate(message.date, now)};
  if (message.isUnread) {
    parts.append(Words::tr("Unread"));
  }
  if (message.hasAttachments) {
    parts.append(Words::tr("Has attachments"));
  }
  parts.append(preview(message));
  return parts.join(QStringLiteral(". "));
}

QString sign(const TriedSignal& sign) {
  const auto filled = [&](const QString& text) {
    return text.arg(isolated(sign.term), category(sign.category));
  };
  switch (sign.place) {
    case TriedSignal::Place::subject:
      return filled(Words::tr("“%1” in the subject (%2)"));
    case TriedSignal::Place::sender:
      return filled(Words::tr("“%1” in the sender (%2)"));
    case TriedSignal::Place::text:
      break;
  }
  return filled(Words::tr("“%1” in the text (%2)"));
}

QString verdict(const TriedMessage& message, const TriedText* text) {
  if (text == nullptr) {
    return message.isWithheld ? Words::tr("The text is withheld.")
                              : Words::tr("The beginning of the text is handed out. Asking for the rest…");
  }
  switch (text->kind) {
    case TriedText::Kind::withheld:
      return Words::tr("The text is withheld. An assistant is told why instead.");
    case TriedText::Kind::none:
      return Words::tr("There is no text that could be handed out.");
    case TriedText::Kind::failed:
      return Words::tr("The text could not be read.");
    case TriedText::Kind::returned:
      break;
  }
  return text->signs.empty() ? Words::tr("The text is handed out.")
                             : Words::tr("The text is handed out, because withholding is switched off.");
}

QString extent(const TriedText& text) {
  return text.kind == TriedText::Kind::returned && text.returned < text.length
             ? Words::tr("An assistant gets %1 of %2 characters in one call.")
                   .arg(QLocale().toString(static_cast<qlonglong>(text.returned)),
                        QLocale().toString(static_cast<qlonglong>(text.length)))
             : QString();
}

QString quoted(const QString& told) { return Words::tr("An assistant reads: “%1”").arg(isolated(told)); }

QString outcome(const TriedOutcome& outcome) {
  switch (outcome.kind) {
    case TriedOutcome::Kind::allowed:
      return allowed(outcome);
    case TriedOutcome::Kind::refusedAsReadOnly:
      return Words::tr("Refused, because “%1” is on. Nothing was changed.")
          .arg(SafetyTexts::label(SafetySwitch::readOnly));
    case TriedOutcome::Kind::refusedAsDisabled:
      return Words::tr("Refused, because “%1” is off. Nothing was changed.")
          .arg(SafetyTexts::label(switchOf(outcome.change)));
    case TriedOutcome::Kind::failed:
      break;
  }
  return Words::tr("This would fail. Nothing was changed.");
}

QString failure(const TriedFailure& failure) {
  using Kind = TriedFailure::Kind;
  switch (failure.kind) {
    case Kind::noAccount:
      return Words::tr("No account is set up yet. Set it up on the page “Account”.");
    case Kind::noPassword:
      return Words::tr("No password is stored for your account. Type it on the page “Account” and save it.");
    case Kind::keyringMissing:
      return Words::tr(
          "No program keeps passwords on this computer. The page “Account” says what to install.");
    case Kind::keyringLocked:
      return Words::tr("The keyring is locked. Unlock it on the page “Account”, then search again.");
    case Kind::keyringRefused:
      return Words::tr(
          "The keyring did not give the password. Type it again on the page “Account” and save it.");
    case Kind::signInRefused:
      return Words::tr("The mail server refused address or password. Check both on the page “Account”.");
    case Kind::notReachable:
      return Words::tr(
          "The mail server cannot be reached. Check that this computer is online, or test the connection on "
          "the page “Account”.");
    case Kind::tooSlow:
      return Words::tr("The mail server took too long to answer. Try again in a few minutes.");
    case Kind::other:
      break;
  }
  return Words::tr("The tool could not do its work. The sentence below says why.");
}

QString call(ToolName tool) {
  const std::string_view raw = rawValue(tool);
  const QString name = QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
  switch (tool) {
    case ToolName::searchInbox:
      return Words::tr("The search (%1)").arg(name);
    case ToolName::getMessageBody:
      return Words::tr("The text of the message (%1)").arg(name);
    default:
      return Words::tr("The change that was tried (%1)").arg(name);
  }
}

}  // namespace tarnwell::TryItTexts
