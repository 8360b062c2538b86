#pragma once

/// An attack by the mail server: one tool call while a fake server plays a dialogue. Then the test checks
/// that the program still works.
///
///     byServer({.name = "byeGreeting",
///               .attack = "the greeting is BYE, then the connection closes",
///               .outcome = "says that the connection was closed",
///               .dialogue = {answer("* BYE\r\n"), closeHere()},
///               .error = "The IMAP connection was closed unexpectedly."})
///
/// After any attack the program must answer `ping` and `get_status`, list the folders of an honest server,
/// end with status 0 at the end of its input, and leave its standard error empty. The client's bytes must be
/// exactly those of the dialogue. A login that the dialogue does not expect therefore fails the row.

#include <functional>
#include <ostream>
#include <string>

#include "hostile/AttackTable.h"
#include "hostile/ServeProgram.h"
#include "support/FakeIMAPServer.h"

namespace tarnwell {

inline void PrintTo(const JSONValue& value, std::ostream* out) {
  *out << value.prettyString().substr(0, 1000);
}

}  // namespace tarnwell

namespace tarnwell::test {

struct ServerAttack {
  std::string name;
  std::string attack;
  std::string outcome;

  std::string tool = "list_folders";
  JSONObject arguments{};
  Dialogue dialogue{};
  FakeServerOptions options{};
  /// The host in the settings.
  std::string host = "localhost";
  std::string email = testEmail;
  std::string password = testPassword;
  /// The settings allow COPY and a flag to replace a rejected MOVE.
  bool isFallbackAllowed = false;

  /// The exact text of the failure, with PORT for the server's port. Empty when the call succeeds.
  std::string error{};
  /// Checks the result of a call that succeeds.
  std::function<void(const JSONValue&)> check{};
  /// True when the client breaks off before the end of the dialogue.
  bool isBrokenOff = false;
  /// The number of connections that the program makes.
  int connections = 1;
  /// The most memory that the program may ever hold. 0 means any. Not checked under a sanitizer, which uses
  /// memory of its own.
  std::size_t peakMegabytes = 0;
};

Attack byServer(ServerAttack row);
std::vector<Attack> byServer(std::vector<ServerAttack> rows);
/// The same for rows that mostly wait. The first row that is played makes the calls of all rows, each with
/// its own program and server. Each row checks its own answer. All use the password of the other tests.
std::vector<Attack> byServersAtOnce(std::vector<ServerAttack> rows);

/// The end of every row: the program answers `ping`, `get_status` and a call to an honest server.
void expectSound(Home& home, ServeProgram& program);
/// The program ends with status 0 at the end of its input and writes nothing more.
void expectQuietEnd(ServeProgram& program);

}  // namespace tarnwell::test
