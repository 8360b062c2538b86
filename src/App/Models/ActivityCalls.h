#pragma once

/// Makes the lines that one process logged into calls: one row for each.
///
///     calls.add(began);   // "tool call: move_message": this item has the row of the call from now on
///     calls.add(refused); // "write move_message: blocked(read-only)": a detail of the call
///     calls.add(ended);   // "tool move_message: blocked (0 ms)": a detail, too; the row tells the outcome
///
/// A line that is neither part of a call nor known for a detail keeps a row of its own, so nothing that is
/// not understood is hidden.
///
/// A helper runs one call at a time. So a call is over when the next one begins. The app runs several at a
/// time, for its own endpoint and for trials. An outcome is that of the call whose tool it names, and of
/// several the one that began as long before as the outcome says. A failure does not say how long it took:
/// there two calls of one tool at a time may swap their outcomes.
///
/// "tried by the user: search_inbox" announces a trial: the next call of this tool is the user's own.
///
/// Threads: that of the window. The items must outlive it, or be forgotten before they go.

#include <chrono>
#include <deque>
#include <vector>

#include "App/Models/ActivityItem.h"

namespace tarnwell {

class ActivityCalls {
 public:
  /// The items of which `add` and the others change a row go to the end of `changed`, when they have a place.
  explicit ActivityCalls(std::vector<ActivityItem*>& changed) : changed_(&changed) {}

  /// Takes the lines in the order of time.
  void add(ActivityItem& item);
  void forget(const ActivityItem& item);
  /// No line was added.
  void reset();

  /// The process is gone: a call that has begun comes to no end.
  void breakOff() { closeAll(ActivityCall::State::brokenOff); }
  /// Calls that began before this moment come to no end that the log tells.
  void giveUp(std::chrono::system_clock::time_point before);
  bool hasBegunOne() const;

 private:
  void begin(ActivityItem& item);
  void addDecision(ActivityItem& item);
  void addSignIn(ActivityItem& item);
  void end(ActivityItem& item);
  ActivityItem* announcedTrial(const LogText& began) const;
  ActivityItem* unfinished(const ActivityEntry& line) const;
  void addDetail(ActivityItem& row, ActivityItem& detail);
  void makeRow(ActivityItem& item, ActivityCall::State state);
  void close(ActivityItem& row, ActivityCall::State state);
  void closeAll(ActivityCall::State state);
  void touch(ActivityItem& row);

  std::vector<ActivityItem*>* changed_;
  /// The rows of the calls that have no outcome yet, oldest first.
  std::deque<ActivityItem*> unfinished_;
  /// It is the app, now or when it ran before.
  bool runsSeveral_ = false;
  /// An assistant that connects now is the one that the helper was started for.
  bool hasJustStarted_ = false;
  bool hasStarted_ = false;
  bool hasLeft_ = false;
};

}  // namespace tarnwell
