#include "App/Models/AssistantsModel.h"

#include <algorithm>
#include <utility>

#include "App/Models/DifferenceExcerpt.h"

namespace tarnwell {

namespace {

using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;
using Kind = AssistantNews::Kind;

void tellDone(AssistantProgress& progress) {
  progress.news = {progress.done->plan.goal == Goal::connect ? Kind::connected : Kind::disconnected};
  progress.offer = AssistantProgress::Offer::undo;
}

}  // namespace

AssistantsModel::Action AssistantsModel::action(const AssistantState& assistant) {
  const bool isByHand = assistant.way == ConnectingWay::block;
  switch (assistant.connection) {
    case Connection::none:
      break;
    case Connection::here:
      return isByHand ? Action::showRemoval : Action::disconnect;
    case Connection::elsewhere:
      return isByHand ? Action::showEntry : Action::useThisOne;
    case Connection::unknown:
      return isByHand ? Action::showEntry : Action::lookAgain;
  }
  return isByHand ? Action::showEntry : Action::connect;
}

bool AssistantsModel::offersDisconnect(const AssistantState& assistant) {
  return action(assistant) == Action::useThisOne;
}

AssistantsModel::AssistantsModel(SettingsFile& settings, AssistantWork work, QObject* parent)
    : QObject(parent), settings_(settings), work_(std::move(work)) {
  QObject::connect(&settings_, &SettingsFile::changed, this, &AssistantsModel::changed);
}

void AssistantsModel::look() {
  hasLooked_ = true;
  if (isLooking() || isWriting()) {
    return;
  }
  looking_.run(work_.find, [this](Outcome<std::vector<AssistantState>> outcome) {
    if (outcome.value) {
      assistants_ = *std::move(outcome.value);
    }
    Q_EMIT changed();
  });
  Q_EMIT changed();
}

void AssistantsModel::lookAgain() {
  if (hasLooked_) {
    look();
  }
}

const AssistantProgress& AssistantsModel::progress(AssistantID assistant) const {
  static const AssistantProgress untouched;
  const auto found = progress_.find(assistant);
  return found == progress_.end() ? untouched : found->second;
}

bool AssistantsModel::isWriting() const {
  return open_ && (progress(*open_).step == Step::carryingOut || progress(*open_).step == Step::undoing);
}

QString AssistantsModel::block(BlockFormat format) const {
  return QString::fromStdString(connectionBlock(format, work_.helper));
}

AssistantState* AssistantsModel::find(AssistantID assistant) {
  const auto found = std::ranges::find(assistants_, assistant, &AssistantState::id);
  return found == assistants_.end() ? nullptr : &*found;
}

void AssistantsModel::act(AssistantID assistant) {
  const AssistantState* const state = find(assistant);
  if (!state) {
    return;
  }
  const Action wanted = action(*state);
  if (wanted == Action::lookAgain) {
    look();
  } else if (wanted == Action::disconnect || wanted == Action::showRemoval) {
    plan(assistant, Goal::disconnect, {});
  } else {
    plan(assistant, Goal::connect, {});
  }
}

void AssistantsModel::remove(AssistantID assistant) { plan(assistant, Goal::disconnect, {}); }

void AssistantsModel::tryAgain(AssistantID assistant) { plan(assistant, progress(assistant).goal, {}); }

/// The news of something that can be undone stay: with them goes the way to undo it.
void AssistantsModel::plan(AssistantID assistant, Goal goal, AssistantNews news) {
  if (isWriting()) {
    return;
  }
  closePlan();
  open_ = assistant;
  AssistantProgress& progress = progress_[assistant];
  progress.step = Step::planning;
  progress.goal = goal;
  if (news.kind != Kind::none || !progress.done) {
    progress.news = std::move(news);
    progress.offer = Offer::none;
  } else if (progress.offer == Offer::undo) {
    tellDone(progress);  // no longer of a failure since then
  }
  working_.run(
      [make = work_.plan, assistant, goal] {
        Planned made{make(assistant, goal), {}};
        if (const auto& change = made.plan.change) {
          made.difference = withShortLines(lineDifference(change->before.value_or(""), change->after));
        }
        return made;
      },
      [this, assistant](Outcome<Planned> outcome) { planned(assistant, std::move(outcome)); });
  Q_EMIT changed();
}

void AssistantsModel::planned(AssistantID assistant, Outcome<Planned> outcome) {
  AssistantProgress& progress = progress_[assistant];
  if (outcome.failure) {
    failed(assistant, newsOf(outcome.failure));
  } else if (outcome.value->plan.isNothing()) {
    finish(assistant, {progress.goal == Goal::connect ? Kind::alreadyConnected : Kind::alreadyDisconnected},
           Offer::none);
  } else {
    progress.step = Step::planned;
    progress.plan = std::move(outcome.value->plan);
    progress.difference = std::move(outcome.value->difference);
    Q_EMIT changed();
  }
}

void AssistantsModel::closePlan() {
  if (!open_) {
    return;
  }
  working_.abandon();
  AssistantProgress& progress = progress_[*std::exchange(open_, std::nullopt)];
  progress.step = Step::idle;
  progress.plan.reset();
  progress.difference.clear();
  if (progress.news.kind == Kind::newPlan) {
    progress.news = {};
    if (progress.done) {
      tellDone(progress);
    }
  }
}

void AssistantsModel::cancel() {
  if (open_ && !isWriting()) {
    closePlan();
    Q_EMIT changed();
  }
}

/// What is found meanwhile would be about the time before.
void AssistantsModel::carryOut() {
  if (!open_ || progress(*open_).step != Step::planned ||
      progress(*open_).plan->way == ConnectingWay::block) {
    return;
  }
  looking_.abandon();
  AssistantProgress& progress = progress_[*open_];
  progress.step = Step::carryingOut;
  working_.run([carryOut = work_.carryOut, plan = *progress.plan] { return carryOut(plan); },
               [this, assistant = *open_](Outcome<ConnectionDone> outcome) {
                 carriedOut(assistant, std::move(outcome));
               });
  Q_EMIT changed();
}

void AssistantsModel::carriedOut(AssistantID assistant, Outcome<ConnectionDone> outcome) {
  AssistantProgress& progress = progress_[assistant];
  const Goal goal = progress.goal;
  if (outcome.failure) {
    AssistantNews news = newsOf(outcome.failure);
    if (news.kind == Kind::changedSince) {
      closePlan();
      plan(assistant, goal, {Kind::newPlan});
      return;
    }
    failed(assistant, std::move(news));
    return;
  }
  progress.done = std::move(outcome.value);
  if (AssistantState* const state = find(assistant)) {
    progress.before = *state;
    state->connection = goal == Goal::connect ? Connection::here : Connection::none;  // it was read again
  }
  finish(assistant, {goal == Goal::connect ? Kind::connected : Kind::disconnected}, Offer::undo);
}

void AssistantsModel::undo(AssistantID assistant) {
  if (isWriting() || !progress(assistant).done) {
    return;
  }
  closePlan();
  looking_.abandon();
  open_ = assistant;
  AssistantProgress& progress = progress_[assistant];
  progress.step = Step::undoing;
  working_.run([undo = work_.undo, done = *progress.done] { undo(done); },
               [this, assistant](const Outcome<void>& outcome) { undone(assistant, outcome); });
  Q_EMIT changed();
}

void AssistantsModel::undone(AssistantID assistant, const Outcome<void>& outcome) {
  if (outcome.failure) {
    AssistantNews news = newsOf(outcome.failure);
    const bool mayHelp = news.kind != Kind::changedSince;
    finish(assistant, std::move(news), mayHelp ? Offer::undo : Offer::none);
    return;
  }
  AssistantProgress& progress = progress_[assistant];
  progress.done.reset();
  if (AssistantState* const state = find(assistant); state && progress.before) {
    *state = *std::exchange(progress.before, std::nullopt);
  }
  finish(assistant, {Kind::undone}, Offer::none);
}

/// Other buttons of the assistant try again too; none of them is the way back.
void AssistantsModel::failed(AssistantID assistant, AssistantNews news) {
  finish(assistant, std::move(news), progress(assistant).done ? Offer::undo : Offer::tryAgain);
}

/// Looks at once, because what a command did may show in other places too.
void AssistantsModel::finish(AssistantID assistant, AssistantNews news, Offer offer) {
  closePlan();
  AssistantProgress& progress = progress_[assistant];
  progress.news = std::move(news);
  progress.offer = offer;
  look();
}

}  // namespace tarnwell
