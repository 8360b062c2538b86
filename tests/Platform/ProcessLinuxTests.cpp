#include "Platform/Process.h"

#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <csignal>

#include "support/DatagramSocket.h"
#include "support/ForkedProcess.h"
#include "support/MountNamespace.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

std::string describeDescriptor(int descriptor) {
  std::error_code error;
  auto target = std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(descriptor), error);
  return error ? "closed" : target.string();
}

TEST(PrepareProcess, closedStandardStreamsBecomeTheNullDevice) {
  for (int closed = 0; closed < 8; ++closed) {
    std::string report = inForkedProcess([&] {
      std::string result;
      for (int descriptor = 0; descriptor < 3; ++descriptor) {
        bool isClosed = (closed >> descriptor & 1) != 0;
        if (isClosed) {
          ::close(descriptor);
        }
      }
      std::string before[] = {describeDescriptor(0), describeDescriptor(1), describeDescriptor(2)};
      prepareProcess();
      for (int descriptor = 0; descriptor < 3; ++descriptor) {
        std::string after = describeDescriptor(descriptor);
        bool wasClosed = before[descriptor] == "closed";
        result += wasClosed == ((closed >> descriptor & 1) != 0) ? "" : "the test did not close it; ";
        result += after == (wasClosed ? "/dev/null" : before[descriptor]) ? "good " : "bad " + after + " ";
      }
      int next = ::open("/dev/null", O_RDONLY);
      return result + (next > 2 ? "free" : "taken");
    });
    EXPECT_EQ(report, "good good good free") << "closed: " << closed;
  }
}

TEST(PrepareProcess, nullDeviceCanBeReadAndWritten) {
  std::string report = inForkedProcess([] {
    ::close(0);
    ::close(1);
    prepareProcess();
    char byte = 0;
    bool isAtEnd = ::read(0, &byte, 1) == 0;
    bool isTaken = ::write(1, "x", 1) == 1;
    return std::string(isAtEnd && isTaken ? "both" : "not both");
  });
  EXPECT_EQ(report, "both");
}

TEST(PrepareProcess, closedPipeIsAnErrorOfTheWrite) {
  std::string report = inForkedProcess([] {
    std::signal(SIGPIPE, SIG_DFL);
    prepareProcess();
    int channel[2];
    if (::pipe(channel) < 0) {
      return std::string("no pipe");
    }
    ::close(channel[0]);
    ssize_t written = ::write(channel[1], "x", 1);
    return std::string(written < 0 && errno == EPIPE ? "EPIPE" : "written");
  });
  EXPECT_EQ(report, "EPIPE");
}

TEST(PrepareProcess, fileAtItsLimitIsAnErrorOfTheWrite) {
  TemporaryDirectory directory;
  std::string report = inForkedProcess([&] {
    std::signal(SIGXFSZ, SIG_DFL);
    prepareProcess();
    rlimit limit{.rlim_cur = 1, .rlim_max = 1};
    int file = ::open((directory / "file").c_str(), O_WRONLY | O_CREAT, S_IRUSR | S_IWUSR);
    if (file < 0 || ::setrlimit(RLIMIT_FSIZE, &limit) < 0) {
      return std::string("no file with a limit");
    }
    bool isTaken = ::write(file, "x", 1) == 1;
    ssize_t written = ::write(file, "x", 1);
    return std::string(isTaken && written < 0 && errno == EFBIG ? "EFBIG" : "written");
  });
  EXPECT_EQ(report, "EFBIG");
}

enum class BusEntry { socket, file, none };

struct BusRow {
  const char* name;
  BusEntry entry;
  std::vector<std::pair<const char*, const char*>> environment;
  const char* expected;  // "" for unset
};

std::string userBus() { return "/run/user/" + std::to_string(::getuid()) + "/bus"; }

/// DBUS_SESSION_BUS_ADDRESS after the preparation, in a namespace with an empty /run.
std::string preparedBus(const BusRow& row) {
  enterMountNamespace({"/run"});
  std::filesystem::create_directories(std::filesystem::path(userBus()).parent_path());
  std::optional<DatagramSocket> socket;
  if (row.entry == BusEntry::socket) {
    socket.emplace(userBus());
  } else if (row.entry == BusEntry::file) {
    std::ofstream(userBus()) << "no socket";
  }
  ::clearenv();
  // What MCP clients give the server that they start.
  for (const char* name : {"HOME", "LOGNAME", "PATH", "SHELL", "TERM", "USER"}) {
    ::setenv(name, "x", 1);
  }
  for (auto [name, value] : row.environment) {
    ::setenv(name, value, 1);
  }
  prepareProcess();
  const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS");
  return address != nullptr ? address : "";
}

TEST(PrepareProcess, usersBusIsFoundInAScrubbedEnvironment) {
  std::string found = "unix:path=" + userBus();
  const BusRow rows[] = {
      {"scrubbed", BusEntry::socket, {}, found.c_str()},
      {"no bus", BusEntry::none, {}, ""},
      {"a file in its place", BusEntry::file, {}, ""},
      {"address given",
       BusEntry::socket,
       {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/mine"}},
       "unix:path=/mine"},
      {"empty address given", BusEntry::socket, {{"DBUS_SESSION_BUS_ADDRESS", ""}}, ""},
      {"runtime directory given", BusEntry::socket, {{"XDG_RUNTIME_DIR", "/mine"}}, ""},
  };
  for (const BusRow& row : rows) {
    EXPECT_EQ(inForkedProcess([&] { return preparedBus(row); }), row.expected) << row.name;
  }
}

TEST(ExecutablePath, isTheFileOfThisProgram) {
  auto path = executablePath();
  ASSERT_TRUE(path);
  EXPECT_TRUE(path->is_absolute());
  EXPECT_TRUE(std::filesystem::equivalent(*path, "/proc/self/exe"));
  EXPECT_EQ(path->filename(), "platform_tests");
}

}  // namespace
}  // namespace tarnwell::test
