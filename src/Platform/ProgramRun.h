#pragma once

/// Runs another program to its end, without a shell, and hears what it prints.
///
///     ProgramOutcome outcome = runProgram({.command = {"/usr/bin/codex", "mcp", "list"}});
///     if (outcome.succeeded()) ...
///
/// The program reads nothing: its standard input is /dev/null. It has a process group of its own, and when it
/// takes too long, the whole group is ended: asked first, and forced 2 seconds later, also when the program
/// itself has ended by then.
///
/// Threads: any. Waits for the program, so not for a thread that shows a window. When this process ignores
/// SIGCHLD, or somebody else in it waits for all children, nobody can say how the program ended, and what it
/// leaves behind is not forced.

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tarnwell {

struct ProgramRun {
  /// The path of the program, and its arguments. Not looked up in PATH.
  std::vector<std::string> command;
  /// "NAME=VALUE". Nothing else of this process's environment is passed on.
  std::vector<std::string> environment{};
  std::filesystem::path folder = "/";
  std::chrono::milliseconds limit = std::chrono::seconds(60);
  /// More bytes of each stream are read and dropped.
  std::size_t outputLimit = 65'536;
};

struct ProgramOutcome {
  enum class End {
    /// By itself, with `status`; -1 when the system does not tell it.
    exited,
    /// By a signal from elsewhere: `status` is its number.
    killed,
    tookTooLong,
    /// It never ran: `status` is the system's number of the error (errno).
    notStarted
  };

  End end = End::exited;
  int status = 0;
  /// What it wrote to standard output and to standard error. May be cut within a character.
  std::string output{};
  std::string errors{};

  bool succeeded() const { return end == End::exited && status == 0; }
};

ProgramOutcome runProgram(const ProgramRun& run);

/// "NAME=VALUE" of this process, as `runProgram` takes it.
std::vector<std::string> ownEnvironment();

}  // namespace tarnwell
