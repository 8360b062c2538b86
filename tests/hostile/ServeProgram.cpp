#include "hostile/ServeProgram.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/ptrace.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <stdexcept>
#include <thread>
#include <utility>

#include "Core/BridgeConstants.h"
#include "hostile/TestSecrets.h"
#include "support/ArgumentVector.h"
#include "support/FakeIMAPServer.h"
#include "support/Files.h"

namespace tarnwell::test {

namespace {

using Clock = std::chrono::steady_clock;

/// Waits until the descriptor is ready. Throws when that takes too long.
void awaitReady(int descriptor, short event, Clock::time_point deadline, const char* what) {
  for (;;) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now()).count();
    pollfd ready{.fd = descriptor, .events = event, .revents = 0};
    const int count = left > 0 ? ::poll(&ready, 1, static_cast<int>(left)) : 0;
    if (count > 0) {
      return;
    }
    if (count == 0 || errno != EINTR) {
      throw std::runtime_error(std::string("the program hangs: ") + what);
    }
  }
}

}  // namespace

Home::Home() : email(testEmail) {
  environment = {{"HOME", path().string()},
                 {"PATH", "/usr/local/bin:/usr/bin:/bin"},
                 {"LC_ALL", "C.UTF-8"},
                 {"DBUS_SESSION_BUS_ADDRESS", busWithPassword()}};
  TestCertificates::shared();  // puts the authority's file into this program's environment
  for (const char* name :
       {"SSL_CERT_FILE", "SSL_CERT_DIR", "ASAN_OPTIONS", "UBSAN_OPTIONS", "TSAN_OPTIONS"}) {
    if (const char* value = std::getenv(name)) {
      environment[name] = value;
    }
  }
  constexpr std::uint16_t nobodyListens = 1;
  useServer(nobodyListens);
}

std::filesystem::path Home::settingsFile() const {
  return path() / ".local/share" / BridgeConstants::bundleIdentifier / "config.json";
}

void Home::useServer(std::uint16_t port, std::string_view host) {
  const JSONValue settings = JSONObject{
      {"email", email},
      {"imapHost", host},
      {"imapPort", port},
      {"safety",
       JSONObject{{"readOnly", false}, {"allowTrash", true}, {"allowCopyMoveFallback", isFallbackAllowed}}}};
  writeSettings(settings.serialized());
}

void Home::writeSettings(std::string_view bytes) const {
  std::filesystem::create_directories(settingsFile().parent_path());
  std::ofstream(settingsFile(), std::ios::binary | std::ios::trunc) << bytes;
}

std::vector<std::string> Home::environmentList() const {
  std::vector<std::string> list;
  for (const auto& [name, value] : environment) {
    list.push_back(name + "=" + value);
  }
  return list;
}

void Home::removeSettings() const { std::filesystem::remove(settingsFile()); }

ServeProgram::ServeProgram(const Home& home) : errorFile_(home.path() / "standard-error") {
  std::array<int, 2> inputPipe{};
  std::array<int, 2> outputPipe{};
  if (::pipe2(inputPipe.data(), O_CLOEXEC) < 0 || ::pipe2(outputPipe.data(), O_CLOEXEC) < 0) {
    throw std::runtime_error("no pipes");
  }
  std::vector<std::string> command = home.launcher;
  command.insert(command.end(), {TARNWELL_PROGRAM, "serve"});
  std::vector<std::string> environment = home.environmentList();
  const std::string errorPath = errorFile_.string();
  const std::vector<char*> words = argumentVector(command);
  const std::vector<char*> variables = argumentVector(environment);
  process_ = ::fork();
  if (process_ == 0) {
    ::dup2(inputPipe[0], STDIN_FILENO);
    ::dup2(outputPipe[1], STDOUT_FILENO);
    ::dup2(::open(errorPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR),
           STDERR_FILENO);
    // This test program ignores SIGPIPE. The program under test must decide for itself.
    ::signal(SIGPIPE, SIG_DFL);
    ::ptrace(PTRACE_TRACEME, 0, nullptr, nullptr);
    ::execvpe(words[0], words.data(), variables.data());
    ::_exit(127);
  }
  int status = 0;
  while (::waitpid(process_, &status, 0) < 0 && errno == EINTR) {
  }
  ::close(inputPipe[0]);
  ::close(outputPipe[1]);
  input_ = inputPipe[1];
  output_ = outputPipe[0];
  if (!WIFSTOPPED(status)) {
    process_ = -1;
    ::close(input_);
    ::close(output_);
    throw std::runtime_error("cannot run " + command[0] + " under ptrace(2), which this test needs");
  }
  view_.emplace(process_);
  ::ptrace(PTRACE_DETACH, process_, nullptr, nullptr);
  ::fcntl(input_, F_SETFL, O_NONBLOCK);
}

ServeProgram::~ServeProgram() {
  endInput();
  if (output_ >= 0) {
    ::close(output_);
  }
  if (process_ > 0) {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
}

void ServeProgram::send(std::string_view bytes) {
  const Clock::time_point deadline = Clock::now() + patience;
  while (!bytes.empty()) {
    const ssize_t count = ::write(input_, bytes.data(), bytes.size());
    if (count >= 0) {
      bytes.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {
      awaitReady(input_, POLLOUT, deadline, "it takes no more input");
    } else if (errno != EINTR) {
      throw std::runtime_error("the program has closed its input");
    }
  }
}

void ServeProgram::awaitInputRead() {
  const Clock::time_point deadline = Clock::now() + patience;
  // The program reads the empty line only after it has taken in what it read before.
  for (const std::string_view more : {"", "\n"}) {
    send(more);
    for (int unread = 1; ::ioctl(input_, FIONREAD, &unread) == 0 && unread > 0;) {
      if (Clock::now() > deadline) {
        throw std::runtime_error("the program hangs: it reads no more input");
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }
}

bool ServeProgram::readMore(Clock::time_point deadline) {
  awaitReady(output_, POLLIN, deadline, "it does not answer");
  std::array<char, 65536> block;
  const ssize_t count = ::read(output_, block.data(), block.size());
  if (count > 0) {
    pending_.append(block.data(), static_cast<std::size_t>(count));
  }
  return count > 0 || (count < 0 && errno == EINTR);
}

std::string ServeProgram::readLine() {
  const Clock::time_point deadline = Clock::now() + patience;
  std::size_t end = 0;
  while ((end = pending_.find('\n', searched_)) == std::string::npos) {
    searched_ = pending_.size();
    if (!readMore(deadline)) {
      throw std::runtime_error("the program has ended its output; on its standard error: " +
                               fileContents(errorFile_).substr(0, 4000));
    }
  }
  std::string line = pending_.substr(0, end);
  pending_.erase(0, end + 1);
  searched_ = 0;
  return line;
}

void ServeProgram::sendRequest(std::string_view method, const JSONValue& parameters) {
  const JSONValue request =
      JSONObject{{"jsonrpc", "2.0"}, {"id", ++lastID_}, {"method", method}, {"params", parameters}};
  send(request.serialized() + "\n");
}

JSONValue ServeProgram::readResponse() {
  const std::string line = readLine();
  const std::optional<JSONValue> response = JSONValue::decode(line);
  if (!response || (*response)["id"] != JSONValue(lastID_)) {
    throw std::runtime_error("no answer to the request: " + line.substr(0, 1000));
  }
  return *response;
}

JSONValue ServeProgram::request(std::string_view method, const JSONValue& parameters) {
  sendRequest(method, parameters);
  return readResponse();
}

void ServeProgram::sendCall(std::string_view tool, const JSONObject& arguments) {
  sendRequest("tools/call", JSONObject{{"name", tool}, {"arguments", arguments}});
}

ToolAnswer ServeProgram::readAnswer() {
  const JSONValue response = readResponse();
  const JSONValue& result = response["result"];
  return {result["isError"].boolValue().value_or(true), result["structuredContent"]};
}

ToolAnswer ServeProgram::call(std::string_view tool, const JSONObject& arguments) {
  sendCall(tool, arguments);
  return readAnswer();
}

bool ServeProgram::answersPing() {
  return request("ping", JSONObject{})["result"] == JSONValue(JSONObject{});
}

void ServeProgram::closeOutput() { ::close(std::exchange(output_, -1)); }

void ServeProgram::endInput() {
  if (input_ >= 0) {
    ::close(std::exchange(input_, -1));
  }
}

Ending ServeProgram::end() {
  endInput();
  const Clock::time_point deadline = Clock::now() + patience;
  while (output_ >= 0 && readMore(deadline)) {
  }
  Ending ending;
  ending.status = waitForExit();
  ending.restOfOutput = pending_;
  ending.standardError = fileContents(errorFile_);
  return ending;
}

/// The output has ended, so the program ends soon. The wait still has a bound.
int ServeProgram::waitForExit() {
  const Clock::time_point deadline = Clock::now() + patience;
  int status = 0;
  while (::waitpid(process_, &status, WNOHANG) == 0) {
    if (Clock::now() > deadline) {
      throw std::runtime_error("the program does not end");
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  process_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

}  // namespace tarnwell::test
