#include "MCP/HTTP/LoopbackPort.h"

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <limits>

namespace tarnwell {

namespace {

using boost::asio::ip::tcp;
using boost::system::error_code;

/// Listens for a moment: with the option that the endpoint sets, binding alone succeeds at a port that
/// somebody else has bound. 0 means any port.
std::optional<std::uint16_t> tried(std::uint16_t port) {
  boost::asio::io_context context;
  tcp::acceptor acceptor(context);
  const tcp::endpoint wanted(boost::asio::ip::address_v4::loopback(), port);
  error_code error;
  if (acceptor.open(wanted.protocol(), error) ||
      acceptor.set_option(tcp::acceptor::reuse_address(true), error) || acceptor.bind(wanted, error) ||
      acceptor.listen(1, error)) {
    return std::nullopt;
  }
  const tcp::endpoint used = acceptor.local_endpoint(error);
  return error ? std::nullopt : std::optional(used.port());
}

}  // namespace

std::optional<std::uint16_t> freeLoopbackPort(std::uint16_t from) {
  if (from == 0) {
    return tried(0);
  }
  constexpr std::uint32_t firstUnprivileged = 1024;
  constexpr std::uint32_t tries = 100;
  const std::uint32_t first = std::max<std::uint32_t>(from, firstUnprivileged);
  const std::uint32_t last =
      std::min<std::uint32_t>(first + tries - 1, std::numeric_limits<std::uint16_t>::max());
  for (std::uint32_t port = first; port <= last; ++port) {
    if (const auto found = tried(static_cast<std::uint16_t>(port))) {
      return found;
    }
  }
  return tried(0);
}

}  // namespace tarnwell
