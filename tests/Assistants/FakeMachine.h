#pragma once

/// A machine with nothing on it but what a test puts there: a home directory, system folders, running
/// programs, and programs of clients.

#include <sys/stat.h>

#include <fstream>
#include <map>
#include <memory>

#include "Assistants/Assistants.h"
#include "support/Files.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

class FakeMachine {
  /// Shared with the machine: a look that the app has given up goes on by itself, after the test.
  struct Surroundings {
    std::map<std::string, std::string> variables;
    std::vector<RunningProgram> running;
  };
  std::shared_ptr<Surroundings> surroundings_ = std::make_shared<Surroundings>();

 public:
  FakeMachine() {
    std::filesystem::create_directories(home());
    machine.home = home();
    machine.systemRoot = root_ / "system";
    machine.layout = FolderLayout::linuxDesktop;
    machine.helper = putProgram(root_ / "app" / "tarnwell", "exit 0");
    machine.environment = [around = surroundings_](const char* name) {
      const auto found = around->variables.find(name);
      return found != around->variables.end() ? std::optional(found->second) : std::nullopt;
    };
    machine.runningPrograms = [around = surroundings_] { return around->running; };
  }
  FakeMachine(const FakeMachine&) = delete;

  std::filesystem::path home() const { return root_ / "home"; }
  std::filesystem::path root() const { return root_; }

  /// Below the home directory, with the folders.
  std::filesystem::path put(const std::filesystem::path& name, const std::string& text) const {
    const std::filesystem::path file = home() / name;
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << text;
    return file;
  }

  /// A shell script.
  static std::filesystem::path putProgram(const std::filesystem::path& file, const std::string& script) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file, std::ios::binary) << "#!/bin/sh\n" + script + "\n";
    ::chmod(file.c_str(), 0755);
    return file;
  }

  AssistantState state(AssistantID id) const { return assistantState(machine, id); }

  Machine machine;
  std::map<std::string, std::string>& variables = surroundings_->variables;
  std::vector<RunningProgram>& running = surroundings_->running;

 private:
  TemporaryDirectory directory_;
  /// Without links, as the system tells the paths of programs.
  std::filesystem::path root_ = std::filesystem::canonical(directory_.path());
};

}  // namespace tarnwell::test
