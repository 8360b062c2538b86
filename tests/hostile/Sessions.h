#pragma once

/// The whole sessions of all tools with an honest server, cut into exchanges, so that a row can break one at
/// any of them.
///
///     const Session session = searchSession();
///     brokenAt(session, session.position("LOGIN"), closeHere())    // reads the LOGIN, then closes
///     attackDuring(session, "name", "attack", "outcome")           // a row that calls the session's tool
///
/// Threads: plain values.

#include <string>
#include <string_view>
#include <vector>

#include "hostile/ServerAttack.h"

namespace tarnwell::test {

/// What the client says, nothing before the greeting, and what the server answers.
struct Exchange {
  std::string name;
  std::string command;
  std::string answer;

  bool changesTheMailbox() const { return name == "MOVE" || name == "COPY" || name == "STORE"; }
};

class Session {
 public:
  /// Greeting, login, capabilities and the inbox, opened by EXAMINE or SELECT.
  Session(std::string tool, JSONObject arguments, const std::string& select = "EXAMINE");

  /// A command and its answer: untagged lines with their line ends, and OK. The name is the command's word.
  Session& then(const std::string& name, const std::string& command, const std::string& untagged = "");
  /// A piece of a command that ends in a literal's announcement, and the server's "+".
  Session& thenLiteral(const std::string& name, const std::string& piece);
  /// The end of a command whose beginning was sent by `thenLiteral`.
  Session& thenRest(const std::string& name, const std::string& rest, const std::string& untagged = "");
  /// The same exchange with another answer of the server's; TAG stands for the command's tag.
  Session answering(const std::string& name, const std::string& answer) const;
  /// The session up to the exchange of that name, and then LOGOUT.
  Session leavingAfter(std::string_view name) const;

  /// The tool's name, with a word more for the move by COPY and STORE.
  std::string name() const { return isFallbackAllowed ? tool + "ByCopy" : tool; }
  std::size_t position(std::string_view name) const;
  std::string tag(std::size_t number) const;

  std::string tool;
  JSONObject arguments;
  /// The session needs settings that let COPY and a flag stand in for a rejected MOVE.
  bool isFallbackAllowed = false;
  std::vector<Exchange> exchanges;

 private:
  unsigned commands_ = 0;
};

/// The session as it should be.
Dialogue honest(const Session& session);
/// The same with these steps in the place of one answer.
Dialogue answeredBy(const Session& session, std::string_view name, const Dialogue& steps);
/// The session up to the exchange at `position`, whose command is still read; then `answerBegin`, and
/// `fault`.
Dialogue brokenAt(const Session& session, std::size_t position, const Step& fault,
                  const std::string& answerBegin = "");

/// A row that calls the session's tool while the server plays the session as it should be, or another
/// dialogue. The call is expected to succeed, until the row says otherwise.
ServerAttack attackDuring(const Session& session, std::string name, std::string attack, std::string outcome);
ServerAttack attackDuring(const Session& session, Dialogue dialogue, std::string name, std::string attack,
                          std::string outcome);

/// The FETCH response with the summary of the message 7, subject "Lunch".
std::string summaryLine();

Session listSession();
Session searchSession();
Session summarySession();
Session bodySession();
Session cleanupSession();
Session moveSession();
/// A move that the server rejects and the program makes by COPY and STORE.
Session fallbackSession();
Session markReadSession();
Session trashSession();

struct SessionStep {
  Session session;
  std::size_t position;

  const Exchange& exchange() const { return session.exchanges[position]; }
};

/// Every exchange of every tool that opens a session; of the move by COPY and STORE those from the MOVE on.
std::vector<SessionStep> everyStep();

}  // namespace tarnwell::test
