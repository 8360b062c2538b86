#pragma once

/// A line of the log as the activity keeps it, with what the lines around it make of it.
///
/// Threads: that of the window.

#include <QString>
#include <cstdint>
#include <memory>
#include <utility>

#include "App/Models/ActivityEntry.h"

namespace tarnwell {

struct ActivityItem {
  /// A call in one row, which stands at the line that tells of it first.
  struct Call {
    /// As it is shown. Its `original` has all lines of the call.
    ActivityEntry entry;
    /// What the columns show, for the search. Empty until somebody needs it.
    QString words{};
  };

  ActivityItem(ActivityEntry entry, std::uint64_t number) : line(std::move(entry)), arrival(number) {}

  /// By time, and as they arrived within one moment.
  bool isBefore(const ActivityItem& other) const {
    return line.date != other.line.date ? line.date < other.line.date : arrival < other.arrival;
  }

  ActivityEntry line;
  std::uint64_t arrival;
  /// What the columns show of the line, for the search.
  QString words{};
  /// Number of the process that wrote it, see `ActivityProcess`.
  int process = 0;
  /// Says nothing that a row in words does not say.
  bool isDetail = false;
  std::unique_ptr<Call> call{};

  /// Whether it has its place in the list, or none. Only then does a change of it matter.
  bool isPlaced = false;
  bool isChanged = false;
};

}  // namespace tarnwell
