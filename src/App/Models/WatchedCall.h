#pragma once

/// One tool call off the thread of the window, which can be given up.
///
///     WatchedCall search_{settings_};
///     search_.begin(tools, ToolName::searchInbox, {{"query", "tea"}}, [this](ToolCall call) { ... });
///     search_.giveUp();   // the session ends at its next wait, and nothing is told
///
/// A newer call gives the older one up. So does the destructor, which waits for nothing.
///
/// The tools read the settings from the file. So while a change is being written, a call waits for it.
///
/// Threads: that of the owner, which needs an event loop. `done` and `progressed` run there.

#include <cstdint>
#include <functional>

#include "App/Models/BackgroundTask.h"
#include "App/Models/ReadOnlyTools.h"
#include "App/Models/SettingsFile.h"

namespace tarnwell {

class WatchedCall {
 public:
  using Progressed = std::function<void(std::int64_t done, std::int64_t total)>;

  /// `settings` must outlive the call.
  explicit WatchedCall(const SettingsFile& settings);
  ~WatchedCall() { giveUp(); }
  WatchedCall(const WatchedCall&) = delete;
  WatchedCall& operator=(const WatchedCall&) = delete;

  /// `progressed` may be empty.
  void begin(const ReadOnlyTools& tools, ToolName tool, JSONObject arguments,
             std::function<void(ToolCall)> done, Progressed progressed = {});
  void giveUp();
  /// True while it waits for the settings, too.
  bool isRunning() const { return isWaiting() || task_.isRunning(); }
  bool isWaiting() const { return static_cast<bool>(waiting_); }

 private:
  const SettingsFile& settings_;
  QObject receiver_;
  std::function<void()> waiting_;
  Cancellation cancellation_;
  BackgroundTask task_;
};

}  // namespace tarnwell
