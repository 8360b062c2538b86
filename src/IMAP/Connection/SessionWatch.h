#pragma once

/// What a caller on another thread may do with a session: see how far it came, and give it up.
///
/// Threads: `reached` runs on the thread of the session. For `cancellation` see Cancellation.h.

#include <functional>

#include "IMAP/Connection/Cancellation.h"

namespace tarnwell {

/// How far a session came, in the order of time.
enum class SessionStage {
  nameFound,    // the host has an address
  connected,    // an address answered
  secured,      // TLS stands, and the server's certificate is accepted
  signedIn,     // the server accepted name and password
  inboxOpened,  // the inbox is selected
};

struct SessionWatch {
  /// Called once for each stage. May be empty.
  std::function<void(SessionStage)> reached{};
  Cancellation cancellation{};

  void report(SessionStage stage) const {
    if (reached) {
      reached(stage);
    }
  }
};

}  // namespace tarnwell
