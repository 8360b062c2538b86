#pragma once

/// TLS over TCP to one host (RFC 8314, implicit TLS), with a bound on every wait.
///
/// The server is authenticated: TLS 1.2 or later, a certificate chain to the system's trust store (or to
/// SSL_CERT_FILE and SSL_CERT_DIR, as OpenSSL reads them), and the host's name or address in the certificate.
/// Nothing is sent to a server that fails this.
///
/// Each operation starts one asynchronous call on the object's own queue and runs that queue until the
/// time-out at most. A failure is reported at once. The system cannot cancel a name look-up, so that runs on
/// its own thread, which is abandoned when the answer is late (HostLookup.h). The addresses of a host race
/// for the connection, so that a dead one costs little (ConnectionRace.h).
///
/// Threads: one at a time.

#include <chrono>
#include <cstdint>
#include <memory>
#include <string>

#include "IMAP/Connection/ByteStream.h"

namespace tarnwell {

class TLSStream final : public ByteStream {
 public:
  /// Does not use the network. `timeout` bounds the whole of `connect`, and each `send` and `receive`.
  TLSStream(std::string host, std::uint16_t port, std::chrono::duration<double> timeout);
  ~TLSStream() override;

  void endBy(std::chrono::steady_clock::time_point instant) override;
  void watch(const SessionWatch& watch) override;
  void connect() override;
  void send(std::string_view bytes) override;
  std::string_view receive() override;
  void close() noexcept override;

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tarnwell
