#pragma once

/// The narrow seam between IMAP and the network: bytes out, bytes in, every wait bounded.
///
/// `TLSStream` is the real one; tests put a script in its place.
///
/// Threads: one at a time.

#include <string_view>

namespace tarnwell {

class ByteStream {
 public:
  virtual ~ByteStream() = default;

  /// Throws `IMAPError`: `connectionFailed` as soon as the attempt failed, `timeout` when it did not end.
  virtual void connect() = 0;

  /// Sends all of the bytes. Throws `IMAPError` like `connect`, which must have succeeded before; so it must
  /// for `receive`.
  virtual void send(std::string_view bytes) = 0;

  /// The next bytes that arrived, at least one and at most 65536; empty when the peer has closed. They are
  /// valid until the next call. Throws `IMAPError` like `connect`.
  virtual std::string_view receive() = 0;

  /// Ends the connection at once, sends nothing, never fails.
  virtual void close() noexcept = 0;
};

}  // namespace tarnwell
