#include "App/Models/ActivityCalls.h"

#include <algorithm>
#include <utility>

namespace tarnwell {
namespace {

using State = ActivityCall::State;

/// An outcome that comes after more calls than these finds its call no more.
constexpr std::size_t keptUnfinished = 8;

/// In letters. What a row has of its lines is bounded, however many there are.
constexpr qsizetype longestOriginal = 2'000;

State stateOf(const ActivityItem* row) { return row->call->entry.call->state; }

}  // namespace

void ActivityCalls::add(ActivityItem& item) {
  switch (item.line.text.phrase) {
    case LogPhrase::callTried:
    case LogPhrase::callBegan:
      begin(item);
      break;
    case LogPhrase::writeAllowed:
    case LogPhrase::writePreviewed:
    case LogPhrase::writeRefusedReadOnly:
    case LogPhrase::writeRefusedBySetting:
      addDecision(item);
      break;
    case LogPhrase::signedIn:
      addSignIn(item);
      break;
    case LogPhrase::foundMessages:
    case LogPhrase::foundFolders:
    case LogPhrase::readText:
    case LogPhrase::textWithheld:
    case LogPhrase::hadNoText:
    case LogPhrase::statusConfigured:
    case LogPhrase::statusNotConfigured:
    case LogPhrase::changeMade:
    case LogPhrase::changePreviewed:
    case LogPhrase::changeRefused:
    case LogPhrase::callEnded:
    case LogPhrase::callStopped:
    case LogPhrase::callFailed:
    case LogPhrase::callMetKeyringError:
    case LogPhrase::callBroke:
      end(item);
      break;
    case LogPhrase::callCancelled:
      makeRow(item, State::ended);
      break;
    case LogPhrase::helperStarting:
      hasStarted_ = hasJustStarted_ = true;
      break;
    case LogPhrase::helperReady:
      item.isDetail = hasStarted_;
      break;
    case LogPhrase::assistantConnected:
      item.isDetail = std::exchange(hasJustStarted_, false);
      break;
    case LogPhrase::assistantLeft:
      hasLeft_ = true;
      break;
    case LogPhrase::helperStopped:
      closeAll(State::unusable);
      item.isDetail = hasLeft_;
      break;
    case LogPhrase::endpointListening:
      runsSeveral_ = true;
      break;
    case LogPhrase::other:
    case LogPhrase::callOutlivedItsConnection:
    case LogPhrase::settingsUnreadable:
    case LogPhrase::settingsSetAside:
    case LogPhrase::testNotSaved:
    case LogPhrase::passwordNotRead:
    case LogPhrase::passwordNotPutBack:
    case LogPhrase::passwordOfOtherAccountNotRemoved:
    case LogPhrase::endpointFailed:
    case LogPhrase::endpointStopped:
      break;
  }
}

void ActivityCalls::forget(const ActivityItem& item) { std::erase(unfinished_, &item); }

void ActivityCalls::reset() {
  unfinished_.clear();
  runsSeveral_ = hasStarted_ = hasJustStarted_ = hasLeft_ = false;
}

void ActivityCalls::giveUp(std::chrono::system_clock::time_point before) {
  for (ActivityItem* const row : unfinished_) {
    if (stateOf(row) == State::begun && row->line.date < before) {
      close(*row, State::unknown);
    }
  }
}

bool ActivityCalls::hasBegunOne() const {
  return std::any_of(unfinished_.begin(), unfinished_.end(),
                     [](const ActivityItem* row) { return stateOf(row) == State::begun; });
}

void ActivityCalls::begin(ActivityItem& item) {
  hasJustStarted_ = false;
  if (ActivityItem* const trial = announcedTrial(item.line.text)) {
    trial->call->entry.text = item.line.text;
    addDetail(*trial, item);
    return;
  }
  const bool isTrial = item.line.text.phrase == LogPhrase::callTried;
  runsSeveral_ |= isTrial || item.line.isOwn;
  if (!runsSeveral_) {
    closeAll(State::unusable);
  }
  makeRow(item, State::begun);
  item.call->entry.call->isTrial = isTrial;
  unfinished_.push_back(&item);
  if (unfinished_.size() > keptUnfinished) {
    close(*unfinished_.front(), State::unknown);
    unfinished_.pop_front();
  }
}

/// The trial that the log spoke of before its call. Nothing that began afterwards has this name.
ActivityItem* ActivityCalls::announcedTrial(const LogText& began) const {
  const auto found = std::find_if(unfinished_.begin(), unfinished_.end(), [&](const ActivityItem* row) {
    const LogText& text = row->call->entry.text;
    return began.phrase == LogPhrase::callBegan && text.phrase == LogPhrase::callTried &&
           text.name == began.name && stateOf(row) == State::begun;
  });
  return found == unfinished_.end() ? nullptr : *found;
}

void ActivityCalls::addDecision(ActivityItem& item) {
  if (ActivityItem* const row = unfinished(item.line)) {
    row->call->entry.call->decision = item.line.text.phrase;
    addDetail(*row, item);
  }
}

/// Not every sign-in belongs to a call: the test of the connection signs in, too.
void ActivityCalls::addSignIn(ActivityItem& item) {
  if (!unfinished_.empty() && stateOf(unfinished_.back()) == State::begun) {
    addDetail(*unfinished_.back(), item);
  }
}

void ActivityCalls::end(ActivityItem& item) {
  ActivityItem* const row = unfinished(item.line);
  if (!row) {
    makeRow(item, State::ended);
    return;
  }
  std::erase(unfinished_, row);
  row->call->entry.text = item.line.text;
  row->call->entry.call->state = State::ended;
  addDetail(*row, item);
}

/// One that seemed to be over only when there is no other. Then the one that began nearest to when the line
/// says: a line without a duration takes the newest.
ActivityItem* ActivityCalls::unfinished(const ActivityEntry& line) const {
  const auto began = line.date - std::chrono::milliseconds(line.text.milliseconds);
  const auto rank = [&](const ActivityItem* row) {
    return std::pair(stateOf(row) == State::unusable, std::chrono::abs(row->line.date - began));
  };
  ActivityItem* found = nullptr;
  for (ActivityItem* const row : unfinished_) {
    if (row->line.text.name == line.text.name && (!found || rank(row) <= rank(found))) {
      found = row;
    }
  }
  return found;
}

void ActivityCalls::addDetail(ActivityItem& row, ActivityItem& detail) {
  ActivityEntry& entry = row.call->entry;
  if (entry.original.size() < longestOriginal) {
    entry.original += QStringLiteral(" · ") + detail.line.original;
    if (entry.original.size() > longestOriginal) {
      entry.original = entry.original.first(longestOriginal) + u'…';
    }
  }
  entry.level = std::max(entry.level, detail.line.level);
  detail.isDetail = true;
  touch(row);
}

void ActivityCalls::makeRow(ActivityItem& item, State state) {
  item.call = std::make_unique<ActivityItem::Call>(ActivityItem::Call{item.line});
  item.call->entry.call = {.tool = toolName(item.line.text.name.toStdString()), .state = state};
}

void ActivityCalls::close(ActivityItem& row, State state) {
  if (stateOf(&row) == State::begun || stateOf(&row) == State::unknown) {
    row.call->entry.call->state = state;
    touch(row);
  }
}

void ActivityCalls::closeAll(State state) {
  for (ActivityItem* const row : unfinished_) {
    close(*row, state);
  }
}

void ActivityCalls::touch(ActivityItem& row) {
  row.call->words.clear();
  if (row.isPlaced && !row.isChanged) {
    row.isChanged = true;
    changed_->push_back(&row);
  }
}

}  // namespace tarnwell
