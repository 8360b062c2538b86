/// Signals that ask the program to end. A move by COPY and a flag is the only change of two steps.

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <chrono>
#include <thread>

#include "hostile/ServerAttack.h"
#include "hostile/Sessions.h"

namespace tarnwell::test {

namespace {

using Clock = std::chrono::steady_clock;

struct EndSignal {
  const char* name;
  int number;
};

constexpr EndSignal endSignals[] = {{"SIGTERM", SIGTERM}, {"SIGINT", SIGINT}, {"SIGHUP", SIGHUP}};

/// The program gets the signal while the server pauses. Returns how long it lives on after `afterSignal`.
Clock::duration timeToEnd(const Session& session, const Dialogue& dialogue, int signalNumber,
                          void (*afterSignal)(FakeIMAPServer&, const ServeProgram&)) {
  FakeIMAPServer server(dialogue);
  Home home;
  home.isFallbackAllowed = session.isFallbackAllowed;
  home.useServer(server.port());
  ServeProgram program(home);
  program.sendCall(session.tool, session.arguments);
  EXPECT_TRUE(server.awaitPause());
  ::kill(program.processID(), signalNumber);
  const Clock::time_point begin = Clock::now();
  afterSignal(server, program);
  EXPECT_EQ(program.end(), (Ending{.status = -signalNumber, .standardError = "", .restOfOutput = ""}));
  const Clock::duration taken = Clock::now() - begin;
  server.resume();  // when it still pauses
  EXPECT_EQ(server.mismatch(), "");
  EXPECT_EQ(server.received(), expectedBytes(dialogue));
  return taken;
}

/// The session up to the answer to this step. The server pauses in its place, and does the rest after it.
Dialogue pausedAt(const Session& session, std::string_view step, const Dialogue& rest) {
  Dialogue dialogue = honest(session);
  dialogue.resize(2 * session.position(step) + 1, closeHere());
  return dialogue + Dialogue{pauseHere()} + rest;
}

/// The program waits for the answer.
void answerAfterAMoment(FakeIMAPServer& server, const ServeProgram& program) {
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  siginfo_t ended{};
  ::waitid(P_PID, static_cast<id_t>(program.processID()), &ended, WEXITED | WNOHANG | WNOWAIT);
  EXPECT_EQ(ended.si_pid, 0) << "it has ended already";
  server.resume();
}

void answerNever(FakeIMAPServer& /*server*/, const ServeProgram& /*program*/) {}

/// The flag is set, and no farewell follows.
void endDuringCopy(const EndSignal& signal) {
  const Session session = fallbackSession();
  const Exchange& store = session.exchanges[session.position("STORE")];
  timeToEnd(
      session,
      pausedAt(session, "COPY", {answer("A0006 OK done\r\n"), expect(store.command), answer(store.answer)}),
      signal.number, answerAfterAMoment);
}

void endDuringStore(const EndSignal& signal) {
  const Session session = fallbackSession();
  timeToEnd(session, pausedAt(session, "STORE", {answer("A0007 OK done\r\n")}), signal.number,
            answerAfterAMoment);
}

/// Nothing is copied then, so there is nothing to wait for.
void endAfterARefusedCopy(const EndSignal& signal) {
  const Session session = fallbackSession();
  timeToEnd(session, pausedAt(session, "COPY", {answer("A0006 NO cannot\r\n")}), signal.number,
            answerAfterAMoment);
}

void endWithASilentServer(const EndSignal& signal) {
  const Session session = fallbackSession();
  const Clock::duration taken =
      timeToEnd(session, pausedAt(session, "STORE", {}), signal.number, answerNever);
  EXPECT_GT(taken, std::chrono::milliseconds(4500));
  EXPECT_LT(taken, std::chrono::milliseconds(6500));
}

void endDuringAnotherCall(const EndSignal& signal) {
  for (const auto& [session, step] :
       {std::pair{searchSession(), "SEARCH"}, std::pair{fallbackSession(), "MOVE"}}) {
    EXPECT_LT(timeToEnd(session, pausedAt(session, step, {}), signal.number, answerNever),
              std::chrono::seconds(3));
  }
}

void endWhileNothingRuns(const EndSignal& signal) {
  Home home;
  ServeProgram program(home);
  EXPECT_TRUE(program.answersPing());
  ::kill(program.processID(), signal.number);
  const Clock::time_point begin = Clock::now();
  EXPECT_EQ(program.end().status, -signal.number);
  EXPECT_LT(Clock::now() - begin, std::chrono::seconds(3));
}

/// As under nohup(1).
void ignoreWhatWasIgnored(const EndSignal& signal) {
  const Session session = fallbackSession();
  FakeIMAPServer server(answeredBy(session, "COPY", {pauseHere(), answer("A0006 OK done\r\n")}));
  Home home;
  home.launcher = {"env", std::string("--ignore-signal=") + signal.name};
  home.isFallbackAllowed = true;
  home.useServer(server.port());
  ServeProgram program(home);
  program.sendCall(session.tool, session.arguments);
  ASSERT_TRUE(server.awaitPause());
  ::kill(program.processID(), signal.number);
  server.resume();
  EXPECT_EQ(program.readAnswer().error(), "");
  EXPECT_EQ(server.mismatch(), "");
  ::kill(program.processID(), signal.number);
  expectSound(home, program);
  expectQuietEnd(program);
}

}  // namespace

std::vector<Attack> signalAttacks() {
  struct Row {
    const char* name;
    const char* attack;
    const char* outcome;
    void (*play)(const EndSignal&);
  };
  constexpr Row rows[] = {
      {"DuringCopy", "a signal to end, while COPY is under way and the flag is not set",
       "sets the flag, then ends by the signal", endDuringCopy},
      {"DuringStore", "a signal to end, while the flag is being set",
       "waits for the answer, then ends by the signal", endDuringStore},
      {"AfterARefusedCopy", "a signal to end, and then COPY is refused", "flags nothing; ends by the signal",
       endAfterARefusedCopy},
      {"SilentServer", "a signal to end, and no answer to the flag", "ends by the signal after five seconds",
       endWithASilentServer},
      {"DuringAnotherCall", "a signal to end during any other step", "ends by the signal at once",
       endDuringAnotherCall},
      {"WhileNothingRuns", "a signal to end between calls", "ends by the signal at once",
       endWhileNothingRuns},
      {"Ignored", "a signal to end that was ignored when the program started", "goes on",
       ignoreWhatWasIgnored},
  };
  std::vector<Attack> attacks;
  for (const Row& row : rows) {
    for (const EndSignal& signal : endSignals) {
      attacks.push_back({std::string(signal.name) + row.name, row.attack, row.outcome,
                         [play = row.play, signal] { play(signal); }});
    }
  }
  return attacks;
}

}  // namespace tarnwell::test
