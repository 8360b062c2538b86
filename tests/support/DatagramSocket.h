#pragma once

/// A bound datagram socket in place of the journal.

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

namespace tarnwell::test {

class DatagramSocket {
 public:
  explicit DatagramSocket(const std::filesystem::path& path)
      : socket_(::socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0)) {
    sockaddr_un name{};
    name.sun_family = AF_UNIX;
    path.string().copy(name.sun_path, sizeof name.sun_path - 1);
    if (::bind(socket_, reinterpret_cast<const sockaddr*>(&name), sizeof name) < 0) {
      throw std::runtime_error("cannot bind " + path.string());
    }
  }
  DatagramSocket(const DatagramSocket&) = delete;
  ~DatagramSocket() { ::close(socket_); }

  /// The next datagram that has already arrived. Absent when there is none.
  std::optional<std::string> receive() const {
    std::string bytes(256 * 1024, '\0');
    ssize_t size = ::recv(socket_, bytes.data(), bytes.size(), MSG_DONTWAIT);
    if (size < 0) {
      return std::nullopt;
    }
    bytes.resize(static_cast<std::size_t>(size));
    return bytes;
  }

 private:
  int socket_;
};

/// The fields of a datagram in the journal's native protocol, read as the journal reads them. Throws for
/// bytes in another form.
inline std::multimap<std::string, std::string> journalFields(std::string_view datagram) {
  std::multimap<std::string, std::string> fields;
  while (!datagram.empty()) {
    std::size_t end = datagram.find_first_of("=\n");
    if (end == std::string_view::npos) {
      throw std::runtime_error("a field without a value");
    }
    std::string name(datagram.substr(0, end));
    bool isCounted = datagram[end] == '\n';
    datagram.remove_prefix(end + 1);
    std::size_t size = datagram.find('\n');
    if (isCounted) {
      size = 0;
      for (std::size_t index = 0; index < 8; ++index) {
        size |= static_cast<std::size_t>(static_cast<std::uint8_t>(datagram.at(index))) << (8 * index);
      }
      datagram.remove_prefix(8);
    }
    if (datagram.at(size) != '\n') {
      throw std::runtime_error("a field without an end");
    }
    fields.emplace(std::move(name), datagram.substr(0, size));
    datagram.remove_prefix(size + 1);
  }
  return fields;
}

}  // namespace tarnwell::test
