#pragma once

/// The built executable as `tarnwell serve`, in a temporary home of its own, spoken to line by line.
///
///     Home home;
///     home.useServer(server.port());
///     ServeProgram program(home);
///     ToolAnswer answer = program.call("search_inbox", {{"limit", 1}});
///     Ending ending = program.end();
///
/// The home has settings that allow every write, and the environment of the program names nothing but this
/// home, the test's certificate authority and the bus of the test's own secret service, which knows the
/// password of `testEmail`. Each of these can be changed before the program is started.
///
/// Nothing here waits without a bound: a program that does not answer throws `std::runtime_error`, which
/// fails the row. Programs needed: dbus-daemon.
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

/// Longer than any single wait of the program, also under a sanitizer on a busy machine.
inline constexpr std::chrono::seconds patience{90};

/// Where one program lives: files and environment.
class Home {
 public:
  /// Without a server: the settings name a port at which nobody listens.
  Home();

  /// Settings that allow every write, for the server at this port of the host. Read by the next tool call.
  void useServer(std::uint16_t port, std::string_view host = "localhost");
  /// Any bytes as the settings file.
  void writeSettings(std::string_view bytes) const;
  void removeSettings() const;

  std::filesystem::path path() const { return directory_.path(); }
  std::filesystem::path settingsFile() const;

  /// What `useServer` writes: the account, and whether COPY and a flag may stand in for a rejected MOVE.
  std::string email;
  bool isFallbackAllowed = false;

  /// The environment of the programs that are started here, by name. Change it at will.
  std::map<std::string, std::string> environment;
  /// Words put before the program's own, as in {"prlimit", "--nofile=16"}. The launcher must become the
  /// program (exec), so that `processID` is the program's.
  std::vector<std::string> launcher;

 private:
  TemporaryDirectory directory_;
};

/// What a tool call gave.
struct ToolAnswer {
  bool isError = false;
  JSONValue result;

  /// The text of a failure; empty for a result that is none.
  std::string error() const { return isError ? result["error"].stringValue().value_or("") : ""; }
};

/// How a program ended.
struct Ending {
  /// The exit status, or minus the number of the signal.
  int status = 0;
  std::string standardError;
  /// What it still wrote after the last answer that was read.
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
  /// Kills the program, when it still runs, by its process id.
  ~ServeProgram();

  pid_t processID() const { return process_; }
  /// Its memory and its descriptors. Of no use when the home has a launcher, whose memory this would be.
  const ProcessView& view() const { return *view_; }

  /// Bytes as they are, of any number.
  void send(std::string_view bytes);
  /// The next line of the output, without its line feed.
  std::string readLine();

  /// One request, and its answer as it came; throws when the answer is to something else.
  JSONValue request(std::string_view method, const JSONValue& parameters);

  ToolAnswer call(std::string_view tool, const JSONObject& arguments = {});
  /// The two halves of `call`.
  void sendCall(std::string_view tool, const JSONObject& arguments = {});
  ToolAnswer readAnswer();

  bool answersPing();

  /// Goes away as the reader of the standard output. Nothing can be read afterwards.
  void closeOutput();

  void endInput();
  /// Ends the standard input, if it is still open, and waits for the program's end.
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
