/// The connection ends, in each of the ways in which one can, at each exchange of each tool's session.

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

struct Way {
  const char* name;
  const char* attack;
  Step step;
  std::string error;
};

const std::string closedText = "The IMAP connection was closed unexpectedly.";

/// The ways that look alike to the program come in one table, the closing message of TLS first.
const std::vector<Way>& ways() {
  static const std::vector<Way> all{
      {"Closed", "closes the connection", closeHere(), closedText},
      {"Cut", "drops the connection without the closing message of TLS", cutHere(), closedText},
      {"HalfClosed", "closes its own direction only and goes on listening", halfCloseHere(), closedText},
      {"Reset", "resets the connection", resetHere(),
       "Could not connect to the IMAP server: localhost:PORT: Connection reset by peer"},
  };
  return all;
}

bool changesTheMailbox(const Exchange& exchange) {
  return exchange.name == "MOVE" || exchange.name == "STORE" || exchange.name == "COPY";
}

std::string outcome(const Session& session, const Exchange& exchange) {
  if (exchange.name == "LOGOUT") {
    return "gives the result: all that mattered was said before";
  }
  return changesTheMailbox(exchange) ? "says so; claims neither that the change was made nor that it was not"
         : session.exchanges.front().name == exchange.name ? "says so; no login is sent"
                                                           : "says so";
}

ServerAttack breaking(const Session& session, std::size_t position, const Way& way) {
  const Exchange& exchange = session.exchanges[position];
  const bool isFarewell = exchange.name == "LOGOUT";
  return {.name = session.tool + way.name + "InsteadOf" + exchange.name,
          .attack = "`" + session.tool + "`: the server " + way.attack + " at any step",
          .outcome = outcome(session, exchange),
          .tool = session.tool,
          .arguments = session.arguments,
          .dialogue = brokenAt(session, position, way.step),
          .error = isFarewell ? "" : way.error};
}

/// Within the twelve bytes of the body.
ServerAttack breakingWithinLiteral(const Session& session, const Way& way) {
  ServerAttack row = breaking(session, session.position("BODY"), way);
  row.name = session.tool + way.name + "WithinLiteral";
  row.dialogue =
      brokenAt(session, session.position("BODY"), way.step, "* 1 FETCH (UID 7 BODY[1] {12}\r\nSee");
  return row;
}

/// Without a word of TLS.
ServerAttack closedBeforeTheHandshake() {
  return {.name = "closedBeforeTheHandshake",
          .attack = "the server accepts and closes before the handshake of TLS",
          .outcome = "says so; no login is sent",
          .dialogue = {halfCloseHere()},
          .options = {.plainText = true},
          .error = "Could not connect to the IMAP server: localhost:PORT: the server closed the connection",
          .isBrokenOff = true};
}

}  // namespace

std::vector<Attack> closingAttacks() {
  std::vector<ServerAttack> rows{closedBeforeTheHandshake()};
  const auto breakEverywhere = [&rows](const Session& session, const Way& way) {
    for (std::size_t position = 0; position < session.exchanges.size(); ++position) {
      rows.push_back(breaking(session, position, way));
    }
  };
  for (const Session& session : everySession()) {
    breakEverywhere(session, ways().front());
  }
  for (const Way& way : ways()) {
    // Between them these have every kind of step.
    if (&way != &ways().front()) {
      breakEverywhere(searchSession(), way);
      breakEverywhere(moveSession(), way);
      breakEverywhere(markReadSession(), way);
    }
    rows.push_back(breakingWithinLiteral(searchSession(), way));
    rows.push_back(breakingWithinLiteral(bodySession(), way));
  }
  return byServer(std::move(rows));
}

}  // namespace tarnwell::test
