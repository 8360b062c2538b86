#pragma once

/// Runs a program step by step under ptrace(2), and kills it in the middle of an operation.
///
///     TracedEnd end = runKilledAt(command, environment, 3);
///
/// It counts the system calls of the first thread, from the first one that makes a directory, and kills the
/// program as `kill -9` does when the wanted one is about to begin. Between two system calls nothing changes
/// outside of the program. So these are all states that a crash can leave.

#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fcntl.h>
#include <signal.h>

#include <cerrno>
#include <stdexcept>
#include <string>
#include <vector>

#include "support/ArgumentVector.h"

namespace tarnwell::test {

struct TracedEnd {
  bool isKilled = false;
  /// The exit status of a program that was not killed, or the negative number of the signal that ended it.
  int status = 0;
};

class TracedProgram {
 public:
  TracedProgram(std::vector<std::string> command, std::vector<std::string> environment) {
    // Made before the fork, because only a few calls are allowed after it.
    std::vector<char*> words = argumentVector(command);
    std::vector<char*> variables = argumentVector(environment);
    process_ = ::fork();
    if (process_ == 0) {
      const int nothing = ::open("/dev/null", O_RDWR);
      for (int stream = 0; stream <= 2; ++stream) {
        ::dup2(nothing, stream);
      }
      ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
      ::execve(words[0], words.data(), variables.data());
      ::_exit(127);
    }
    const int status = next();
    if (!WIFSTOPPED(status)) {
      process_ = -1;
      throw std::runtime_error("cannot run " + command[0] + " under ptrace(2), which this test needs");
    }
    ::ptrace(PTRACE_SETOPTIONS, process_, nullptr, PTRACE_O_TRACESYSGOOD | PTRACE_O_EXITKILL);
  }
  TracedProgram(const TracedProgram&) = delete;
  ~TracedProgram() { kill(); }

  TracedEnd runKilledAt(int number) {
    int count = 0;
    int signalNumber = 0;
    for (;;) {
      ::ptrace(PTRACE_SYSCALL, process_, nullptr, signalNumber);
      const int status = next();
      if (!WIFSTOPPED(status)) {
        process_ = -1;
        return {false, WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status)};
      }
      constexpr int atSystemCall = SIGTRAP | 0x80;
      const bool isSystemCall = WSTOPSIG(status) == atSystemCall;
      signalNumber = isSystemCall || WSTOPSIG(status) == SIGTRAP ? 0 : WSTOPSIG(status);
      if (isSystemCall && isCounted(count > 0) && ++count == number) {
        kill();
        return {true, 0};
      }
    }
  }

 private:
  int next() const {
    int status = 0;
    while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
  }

  /// Counts a system call at its beginning, not at its end.
  bool isCounted(bool hasBegun) const {
    __ptrace_syscall_info call{};
    ::ptrace(PTRACE_GET_SYSCALL_INFO, process_, sizeof call, &call);
    return call.op == PTRACE_SYSCALL_INFO_ENTRY && (hasBegun || makesDirectory(call.entry.nr));
  }

  static bool makesDirectory(unsigned long long number) {
#ifdef SYS_mkdir
    if (number == SYS_mkdir) {
      return true;
    }
#endif
    return number == SYS_mkdirat;
  }

  void kill() {
    if (process_ > 0) {
      ::kill(process_, SIGKILL);
      next();
      process_ = -1;
    }
  }

  pid_t process_ = -1;
};

}  // namespace tarnwell::test
