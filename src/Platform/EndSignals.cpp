#include "Platform/EndSignals.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace tarnwell::EndSignals {

namespace {

constexpr int outside = 0;
constexpr int inside = -1;

/// `outside`, `inside`, or within a section the number of the signal that was noted. One variable, so that
/// the end of a section and a signal cannot miss each other: either the section's end finds the signal, or
/// the handler finds that the section has ended.
std::atomic<int> state = outside;
static_assert(std::atomic<int>::is_always_lock_free, "a signal handler must not wait for a lock");

void setHandler(int signalNumber, void (*handler)(int)) {
  struct sigaction action{};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  ::sigemptyset(&action.sa_mask);
  ::sigaction(signalNumber, &action, nullptr);
}

/// In a handler of the same signal, the program ends when the handler returns.
void endBy(int signalNumber) {
  setHandler(signalNumber, SIG_DFL);
  ::raise(signalNumber);
}

void endOfPatience(int /*SIGALRM*/) {
  if (const int noted = state; noted > 0) {
    endBy(noted);
  }
}

void onSignal(int signalNumber) {
  const int savedError = errno;
  int found = inside;
  if (state.compare_exchange_strong(found, signalNumber)) {
    setHandler(SIGALRM, endOfPatience);
    ::alarm(static_cast<unsigned>(patience.count()));
  } else if (found == outside) {
    endBy(signalNumber);
  }
  errno = savedError;
}

}  // namespace

void install() {
  for (const int signalNumber : {SIGTERM, SIGINT, SIGHUP}) {
    struct sigaction current{};
    if (::sigaction(signalNumber, nullptr, &current) == 0 && current.sa_handler != SIG_IGN) {
      setHandler(signalNumber, onSignal);
    }
  }
}

Postponed::Postponed() { state = inside; }

Postponed::~Postponed() {
  if (const int noted = state.exchange(outside); noted > 0) {
    endBy(noted);
  }
}

}  // namespace tarnwell::EndSignals
