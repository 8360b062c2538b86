#pragma once

/// The log of this program and of all others of its kind that this user runs, ordered by time: one row for
/// each call, or one for each line.
///
///     ActivityModel model(LogBuffer::shared(), words);
///     model.follow();  // the system's log as well
///
/// Entries arrive from other threads and are shown in batches, so the window stays alive in a flood. The
/// newest 10,000 lines are kept. A search and a chosen process hide the other rows, and `clear` hides what is
/// there so far; the logs themselves stay as they are.
///
/// Threads: that of the window. One model for a `LogBuffer`, whose one callback it sets.

#include <QAbstractTableModel>
#include <QTimer>
#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "App/Models/ActivityEntry.h"
#include "App/Models/ActivityInbox.h"
#include "App/Models/ActivityItem.h"
#include "App/Models/ActivityProcesses.h"
#include "App/Models/BackgroundTask.h"

namespace tarnwell {

enum class ActivityDetail {
  /// One row for each call, and for each line that tells something else.
  calls,
  everyLine,
};

class ActivityModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  static constexpr std::size_t keptEntries = 10'000;
  /// The role of an entry's level, as the number of a `LogLevel`.
  static constexpr int levelRole = Qt::UserRole;

  /// Starts to follow the system's log. What it returns ends that when it goes away.
  using Follow = std::function<std::shared_ptr<void>(LogFollower::Query, LogFollower::Heard)>;
  /// Runs off the thread of the window.
  using Programs = std::function<std::vector<RunningProgram>()>;
  /// A call that is older than this and has no outcome is not waited for. A call has many bounded waits.
  static constexpr std::chrono::minutes longestCall{2};

  /// The words must outlive the model.
  ActivityModel(LogBuffer& own, const ActivityWords& words, Follow follow = followSystemLog,
                Programs programs = runningPrograms, QObject* parent = nullptr);
  ~ActivityModel() override;
  ActivityModel(const ActivityModel&) = delete;
  ActivityModel& operator=(const ActivityModel&) = delete;

  /// Follows the system's log from now on. A second call does nothing.
  void follow();
  /// Whether the system's log can be read. Absent until that is known.
  std::optional<LogAccess> access() const { return access_; }

  /// Calls at first: a person wants to see what was done. The other lines tell how.
  void showDetail(ActivityDetail detail);
  ActivityDetail detail() const { return detail_; }

  /// Shows only what this process wrote, or everything again.
  void showProcess(std::optional<int> number);
  std::optional<int> shownProcess() const { return process_; }
  /// The newest processes among the entries, newest first, without this app (`ActivityProcesses::thisApp`).
  /// The one that is shown stays, also when it has no entry any more.
  const std::vector<ActivityProcess>& otherProcesses() const { return otherProcesses_; }

  /// Shows only entries that have this text in one of their columns. Letter case does not count.
  void search(const QString& text);
  bool isSearching() const { return !search_.isEmpty(); }

  void clear();

  /// The words have changed, because the language has.
  void retranslate();

  const ActivityEntry& entry(int row) const { return entryOf(*shown_[static_cast<std::size_t>(row)]); }

  /// The rows as lines of text, with the original where it differs from what is shown.
  QString lines(const std::vector<int>& rows) const;
  QString allLines() const;

  /// Writes all lines into the file, off this thread.
  void save(const QString& path);
  bool isSaving() const { return saving_.isRunning(); }

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 Q_SIGNALS:
  void accessChanged();
  void processesChanged();
  /// Some entries have been taken in.
  void grown();
  void saved(const QString& path);
  /// The file could not be written, for this reason in the system's words.
  void notSaved(const QString& path, const QString& reason);

 private:
  static std::shared_ptr<void> followSystemLog(LogFollower::Query query, LogFollower::Heard heard);
  void beginWithOwnEntries();
  void hear(LogAccess access);
  void takeTurn();
  void insert(std::vector<ActivityEntry> entries);
  void insertShown(const std::vector<ActivityItem*>& items);
  void showChanged();
  void dropOldest();
  void settle();
  void showProcesses();
  void askWhoStarted();

  const ActivityEntry& entryOf(const ActivityItem& item) const {
    return item.call && detail_ == ActivityDetail::calls ? item.call->entry : item.line;
  }
  QString wordsOf(const ActivityEntry& entry) const;
  bool matches(ActivityItem& item) const;
  void showMatches();

  LogBuffer& own_;
  const ActivityWords& words_;
  Follow startFollowing_;
  Programs programs_;
  std::shared_ptr<ActivityInbox> inbox_;
  QTimer nextTurn_;
  QTimer nextLook_;
  std::uint64_t arrivals_ = 0;
  std::deque<std::unique_ptr<ActivityItem>> items_;
  /// The items that are shown, in the same order.
  std::deque<ActivityItem*> shown_;
  ActivityProcesses processes_;
  std::vector<ActivityProcess> otherProcesses_;
  ActivityDetail detail_ = ActivityDetail::calls;
  std::optional<int> process_;
  QString search_;
  std::chrono::system_clock::time_point ownSince_;
  std::optional<std::chrono::system_clock::time_point> cleared_;
  std::optional<LogAccess> access_;
  std::shared_ptr<void> follower_;
  BackgroundTask saving_;
  BackgroundTask naming_;
  OwnerThread thread_;
};

}  // namespace tarnwell
