#include "App/Models/ActivityModel.h"

#include <algorithm>
#include <array>
#include <mutex>
#include <set>
#include <utility>

#include "Core/BridgeConstants.h"

namespace tarnwell {
namespace {

using Clock = std::chrono::system_clock;

/// Entries are taken in for about half a frame, then the window may draw.
constexpr std::size_t batchEntries = 100;
constexpr std::chrono::milliseconds turn{8};
constexpr std::chrono::milliseconds pauseBetweenTurns{10};

/// How often calls are looked at that have no outcome yet.
constexpr std::chrono::seconds pauseBetweenLooks{10};

constexpr auto isBefore = [](const auto& one, const auto& other) { return one->isBefore(*other); };

}  // namespace

ActivityModel::ActivityModel(LogBuffer& own, const ActivityWords& words, Follow follow, Programs programs,
                             QObject* parent)
    : QAbstractTableModel(parent),
      own_(own),
      words_(words),
      startFollowing_(std::move(follow)),
      programs_(std::move(programs)),
      inbox_(std::make_shared<ActivityInbox>(keptEntries)) {
  nextTurn_.setSingleShot(true);
  nextTurn_.setInterval(pauseBetweenTurns);
  connect(&nextTurn_, &QTimer::timeout, this, &ActivityModel::takeTurn);
  nextLook_.setSingleShot(true);
  nextLook_.setInterval(pauseBetweenLooks);
  connect(&nextLook_, &QTimer::timeout, this, &ActivityModel::settle);
  inbox_->open(thread_.poster(), [this] { nextTurn_.start(); });
  beginWithOwnEntries();
}

ActivityModel::~ActivityModel() {
  own_.onAppend({});
  inbox_->close();
}

std::shared_ptr<void> ActivityModel::followSystemLog(LogFollower::Query query, LogFollower::Heard heard) {
  return std::make_shared<LogFollower>(std::move(query), std::move(heard));
}

/// Other threads may log meanwhile. The callback comes before the snapshot, so no entry is lost, and lets
/// nothing of the snapshot through, so no entry comes twice.
void ActivityModel::beginWithOwnEntries() {
  struct Known {
    std::mutex mutex;
    std::set<std::array<std::uint8_t, 16>> identifiers;
  };
  const auto known = std::make_shared<Known>();
  const std::lock_guard lock(known->mutex);
  own_.onAppend([known, inbox = inbox_](const LogEntry& entry) {
    const std::lock_guard callbackLock(known->mutex);
    if (!known->identifiers.contains(entry.id)) {
      inbox->push(activityEntry(entry));
    }
  });
  const std::vector<LogEntry> before = own_.snapshot();
  for (const LogEntry& entry : before) {
    known->identifiers.insert(entry.id);
    inbox_->push(activityEntry(entry));
  }
  // The journal may receive an entry a moment before the buffer has it.
  ownSince_ = (before.empty() ? Clock::now() : before.front().date) - std::chrono::seconds(1);
}

void ActivityModel::follow() {
  if (follower_) {
    return;
  }
  follower_ = startFollowing_(
      {.subsystem = std::string(BridgeConstants::bundleIdentifier), .withoutOwnSince = ownSince_},
      [this, inbox = inbox_](const LogFollower::News& news) {
        for (const FollowedEntry& entry : news.entries) {
          inbox->push(activityEntry(entry));
        }
        inbox->post([this, access = news.access] { hear(access); });
      });
}

void ActivityModel::hear(LogAccess access) {
  if (access_ != access) {
    access_ = access;
    Q_EMIT accessChanged();
  }
}

void ActivityModel::takeTurn() {
  const auto end = std::chrono::steady_clock::now() + turn;
  std::size_t rest = 0;
  do {
    ActivityInbox::Taken taken = inbox_->take(batchEntries);
    rest = taken.rest;
    insert(std::move(taken.entries));
  } while (rest > 0 && std::chrono::steady_clock::now() < end);
  settle();
  dropOldest();
  showProcesses();
  if (rest > 0) {
    nextTurn_.start();
  }
  Q_EMIT grown();
}

void ActivityModel::insert(std::vector<ActivityEntry> entries) {
  std::vector<std::unique_ptr<ActivityItem>> arrived;
  for (ActivityEntry& entry : entries) {
    if (!cleared_ || entry.date > *cleared_) {
      arrived.push_back(std::make_unique<ActivityItem>(std::move(entry), ++arrivals_));
    }
  }
  std::sort(arrived.begin(), arrived.end(), isBefore);
  std::vector<ActivityItem*> fresh;
  for (std::unique_ptr<ActivityItem>& item : arrived) {
    item->words = wordsOf(item->line);
    processes_.add(*item);
    fresh.push_back(item.get());
    items_.insert(std::upper_bound(items_.begin(), items_.end(), item, isBefore), std::move(item));
  }
  for (ActivityItem* const item : fresh) {
    item->isPlaced = true;
  }
  std::erase_if(fresh, [this](ActivityItem* item) { return !matches(*item); });
  insertShown(fresh);
}

/// Entries that belong at one place are inserted at once. Mostly that is all of them, at the end.
void ActivityModel::insertShown(const std::vector<ActivityItem*>& items) {
  for (auto first = items.begin(); first != items.end();) {
    const auto place = std::upper_bound(shown_.begin(), shown_.end(), *first, isBefore);
    const auto last =
        place == shown_.end()
            ? items.end()
            : std::find_if(first, items.end(), [&](ActivityItem* item) { return !item->isBefore(**place); });
    const int row = static_cast<int>(place - shown_.begin());
    beginInsertRows({}, row, row + static_cast<int>(last - first) - 1);
    shown_.insert(place, first, last);
    endInsertRows();
    first = last;
  }
}

/// A row may say something else, or be hidden now, or shown.
void ActivityModel::showChanged() {
  for (ActivityItem* const item : processes_.takeChanged()) {
    const auto place = std::lower_bound(shown_.begin(), shown_.end(), item, isBefore);
    const int row = static_cast<int>(place - shown_.begin());
    const bool isShown = place != shown_.end() && *place == item;
    const bool willBeShown = matches(*item);
    if (isShown && willBeShown) {
      Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
    } else if (isShown) {
      beginRemoveRows({}, row, row);
      shown_.erase(place);
      endRemoveRows();
    } else if (willBeShown) {
      insertShown({item});
    }
  }
}

void ActivityModel::settle() {
  processes_.settle(Clock::now() - longestCall);
  showChanged();
  if (processes_.hasBegunCall()) {
    nextLook_.start();
  }
}

void ActivityModel::dropOldest() {
  const std::size_t tooMany = items_.size() > keptEntries ? items_.size() - keptEntries : 0;
  int hidden = 0;
  for (std::size_t index = 0; index < tooMany; ++index) {
    const auto next = static_cast<std::size_t>(hidden);
    hidden += next < shown_.size() && shown_[next] == items_[index].get() ? 1 : 0;
    processes_.drop(*items_[index]);
  }
  if (hidden > 0) {
    beginRemoveRows({}, 0, hidden - 1);
    shown_.erase(shown_.begin(), shown_.begin() + hidden);
    endRemoveRows();
  }
  items_.erase(items_.begin(), items_.begin() + static_cast<std::ptrdiff_t>(tooMany));
}

void ActivityModel::showProcesses() {
  std::vector<ActivityProcess> now = processes_.others();
  if (now != otherProcesses_) {
    otherProcesses_ = std::move(now);
    Q_EMIT processesChanged();
  }
  askWhoStarted();
}

/// Asked as soon as a helper is seen, because only a program that runs can be asked for.
void ActivityModel::askWhoStarted() {
  if (naming_.isRunning()) {
    return;
  }
  std::vector<int> numbers = processes_.takeUnnamed();
  if (numbers.empty()) {
    return;
  }
  naming_.run(programs_,
              [this, numbers = std::move(numbers)](const Outcome<std::vector<RunningProgram>>& outcome) {
                if (outcome.value) {
                  processes_.name(numbers, *outcome.value);
                }
                showProcesses();
              });
}

}  // namespace tarnwell
