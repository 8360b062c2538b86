#pragma once

/// What the page "Assistants" has done on this machine, as functions that a test replaces.

#include <filesystem>
#include <functional>
#include <vector>

#include "Assistants/Assistants.h"

namespace tarnwell {

/// Each may take seconds and runs off the thread of the window, but never two at a time.
struct AssistantWork {
  std::function<std::vector<AssistantState>()> find;
  std::function<ConnectionPlan(AssistantID, ConnectionPlan::Goal)> plan;
  std::function<ConnectionDone(const ConnectionPlan&)> carryOut;
  std::function<void(const ConnectionDone&)> undo;
  /// The helper's absolute path.
  std::filesystem::path helper;

  static AssistantWork on(const Machine& machine);
};

}  // namespace tarnwell
