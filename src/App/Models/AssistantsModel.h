#pragma once

/// The assistants on this machine, and connecting them: what was found, what is planned, what came of it.
///
///     AssistantsModel model(settings, AssistantWork::on(Machine::thisOne()));
///     model.look();                          // later: changed()
///     model.act(AssistantID::cursor);        // makes a plan; later: changed()
///     model.progress(AssistantID::cursor).plan;  // to be shown
///     model.carryOut();                      // later: changed()
///     model.undo(AssistantID::cursor);
///
/// Nothing is changed on this machine before `carryOut`. One plan is open at a time, and one thing runs at a
/// time, off this thread. Looking again never touches an open plan. Nothing is done before the first `look`.
///
/// Threads: that of the window.

#include <QObject>
#include <map>
#include <optional>
#include <vector>

#include "App/Models/AssistantNews.h"
#include "App/Models/AssistantWork.h"
#include "App/Models/BackgroundTask.h"
#include "App/Models/SettingsFile.h"
#include "Assistants/TextDifference.h"

namespace tarnwell {

/// How far it came with one assistant.
struct AssistantProgress {
  enum class Step { idle, planning, planned, carryingOut, undoing };

  Step step = Step::idle;
  ConnectionPlan::Goal goal = ConnectionPlan::Goal::connect;
  /// From `planned` on.
  std::optional<ConnectionPlan> plan{};
  /// Of the plan's file.
  std::vector<DifferenceLine> difference{};
  /// What can be undone, and what was found before it.
  std::optional<ConnectionDone> done{};
  std::optional<AssistantState> before{};
  AssistantNews news{};
  /// What to do about the news.
  enum class Offer { none, tryAgain, undo };
  Offer offer = Offer::none;
};

class AssistantsModel : public QObject {
  Q_OBJECT

 public:
  using Step = AssistantProgress::Step;
  using Offer = AssistantProgress::Offer;

  /// The one thing that a person would do next with an assistant.
  enum class Action {
    connect,
    disconnect,
    /// It is connected to another program.
    useThisOne,
    /// The entry is added or removed by hand.
    showEntry,
    showRemoval,
    /// Its file cannot be read until somebody mends it.
    lookAgain,
  };
  static Action action(const AssistantState& assistant);
  /// Whether a person may want `disconnect` instead: neither the other program nor this one.
  static bool offersDisconnect(const AssistantState& assistant);

  /// `settings` must outlive the model.
  AssistantsModel(SettingsFile& settings, AssistantWork work, QObject* parent = nullptr);

  /// Looks for assistants. While something is written it does not: what was found before is about to change,
  /// and the model looks by itself after it.
  void look();
  /// The same, but not before the first look.
  void lookAgain();

  /// All known ones, those that are not here too. Empty until the first look has an answer.
  const std::vector<AssistantState>& assistants() const { return assistants_; }
  bool isLooking() const { return looking_.isRunning(); }
  const AssistantProgress& progress(AssistantID assistant) const;
  /// True while something is changed on this machine.
  bool isWriting() const;
  /// An assistant that is connected gets errors until an account is saved.
  bool isAccountMissing() const { return !settings_.config().isConfigured(); }
  /// The text to copy for an assistant that is not known.
  QString block(BlockFormat format) const;

  /// Does what `action` says. Another plan is closed. Nothing while something is written.
  void act(AssistantID assistant);
  /// Plans to remove the entry, whichever program it names.
  void remove(AssistantID assistant);
  /// Makes the last plan once more, after a failure.
  void tryAgain(AssistantID assistant);
  /// Closes the open plan.
  void cancel();
  /// Carries the open plan out.
  void carryOut();
  void undo(AssistantID assistant);

 Q_SIGNALS:
  /// Anything of the above may be different now.
  void changed();

 private:
  struct Planned {
    ConnectionPlan plan;
    std::vector<DifferenceLine> difference;
  };

  AssistantState* find(AssistantID assistant);
  void plan(AssistantID assistant, ConnectionPlan::Goal goal, AssistantNews news);
  void closePlan();
  void planned(AssistantID assistant, Outcome<Planned> outcome);
  void carriedOut(AssistantID assistant, Outcome<ConnectionDone> outcome);
  void undone(AssistantID assistant, const Outcome<void>& outcome);
  void failed(AssistantID assistant, AssistantNews news);
  void finish(AssistantID assistant, AssistantNews news, Offer offer);

  SettingsFile& settings_;
  AssistantWork work_;
  std::vector<AssistantState> assistants_;
  std::map<AssistantID, AssistantProgress> progress_;
  /// The one with a step other than `idle`.
  std::optional<AssistantID> open_;
  bool hasLooked_ = false;
  BackgroundTask looking_;
  BackgroundTask working_;
};

}  // namespace tarnwell
