#pragma once

/// Runs the built executable as `tarnwell serve` in a temporary home, and talks to it line by line.
///
///     Home home;
///     home.useServer(server.port());
///     ServeProgram program(home);
///     ToolAnswer answer = program.call("search_inbox", {{"limit", 1}});
///     Ending ending = program.end();
///
/// The home has settings that allow every write. The program's environment names only this home, the test's
/// certificate authority and the bus of the test's own secret service, which has the password of `testEmail`.
/// A test may change all of these before it starts the program.
///
/// Every wait has a bound. If the program does not answer, `std::runtime_error` fails the row. Programs
/// needed: dbus-daemon.
///
/// Threads: one at a time for each object.

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "MCP/JSON/JSONValue.h"
#include "hostile/ProcessView.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

/// Longer than any single wait of the program, even with a sanitizer on a busy machine.
inline constexpr std::chrono::seconds patience{90};

/// The files and the environment of one program.
class Home {
 public:
  /// The settings name a port where nobody listens.
  Home();

  /// Writes settings that allow every write, for the server at this port of the host. Valid from the next
  /// call.
  void useServer(std::uint16_t port, std::string_view host = "localhost");
  /// Writes any bytes as the settings file.
  void writeSettings(std::string_view bytes) const;
  void removeSettings() const;

  std::filesystem::path path() const { return directory_.path(); }
  std::filesystem::path settingsFile() const;

  /// For `useServer`: the account, and whether COPY and a flag may replace a rejected MOVE.
  std::string email;
  bool isFallbackAllowed = false;

  /// The environment of programs that start from now on, by name. May be changed.
  std::map<std::string, std::string> environment;
  /// The environment as NAME=VALUE.
  std::vector<std::string> environmentList() const;
  /// Words before the program's own, as in {"prlimit", "--nofile=16"}. The launcher must become the program
  /// (exec), so that `processID` is the program's.
  std::vector<std::string> launcher;

 private:
  TemporaryDirectory directory_;
};

/// The result of a tool call.
struct ToolAnswer {
  bool isError = false;
  JSONValue result;

  /// The text of a failure. Empty for a success.
  std::string error() const { return isError ? result["error"].stringValue().value_or("") : ""; }
};

/// How a program ended.
struct Ending {
  /// The exit status, or the negative number of the signal.
  int status = 0;
  std::string standardError;
  /// The output after the last answer that was read.
  std::string restOfOutput;

  bool operator==(const Ending&) const = default;
};

inline void PrintTo(const Ending& ending, std::ostream* out) {
  *out << "status " << ending.status << ", standard error: \"" << ending.standardError
       << "\", output: " << ending.restOfOutput;
}

class ServeProgram {
 public:
  /// `home` must outlive the program.
  explicit ServeProgram(const Home& home);
  ServeProgram(const ServeProgram&) = delete;
  ServeProgram& operator=(const ServeProgram&) = delete;
  /// Kills a program that still runs, by its process id.
  ~ServeProgram();

  pid_t processID() const { return process_; }
  /// Its memory and descriptors. Useless when the home has a launcher: it would be the launcher's memory.
  const ProcessView& view() const { return *view_; }

  /// Sends any bytes unchanged. May run in another thread than the functions that read.
  void send(std::string_view bytes);
  /// Waits until the program has read all that was sent and has taken in each complete line of it.
  void awaitInputRead();
  /// The next line of the output, without its line feed.
  std::string readLine();

  /// Sends one request and returns its answer unchanged. Throws when the answer belongs to another request.
  JSONValue request(std::string_view method, const JSONValue& parameters);

  ToolAnswer call(std::string_view tool, const JSONObject& arguments = {});
  /// The two halves of `call`.
  void sendCall(std::string_view tool, const JSONObject& arguments = {});
  ToolAnswer readAnswer();

  bool answersPing();

  /// Closes the reading end of the standard output. Nothing can be read afterwards.
  void closeOutput();

  void endInput();
  /// Closes the standard input if it is still open, and waits for the program's end.
  Ending end();

 private:
  void sendRequest(std::string_view method, const JSONValue& parameters);
  JSONValue readResponse();
  /// False at the end of the output.
  bool readMore(std::chrono::steady_clock::time_point deadline);
  int waitForExit();

  const std::filesystem::path errorFile_;
  pid_t process_ = -1;
  std::optional<ProcessView> view_;
  int input_ = -1;
  int output_ = -1;
  std::int64_t lastID_ = 0;
  std::string pending_;
  std::size_t searched_ = 0;
};

}  // namespace tarnwell::test
