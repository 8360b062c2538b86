#pragma once

/// The byte transport of the client: sends bytes and returns logical lines.
///
/// It does not know tags or commands. After a failure the connection stays dead.
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
  /// Implicit TLS to a host. Does not use the network yet. `timeout` bounds each single wait. For the port
  /// see `endpointPort`.
  IMAPConnection(const std::string& host, std::int64_t port, std::chrono::duration<double> timeout);

  /// Uses any stream.
  explicit IMAPConnection(std::unique_ptr<ByteStream> stream) : stream_(std::move(stream)) {}

  /// The port to connect to. 0, which nobody can connect to, means 993. A port outside 0 to 65535 is a
  /// programming error and aborts the process.
  static std::uint16_t endpointPort(std::int64_t port);

  /// From now on every wait also ends at this instant, with `timeout`.
  void endBy(std::chrono::steady_clock::time_point instant) { stream_->endBy(instant); }

  /// See `ByteStream::watch`.
  void watch(const SessionWatch& watch) { stream_->watch(watch); }

  /// Throws `IMAPError`: `connectionFailed` or `timeout`.
  void connect();

  /// Throws `IMAPError`: `connectionFailed` or `timeout`.
  void sendBytes(std::string_view bytes);

  /// The next logical line with its literals in place, without its last CRLF (see LineAssembler.h). Throws
  /// `IMAPError`: `connectionClosed` when the peer closes before the line is complete, `connectionFailed` or
  /// `timeout`.
  std::string readLogicalLine();

  /// True from a successful `connect` until a failure or `close`.
  bool isAlive() const { return alive_; }

  /// Sends nothing and never fails.
  void close() noexcept;

 private:
  template <class Operation>
  auto deadAfterFailure(Operation operation);

  std::unique_ptr<ByteStream> stream_;
  LineAssembler assembler_;
  bool alive_ = false;
};

}  // namespace tarnwell
