#pragma once

/// One session on the inbox from its beginning to its end.
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

/// Connects, selects the inbox and runs `body`, whose result is given back. The session is ended before the
/// result or a failure leaves; what was thrown is thrown on.
template <class Body>
auto withInbox(IMAPClient& client, IMAPClient::Access access, Body&& body) {
  std::optional<std::invoke_result_t<Body, IMAPClient&>> result;
  std::exception_ptr failure;
  try {
    client.connect();
    client.selectInbox(access);
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
