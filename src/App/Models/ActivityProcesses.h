#pragma once

/// The processes that wrote the log, and what each of them tells in words (ActivityCalls.h).
///
///     processes.add(item);             // tells the process of the item, and whether its row is a call's
///     processes.settle();              // once for many
///     processes.takeChanged();         // rows of earlier items that say something else now
///
/// A system gives the number of a process again after its end. So "tarnwell serve starting" begins a new
/// process, whatever its number is.
///
/// Lines may arrive late, from another log. Only then are all lines of their process looked at again.
///
/// Threads: that of the window. An item must be dropped before it goes.

#include <QString>
#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "App/Models/ActivityCalls.h"
#include "App/Models/ActivityItem.h"
#include "Platform/RunningPrograms.h"

namespace tarnwell {

struct ActivityProcess {
  enum class Kind {
    thisApp,
    /// Serves an assistant.
    helper,
    /// Another one, such as a test of the connection on the command line, or an earlier run of this app.
    other,
  };

  /// Never given twice. That of this app is 0.
  int number = 0;
  Kind kind = Kind::other;
  qint64 processID = 0;
  /// Of its first entry.
  std::chrono::system_clock::time_point since{};
  /// The program that started it, such as "Claude Desktop". Empty when that is not known.
  QString program{};

  bool operator==(const ActivityProcess&) const = default;
};

class ActivityProcesses {
 public:
  static constexpr int thisApp = 0;
  static constexpr std::size_t mostProcesses = 50;

  ActivityProcesses();
  ActivityProcesses(const ActivityProcesses&) = delete;
  ActivityProcesses& operator=(const ActivityProcesses&) = delete;

  void add(ActivityItem& item);
  /// The item is the oldest of all.
  void drop(ActivityItem& item);
  /// All items go. What is known of their processes stays for those that are still to write.
  void dropAll();

  /// Puts what arrived late into its order. Calls that began before this moment are given up.
  void settle(std::chrono::system_clock::time_point giveUpBefore);
  /// Whether a call has begun and has no outcome yet.
  bool hasBegunCall() const;
  std::vector<ActivityItem*> takeChanged();

  /// Keeps this one, also without an entry.
  void choose(std::optional<int> number);
  /// The newest of those that have an entry, newest first, and the chosen one. This app is not among them.
  std::vector<ActivityProcess> others() const;

  /// The numbers of the helpers that may still run, for finding out who started them. Each comes once.
  std::vector<int> takeUnnamed();
  void name(const std::vector<int>& numbers, const std::vector<RunningProgram>& running);

 private:
  struct Process {
    explicit Process(std::vector<ActivityItem*>& changed) : calls(changed) {}

    ActivityProcess known{};
    std::deque<ActivityItem*> items{};
    ActivityCalls calls;
    bool hasStart = false;
    /// This app, now or when it ran before.
    bool isApp = false;
    bool hasStopped = false;
    /// A later process has its number.
    bool isReplaced = false;
    bool isNamed = false;
    /// Something arrived that is older than what was there.
    bool isUnordered = false;
  };
  using Processes = std::vector<std::unique_ptr<Process>>;

  Process& processOf(const ActivityEntry& line);
  Process& begin(const ActivityEntry& start, std::size_t place);
  Process& insert(const ActivityEntry& first, std::size_t place);
  static void learn(Process& process, const ActivityEntry& line);
  void order(Process& process);
  static bool mayRun(const Process& process);
  void eraseEmpty();
  template <class Function>
  void forEach(const Function& function) const;

  std::vector<ActivityItem*> changed_;
  /// By the number that the system gave, each oldest first. Without one: this app.
  std::map<std::optional<qint64>, Processes> processes_;
  std::optional<int> chosen_;
  int next_ = thisApp + 1;
  /// A process has lost its last entry, or is chosen no more.
  bool hasEmptyOnes_ = false;
};

}  // namespace tarnwell
