/// What came of connecting and disconnecting, in words.

#include <QCoreApplication>
#include <QLocale>

#include "App/Pages/AssistantsTexts.h"

namespace tarnwell::AssistantsTexts {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(tarnwell::AssistantsTexts)
};

/// When an assistant reads its settings.
enum class Reads { whenItStarts, withEachSession, whenItsEditorStarts };

Reads readsOf(AssistantID assistant) {
  switch (assistant) {
    case AssistantID::claudeCode:
    case AssistantID::codex:
    case AssistantID::geminiCLI:
      return Reads::withEachSession;
    case AssistantID::cline:
    case AssistantID::roo:
      return Reads::whenItsEditorStarts;
    case AssistantID::claudeDesktop:
    case AssistantID::visualStudioCode:
    case AssistantID::cursor:
    case AssistantID::windsurf:
    case AssistantID::zed:
    case AssistantID::lmStudio:
      break;
  }
  return Reads::whenItStarts;
}

QString lineByLine(const QStringList& sentences) {
  QStringList all = sentences;
  all.removeAll(QString());
  return all.join(QLatin1Char('\n'));
}

QString copyAt(const std::optional<std::filesystem::path>& backup) {
  return backup ? Words::tr("The file as it was: %1").arg(pathInSentence(*backup)) : QString();
}

QString backup(const AssistantProgress& progress) {
  return progress.done && progress.done->written ? copyAt(progress.done->written->backup) : QString();
}

QString notJSON(const QString& name, const AssistantNews& news) {
  if (news.line == 0) {
    return Words::tr(
               "The settings of %1 cannot be read as JSON, so they stay as they are. Mend the file and "
               "try again.")
        .arg(name);
  }
  return Words::tr(
             "The settings of %1 cannot be read as JSON: see line %2, column %3. They stay as they are. "
             "Mend the file and try again.")
      .arg(name, QLocale().toString(static_cast<qulonglong>(news.line)),
           QLocale().toString(static_cast<qulonglong>(news.column)));
}

QString sentenceOf(const AssistantState& assistant, const AssistantNews& news) {
  const QString name = AssistantsTexts::name(assistant);
  using Kind = AssistantNews::Kind;
  switch (news.kind) {
    case Kind::notJSON:
      return notJSON(name, news);
    case Kind::notTOML:
      return Words::tr(
                 "The settings of %1 cannot be read as TOML; the details say why. You can still add the "
                 "entry by hand.")
          .arg(name);
    case Kind::notAnObject:
      return Words::tr(
                 "The settings of %1 hold something else where its servers belong, so they stay as they "
                 "are. Mend the file and try again.")
          .arg(name);
    case Kind::ambiguous:
      return Words::tr(
                 "The settings of %1 have the same entry twice, so they stay as they are. Remove one of "
                 "the two and try again.")
          .arg(name);
    case Kind::notUTF8:
      return Words::tr(
                 "The settings of %1 are no UTF-8 text, so they stay as they are. Save the file as UTF-8 "
                 "and try again.")
          .arg(name);
    case Kind::tooLarge:
      return Words::tr(
                 "The settings of %1 are too large for this, so they stay as they are. Add the entry by "
                 "hand, from “Another assistant” below.")
          .arg(name);
    case Kind::fileUnreadable:
      return Words::tr(
                 "The settings file of %1 cannot be read. Make sure that it is a file and that you may read "
                 "it, and try again.")
          .arg(name);
    case Kind::notWritten:
      return Words::tr(
                 "The settings file of %1 could not be written and is as it was. The details say why; "
                 "mend that and try again.")
          .arg(name);
    case Kind::notVerified:
      return Words::tr("Another program wrote the settings of %1 at the same time. Quit %1 and try again.")
          .arg(name);
    case Kind::otherWriter:
      return Words::tr(
                 "Somebody else may write the settings file of %1, so it stays as it is. Make sure that "
                 "only you can write the file and its folder, and try again.")
          .arg(name);
    case Kind::assistantRuns:
      return Words::tr(
                 "%1 is running and would write its old settings over the change. Quit it and try "
                 "again.")
          .arg(name);
    case Kind::neverStarted:
      return Words::tr(
                 "%1 was never started here, so its settings have no place yet. Start it once, quit it, "
                 "and try again.")
          .arg(name);
    case Kind::noHelper:
      return Words::tr(
          "The program “tarnwell” is not beside this app. Install Tarnwell again and try again.");
    case Kind::helperNotUTF8:
      return Words::tr(
          "Tarnwell lies in a folder whose name is no UTF-8 text, and settings can hold only that. "
          "Install it elsewhere and try again.");
    case Kind::commandNotStarted:
      return Words::tr(
                 "The command of %1 cannot be started. Install %1 again, or wait until its update is "
                 "done, and try again.")
          .arg(name);
    case Kind::commandFailed:
      return Words::
          tr("The command of %1 failed. The details are its own words; mend what they name and try again.")
              .arg(name);
    case Kind::commandTooSlow:
      return Words::tr("The command of %1 took too long and was stopped. Try again.").arg(name);
    case Kind::commandWithoutEffect:
      return assistant.way == ConnectingWay::ownCommand
                 ? Words::tr(
                       "The command of %1 succeeded but changed nothing. The details are its own words.")
                       .arg(name)
                 : Words::tr(
                       "The settings of %1 were written, but this changed nothing. Quit %1 and try again.")
                       .arg(name);
    case Kind::onlyByHand:
      return Words::tr("Only you can change the settings of %1. Copy the entry into them.").arg(name);
    default:
      break;
  }
  return Words::tr("This could not be done. The details say why; mend that and try again.");
}

}  // namespace

QString remedy(const AssistantState& assistant) {
  return lineByLine({sentenceOf(assistant, newsOf(assistant.problem)),
                     Words::tr("The file: %1").arg(pathInSentence(assistant.file))});
}

QString restart(const AssistantState& assistant) {
  switch (readsOf(assistant.id)) {
    case Reads::withEachSession:
      return Words::tr("Start a new session of %1 to see it.").arg(name(assistant));
    case Reads::whenItsEditorStarts:
      return Words::tr("Restart Visual Studio Code to see it in %1.").arg(name(assistant));
    case Reads::whenItStarts:
      break;
  }
  return assistant.id == AssistantID::claudeDesktop
             ? Words::tr("Start %1 to see it.").arg(name(assistant))  // it was closed for the change
             : Words::tr("Restart %1 to see it.").arg(name(assistant));
}

QString restartToStop(const AssistantState& assistant) {
  switch (readsOf(assistant.id)) {
    case Reads::withEachSession:
      return Words::tr("End the open sessions of %1: they may use Tarnwell until then.").arg(name(assistant));
    case Reads::whenItsEditorStarts:
      return Words::tr("Restart Visual Studio Code: %1 may use Tarnwell until then.").arg(name(assistant));
    case Reads::whenItStarts:
      break;
  }
  return Words::tr("Restart %1: it may use Tarnwell until then.").arg(name(assistant));
}

QString news(const AssistantState& assistant, const AssistantProgress& progress) {
  using Kind = AssistantNews::Kind;
  switch (progress.news.kind) {
    case Kind::none:
      return {};
    case Kind::connected:
      return lineByLine(
          {assistant.isSwitchedOff
               ? Words::tr("Connected, but switched off in %1. Switch it on there.").arg(name(assistant))
               : Words::tr("Connected. %1", "a sentence follows").arg(restart(assistant)),
           backup(progress)});
    case Kind::disconnected:
      return lineByLine(
          {assistant.id == AssistantID::claudeDesktop
               ? Words::tr("Disconnected.")  // it was closed for the change
               : Words::tr("Disconnected. %1", "a sentence follows").arg(restartToStop(assistant)),
           backup(progress)});
    case Kind::undone:
      return Words::tr("Undone. The entry for Tarnwell in %1 is as it was.").arg(name(assistant));
    case Kind::alreadyConnected:
      return Words::tr("%1 was connected already, so nothing was changed.").arg(name(assistant));
    case Kind::alreadyDisconnected:
      return Words::tr("%1 was not connected any more, so nothing was changed.").arg(name(assistant));
    case Kind::newPlan:
      return Words::tr(
                 "The settings of %1 have changed meanwhile, so nothing was done. This is the new plan.")
          .arg(name(assistant));
    case Kind::changedSince:
      return lineByLine(
          {Words::tr("The settings of %1 have changed since, so they stay as they are.").arg(name(assistant)),
           backup(progress)});
    default:
      return lineByLine({sentenceOf(assistant, progress.news), copyAt(progress.news.backup)});
  }
}

}  // namespace tarnwell::AssistantsTexts
