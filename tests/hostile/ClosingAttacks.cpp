/// The connection ends, in every possible way, at each exchange of each tool's session.

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

/// The words of the table for a step: where it is, and the result of a fault there.
struct Place {
  const char* where;
  const char* outcome;
};

Place placeOf(const Exchange& exchange) {
  if (exchange.name == "greeting") {
    return {"in the place of the greeting", "says so; no login is sent"};
  }
  if (exchange.name == "LOGOUT") {
    return {"in the place of the farewell", "gives the result: all that mattered was said before"};
  }
  if (exchange.changesTheMailbox()) {
    return {"after a command that changes the mailbox",
            "says so; claims neither that the change was made nor that it was not"};
  }
  return {"in the place of an answer, at each step of each tool", "says so"};
}

ServerAttack breaking(const SessionStep& step, const Way& way) {
  const Place place = placeOf(step.exchange());
  ServerAttack row = attackDuring(step.session, brokenAt(step.session, step.position, way.step),
                                  step.session.name() + way.name + "InsteadOf" + step.exchange().name,
                                  std::string("the server ") + way.attack + " " + place.where, place.outcome);
  row.error = step.exchange().name == "LOGOUT" ? "" : way.error;
  return row;
}

/// The connection ends within the twelve bytes of the body.
ServerAttack breakingWithinLiteral(const Session& session, const Way& way) {
  ServerAttack row = attackDuring(
      session, brokenAt(session, session.position("BODY"), way.step, "* 1 FETCH (UID 7 BODY[1] {12}\r\nSee"),
      session.name() + way.name + "WithinLiteral",
      std::string("the server ") + way.attack + " within a literal", "says so");
  row.error = way.error;
  return row;
}

/// The connection ends without the closing message of TLS.
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
  for (const Way& way : ways()) {
    for (const SessionStep& step : everyStep()) {
      rows.push_back(breaking(step, way));
    }
    rows.push_back(breakingWithinLiteral(searchSession(), way));
    rows.push_back(breakingWithinLiteral(bodySession(), way));
  }
  return byServer(std::move(rows));
}

}  // namespace tarnwell::test
