#include "App/Pages/AssistantsTexts.h"

#include <QCoreApplication>

#include "App/Models/HarmlessText.h"
#include "App/Models/ShownPath.h"

namespace tarnwell::AssistantsTexts {

namespace {

struct Words {
  Q_DECLARE_TR_FUNCTIONS(tarnwell::AssistantsTexts)
};

using Action = AssistantsModel::Action;
using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;

}  // namespace

QString name(const AssistantState& assistant) { return QString::fromStdString(assistant.name); }

QString path(const std::filesystem::path& path) { return shownPath(harmlessLine(path.string())); }

/// Of itself a line ends at a slash only, and names of files can be longer than a line.
QString pathInSentence(const std::filesystem::path& path) {
  QString text;
  for (const QChar character : AssistantsTexts::path(path)) {
    text += character;
    if (!character.isLetterOrNumber() && !character.isSurrogate()) {
      text += QChar(0x200B);  // no width, and a line may end there
    }
  }
  return text;
}

QString state(const AssistantState& assistant) {
  switch (assistant.connection) {
    case Connection::none:
      break;
    case Connection::here:
      return assistant.isSwitchedOff ? Words::tr("Connected, but switched off in %1.").arg(name(assistant))
                                     : Words::tr("Connected.");
    case Connection::elsewhere:
      return assistant.otherCommand.empty()
                 ? Words::tr("Its entry for Tarnwell belongs to something else.")
                 : Words::tr("Connected to another program: %1").arg(pathInSentence(assistant.otherCommand));
    case Connection::unknown:
      return Words::tr("Tarnwell cannot tell whether it is connected.");
  }
  return Words::tr("Not connected.");
}

QString action(Action action) {
  switch (action) {
    case Action::connect:
      break;
    case Action::disconnect:
      return Words::tr("Disconnect");
    case Action::useThisOne:
      return Words::tr("Use this one");
    case Action::showEntry:
      return Words::tr("Show what to add");
    case Action::showRemoval:
      return Words::tr("Show what to remove");
    case Action::lookAgain:
      return Words::tr("Look again");
  }
  return Words::tr("Connect");
}

QString offer(const AssistantProgress& progress) {
  switch (progress.offer) {
    case AssistantProgress::Offer::none:
      break;
    case AssistantProgress::Offer::tryAgain:
      return Words::tr("Try again");
    case AssistantProgress::Offer::undo:
      return progress.step == AssistantProgress::Step::undoing ? Words::tr("Undoing…") : Words::tr("Undo");
  }
  return {};
}

QString lead(const AssistantState& assistant, const ConnectionPlan& plan) {
  switch (plan.way) {
    case ConnectingWay::ownCommand:
      return Words::tr("Tarnwell runs these %n command(s) of %1:", nullptr,
                       static_cast<int>(plan.commands.size()))
          .arg(name(assistant));
    case ConnectingWay::file:
      break;
    case ConnectingWay::block:
      return plan.goal == Goal::connect
                 ? Words::tr("You add this to the settings of %1 yourself:").arg(name(assistant))
                 : Words::tr("You remove this from the settings of %1 yourself:").arg(name(assistant));
  }
  return plan.change && !plan.change->before
             ? Words::tr("Tarnwell makes this file, which %1 reads:").arg(name(assistant))
             : Words::tr("Tarnwell changes this file of %1:").arg(name(assistant));
}

QString label(const AssistantState& assistant, const ConnectionPlan& plan) {
  switch (plan.way) {
    case ConnectingWay::ownCommand:
      return Words::tr("Commands of %1").arg(name(assistant));
    case ConnectingWay::file:
      return Words::tr("Change to the settings of %1").arg(name(assistant));
    case ConnectingWay::block:
      break;
  }
  return Words::tr("Entry for %1").arg(name(assistant));
}

QString commands(const ConnectionPlan& plan) {
  QStringList lines;
  for (const std::vector<std::string>& command : plan.commands) {
    lines += harmlessText(shellLine(command));
  }
  return lines.join(QLatin1Char('\n'));
}

QString block(const ConnectionPlan& plan) { return harmlessText(plan.block); }

std::vector<DifferenceView::Line> lines(const std::vector<DifferenceLine>& difference) {
  using Kind = DifferenceView::Line::Kind;
  std::vector<DifferenceView::Line> shown;
  for (const DifferenceLine& line : difference) {
    const QString text = harmlessText(line.text);
    switch (line.kind) {
      case DifferenceLine::Kind::same:
        shown.push_back({Kind::same, text});
        break;
      case DifferenceLine::Kind::removed:
        shown.push_back({Kind::removed, text});
        break;
      case DifferenceLine::Kind::added:
        shown.push_back({Kind::added, text});
        break;
      case DifferenceLine::Kind::left:
        shown.push_back(
            {Kind::remark, Words::tr("… %n line(s) that stay …", nullptr, static_cast<int>(line.count))});
        break;
    }
  }
  return shown;
}

QString caution(const ConnectionPlan& plan) {
  if (!plan.change) {
    return {};
  }
  QStringList sentences;
  if (plan.change->target != plan.change->path) {
    sentences +=
        Words::tr("It is a link to this file, which changes: %1").arg(pathInSentence(plan.change->target));
  }
  sentences += plan.change->before ? Words::tr(
                                         "Everything else in it stays. A copy of the file as it is now is "
                                         "kept beside it.")
                                   : Words::tr("It is not there yet.");
  return sentences.join(QLatin1Char('\n'));
}

QStringList steps(const AssistantState& assistant, const ConnectionPlan& plan) {
  if (plan.way != ConnectingWay::block) {
    return {};
  }
  const QString file = pathInSentence(plan.file);
  if (plan.goal == Goal::disconnect) {
    return {Words::tr("Open this file: %1").arg(file), Words::tr("Remove these lines and save it."),
            restartToStop(assistant)};
  }
  QStringList steps{Words::tr("Copy this text."), Words::tr("Open this file, or make it: %1").arg(file)};
  if (assistant.connection == Connection::elsewhere) {
    steps += Words::tr("Remove the lines of the entry “tarnwell” that is there.");
  } else if (assistant.connection == Connection::unknown) {
    steps += Words::tr("If there is an entry “tarnwell”, remove its lines.");
  }
  steps += Words::tr("Add the text at its end and save it.");
  steps += restart(assistant);
  return steps;
}

QString confirm(const AssistantProgress& progress) {
  const bool isUnderWay = progress.step == AssistantProgress::Step::carryingOut;
  switch (progress.plan->way) {
    case ConnectingWay::ownCommand:
      return isUnderWay ? Words::tr("Running…")
                        : Words::tr("Run the %n command(s)", nullptr,
                                    static_cast<int>(progress.plan->commands.size()));
    case ConnectingWay::file:
      return isUnderWay ? Words::tr("Writing…") : Words::tr("Write the change");
    case ConnectingWay::block:
      break;
  }
  return {};
}

QString dismiss(const ConnectionPlan& plan) {
  return plan.way == ConnectingWay::block ? Words::tr("Close") : Words::tr("Cancel");
}

QString format(BlockFormat format) {
  switch (format) {
    case BlockFormat::mcpServersJSON:
      break;
    case BlockFormat::serversJSON:
      return Words::tr("JSON with “servers”, as Visual Studio Code reads it");
    case BlockFormat::opencodeJSON:
      return Words::tr("JSON with “mcp”, as opencode reads it");
    case BlockFormat::codexTOML:
      return Words::tr("TOML, as Codex reads it");
    case BlockFormat::gooseYAML:
      return Words::tr("YAML, as Goose reads it");
    case BlockFormat::continueYAML:
      return Words::tr("YAML, as Continue reads it");
  }
  return Words::tr("JSON with “mcpServers”, as most assistants read it");
}

}  // namespace tarnwell::AssistantsTexts
