#pragma once

/// The client of a fake server.

#include <chrono>

#include "IMAP/IMAPClient.h"
#include "support/FakeIMAPServer.h"

namespace tarnwell::test {

/// With the account that the dialogues of the tests log in to.
inline IMAPClient clientOf(const FakeIMAPServer& server,
                           std::chrono::duration<double> timeout = std::chrono::seconds(10)) {
  return {"localhost", server.port(), testEmail, Secret(testPassword), timeout};
}

}  // namespace tarnwell::test
