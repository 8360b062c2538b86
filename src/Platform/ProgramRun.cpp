#include "Platform/ProgramRun.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

// POSIX leaves it to the program to declare it.
extern char** environ;  // NOLINT(readability-redundant-declaration): only some systems do

namespace tarnwell {
namespace {

using Clock = std::chrono::steady_clock;

/// How long an ended program may stay unnoticed: waitid(2) knows no time limit.
constexpr std::chrono::milliseconds tick{20};
/// What a program has to end in order after it was asked to.
constexpr std::chrono::seconds grace{2};
/// What is read before the time is looked at again. Far more than a pipe holds (pipe(7)), so that nothing is
/// left in it when the program has ended.
constexpr std::size_t bytesInOneTurn = std::size_t{1024} * 1024;

/// The pipe of one output stream of the program.
class Capture {
 public:
  Capture() {
    if (::pipe(ends_) < 0) {
      ends_[0] = ends_[1] = -1;
      return;
    }
    for (const int end : ends_) {
      (void)::fcntl(end, F_SETFD, FD_CLOEXEC);
    }
    (void)::fcntl(ends_[0], F_SETFL, O_NONBLOCK);
  }
  Capture(const Capture&) = delete;
  ~Capture() {
    close(ends_[0]);
    close(ends_[1]);
  }

  int readingEnd() const { return ends_[0]; }
  int writingEnd() const { return ends_[1]; }
  bool isOpen() const { return ends_[0] >= 0; }
  void programHasIt() { close(ends_[1]); }

  /// Reads what is there, or as much as one turn may. Bytes beyond the limit are dropped, so that the program
  /// does not wait for a reader.
  void readSome(std::size_t limit) {
    char block[16 * 1024];
    for (std::size_t total = 0; isOpen() && total < bytesInOneTurn;) {
      const ssize_t count = ::read(ends_[0], block, sizeof block);
      if (count > 0) {
        total += static_cast<std::size_t>(count);
        text_.append(block, std::min(static_cast<std::size_t>(count), limit - text_.size()));
      } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        close(ends_[0]);
      } else if (errno == EAGAIN) {
        return;
      }
    }
  }
  std::string takeText() { return std::move(text_); }

 private:
  static void close(int& end) {
    if (end >= 0) {
      ::close(std::exchange(end, -1));
    }
  }

  int ends_[2];
  std::string text_;
};

std::vector<char*> pointers(const std::vector<std::string>& texts) {
  std::vector<char*> result;
  result.reserve(texts.size() + 1);
  for (const std::string& text : texts) {
    result.push_back(const_cast<char*>(text.c_str()));  // posix_spawn(3) does not change them
  }
  result.push_back(nullptr);
  return result;
}

/// Returns the number of the error, 0 when the program runs.
int start(const ProgramRun& run, const Capture& output, const Capture& errors, pid_t& process) {
  posix_spawn_file_actions_t actions;
  posix_spawnattr_t attributes;
  ::posix_spawn_file_actions_init(&actions);
  ::posix_spawnattr_init(&attributes);
  ::posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
  ::posix_spawn_file_actions_adddup2(&actions, output.writingEnd(), 1);
  ::posix_spawn_file_actions_adddup2(&actions, errors.writingEnd(), 2);
  ::posix_spawn_file_actions_addchdir_np(&actions, run.folder.c_str());
  // The signals that this process ignores or blocks are not the program's business.
  sigset_t signals;
  ::sigemptyset(&signals);
  ::posix_spawnattr_setsigmask(&attributes, &signals);
  ::sigaddset(&signals, SIGPIPE);
  ::sigaddset(&signals, SIGXFSZ);
  ::sigaddset(&signals, SIGCHLD);
  ::posix_spawnattr_setsigdefault(&attributes, &signals);
  ::posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF);
  const int failure = ::posix_spawn(&process, run.command.at(0).c_str(), &actions, &attributes,
                                    pointers(run.command).data(), pointers(run.environment).data());
  ::posix_spawnattr_destroy(&attributes);
  ::posix_spawn_file_actions_destroy(&actions);
  return failure;
}

/// Lets go of a program that has ended. Until then nobody else gets its number, nor that of its group.
ProgramOutcome reap(pid_t process) {
  int status = 0;
  while (::waitpid(process, &status, 0) < 0) {
    if (errno != EINTR) {
      return {ProgramOutcome::End::exited, -1};
    }
  }
  return WIFEXITED(status) ? ProgramOutcome{ProgramOutcome::End::exited, WEXITSTATUS(status)}
                           : ProgramOutcome{ProgramOutcome::End::killed, WTERMSIG(status)};
}

enum class Life { runs, ended, lost };

/// `lost`: it has ended, and the system has let go of it.
Life lifeOf(pid_t process) {
  siginfo_t news{};
  if (::waitid(P_PID, static_cast<id_t>(process), &news, WEXITED | WNOHANG | WNOWAIT) < 0) {
    return errno == EINTR ? Life::runs : Life::lost;
  }
  return news.si_pid == process ? Life::ended : Life::runs;
}

/// Reads until the program has ended; after it was asked to, until its group was forced. A number that is
/// lost may be somebody else's, so nothing is sent to it. Deliberate: does not wait for the pipes to close,
/// because a program that this one left behind may hold them for ever.
ProgramOutcome follow(pid_t process, const ProgramRun& run, Capture& output, Capture& errors) {
  enum class Stage { running, asked, forced } stage = Stage::running;
  Clock::time_point nextStep = Clock::now() + run.limit;
  while (true) {
    const Life life = lifeOf(process);
    output.readSome(run.outputLimit);
    errors.readSome(run.outputLimit);
    if (life == Life::lost || (life == Life::ended && stage != Stage::asked)) {
      break;
    }
    if (stage != Stage::forced && Clock::now() >= nextStep) {
      (void)::kill(-process, stage == Stage::running ? SIGTERM : SIGKILL);
      stage = stage == Stage::running ? Stage::asked : Stage::forced;
      nextStep = Clock::now() + grace;
    }
    pollfd news[] = {{output.readingEnd(), POLLIN, 0}, {errors.readingEnd(), POLLIN, 0}};
    (void)::poll(news, 2, static_cast<int>(tick.count()));  // skips closed ends, which are -1
  }
  const ProgramOutcome outcome = reap(process);
  return stage == Stage::running ? outcome : ProgramOutcome{ProgramOutcome::End::tookTooLong, 0};
}

}  // namespace

ProgramOutcome runProgram(const ProgramRun& run) {
  Capture output;
  Capture errors;
  if (!output.isOpen() || !errors.isOpen()) {
    return {ProgramOutcome::End::notStarted, errno};
  }
  pid_t process = -1;
  if (const int failure = start(run, output, errors, process); failure != 0) {
    return {ProgramOutcome::End::notStarted, failure};
  }
  output.programHasIt();
  errors.programHasIt();
  ProgramOutcome outcome = follow(process, run, output, errors);
  outcome.output = output.takeText();
  outcome.errors = errors.takeText();
  return outcome;
}

std::vector<std::string> ownEnvironment() {
  std::vector<std::string> variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    variables.emplace_back(*variable);
  }
  return variables;
}

}  // namespace tarnwell
