/// Starts a server again and again as an MCP client does. Prints one line of JSON with the nanoseconds from
/// each start of the process to its answer to initialize.
///
///   ServeTimer COUNT COMMAND...

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view initialize =
    R"({"jsonrpc":"2.0","id":0,"method":"initialize","params":{"protocolVersion":"2025-11-25",)"
    R"("capabilities":{},"clientInfo":{"name":"bench","version":"1"}}})"
    "\n";

void require(bool holds, const char* what) {
  if (!holds) {
    throw std::runtime_error(what);
  }
}

std::int64_t since(Clock::time_point begin) {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - begin).count();
}

/// The process of a server. It ends when its input ends.
class Server {
 public:
  explicit Server(char* const* command) {
    std::array<int, 2> toServer, fromServer;
    require(pipe2(toServer.data(), O_CLOEXEC) == 0 && pipe2(fromServer.data(), O_CLOEXEC) == 0, "pipe");
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, toServer[0], STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, fromServer[1], STDOUT_FILENO);
    const int failure = posix_spawnp(&process_, command[0], &actions, nullptr, command, environ);
    posix_spawn_file_actions_destroy(&actions);
    close(toServer[0]);
    close(fromServer[1]);
    input_ = toServer[1];
    output_ = fromServer[0];
    require(failure == 0, "the start of the server");
  }
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;
  ~Server() {
    close(input_);
    close(output_);
    waitpid(process_, nullptr, 0);
  }

  void write(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t count = ::write(input_, bytes.data(), bytes.size());
      require(count > 0, "writing to the server");
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
  }

  void ask(std::string_view request) {
    write(request);
    std::string_view piece;
    while (!piece.ends_with('\n')) {
      const ssize_t count = read(output_, received_.data(), received_.size());
      require(count > 0, "reading from the server");
      piece = {received_.data(), static_cast<std::size_t>(count)};
    }
  }

 private:
  pid_t process_ = 0;
  int input_ = -1;
  int output_ = -1;
  std::array<char, 1 << 16> received_;
};

std::vector<std::int64_t> measureStarts(std::size_t count, char* const* command) {
  std::vector<std::int64_t> samples;
  for (std::size_t i = 0; i < count; ++i) {
    const Clock::time_point begin = Clock::now();
    Server server(command);
    server.ask(initialize);
    samples.push_back(since(begin));
  }
  return samples;
}

/// The processor time of the servers that have ended.
std::int64_t processorTime() {
  rusage usage{};
  getrusage(RUSAGE_CHILDREN, &usage);
  return (std::int64_t{usage.ru_utime.tv_sec} + usage.ru_stime.tv_sec) * 1'000'000'000 +
         (std::int64_t{usage.ru_utime.tv_usec} + usage.ru_stime.tv_usec) * 1'000;
}

}  // namespace

int main(int argumentCount, char* arguments[]) {
  if (argumentCount < 3) {
    std::cerr << "usage: ServeTimer COUNT COMMAND...\n";
    return 2;
  }
  std::signal(SIGPIPE, SIG_IGN);
  try {
    const auto samples = measureStarts(std::strtoull(arguments[1], nullptr, 10), arguments + 2);
    std::cout << "{\"wall\": [";
    for (std::size_t i = 0; i < samples.size(); ++i) {
      std::cout << (i == 0 ? "" : ", ") << samples[i];
    }
    std::cout << "], \"processor\": " << processorTime() << "}\n";
  } catch (const std::exception& error) {
    std::cerr << "ServeTimer: failed at " << error.what() << "\n";
    return 1;
  }
}
