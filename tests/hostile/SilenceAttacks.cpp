/// The server falls silent at each step of each tool's session. Each program waits half a minute, so all wait
/// at the same time.

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

constexpr const char* timeoutText = "The IMAP server did not respond in time.";
constexpr const char* saysSo = "says that no answer came in time";

/// The words of the table for a step.
struct Place {
  const char* attack;
  const char* outcome;
};

Place placeOf(const Exchange& exchange) {
  if (exchange.name == "greeting") {
    return {"the server gives no greeting", "says that no answer came in time; no login is sent"};
  }
  if (exchange.name == "LOGOUT") {
    return {"the server gives no farewell", "gives the result after the bound of 2 seconds"};
  }
  if (exchange.changesTheMailbox()) {
    return {"the server falls silent after a command that changes the mailbox",
            "says that no answer came in time; claims neither that the change was made nor that it was not"};
  }
  return {"the server falls silent in the place of an answer, at each step of each tool", saysSo};
}

ServerAttack silentAt(const SessionStep& step) {
  const Exchange& exchange = step.exchange();
  const Place place = placeOf(exchange);
  ServerAttack row =
      attackDuring(step.session, brokenAt(step.session, step.position, stallHere()),
                   step.session.name() + "SilentAt" + exchange.name, place.attack, place.outcome);
  row.error = exchange.name == "LOGOUT" ? "" : timeoutText;
  return row;
}

ServerAttack silentAmid(const std::string& step, const std::string& begin) {
  const Session session = searchSession();
  ServerAttack row = attackDuring(session, brokenAt(session, session.position(step), stallHere(), begin),
                                  session.name() + "SilentAmid" + step,
                                  "the server falls silent amid an answer or a literal", saysSo);
  row.error = timeoutText;
  return row;
}

ServerAttack silentBeforeTheHandshake() {
  return {.name = "silentBeforeTheHandshake",
          .attack = "the server accepts and says nothing, not even of TLS",
          .outcome = saysSo,
          .options = {.mute = true},
          .error = timeoutText};
}

}  // namespace

std::vector<Attack> silenceAttacks() {
  std::vector<ServerAttack> rows;
  for (const SessionStep& step : everyStep()) {
    rows.push_back(silentAt(step));
  }
  rows.push_back(silentAmid("SEARCH", "* SEA"));
  rows.push_back(silentAmid("FETCH", "* 1 FETCH (UID 7 FLAGS ("));
  rows.push_back(silentAmid("BODY", "* 1 FETCH (UID 7 BODY[1] {12}\r\nSee"));
  rows.push_back(silentBeforeTheHandshake());
  return byServersAtOnce(std::move(rows));
}

}  // namespace tarnwell::test
