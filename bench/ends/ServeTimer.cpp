/// Drives a server on its standard input and output as an MCP client does, and measures times of
/// microseconds. Prints one line of JSON with the nanoseconds of each measurement.
///
///   ServeTimer start COUNT COMMAND...     from the start of the process to the answer of initialize
///   ServeTimer ping COUNT COMMAND...      each ping, from its writing to its answer
///   ServeTimer pipeline COUNT COMMAND...  COUNT pings written without waiting, until the last answer

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
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
constexpr std::string_view initialized = R"({"jsonrpc":"2.0","method":"notifications/initialized"})"
                                         "\n";

std::string ping(std::size_t id) {
  return R"({"jsonrpc":"2.0","id":)" + std::to_string(id) + R"(,"method":"ping"})" + "\n";
}

void require(bool holds, const char* what) {
  if (!holds) {
    throw std::runtime_error(what);
  }
}

std::int64_t since(Clock::time_point begin) {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(Clock::now() - begin).count();
}

/// The process of a server. Ends when its input ends.
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

  /// The number of line feeds in the bytes that are there. Waits until there are some.
  std::size_t readLines() {
    const ssize_t count = read(output_, received_.data(), received_.size());
    require(count > 0, "reading from the server");
    return static_cast<std::size_t>(std::count(received_.data(), received_.data() + count, '\n'));
  }

  void ask(std::string_view request) {
    write(request);
    while (readLines() == 0) {
    }
  }

  /// Writes everything and reads answers, as both sides are ready, until there are enough. Looks at the pipes
  /// only now and then. A client that never rests would compete with the server for the locks of the pipes
  /// and would change the result.
  void exchange(std::string_view requests, std::size_t answers) {
    fcntl(input_, F_SETFL, O_NONBLOCK);
    while (answers > 0) {
      std::array<pollfd, 2> ready{pollfd{output_, POLLIN, 0},
                                  pollfd{requests.empty() ? -1 : input_, POLLOUT, 0}};
      require(poll(ready.data(), ready.size(), -1) > 0, "poll");
      if (ready[0].revents != 0) {
        answers -= std::min(answers, readLines());
      }
      if (ready[1].revents != 0) {
        const ssize_t count = ::write(input_, requests.data(), requests.size());
        require(count > 0, "writing to the server");
        requests.remove_prefix(static_cast<std::size_t>(count));
      }
      if (answers > 0) {
        usleep(100);  // together with its delay less than half the time of the fastest server for a full pipe
      }
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

std::vector<std::int64_t> measurePings(std::size_t count, char* const* command) {
  Server server(command);
  server.ask(initialize);
  server.write(initialized);
  std::vector<std::int64_t> samples;
  for (std::size_t i = 1; i <= count; ++i) {
    const std::string request = ping(i);
    const Clock::time_point begin = Clock::now();
    server.ask(request);
    samples.push_back(since(begin));
  }
  return samples;
}

std::vector<std::int64_t> measurePipeline(std::size_t count, char* const* command) {
  Server server(command);
  server.ask(initialize);
  server.write(initialized);
  std::string requests;
  for (std::size_t i = 1; i <= count; ++i) {
    requests += ping(i);
  }
  const Clock::time_point begin = Clock::now();
  server.exchange(requests, count);
  return {since(begin)};
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
  const std::string_view what = argumentCount > 3 ? arguments[1] : "";
  const auto measure = what == "start"      ? measureStarts
                       : what == "ping"     ? measurePings
                       : what == "pipeline" ? measurePipeline
                                            : nullptr;
  if (measure == nullptr) {
    std::cerr << "usage: ServeTimer start|ping|pipeline COUNT COMMAND...\n";
    return 2;
  }
  std::signal(SIGPIPE, SIG_IGN);
  try {
    const auto samples = measure(std::strtoull(arguments[2], nullptr, 10), arguments + 3);
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
