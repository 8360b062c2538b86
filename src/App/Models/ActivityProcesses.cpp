#include "App/Models/ActivityProcesses.h"

#include <QCoreApplication>
#include <algorithm>
#include <iterator>
#include <set>
#include <utility>

#include "App/Models/StartingProgram.h"

namespace tarnwell {
namespace {

using Moment = std::chrono::system_clock::time_point;

constexpr auto isEarlier = [](Moment date, const ActivityItem* item) { return date < item->line.date; };

bool isOfAHelper(LogPhrase phrase) {
  switch (phrase) {
    case LogPhrase::helperStarting:
    case LogPhrase::helperReady:
    case LogPhrase::assistantConnected:
    case LogPhrase::callBegan:
    case LogPhrase::assistantLeft:
    case LogPhrase::helperStopped:
      return true;
    default:
      return false;
  }
}

constexpr auto isNewer = [](const ActivityProcess& one, const ActivityProcess& other) {
  return std::pair(one.since, one.number) > std::pair(other.since, other.number);
};

std::optional<qint64> keyOf(const ActivityEntry& line) {
  return line.isOwn ? std::nullopt : std::optional(line.processID);
}

}  // namespace

ActivityProcesses::ActivityProcesses() {
  auto app = std::make_unique<Process>(changed_);
  app->known = {.number = thisApp,
                .kind = ActivityProcess::Kind::thisApp,
                .processID = QCoreApplication::applicationPid()};
  processes_[std::nullopt].push_back(std::move(app));
}

template <class Function>
void ActivityProcesses::forEach(const Function& function) const {
  for (const auto& [key, processes] : processes_) {
    for (const std::unique_ptr<Process>& process : processes) {
      function(*process);
    }
  }
}

void ActivityProcesses::add(ActivityItem& item) {
  Process& process = processOf(item.line);
  item.process = process.known.number;
  learn(process, item.line);
  const auto place = std::upper_bound(process.items.begin(), process.items.end(), item.line.date, isEarlier);
  process.isUnordered |= place != process.items.end() || process.isReplaced;
  process.items.insert(place, &item);
  if (!process.isUnordered) {
    process.calls.add(item);
  }
}

void ActivityProcesses::learn(Process& process, const ActivityEntry& line) {
  const LogPhrase phrase = line.text.phrase;
  process.known.since = std::min(process.known.since, line.date);
  process.hasStart |= phrase == LogPhrase::helperStarting;
  process.hasStopped |= phrase == LogPhrase::helperStopped;
  process.isApp |= line.isOwn || phrase == LogPhrase::callTried || phrase == LogPhrase::endpointListening;
  if (!line.isOwn && (process.isApp || isOfAHelper(phrase))) {
    process.known.kind = process.isApp ? ActivityProcess::Kind::other : ActivityProcess::Kind::helper;
  }
}

/// The last one with this number that began before the line. An older line is of the first one, unless that
/// one's start is known.
ActivityProcesses::Process& ActivityProcesses::processOf(const ActivityEntry& line) {
  Processes& all = processes_[keyOf(line)];
  if (line.isOwn) {
    return *all.front();
  }
  const auto next = std::upper_bound(all.begin(), all.end(), line.date, [](Moment date, const auto& process) {
    return date < process->known.since;
  });
  const auto place = static_cast<std::size_t>(next - all.begin());
  if (place == 0) {
    return all.empty() || all.front()->hasStart ? insert(line, 0) : *all.front();
  }
  return line.text.phrase == LogPhrase::helperStarting ? begin(line, place) : *all[place - 1];
}

/// What the process before has of a later time is of this one.
ActivityProcesses::Process& ActivityProcesses::begin(const ActivityEntry& start, std::size_t place) {
  Process& fresh = insert(start, place);
  Process& before = *processes_[keyOf(start)][place - 1];
  before.isReplaced = true;
  before.calls.breakOff();
  const auto later = std::upper_bound(before.items.begin(), before.items.end(), start.date, isEarlier);
  if (later != before.items.end()) {
    fresh.items.assign(later, before.items.end());
    before.items.erase(later, before.items.end());
    for (ActivityItem* const item : fresh.items) {
      item->process = fresh.known.number;
      learn(fresh, item->line);
    }
    fresh.isUnordered = before.isUnordered = true;
  }
  return fresh;
}

ActivityProcesses::Process& ActivityProcesses::insert(const ActivityEntry& first, std::size_t place) {
  Processes& all = processes_[keyOf(first)];
  auto process = std::make_unique<Process>(changed_);
  process->known = {.number = next_++, .processID = first.processID, .since = first.date};
  process->isReplaced = place < all.size();
  return **all.insert(all.begin() + static_cast<std::ptrdiff_t>(place), std::move(process));
}

bool ActivityProcesses::mayRun(const Process& process) {
  return process.known.kind == ActivityProcess::Kind::helper && !process.hasStopped && !process.isReplaced &&
         process.known.processID != 0;
}

/// A helper may wait for its assistant for hours, and is known when it writes again: of those without an
/// entry the newest stay.
void ActivityProcesses::eraseEmpty() {
  std::vector<ActivityProcess> waiting;
  forEach([&](const Process& process) {
    if (process.items.empty() && mayRun(process)) {
      waiting.push_back(process.known);
    }
  });
  std::sort(waiting.begin(), waiting.end(), isNewer);
  std::set<int> kept{thisApp, chosen_.value_or(thisApp)};
  for (std::size_t place = 0; place < std::min(waiting.size(), mostProcesses); ++place) {
    kept.insert(waiting[place].number);
  }
  for (auto each = processes_.begin(); each != processes_.end();) {
    std::erase_if(each->second, [&](const std::unique_ptr<Process>& process) {
      return process->items.empty() && !kept.contains(process->known.number);
    });
    each = each->second.empty() ? processes_.erase(each) : std::next(each);
  }
}

void ActivityProcesses::drop(ActivityItem& item) {
  const auto found = processes_.find(keyOf(item.line));
  for (const std::unique_ptr<Process>& process : found->second) {
    if (process->known.number == item.process) {
      process->items.pop_front();
      process->calls.forget(item);
      hasEmptyOnes_ |= process->items.empty();
      return;
    }
  }
}

void ActivityProcesses::dropAll() {
  eraseEmpty();
  forEach([](Process& process) {
    process.items.clear();
    process.calls.reset();
    process.isUnordered = false;
  });
  changed_.clear();
}

void ActivityProcesses::settle(Moment giveUpBefore) {
  if (std::exchange(hasEmptyOnes_, false)) {
    eraseEmpty();
  }
  forEach([&](Process& process) {
    if (std::exchange(process.isUnordered, false)) {
      order(process);
    }
    process.calls.giveUp(giveUpBefore);
  });
}

void ActivityProcesses::order(Process& process) {
  struct Before {
    std::unique_ptr<ActivityItem::Call> call;
    bool isDetail;
    bool isPlaced;
  };
  std::vector<Before> before;
  process.calls.reset();
  for (ActivityItem* const item : process.items) {
    // Without a place no step on the way counts as a change.
    before.push_back(
        {std::move(item->call), std::exchange(item->isDetail, false), std::exchange(item->isPlaced, false)});
  }
  for (ActivityItem* const item : process.items) {
    process.calls.add(*item);
  }
  if (process.isReplaced) {
    process.calls.breakOff();
  }
  for (std::size_t each = 0; each < before.size(); ++each) {
    ActivityItem& item = *process.items[each];
    Before& old = before[each];
    item.isPlaced = old.isPlaced;
    const bool isSameCall =
        old.call && item.call ? old.call->entry == item.call->entry : old.call == item.call;
    if (isSameCall) {
      item.call = std::move(old.call);
    }
    if (item.isPlaced && !item.isChanged && (!isSameCall || old.isDetail != item.isDetail)) {
      item.isChanged = true;
      changed_.push_back(&item);
    }
  }
}

bool ActivityProcesses::hasBegunCall() const {
  bool has = false;
  forEach([&](const Process& process) { has |= process.calls.hasBegunOne(); });
  return has;
}

std::vector<ActivityItem*> ActivityProcesses::takeChanged() {
  for (ActivityItem* const item : changed_) {
    item->isChanged = false;
  }
  return std::exchange(changed_, {});
}

void ActivityProcesses::choose(std::optional<int> number) {
  chosen_ = number;
  hasEmptyOnes_ = true;
}

std::vector<ActivityProcess> ActivityProcesses::others() const {
  std::vector<ActivityProcess> result;
  forEach([&](const Process& process) {
    const bool isListed = !process.items.empty() || process.known.number == chosen_;
    if (isListed && process.known.number != thisApp && process.known.processID != 0) {
      result.push_back(process.known);
    }
  });
  std::sort(result.begin(), result.end(), isNewer);
  if (result.size() > mostProcesses) {
    const auto rest = result.begin() + static_cast<std::ptrdiff_t>(mostProcesses);
    const auto chosen = std::find_if(
        rest, result.end(), [&](const ActivityProcess& process) { return process.number == chosen_; });
    result.erase(chosen == result.end() ? rest : std::rotate(rest, chosen, chosen + 1), result.end());
  }
  return result;
}

std::vector<int> ActivityProcesses::takeUnnamed() {
  std::vector<int> numbers;
  forEach([&](Process& process) {
    if (mayRun(process) && !std::exchange(process.isNamed, true)) {
      numbers.push_back(process.known.number);
    }
  });
  return numbers;
}

void ActivityProcesses::name(const std::vector<int>& numbers, const std::vector<RunningProgram>& running) {
  const std::set<int> asked(numbers.begin(), numbers.end());
  forEach([&](Process& process) {
    if (asked.contains(process.known.number)) {
      process.known.program = startingProgram(process.known.processID, running);
    }
  });
}

}  // namespace tarnwell
