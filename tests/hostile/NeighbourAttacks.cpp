/// Other programs of the same user that try to read this program's memory.

#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/uio.h>
#include <sys/wait.h>

#include <cerrno>
#include <filesystem>
#include <fstream>

#include "hostile/AttackTable.h"
#include "hostile/ProcessFacts.h"
#include "support/ChildProgram.h"
#include "support/ForkedProcess.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

namespace {

namespace fs = std::filesystem;

constexpr const char* ping = R"({"jsonrpc":"2.0","id":1,"method":"ping"})";
constexpr const char* pong = R"({"id":1,"jsonrpc":"2.0","result":{}})";

/// A copy of the program, and a pipe for its input, in a place that any user may use.
class PublicPlace {
 public:
  PublicPlace() {
    fs::permissions(directory_.path(), fs::perms(0755));
    fs::copy_file(TARNWELL_PROGRAM, program());
    fs::permissions(program(), fs::perms(0755));
    ::mkfifo(input().c_str(), 0600);
    fs::permissions(input(), fs::perms(0666));
  }

  fs::path program() const { return directory_ / "tarnwell"; }
  fs::path input() const { return directory_ / "input"; }
  void send(const std::string& line) const { std::ofstream(input()) << line << "\n"; }

 private:
  TemporaryDirectory directory_;
};

/// The command with a pipe as its input, which never ends, and with core files of any size. The shell becomes
/// the command (exec).
class Started {
 public:
  Started(const PublicPlace& place, const std::string& command)
      : program_({"sh", "-c", "ulimit -S -c $(ulimit -H -c); exec $0 <>" + place.input().string(), command},
                 {"PATH=/usr/bin:/bin", "HOME=/nonexistent"}) {
    place.send(ping);
    answer = program_.readLine();
  }
  ChildProgram* operator->() { return &program_; }

  std::string answer;

 private:
  ChildProgram program_;
};

std::string serveCommand(const PublicPlace& place) { return place.program().string() + " serve"; }

void becomeAnOrdinaryUser() {
  constexpr id_t nobody = 65534;
  if (::geteuid() == 0 &&
      (::setresgid(nobody, nobody, nobody) < 0 || ::setresuid(nobody, nobody, nobody) < 0)) {
    throw std::runtime_error("cannot become an ordinary user");
  }
}

/// Accepts only the errors of missing rights.
std::string verdict(const std::string& what, bool isAllowed) {
  const bool isRefused = !isAllowed && (errno == EPERM || errno == EACCES);
  return what + (isRefused ? " refused" : " allowed") + ", ";
}

std::string opening(pid_t process, const std::string& name) {
  const int descriptor = ::open((processDirectory(process) / name).c_str(), O_RDONLY | O_CLOEXEC);
  const std::string result = verdict(name, descriptor >= 0);
  ::close(descriptor);
  return result;
}

std::string reading(pid_t process) {
  char byte = 0;
  iovec here{&byte, 1};
  iovec there{nullptr, 1};  // no address: the error differs when reading is allowed
  return verdict("reading", ::process_vm_readv(process, &here, 1, &there, 1, 0) >= 0);
}

std::string attaching(pid_t process) {
  const bool isAllowed = ::ptrace(PTRACE_ATTACH, process, nullptr, nullptr) == 0;
  const std::string result = verdict("attaching", isAllowed);
  if (isAllowed) {
    ::waitpid(process, nullptr, 0);
    ::ptrace(PTRACE_DETACH, process, nullptr, nullptr);
  }
  return result;
}

/// What a program of the same ordinary user may do to the command. The command is its own child, because some
/// systems protect all programs that are not.
std::string whatANeighbourMayDo(const PublicPlace& place, const std::string& command) {
  return inForkedProcess([&] {
    becomeAnOrdinaryUser();
    Started program(place, command);
    const pid_t process = program->processID();
    return program.answer + ": " + opening(process, "mem") + opening(process, "maps") +
           opening(process, "environ") + reading(process) + attaching(process);
  });
}

void lookFromOutside() {
  const PublicPlace place;
  EXPECT_EQ(whatANeighbourMayDo(place, "cat"),
            std::string(ping) +
                ": mem allowed, maps allowed, environ allowed, reading allowed, attaching allowed, ")
      << "so the test itself sees nothing";
  EXPECT_EQ(whatANeighbourMayDo(place, serveCommand(place)),
            std::string(pong) +
                ": mem refused, maps refused, environ refused, reading refused, attaching refused, ");
}

std::string coreLimit(pid_t process) {
  std::ifstream limits(processDirectory(process) / "limits");
  for (std::string line; std::getline(limits, line);) {
    if (line.starts_with("Max core file size")) {
      return line;
    }
  }
  return "";
}

void dieWithoutACoreFile() {
  const PublicPlace place;
  Started program(place, serveCommand(place));
  EXPECT_EQ(program.answer, pong);
  EXPECT_EQ(coreLimit(program->processID()),
            "Max core file size        0                    0                    bytes     ");
  ::kill(program->processID(), SIGABRT);
  const int status = program->waitStatus();
  EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT) << status;
  EXPECT_FALSE(WCOREDUMP(status));
}

}  // namespace

std::vector<Attack> neighbourAttacks() {
  return {
      {"attaching", "a program of the same user opens the memory, reads it or attaches with ptrace(2)",
       "the system refuses all of it", lookFromOutside},
      {"coreFile", "the program is killed by a signal that makes core files, with no limit on their size",
       "dies without one", dieWithoutACoreFile},
  };
}

}  // namespace tarnwell::test
