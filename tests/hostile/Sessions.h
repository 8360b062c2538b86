#pragma once

/// The complete sessions of all tools with an honest server, divided into exchanges. A row can disturb a
/// session at any exchange.
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

/// One command of the client and the server's answer. The greeting has no command. CAPABILITY and the
/// selection go out together: the bytes of both stand with CAPABILITY, and the selection has none.
struct Exchange {
  std::string name;
  std::string tag;
  std::string command;
  std::string answer;

  bool changesTheMailbox() const { return name == "MOVE" || name == "COPY" || name == "STORE"; }
};

class Session {
 public:
  /// Greeting, login, capabilities and the inbox, opened by EXAMINE or SELECT.
  Session(std::string tool, JSONObject arguments, const std::string& select = "EXAMINE");

  /// A command and its answer: untagged lines with their line ends, and OK. `name` is the word for the
  /// command.
  Session& then(const std::string& name, const std::string& command, const std::string& untagged = "");
  /// A part of a command that ends with the announcement of a literal, and the server's "+".
  Session& thenLiteral(const std::string& name, const std::string& piece);
  /// The rest of a command that `thenLiteral` began.
  Session& thenRest(const std::string& name, const std::string& rest, const std::string& untagged = "");
  /// The same session with another answer to one exchange. TAG stands for the command's tag.
  Session answering(const std::string& name, const std::string& answer) const;
  /// The session up to this exchange and those that go out together with it, and then LOGOUT.
  Session leavingAfter(std::string_view name) const;

  /// The tool's name, with one more word for the move by COPY and STORE.
  std::string name() const { return isFallbackAllowed ? tool + "ByCopy" : tool; }
  std::size_t position(std::string_view name) const;
  std::string tag(std::size_t number) const;

  std::string tool;
  JSONObject arguments;
  /// True when the session needs settings that allow COPY and a flag to replace a rejected MOVE.
  bool isFallbackAllowed = false;
  std::vector<Exchange> exchanges;

 private:
  unsigned commands_ = 0;
};

/// The undisturbed session.
Dialogue honest(const Session& session);
/// The session with these steps in place of one answer.
Dialogue answeredBy(const Session& session, std::string_view name, const Dialogue& steps);
/// The session up to the exchange at `position`. The server still reads that command, sends `answerBegin`,
/// and then does `fault`.
Dialogue brokenAt(const Session& session, std::size_t position, const Step& fault,
                  const std::string& answerBegin = "");

/// A row that calls the session's tool while the server plays the session undisturbed, or another dialogue.
/// The call must succeed unless the row says otherwise.
ServerAttack attackDuring(const Session& session, std::string name, std::string attack, std::string outcome);
ServerAttack attackDuring(const Session& session, Dialogue dialogue, std::string name, std::string attack,
                          std::string outcome);

/// The FETCH response with the summary of message 7, subject "Lunch".
std::string summaryLine();

Session listSession();
Session searchSession();
Session summarySession();
Session bodySession();
Session cleanupSession();
Session moveSession();
/// A move that the server rejects and the program makes with COPY and STORE.
Session fallbackSession();
Session markReadSession();
Session trashSession();

struct SessionStep {
  Session session;
  std::size_t position;

  const Exchange& exchange() const { return session.exchanges[position]; }
};

/// Every exchange of every tool that opens a session. Of the move by COPY and STORE only from MOVE on.
std::vector<SessionStep> everyStep();

}  // namespace tarnwell::test
