/// A slow network on the loopback interface. Passes on every piece of every connection after a fixed time, in
/// both directions, and limits nothing else.
///
///   DelayProxy ONE_WAY_MILLISECONDS UPSTREAM_PORT
///
/// Prints its port on the first line. For each connection that ended it prints one line of JSON with its
/// round trips: how often the server answered the client's bytes, and one for the TCP handshake. On loopback
/// the kernel completes that handshake at once. So the client's first bytes wait for one more round trip.
/// Ends when its standard input ends.

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <list>
#include <optional>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

/// One direction of a connection. An empty piece marks the end of the stream.
struct Direction {
  struct Piece {
    Clock::time_point due;
    std::string bytes;
  };

  int from;
  int to;
  std::deque<Piece> underway;
  bool hasEnded = false;     // nothing more is read from the source
  bool isDelivered = false;  // the end was passed on too

  bool waitsForDue(Clock::time_point now) const { return !underway.empty() && underway.front().due > now; }
  bool wantsToWrite(Clock::time_point now) const { return !underway.empty() && underway.front().due <= now; }

  /// The bytes that arrived, or nothing. A reset counts as the end.
  std::optional<std::string> receive() {
    static std::array<char, 1 << 18> buffer;
    const ssize_t count = read(from, buffer.data(), buffer.size());
    if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
      return std::nullopt;
    }
    hasEnded = count <= 0;
    return std::string(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
  }

  void deliver(Clock::time_point now) {
    while (wantsToWrite(now)) {
      std::string& bytes = underway.front().bytes;
      if (bytes.empty()) {
        shutdown(to, SHUT_WR);
        isDelivered = true;
      } else {
        const ssize_t count = send(to, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (count < 0 && (errno == EAGAIN || errno == EINTR)) {
          return;
        }
        if (count < 0) {  // the receiver is gone
          hasEnded = isDelivered = true;
          underway.clear();
          return;
        }
        bytes.erase(0, static_cast<std::size_t>(count));
        if (!bytes.empty()) {
          return;
        }
      }
      underway.pop_front();
    }
  }
};

class Connection {
 public:
  Connection(int client, int server) : upwards_{client, server, {}}, downwards_{server, client, {}} {}

  bool isOver() const { return upwards_.isDelivered && downwards_.isDelivered; }
  int roundTrips() const { return roundTrips_; }
  std::size_t bytes() const { return bytes_; }
  std::array<Direction*, 2> directions() { return {&upwards_, &downwards_}; }

  void read(Direction& direction, Clock::time_point now, Clock::duration oneWay) {
    std::optional<std::string> bytes = direction.receive();
    if (!bytes) {
      return;
    }
    const bool isFromClient = &direction == &upwards_;
    const bool isFirst = isFromClient && roundTrips_ == 0 && !clientSpokeLast_;
    if (isFirst) {
      roundTrips_ = 1;
      now += 2 * oneWay;
    }
    if (!bytes->empty()) {
      roundTrips_ += !isFromClient && clientSpokeLast_ ? 1 : 0;
      clientSpokeLast_ = isFromClient;
    }
    bytes_ += bytes->size();
    const Clock::time_point last =
        direction.underway.empty() ? Clock::time_point() : direction.underway.back().due;
    direction.underway.push_back({std::max(now + oneWay, last), std::move(*bytes)});
  }

 private:
  Direction upwards_;
  Direction downwards_;
  bool clientSpokeLast_ = false;
  int roundTrips_ = 0;
  std::size_t bytes_ = 0;
};

sockaddr_in loopback(std::uint16_t port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(port);
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return address;
}

void prepare(int socket) {
  const int on = 1;
  setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  fcntl(socket, F_SETFL, O_NONBLOCK);
}

int listenOnAnyPort() {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  sockaddr_in address = loopback(0);
  socklen_t size = sizeof address;
  auto* generic = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener, generic, size) < 0 || listen(listener, 16) < 0 ||
      getsockname(listener, generic, &size) < 0) {
    return -1;
  }
  std::cout << ntohs(address.sin_port) << std::endl;
  return listener;
}

class Proxy {
 public:
  Proxy(int listener, std::uint16_t upstream, Clock::duration oneWay)
      : listener_(listener), upstream_(upstream), oneWay_(oneWay) {}

  /// False when the standard input has ended.
  bool runOnce() {
    std::vector<pollfd> ready{{listener_, POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}};
    std::optional<Clock::time_point> next;
    Clock::time_point now = Clock::now();
    for (Connection& connection : connections_) {
      for (const Direction* direction : connection.directions()) {
        ready.push_back({direction->hasEnded ? -1 : direction->from, POLLIN, 0});
        ready.push_back({direction->wantsToWrite(now) ? direction->to : -1, POLLOUT, 0});
        if (direction->waitsForDue(now)) {
          const Clock::time_point due = direction->underway.front().due;
          next = next ? std::min(*next, due) : due;
        }
      }
    }
    wait(ready, next, now);

    now = Clock::now();
    std::size_t index = 2;
    for (Connection& connection : connections_) {
      for (Direction* direction : connection.directions()) {
        if (ready[index].revents != 0) {
          connection.read(*direction, now, oneWay_);
        }
        direction->deliver(now);
        index += 2;
      }
    }
    removeEnded();
    if (ready[0].revents != 0) {
      accept();
    }
    return ready[1].revents == 0;
  }

 private:
  static void wait(std::vector<pollfd>& ready, std::optional<Clock::time_point> next, Clock::time_point now) {
    timespec bound{};
    if (next) {
      const auto left = std::chrono::duration_cast<std::chrono::nanoseconds>(*next - now).count();
      bound = {static_cast<time_t>(left / 1'000'000'000), static_cast<long>(left % 1'000'000'000)};
    }
    ppoll(ready.data(), ready.size(), next ? &bound : nullptr, nullptr);
  }

  void accept() {
    const int client = ::accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const int server = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = loopback(upstream_);
    if (client < 0 || connect(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) < 0) {
      close(client);
      close(server);
      return;
    }
    prepare(client);
    prepare(server);
    connections_.emplace_back(client, server);
  }

  void removeEnded() {
    connections_.remove_if([](Connection& connection) {
      if (!connection.isOver()) {
        return false;
      }
      for (const Direction* direction : connection.directions()) {
        close(direction->from);
      }
      std::cout << "{\"roundTrips\": " << connection.roundTrips() << ", \"bytes\": " << connection.bytes()
                << "}" << std::endl;
      return true;
    });
  }

  int listener_;
  std::uint16_t upstream_;
  Clock::duration oneWay_;
  std::list<Connection> connections_;
};

}  // namespace

int main(int count, char* arguments[]) {
  if (count != 3) {
    std::cerr << "usage: DelayProxy ONE_WAY_MILLISECONDS UPSTREAM_PORT\n";
    return 2;
  }
  const int listener = listenOnAnyPort();
  if (listener < 0) {
    std::cerr << "DelayProxy: no port\n";
    return 1;
  }
  Proxy proxy(listener, static_cast<std::uint16_t>(std::atoi(arguments[2])),
              std::chrono::milliseconds(std::atoi(arguments[1])));
  while (proxy.runOnce()) {
  }
}
