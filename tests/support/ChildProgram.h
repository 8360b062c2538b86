#pragma once

/// A program that a test starts with its own environment. The test gives the input and reads the output. The
/// destructor ends a program that still runs, by its process id.

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "support/ArgumentVector.h"

namespace tarnwell::test {

class ChildProgram {
 public:
  /// Throws `std::runtime_error` naming the program when it cannot be started. The test then fails.
  ChildProgram(std::vector<std::string> command, std::vector<std::string> environment,
               const std::string& input = "") {
    int inputPipe[2];
    int outputPipe[2];
    if (::pipe2(inputPipe, O_CLOEXEC) < 0 || ::pipe2(outputPipe, O_CLOEXEC) < 0) {
      throw std::runtime_error("no pipes");
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, inputPipe[0], 0);
    posix_spawn_file_actions_adddup2(&actions, outputPipe[1], 1);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    int failure = ::posix_spawnp(&process_, command[0].c_str(), &actions, nullptr,
                                 argumentVector(command).data(), argumentVector(environment).data());
    posix_spawn_file_actions_destroy(&actions);
    ::close(inputPipe[0]);
    ::close(outputPipe[1]);
    output_ = outputPipe[0];
    // For short inputs only, which fit into the pipe.
    bool isGiven = ::write(inputPipe[1], input.data(), input.size()) == static_cast<ssize_t>(input.size());
    ::close(inputPipe[1]);
    if (failure != 0) {
      process_ = -1;
    }
    if (failure != 0 || !isGiven) {
      ::close(output_);
      throw std::runtime_error("cannot run " + command[0] + ", which this test needs");
    }
  }
  ChildProgram(const ChildProgram&) = delete;
  ~ChildProgram() {
    end(SIGKILL);
    ::close(output_);
  }

  pid_t processID() const { return process_; }

  /// The next line of the output without its line feed. The rest when the output ends before a line feed.
  std::string readLine() {
    std::string line;
    for (char byte; ::read(output_, &byte, 1) == 1 && byte != '\n';) {
      line.push_back(byte);
    }
    return line;
  }

  std::string readAll() {
    std::string text;
    char block[4096];
    for (ssize_t count; (count = ::read(output_, block, sizeof block)) > 0;) {
      text.append(block, static_cast<std::size_t>(count));
    }
    return text;
  }

  /// Waits for the program's end and returns its exit status, or -1 when a signal ended it.
  int wait() {
    const int status = waitStatus();
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  /// The same, but returns the status of waitpid(2).
  int waitStatus() {
    int status = 0;
    pid_t process = std::exchange(process_, -1);
    while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
  }

  void end(int signalNumber) {
    if (process_ > 0) {
      ::kill(process_, signalNumber);
      wait();
    }
  }

 private:
  pid_t process_ = -1;
  int output_ = -1;
};

}  // namespace tarnwell::test
