#pragma once

/// A session that the server breaks off, once at each of its answers.

#include <chrono>
#include <functional>
#include <optional>
#include <vector>

#include "IMAP/Connection/IMAPError.h"
#include "support/FakeIMAPServer.h"

namespace tarnwell::test {

/// The dialogue up to each of its answers from the step `first` on, with `end` in the place of that answer.
inline std::vector<Dialogue> brokenAtEveryAnswer(const Dialogue& whole, const Step& end,
                                                 std::size_t first = 0) {
  std::vector<Dialogue> all;
  for (std::size_t step = first; step < whole.size(); ++step) {
    if (whole[step].kind == Step::Kind::answer) {
      all.emplace_back(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(step)).push_back(end);
    }
  }
  return all;
}

struct BrokenSession {
  /// What the session threw.
  std::optional<IMAPError> error;
  std::string mismatch;
  std::string received;
};

using Timeout = std::chrono::duration<double>;

/// Plays the session with this time-out. When that is too short for an answer before the break, as it can be
/// on a busy machine, the session is played again with a long one.
inline BrokenSession playBroken(const Dialogue& dialogue, Timeout timeout,
                                const std::function<void(const FakeIMAPServer&, Timeout)>& session) {
  constexpr Timeout longTimeout = std::chrono::seconds(10);
  for (;; timeout = longTimeout) {
    FakeIMAPServer server(dialogue);
    BrokenSession outcome;
    try {
      session(server, timeout);
    } catch (const IMAPError& error) {
      outcome.error = error;
    }
    outcome.mismatch = server.mismatch();
    outcome.received = server.received();
    if (outcome.mismatch.empty() || timeout >= longTimeout) {
      return outcome;
    }
  }
}

}  // namespace tarnwell::test
