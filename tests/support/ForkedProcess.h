#pragma once

/// Runs a function in a forked copy of the test and returns the text that the function returns. There it may
/// close descriptors, lower limits or change its view of the system. The parent must have only one thread.

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <string>

namespace tarnwell::test {

/// The result of `function`. "threw: ..." after an exception, "died: ..." when the copy ended in another way.
template <class Function>
std::string inForkedProcess(const Function& function) {
  int channel[2];
  if (::pipe(channel) < 0) {
    return "no pipe";
  }
  pid_t process = ::fork();
  if (process == 0) {
    // A descriptor number that no function under test closes or reopens.
    int report = ::fcntl(channel[1], F_DUPFD_CLOEXEC, 100);
    ::close(channel[0]);
    ::close(channel[1]);
    std::string text;
    try {
      text = function();
    } catch (const std::exception& error) {
      text = std::string("threw: ") + error.what();
    }
    bool isWritten = ::write(report, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::_exit(isWritten ? 0 : 1);
  }
  ::close(channel[1]);
  std::string text;
  char block[4096];
  for (ssize_t count; (count = ::read(channel[0], block, sizeof block)) > 0;) {
    text.append(block, static_cast<std::size_t>(count));
  }
  ::close(channel[0]);
  int status = 0;
  while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
  }
  bool isRegular = WIFEXITED(status) && WEXITSTATUS(status) == 0;
  return isRegular ? text : "died: " + std::string(::strsignal(WTERMSIG(status))) + " " + text;
}

}  // namespace tarnwell::test
