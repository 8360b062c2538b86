#pragma once

/// A listener that takes no connection and refuses none: its queue is full, and the system drops every
/// further attempt. To a client it is a dead address. Linux only.

#include <poll.h>

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <chrono>
#include <deque>
#include <optional>
#include <vector>

namespace tarnwell::test {

class FullListener {
 public:
  using tcp = boost::asio::ip::tcp;

  /// Port 0 means any.
  explicit FullListener(const tcp::endpoint& endpoint = {boost::asio::ip::address_v4::loopback(), 0})
      : listener_(context_, endpoint.protocol()) {
    listener_.bind(endpoint);
    listener_.listen(0);
    for (int count = 0; count < 4; ++count) {
      tcp::socket& waiting = waiting_.emplace_back(context_, endpoint.protocol());
      waiting.async_connect(this->endpoint(), [](boost::system::error_code) {});  // begins at once
      waitingEndpoints_.push_back(waiting.local_endpoint());
    }
  }

  tcp::endpoint endpoint() const { return listener_.local_endpoint(); }

  /// From now on there is room. A client finds out when its system tries again: after a second.
  void makeRoom() {
    waiting_.clear();
    listener_.listen(16);
  }

  /// The next client. Absent when none came in this time.
  std::optional<tcp::socket> accept(std::chrono::milliseconds bound) {
    pollfd waiting{listener_.native_handle(), POLLIN, 0};
    while (::poll(&waiting, 1, static_cast<int>(bound.count())) == 1) {
      tcp::socket client(context_);
      tcp::endpoint from;
      listener_.accept(client, from);
      if (std::find(waitingEndpoints_.begin(), waitingEndpoints_.end(), from) == waitingEndpoints_.end()) {
        return client;
      }
    }
    return std::nullopt;
  }

 private:
  boost::asio::io_context context_;
  tcp::acceptor listener_;
  std::deque<tcp::socket> waiting_;
  std::vector<tcp::endpoint> waitingEndpoints_;
};

}  // namespace tarnwell::test
