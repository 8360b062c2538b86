#pragma once

/// A machine with assistants that exists only in memory, for the model and the page.

#include <algorithm>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "App/Models/AssistantWork.h"

namespace tarnwell::test {

using Connection = AssistantState::Connection;
using Goal = ConnectionPlan::Goal;

/// Outlives the test when a thread still works.
class MachineInMemory {
 public:
  /// As `AssistantWork`. A test replaces what it wants to fail.
  std::vector<AssistantState> assistants;
  std::function<ConnectionPlan(AssistantID, Goal)> plan;
  std::function<ConnectionDone(const ConnectionPlan&)> carryOut;
  std::function<void(const ConnectionDone&)> undo;
  /// What was asked for, in order: "find", "plan", "carryOut", "undo".
  std::vector<std::string> calls;

  /// From now on, whatever is asked for waits.
  void hold() { set(true); }
  void release() { set(false); }

  template <class Call>
  auto answer(const char* name, Call call) {
    std::unique_lock lock(mutex);
    calls.emplace_back(name);
    changed_.wait(lock, [this] { return !isHeld_; });
    return call();
  }

  std::mutex mutex;

 private:
  void set(bool isHeld) {
    {
      const std::lock_guard lock(mutex);
      isHeld_ = isHeld;
    }
    changed_.notify_all();
  }

  bool isHeld_ = false;
  std::condition_variable changed_;
};

inline AssistantState assistant(AssistantID id, const char* name, Connection connection = Connection::none) {
  AssistantState state{};
  state.id = id;
  state.name = name;
  state.isInstalled = true;
  state.connection = connection;
  state.file = "/home/anna/.config/" + std::string(name) + "/mcp.json";
  return state;
}

class FakeAssistants {
 public:
  /// Three are here, one of each way, and one is not.
  FakeAssistants() {
    MachineInMemory& machine = *machine_;
    AssistantState claude = assistant(AssistantID::claudeCode, "Claude Code");
    claude.way = ConnectingWay::ownCommand;
    AssistantState codex = assistant(AssistantID::codex, "Codex");
    codex.way = ConnectingWay::block;
    AssistantState zed = assistant(AssistantID::zed, "Zed");
    zed.isInstalled = false;
    machine.assistants = {claude, codex, assistant(AssistantID::cursor, "Cursor"), zed};
    machine.plan = [raw = machine_.get()](AssistantID id, Goal goal) {
      return planFor(stateOf(*raw, id), goal);
    };
    machine.carryOut = [raw = machine_.get()](const ConnectionPlan& plan) {
      AssistantState& state = stateOf(*raw, plan.id);
      state.connection = plan.goal == Goal::connect ? Connection::here : Connection::none;
      ConnectionDone done{plan, std::nullopt, {}};
      if (plan.change) {
        done.written = WrittenFile{*plan.change, plan.change->path.string() + ".tarnwell-20261122T193000Z"};
      }
      return done;
    };
    machine.undo = [raw = machine_.get()](const ConnectionDone& done) {
      AssistantState& state = stateOf(*raw, done.plan.id);
      state.connection = done.plan.goal == Goal::connect ? Connection::none : Connection::here;
    };
  }

  AssistantWork work() const {
    return {
        .find = [machine = machine_] { return machine->answer("find", [&] { return machine->assistants; }); },
        .plan = [machine = machine_](
                    AssistantID id,
                    Goal goal) { return machine->answer("plan", [&] { return machine->plan(id, goal); }); },
        .carryOut =
            [machine = machine_](const ConnectionPlan& plan) {
              return machine->answer("carryOut", [&] { return machine->carryOut(plan); });
            },
        .undo = [machine = machine_](
                    const ConnectionDone& done) { machine->answer("undo", [&] { machine->undo(done); }); },
        .helper = "/opt/tarnwell/bin/tarnwell"};
  }

  MachineInMemory* operator->() const { return machine_.get(); }
  AssistantState& operator[](AssistantID id) const { return stateOf(*machine_, id); }
  std::vector<std::string> calls() const {
    const std::lock_guard lock(machine_->mutex);
    return machine_->calls;
  }

  static ConnectionPlan planFor(const AssistantState& state, Goal goal) {
    ConnectionPlan plan{};
    plan.id = state.id;
    plan.goal = goal;
    plan.way = state.way;
    plan.file = state.file;
    switch (state.way) {
      case ConnectingWay::ownCommand:
        plan.commands = {{"claude", "mcp", "add", "--scope", "user", "tarnwell", "--",
                          "/opt/tarnwell/bin/tarnwell", "serve"}};
        break;
      case ConnectingWay::file: {
        const std::string without = "{\n  // mine\n  \"mcpServers\": {\n  }\n}\n";
        const std::string with =
            "{\n  // mine\n  \"mcpServers\": {\n    \"tarnwell\": {\n      \"command\": "
            "\"/opt/tarnwell/bin/tarnwell\",\n      \"args\": [\"serve\"]\n    }\n  }\n}\n";
        const bool adds = goal == Goal::connect;
        plan.change = FileChange{state.file, state.file, adds ? without : with, adds ? with : without};
        break;
      }
      case ConnectingWay::block:
        plan.block = "[mcp_servers.tarnwell]\ncommand = \"/opt/tarnwell/bin/tarnwell\"\nargs = [\"serve\"]\n";
        break;
    }
    return plan;
  }

 private:
  static AssistantState& stateOf(MachineInMemory& machine, AssistantID id) {
    return *std::ranges::find(machine.assistants, id, &AssistantState::id);
  }

  std::shared_ptr<MachineInMemory> machine_ = std::make_shared<MachineInMemory>();
};

}  // namespace tarnwell::test
