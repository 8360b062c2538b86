/// The server falls silent at each kind of step. Each program waits half a minute, so they all wait at the
/// same time: the first row that is played starts them all, and each row looks at its own.

#include <gtest/gtest.h>

#include <memory>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

struct Silence {
  std::string name;
  std::string attack;
  std::string outcome;
  Session session;
  Dialogue dialogue;
  FakeServerOptions options{};
  std::unique_ptr<Home> home{};
  std::unique_ptr<FakeIMAPServer> server{};
  std::unique_ptr<ServeProgram> program{};

  bool isFarewell() const { return name.ends_with("LOGOUT"); }
};

/// What the table says of a step.
struct Place {
  const char* attack;
  const char* outcome;
};

constexpr Place amidAnAnswer{"the server falls silent amid an answer or a literal",
                             "says that no answer came in time"};

Place placeOf(const std::string& step) {
  if (step == "greeting") {
    return {"the server gives no greeting", "says that no answer came in time; no login is sent"};
  }
  if (step == "LOGOUT") {
    return {"the server gives no farewell", "gives the result after the bound of 30 seconds"};
  }
  if (step == "MOVE" || step == "STORE" || step == "COPY") {
    return {"the server falls silent after a command that changes the mailbox",
            "says that no answer came in time; claims neither that the change was made nor that it was not"};
  }
  return {"the server falls silent at a step, each kind of step once", "says that no answer came in time"};
}

/// The steps of all sessions, each kind of step once.
std::vector<Silence> everySilence() {
  std::vector<Silence> silences;
  const auto add = [&](const Session& session, const std::string& step, const std::string& begin = "") {
    const Place place = begin.empty() ? placeOf(step) : amidAnAnswer;
    silences.push_back({.name = session.tool + "SilentAt" + step + (begin.empty() ? "" : "Begun"),
                        .attack = place.attack,
                        .outcome = place.outcome,
                        .session = session,
                        .dialogue = brokenAt(session, session.position(step), stallHere(), begin)});
  };
  const Session search = searchSession();
  for (const Exchange& exchange : search.exchanges) {
    add(search, exchange.name);
  }
  add(search, "SEARCH", "* SEA");
  add(search, "FETCH", "* 1 FETCH (UID 7 FLAGS (");
  add(search, "BODY", "* 1 FETCH (UID 7 BODY[1] {12}\r\nSee");
  add(listSession(), "LIST");
  add(summarySession(), "BODY");
  add(bodySession(), "BODY");
  add(cleanupSession(), "SEARCH");
  for (const char* step : {"SELECT", "LIST", "MOVE", "LOGOUT"}) {
    add(moveSession(), step);
  }
  add(fallbackSession(), "COPY");
  add(fallbackSession(), "STORE");
  add(markReadSession(), "STORE");
  add(trashSession(), "MOVE");
  silences.push_back({.name = "silentBeforeTheHandshake",
                      .attack = "the server accepts and says nothing, not even of TLS",
                      .outcome = "says that no answer came in time",
                      .session = listSession(),
                      .dialogue = {},
                      .options = {.mute = true}});
  return silences;
}

/// Starts every program and sends each its call.
std::vector<Silence>& waitingPrograms() {
  static std::vector<Silence> silences = [] {
    std::vector<Silence> all = everySilence();
    for (Silence& silence : all) {
      silence.server = std::make_unique<FakeIMAPServer>(silence.dialogue, silence.options);
      silence.home = std::make_unique<Home>();
      silence.home->isFallbackAllowed = true;
      silence.home->useServer(silence.server->port());
      silence.program = std::make_unique<ServeProgram>(*silence.home);
      silence.program->sendCall(silence.session.tool, silence.session.arguments);
    }
    return all;
  }();
  return silences;
}

void collect(std::size_t number) {
  Silence& silence = waitingPrograms()[number];
  const ToolAnswer answer = silence.program->readAnswer();
  EXPECT_EQ(answer.error(), silence.isFarewell() ? "" : "The IMAP server did not respond in time.");
  EXPECT_EQ(answer.isError, !silence.isFarewell());
  if (!silence.options.mute) {
    EXPECT_EQ(silence.server->mismatch(), "");
  }
  EXPECT_EQ(silence.server->acceptCount(), 1);
  expectSound(*silence.home, *silence.program);
  expectQuietEnd(*silence.program);
}

}  // namespace

std::vector<Attack> silenceAttacks() {
  std::vector<Attack> attacks;
  for (const Silence& silence : everySilence()) {
    attacks.push_back(
        {silence.name, silence.attack, silence.outcome, [number = attacks.size()] { collect(number); }});
  }
  return attacks;
}

}  // namespace tarnwell::test
