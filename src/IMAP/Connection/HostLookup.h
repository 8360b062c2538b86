#pragma once

/// The addresses of a host, asked of the system on a thread of its own, because nothing can interrupt the
/// system's resolver.
///
///     HostLookup lookup("imap.example.org", 993);
///     std::optional<HostLookup::Answer> answer = lookup.await(end);  // absent: not there by then
///
/// The addresses come in the order of the system, which sorts them by RFC 6724. An IPv4 or IPv6 address in
/// place of a name is its own answer, without a thread. A name that does not exist, and a thread that cannot
/// be started, are answers with an error.
///
/// Threads: one at a time. The thread of the look-up ends when the resolver returns. It may outlive this
/// object, and shares with it what both write to.

#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "IMAP/Connection/Cancellation.h"

namespace tarnwell {

class HostLookup {
 public:
  struct Answer {
    boost::system::error_code error;
    std::vector<boost::asio::ip::tcp::endpoint> endpoints;
  };

  /// Begins at once. `host` must not be empty, which the resolver would take for this machine.
  HostLookup(const std::string& host, std::uint16_t port);

  /// Absent when the look-up did not end in time. Throws `Cancelled`.
  std::optional<Answer> await(std::chrono::steady_clock::time_point end,
                              const Cancellation& cancellation = {});

 private:
  struct Shared;
  static void lookUp(const std::shared_ptr<Shared>& shared, const std::string& host, std::uint16_t port);

  std::shared_ptr<Shared> shared_;
};

}  // namespace tarnwell
