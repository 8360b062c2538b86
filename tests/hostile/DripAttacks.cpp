/// The server sends a byte now and then, at each step of each tool's session. Each byte comes in time, so
/// only the bound of the whole session ends the call. Each program waits for 50 seconds, so all wait at the
/// same time.

#include <gtest/gtest.h>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

using namespace std::chrono_literals;

constexpr const char* timeoutText = "The IMAP server did not respond in time.";
constexpr const char* lines = "* OK still here\r\n";

/// The words of the table for a step.
struct Place {
  const char* attack;
  const char* outcome;
};

Place placeOf(const Exchange& exchange) {
  if (exchange.name == "LOGOUT") {
    return {"the server sends its farewell a byte every 5 seconds",
            "gives the result after the bound of 2 seconds"};
  }
  if (exchange.changesTheMailbox()) {
    return {
        "the server answers a command that changes the mailbox a byte every 5 seconds",
        "says after 50 seconds that no answer came in time; claims neither that the change was made nor that "
        "it was not"};
  }
  return {"the server answers a byte every 5 seconds, at each step of each tool",
          "says after 50 seconds that no answer came in time"};
}

ServerAttack drippingAt(const SessionStep& step) {
  const Exchange& exchange = step.exchange();
  const Place place = placeOf(exchange);
  ServerAttack row =
      attackDuring(step.session, brokenAt(step.session, step.position, dripHere(lines, 5s)),
                   step.session.name() + "DrippingAt" + exchange.name, place.attack, place.outcome);
  row.error = exchange.name == "LOGOUT" ? "" : timeoutText;
  return row;
}

ServerAttack drippingABody() {
  const Session session = searchSession();
  ServerAttack row = attackDuring(session,
                                  brokenAt(session, session.position("BODY"), dripHere("x", 5s),
                                           "* 1 FETCH (UID 7 BODY[1] {1000000}\r\n"),
                                  "searchDrippingABody", "the server sends a body a byte every 5 seconds",
                                  "says after 50 seconds that no answer came in time");
  row.error = timeoutText;
  return row;
}

}  // namespace

std::vector<Attack> dripAttacks() {
  std::vector<ServerAttack> rows;
  for (const SessionStep& step : everyStep()) {
    rows.push_back(drippingAt(step));
  }
  rows.push_back(drippingABody());
  return byServersAtOnce(std::move(rows));
}

}  // namespace tarnwell::test
