#include "App/Pages/SafetyTexts.h"

#include <QCoreApplication>
#include <QLocale>

#include "Core/BridgeConstants.h"

namespace tarnwell::SafetyTexts {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(tarnwell::SafetyTexts)
};

QString sentence(SafetySwitch item) {
  switch (item) {
    case SafetySwitch::readOnly:
      return Words::tr(
          "While this is on, an assistant changes nothing in the mailbox, whatever is allowed below. When it "
          "is off, an assistant may do what is allowed under “Changes”.");
    case SafetySwitch::blockAuthCodeBodies:
      return Words::tr(
          "The text of mail with one-time codes, password resets and security alerts stays in the mailbox. "
          "When this is off, whoever steers the assistant could get into your accounts.");
    case SafetySwitch::strictWithholding:
      return Words::tr(
          "Also withholds mail that only looks like it carries a code or an account link, now and then a "
          "harmless one. When this is off, most account links are handed out.");
    case SafetySwitch::allowMarkRead:
      return Words::tr(
          "An assistant may mark a message as read, one in each call. You may then take new mail for old.");
    case SafetySwitch::allowMove:
      return Words::tr(
          "An assistant may move a message from the inbox to another folder, one in each call. Nothing is "
          "lost, but you may have to look for it.");
    case SafetySwitch::allowTrash:
      return Words::tr(
          "An assistant may move a message from the inbox to the trash, one in each call. Many providers "
          "empty the trash by themselves after some weeks.");
    case SafetySwitch::allowCopyMoveFallback:
      break;
  }
  return Words::tr(
      "Where the server cannot move, the message is copied and the original is marked as deleted. The "
      "original stays until a mail program removes it for good.");
}

QString sentence(SafetyLimit limit) {
  switch (limit) {
    case SafetyLimit::maxMessagesPerCall:
      return Words::tr(
          "The most messages that one call of an assistant handles. The higher it is, the more of your mail "
          "an assistant sees at once.");
    case SafetyLimit::maxFetch:
      return Words::tr(
          "The most messages that are fetched from the server at once. The smaller one of this number and "
          "the "
          "one above counts.");
    case SafetyLimit::maxBodyChars:
      break;
  }
  return Words::
      tr("The most characters of a message's text that one call returns. A summary shows up to %1 of them "
         "in any case.")
          .arg(QLocale().toString(BridgeConstants::summarySnippetMaxChars));
}

QString reason(WithoutEffect effect) {
  switch (effect) {
    case WithoutEffect::everythingIsReadOnly:
      return Words::tr("Without effect while read-only mode is on.");
    case WithoutEffect::nothingMayBeMoved:
      return Words::tr("Without effect while neither folder moves nor the trash are allowed.");
    case WithoutEffect::withholdingIsOff:
      return Words::tr("Without effect while security mail is not withheld.");
    case WithoutEffect::otherLimitIsSmaller:
      break;
  }
  return Words::tr("Without effect at the moment, because the other number is smaller.");
}

QString withEffect(const QString& sentence, std::optional<WithoutEffect> effect) {
  return effect ? sentence + QLatin1Char('\n') + reason(*effect) : sentence;
}

/// One whole sentence for each combination.
QString changing(const SafetySummary& summary) {
  const bool moves = summary.mayMove;
  const bool trashes = summary.mayTrash;
  if (summary.mayMarkRead) {
    return moves && trashes
               ? Words::tr("It may mark messages as read and move them to other folders and to the trash.")
           : moves   ? Words::tr("It may mark messages as read and move them to other folders.")
           : trashes ? Words::tr("It may mark messages as read and move them to the trash.")
                     : Words::tr("It may mark messages as read and change nothing else.");
  }
  return moves && trashes ? Words::tr("It may move messages to other folders and to the trash.")
         : moves          ? Words::tr("It may move messages to other folders and change nothing else.")
         : trashes        ? Words::tr("It may move messages to the trash and change nothing else.")
                          : Words::tr("It may change nothing.");
}

QString joined(const QString& first, const QString& second) {
  return Words::tr("%1 %2", "two sentences, one after the other").arg(first, second);
}

QString withFallback(const QString& text, const SafetySummary& summary) {
  return summary.mayCopyInstead
             ? joined(text, Words::tr("Where the server cannot move, it may leave originals behind that are "
                                      "marked as deleted."))
             : text;
}

}  // namespace

QString label(SafetySwitch item) {
  switch (item) {
    case SafetySwitch::readOnly:
      return Words::tr("Read-only mode");
    case SafetySwitch::blockAuthCodeBodies:
      return Words::tr("Withhold security mail");
    case SafetySwitch::strictWithholding:
      return Words::tr("Withhold strictly");
    case SafetySwitch::allowMarkRead:
      return Words::tr("Mark-as-read");
    case SafetySwitch::allowMove:
      return Words::tr("Folder moves");
    case SafetySwitch::allowTrash:
      return Words::tr("Trash");
    case SafetySwitch::allowCopyMoveFallback:
      break;
  }
  return Words::tr("Move on servers without MOVE (COPY + mark deleted)");
}

QString label(SafetyLimit limit) {
  switch (limit) {
    case SafetyLimit::maxMessagesPerCall:
      return Words::tr("Messages in one call");
    case SafetyLimit::maxFetch:
      return Words::tr("Messages fetched at once");
    case SafetyLimit::maxBodyChars:
      break;
  }
  return Words::tr("Characters of a text");
}

QString sentence(SafetySwitch item, std::optional<WithoutEffect> effect) {
  return withEffect(sentence(item), effect);
}

QString sentence(SafetyLimit limit, std::optional<WithoutEffect> effect) {
  return withEffect(sentence(limit), effect);
}

QString quotation(SafetySwitch item) {
  const QString frame = forbidsWhileOn(item) ? Words::tr("While this is on, an assistant reads: “%1”")
                                             : Words::tr("While this is off, an assistant reads: “%1”");
  return frame.arg(refusal(item));
}

QString summary(const SafetySummary& summary) {
  return joined(Words::tr("An assistant may read at most %n message(s) a call.", "", summary.messagesPerCall),
                changing(summary));
}

QString withheld(const SafetySummary& summary) {
  const auto mail = [&] {
    switch (summary.withholding) {
      case SafetySummary::Withholding::none:
        return Words::tr("One-time codes and account links are handed out like any other mail.");
      case SafetySummary::Withholding::byKeywords:
        return Words::tr("Mail that names a one-time code or a password reset is withheld.");
      case SafetySummary::Withholding::strict:
        break;
    }
    return Words::tr("Mail with one-time codes and account links is withheld, as far as it is recognised.");
  };
  const QString text = Words::tr("It gets at most %Ln character(s) of a text.", "", summary.charactersOfText);
  return withFallback(joined(text, mail()), summary);
}

Question question(SafetySwitch item, const SafetySummary& then) {
  if (item == SafetySwitch::blockAuthCodeBodies) {
    return {.title = Words::tr("Hand out security mail?"),
            .text = Words::tr("An assistant may then read one-time codes and links that open your accounts. "
                              "What it has read cannot be taken back."),
            .yes = Words::tr("&Hand out"),
            .no = Words::tr("&Keep withholding")};
  }
  if (item == SafetySwitch::strictWithholding) {
    return {.title = Words::tr("Withhold less?"),
            .text = Words::tr("An assistant may then read codes and account links in mail that uses none of "
                              "the usual words. What it has read cannot be taken back."),
            .yes = Words::tr("&Withhold less"),
            .no = Words::tr("&Keep withholding")};
  }
  const QString changes =
      then.mayChangeNothing()
          ? Words::tr("Nothing becomes possible by that alone, because every change is switched off.")
          : joined(Words::tr("This becomes possible for an assistant:"), changing(then));
  return {.title = Words::tr("Switch read-only mode off?"),
          .text = withFallback(changes, then),
          .yes = Words::tr("&Switch off"),
          .no = Words::tr("S&tay read-only")};
}

QString fileNotice(ConfigStore::FileState state) {
  switch (state) {
    case ConfigStore::FileState::damaged:
      return Words::tr(
          "The settings file is damaged, so the defaults hold, which are read-only. The next change begins a "
          "new file and keeps a copy of the damaged one beside it.");
    case ConfigStore::FileState::untrusted:
      return Words::tr(
          "Somebody else may have written the settings file. It is set aside, and the defaults hold, which "
          "are read-only. Nothing can be saved until that is put right.");
    case ConfigStore::FileState::missing:
    case ConfigStore::FileState::good:
      break;
  }
  return {};
}

}  // namespace tarnwell::SafetyTexts
