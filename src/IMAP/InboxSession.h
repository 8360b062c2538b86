#pragma once

/// One session on the inbox, from its beginning to its end.
///
///     std::string report = withInbox(client, IMAPClient::Access::readOnly,
///                                    [](IMAPClient& session) { return describe(session); });
///
/// Threads: as for `IMAPClient`.

#include <exception>
#include <optional>
#include <type_traits>
#include <utility>

#include "IMAP/IMAPClient.h"

namespace tarnwell {

/// Connects, selects the inbox, runs `body` and returns its result. Ends the session before it returns or
/// throws. Rethrows what was thrown.
template <class Body>
auto withInbox(IMAPClient& client, IMAPClient::Access access, Body&& body) {
  std::optional<std::invoke_result_t<Body, IMAPClient&>> result;
  std::exception_ptr failure;
  try {
    client.connectToInbox(access);
    result = std::forward<Body>(body)(client);
  } catch (...) {
    failure = std::current_exception();
  }
  client.disconnect();
  if (failure) {
    std::rethrow_exception(failure);
  }
  return *std::move(result);
}

}  // namespace tarnwell
