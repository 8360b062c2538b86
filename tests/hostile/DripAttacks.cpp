/// The server sends a byte now and then, at each step of each tool's session. Each byte comes in time, so
/// only the bound of the whole session ends the call. Each program waits for 50 seconds, so all wait at the
/// same time.

#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"
#include "hostile/TestSecrets.h"
#include "support/ChildProgram.h"

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

/// The command test-connection with a server that drips at one step of its session.
class DrippedTest {
 public:
  explicit DrippedTest(const Session& session, std::size_t position)
      : server_(brokenAt(session, position, dripHere(lines, 5s))) {
    home_.useServer(server_.port());
    storePassword(testPassword);
    program_.emplace(
        std::vector<std::string>{"sh", "-c", "exec \"$@\" 2>&1", "sh", TARNWELL_PROGRAM, "test-connection"},
        home_.environmentList());
  }

  void expectEnd(int status, const std::string& report) {
    EXPECT_TRUE(program_->readAll().starts_with(report));
    EXPECT_EQ(program_->wait(), status);
    EXPECT_EQ(server_.mismatch(), "");
  }

 private:
  FakeIMAPServer server_;
  Home home_;
  std::optional<ChildProgram> program_;
};

/// One for each step, all at the same time.
class DrippedTests {
 public:
  void start() {
    start_ = std::chrono::steady_clock::now();
    for (std::size_t position = 0; position < session_.exchanges.size(); ++position) {
      tests_.push_back(std::make_unique<DrippedTest>(session_, position));
    }
  }

  void finish() {
    if (tests_.empty()) {
      start();
    }
    for (std::size_t position = 0; position < tests_.size(); ++position) {
      const std::string& step = session_.exchanges[position].name;
      SCOPED_TRACE(step);
      const bool isFarewell = step == "LOGOUT";
      tests_[position]->expectEnd(
          isFarewell ? 0 : 1,
          isFarewell ? "✅ Connected to localhost:" : std::string("❌ Connection failed: ") + timeoutText);
      if (!isFarewell) {
        EXPECT_GE(std::chrono::steady_clock::now() - start_, 49s)
            << "something ended it before the session's bound";
      }
    }
    tests_.clear();
  }

 private:
  std::chrono::steady_clock::time_point start_;
  const Session session_ = Session("", {}).then("LOGOUT", "LOGOUT");
  std::vector<std::unique_ptr<DrippedTest>> tests_;
};

}  // namespace

std::vector<Attack> dripAttacks() {
  std::vector<ServerAttack> rows;
  for (const SessionStep& step : everyStep()) {
    rows.push_back(drippingAt(step));
  }
  rows.push_back(drippingABody());
  std::vector<Attack> attacks = byServersAtOnce(std::move(rows));
  // The first row starts these too, so that they wait together with the others.
  const auto tests = std::make_shared<DrippedTests>();
  attacks.front().play = [tests, play = attacks.front().play] {
    tests->start();
    play();
  };
  attacks.push_back({"testConnectionDripping",
                     "the server answers test-connection a byte every 5 seconds, at each step",
                     "says after 50 seconds that no answer came in time; a slow farewell costs 2 seconds",
                     [tests] { tests->finish(); }});
  return attacks;
}

}  // namespace tarnwell::test
