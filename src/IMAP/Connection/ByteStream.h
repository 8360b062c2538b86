#pragma once

/// The interface between IMAP and the network: sends bytes and receives bytes, and every wait is bounded.
///
/// `TLSStream` is the real stream. Tests replace it with a script.
///
/// Threads: one at a time.

#include <chrono>
#include <string_view>

#include "IMAP/Connection/SessionWatch.h"

namespace tarnwell {

class ByteStream {
 public:
  virtual ~ByteStream() = default;

  /// Throws `IMAPError`: `connectionFailed` as soon as the attempt fails, `timeout` when it does not end in
  /// time.
  virtual void connect() = 0;

  /// Sends all bytes. Throws as `connect` does. `send` and `receive` require a successful `connect`.
  virtual void send(std::string_view bytes) = 0;

  /// The next bytes that arrived: at least one, at most 65536. Empty when the peer has closed. They are valid
  /// until the next call. Throws as `connect` does.
  virtual std::string_view receive() = 0;

  /// From now on every wait also ends at this instant, with `timeout`.
  virtual void endBy(std::chrono::steady_clock::time_point instant) = 0;

  /// From now on reports its stages to the watch, and a cancellation ends every wait at once with
  /// `Cancelled`. A stream that never waits may ignore it.
  virtual void watch(const SessionWatch& /*watch*/) {}

  /// Ends the connection at once. Sends nothing and never fails.
  virtual void close() noexcept = 0;
};

}  // namespace tarnwell
