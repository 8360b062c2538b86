#include "App/Models/ActivityModel.h"

#include <QSaveFile>
#include <algorithm>
#include <array>
#include <iterator>
#include <mutex>
#include <numeric>
#include <set>
#include <stdexcept>
#include <utility>

#include "Core/BridgeConstants.h"

namespace tarnwell {
namespace {

using Clock = std::chrono::system_clock;

/// Entries are taken in for about half a frame, then the window may draw.
constexpr std::size_t batchEntries = 100;
constexpr std::chrono::milliseconds turn{8};
constexpr std::chrono::milliseconds pauseBetweenTurns{10};

constexpr ActivityColumn columns[] = {ActivityColumn::time, ActivityColumn::level, ActivityColumn::subject,
                                      ActivityColumn::text};

constexpr auto isEarlier = [](Clock::time_point date, const auto& item) { return date < item->entry.date; };

void write(const QString& path, const QByteArray& text) {
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit()) {
    throw std::runtime_error(file.errorString().toStdString());
  }
}

}  // namespace

ActivityModel::ActivityModel(LogBuffer& own, const ActivityWords& words, Follow follow, QObject* parent)
    : QAbstractTableModel(parent),
      own_(own),
      words_(words),
      startFollowing_(std::move(follow)),
      inbox_(std::make_shared<ActivityInbox>(keptEntries)) {
  nextTurn_.setSingleShot(true);
  nextTurn_.setInterval(pauseBetweenTurns);
  connect(&nextTurn_, &QTimer::timeout, this, &ActivityModel::takeTurn);
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
  dropOldest();
  if (rest > 0) {
    nextTurn_.start();
  }
  Q_EMIT grown();
}

void ActivityModel::insert(std::vector<ActivityEntry> entries) {
  std::stable_sort(entries.begin(), entries.end(), [](const ActivityEntry& one, const ActivityEntry& other) {
    return one.date < other.date;
  });
  std::vector<Item*> fresh;
  for (ActivityEntry& entry : entries) {
    if (cleared_ && entry.date <= *cleared_) {
      continue;
    }
    auto item = std::make_unique<Item>(Item{std::move(entry), {}});
    item->words = wordsOf(item->entry);
    if (matches(*item)) {
      fresh.push_back(item.get());
    }
    items_.insert(std::upper_bound(items_.begin(), items_.end(), item->entry.date, isEarlier),
                  std::move(item));
  }
  insertShown(fresh);
}

/// Entries that belong at one place are inserted at once. Mostly that is all of them, at the end.
void ActivityModel::insertShown(const std::vector<Item*>& items) {
  for (auto first = items.begin(); first != items.end();) {
    const auto place = std::upper_bound(shown_.begin(), shown_.end(), (*first)->entry.date, isEarlier);
    const auto last = place == shown_.end() ? items.end() : std::find_if(first, items.end(), [&](Item* item) {
      return item->entry.date >= (*place)->entry.date;
    });
    const int row = static_cast<int>(place - shown_.begin());
    beginInsertRows({}, row, row + static_cast<int>(last - first) - 1);
    shown_.insert(place, first, last);
    endInsertRows();
    first = last;
  }
}

void ActivityModel::dropOldest() {
  const std::size_t tooMany = items_.size() > keptEntries ? items_.size() - keptEntries : 0;
  int hidden = 0;
  for (std::size_t index = 0; index < tooMany; ++index) {
    const auto next = static_cast<std::size_t>(hidden);
    hidden += next < shown_.size() && shown_[next] == items_[index].get() ? 1 : 0;
  }
  if (hidden > 0) {
    beginRemoveRows({}, 0, hidden - 1);
    shown_.erase(shown_.begin(), shown_.begin() + hidden);
    endRemoveRows();
  }
  items_.erase(items_.begin(), items_.begin() + static_cast<std::ptrdiff_t>(tooMany));
}

QString ActivityModel::wordsOf(const ActivityEntry& entry) const {
  QString all;
  for (const ActivityColumn column : columns) {
    all += words_.words(entry, column) + '\n';
  }
  return all;
}

bool ActivityModel::matches(const Item& item) const {
  return item.words.contains(search_, Qt::CaseInsensitive);
}

void ActivityModel::search(const QString& text) {
  if (text != search_) {
    search_ = text;
    showMatches();
  }
}

void ActivityModel::showMatches() {
  beginResetModel();
  shown_.clear();
  for (const std::unique_ptr<Item>& item : items_) {
    if (matches(*item)) {
      shown_.push_back(item.get());
    }
  }
  endResetModel();
}

void ActivityModel::clear() {
  cleared_ = Clock::now();
  beginResetModel();
  shown_.clear();
  items_.clear();
  endResetModel();
}

void ActivityModel::retranslate() {
  for (const std::unique_ptr<Item>& item : items_) {
    item->words = wordsOf(item->entry);
  }
  Q_EMIT headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
  if (isSearching()) {
    showMatches();
  } else if (!shown_.empty()) {
    Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
  }
}

QString ActivityModel::lines(const std::vector<int>& rows) const {
  QString text;
  for (const int row : rows) {
    const ActivityEntry& shown = entry(row);
    text += localTime(shown.date);
    for (const ActivityColumn column :
         {ActivityColumn::level, ActivityColumn::subject, ActivityColumn::text}) {
      text += '\t' + words_.words(shown, column);
    }
    if (words_.words(shown, ActivityColumn::text) != shown.original) {
      text += '\t' + shown.original;
    }
    text += '\n';
  }
  return text;
}

QString ActivityModel::allLines() const {
  std::vector<int> rows(shown_.size());
  std::iota(rows.begin(), rows.end(), 0);
  return lines(rows);
}

void ActivityModel::save(const QString& path) {
  saving_.run([path, text = allLines().toUtf8()] { write(path, text); },
              [this, path](const Outcome<void>& outcome) {
                try {
                  if (outcome.failure) {
                    std::rethrow_exception(outcome.failure);
                  }
                  Q_EMIT saved(path);
                } catch (const std::exception& error) {
                  Q_EMIT notSaved(path, QString::fromUtf8(error.what()));
                }
              });
}

int ActivityModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int ActivityModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(std::size(columns));
}

QVariant ActivityModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
    return {};
  }
  const ActivityEntry& shown = entry(index.row());
  switch (role) {
    case Qt::DisplayRole:
      return words_.words(shown, columns[index.column()]);
    case Qt::ToolTipRole:
      // Mark-up of its own, so that mark-up in the entry is not read as such and a long text breaks its
      // lines.
      return QString("<qt>" + shown.original.toHtmlEscaped() + "</qt>");
    case levelRole:
      return static_cast<int>(shown.level);
    default:
      return {};
  }
}

QVariant ActivityModel::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool isHeading =
      orientation == Qt::Horizontal && role == Qt::DisplayRole && section >= 0 && section < columnCount();
  return isHeading ? words_.heading(columns[section]) : QVariant();
}

}  // namespace tarnwell
