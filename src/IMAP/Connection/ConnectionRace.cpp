#include "IMAP/Connection/ConnectionRace.h"

#include <boost/asio/steady_timer.hpp>
#include <deque>

namespace tarnwell {

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Endpoints = std::vector<tcp::endpoint>;

/// Its handlers refer to it, so the queue must have called them all before it is destroyed.
struct Race {
  asio::io_context& queue;
  const Endpoints& endpoints;
  tcp::socket& winner;

  asio::steady_timer delay{queue};
  std::deque<tcp::socket> sockets{};  // one for each attempt so far; none changes its place
  std::size_t unanswered = 0;
  bool isOver = false;
  error_code outcome = asio::error::host_not_found;  // of the attempt that ended last

  void startNext() {
    const std::size_t number = sockets.size();
    if (number == endpoints.size()) {
      return;
    }
    tcp::socket& socket = sockets.emplace_back(queue);
    ++unanswered;
    socket.async_connect(endpoints[number], [this, &socket](error_code error) { take(socket, error); });
    delay.expires_after(connectionAttemptDelay);  // cancels the wait before
    if (number + 1 < endpoints.size()) {
      delay.async_wait([this, number](error_code) {
        // The error does not tell everything: a wait may end just before it is cancelled.
        if (!isOver && sockets.size() == number + 1) {
          startNext();
        }
      });
    }
  }

  void take(tcp::socket& socket, error_code error) {
    if (isOver) {
      return;
    }
    --unanswered;
    outcome = error;
    if (error) {
      error_code ignored;
      socket.close(ignored);
      startNext();
    } else {
      winner = std::move(socket);
      finish();
    }
  }

  void finish() {
    isOver = true;
    delay.cancel();
    for (tcp::socket& socket : sockets) {
      error_code ignored;
      socket.close(ignored);
    }
  }
};

}  // namespace

Endpoints alternatingFamilies(const Endpoints& endpoints) {
  Endpoints first;
  Endpoints second;
  for (const tcp::endpoint& endpoint : endpoints) {
    (endpoint.protocol() == endpoints.front().protocol() ? first : second).push_back(endpoint);
  }
  Endpoints turns;
  for (std::size_t turn = 0; turn < endpoints.size(); ++turn) {
    for (const Endpoints* family : {&first, &second}) {
      if (turn < family->size()) {
        turns.push_back((*family)[turn]);
      }
    }
  }
  return turns;
}

std::optional<error_code> connectToFirst(asio::io_context& queue, const Endpoints& endpoints,
                                         std::chrono::steady_clock::time_point end, tcp::socket& winner) {
  Race race{queue, endpoints, winner};
  race.startNext();
  queue.run_until(end);
  const bool isLate = !race.isOver && race.unanswered > 0;
  race.finish();
  queue.restart();
  queue.run();
  return isLate ? std::nullopt : std::optional(race.outcome);
}

}  // namespace tarnwell
