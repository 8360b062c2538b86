#pragma once

/// A TCP client of a loopback port that sends exactly the bytes it is given, for servers that must accept
/// any. Reading is bounded: a server that never answers fails the test and does not block it.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tarnwell::test {

class LoopbackClient {
 public:
  explicit LoopbackClient(std::uint16_t port, std::uint32_t address = INADDR_LOOPBACK)
      : socket_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in server{};
    server.sin_family = AF_INET;
    server.sin_port = htons(port);
    server.sin_addr.s_addr = htonl(address);
    isConnected_ = connect(socket_, reinterpret_cast<const sockaddr*>(&server), sizeof server) == 0;
  }
  ~LoopbackClient() { close(); }
  LoopbackClient(LoopbackClient&& other) noexcept
      : socket_(std::exchange(other.socket_, -1)), isConnected_(other.isConnected_) {}
  LoopbackClient& operator=(LoopbackClient&&) = delete;

  bool isConnected() const { return isConnected_; }

  /// False when the server has closed the connection.
  bool send(std::string_view bytes) {
    while (!bytes.empty()) {
      const ssize_t count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
      if (count < 0) {
        return false;
      }
      bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
  }

  void sendByteByByte(std::string_view bytes) {
    for (const char& byte : bytes) {
      EXPECT_TRUE(send({&byte, 1}));
    }
  }

  /// Ends the sending direction, and still receives.
  void finishSending() { shutdown(socket_, SHUT_WR); }

  void close() {
    if (socket_ >= 0) {
      ::close(std::exchange(socket_, -1));
    }
  }

  /// Ends the connection with a TCP reset.
  void reset() {
    const linger atOnce{.l_onoff = 1, .l_linger = 0};
    setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
    close();
  }

  /// True when the server sends or closes within this time.
  bool hasInput(std::chrono::milliseconds within) const {
    pollfd readable{.fd = socket_, .events = POLLIN, .revents = 0};
    return poll(&readable, 1, static_cast<int>(within.count())) == 1;
  }

  /// Everything until the server closes. Fails the test when that takes longer than the bound.
  std::string readAll() {
    std::string all;
    while (waitsForBytes()) {
      std::array<char, 65536> chunk;
      const ssize_t count = recv(socket_, chunk.data(), chunk.size(), 0);
      if (count <= 0) {
        return count == 0 ? all : all + "(reset)";
      }
      all.append(chunk.data(), static_cast<std::size_t>(count));
    }
    ADD_FAILURE() << "the connection was not closed; received: " << all;
    return all;
  }

  /// Exactly so many bytes. Fewer when the server closes or stops sending.
  std::string readExactly(std::size_t size) {
    std::string bytes(size, '\0');
    std::size_t known = 0;
    while (known < size && waitsForBytes()) {
      const ssize_t count = recv(socket_, bytes.data() + known, size - known, 0);
      if (count <= 0) {
        break;
      }
      known += static_cast<std::size_t>(count);
    }
    bytes.resize(known);
    return bytes;
  }

 private:
  bool waitsForBytes() const { return hasInput(std::chrono::seconds(20)); }

  int socket_;
  bool isConnected_;
};

}  // namespace tarnwell::test
