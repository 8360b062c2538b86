#pragma once

/// An attack by the mail server: one tool call while a fake server plays a dialogue, and then the proof
/// that the program is none the worse for it.
///
///     byServer({.name = "byeGreeting",
///               .attack = "the greeting is BYE, then the connection closes",
///               .outcome = "says that the connection was closed",
///               .dialogue = {answer("* BYE\r\n"), closeHere()},
///               .error = "The IMAP connection was closed unexpectedly."})
///
/// Whatever the attack was, the program must afterwards answer `ping` and `get_status`, list the folders of
/// an honest server, end with status 0 at the end of its input, and have written nothing to its standard
/// error. The client's bytes must be exactly those of the dialogue; so a login that the dialogue does not
/// expect fails the row.

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
  /// The settings let COPY and a flag stand in for a rejected MOVE.
  bool isFallbackAllowed = false;

  /// The exact text of the failure, PORT standing for the server's port. Empty: the call succeeds.
  std::string error{};
  /// Looks at the result of a call that succeeds.
  std::function<void(const JSONValue&)> check{};
  /// The client is expected to break off before the end of the dialogue.
  bool isBrokenOff = false;
  /// How often the program connects.
  int connections = 1;
  /// The most memory that the program may ever have held; 0 for any. Not looked at under a sanitizer, which
  /// keeps memory of its own.
  std::size_t peakMegabytes = 0;
};

Attack byServer(ServerAttack row);
std::vector<Attack> byServer(std::vector<ServerAttack> rows);
/// The same for rows that mostly wait: the first that is played makes the calls of all, each to a program and
/// a server of its own, and each row looks at its own answer. They all have the password of every other test.
std::vector<Attack> byServersAtOnce(std::vector<ServerAttack> rows);

/// What every row ends with: the program answers `ping`, `get_status` and a call to an honest server.
void expectSound(Home& home, ServeProgram& program);
/// The program ends with status 0 at the end of its input, and said nothing more.
void expectQuietEnd(ServeProgram& program);

}  // namespace tarnwell::test
