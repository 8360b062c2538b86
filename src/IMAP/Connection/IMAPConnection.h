#pragma once

/// The byte transport under the client: sends bytes, hands out logical lines.
///
/// It knows no tag and no command. After a failure the connection is dead and stays so.
///
///     IMAPConnection connection("imap.example.org", 993, std::chrono::seconds(30));
///     connection.connect();
///     std::string greeting = connection.readLogicalLine();
///
/// Threads: one at a time.

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "IMAP/Connection/ByteStream.h"
#include "IMAP/Connection/LineAssembler.h"

namespace tarnwell {

class IMAPConnection {
 public:
  /// Implicit TLS to a host. Touches no network. `timeout` bounds each single wait; for the port see
  /// `endpointPort`.
  IMAPConnection(const std::string& host, std::int64_t port, std::chrono::duration<double> timeout);

  /// Over any stream.
  explicit IMAPConnection(std::unique_ptr<ByteStream> stream) : stream_(std::move(stream)) {}

  /// The port to connect to. One outside 0 to 65535 is a programming error and ends the process; 0, to which
  /// nobody can connect, means 993.
  static std::uint16_t endpointPort(std::int64_t port);

  /// Throws `IMAPError`: `connectionFailed` or `timeout`.
  void connect();

  /// Throws `IMAPError`: `connectionFailed` or `timeout`.
  void sendBytes(std::string_view bytes);

  /// The next logical line without its last CRLF, literals in place (see LineAssembler.h). Throws
  /// `IMAPError`: `connectionClosed` when the peer closes before the line is complete, `connectionFailed`
  /// or `timeout`.
  std::string readLogicalLine();

  /// True from a successful `connect` until a failure or `close`.
  bool isAlive() const { return alive_; }

  /// Never fails, sends nothing.
  void close() noexcept;

 private:
  template <class Operation>
  auto deadAfterFailure(Operation operation);

  std::unique_ptr<ByteStream> stream_;
  LineAssembler assembler_;
  bool alive_ = false;
};

}  // namespace tarnwell
