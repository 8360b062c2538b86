#include "IMAP/Connection/IMAPConnection.h"

#include <cstdlib>
#include <utility>

#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Connection/TLSStream.h"

namespace tarnwell {

std::uint16_t IMAPConnection::endpointPort(std::int64_t port) {
  if (!std::in_range<std::uint16_t>(port)) {
    std::abort();
  }
  constexpr std::uint16_t imapsPort = 993;
  return port == 0 ? imapsPort : static_cast<std::uint16_t>(port);
}

IMAPConnection::IMAPConnection(const std::string& host, std::int64_t port,
                               std::chrono::duration<double> timeout)
    : IMAPConnection(std::make_unique<TLSStream>(host, endpointPort(port), timeout)) {}

/// Runs an operation. When it throws, the connection is dead and the exception goes on.
template <class Operation>
auto IMAPConnection::deadAfterFailure(Operation operation) {
  try {
    return operation();
  } catch (...) {
    alive_ = false;
    throw;
  }
}

void IMAPConnection::connect() {
  stream_->connect();
  alive_ = true;
}

void IMAPConnection::sendBytes(std::string_view bytes) {
  deadAfterFailure([&] { stream_->send(bytes); });
}

std::string IMAPConnection::readLogicalLine() {
  return deadAfterFailure([&] {
    for (;;) {
      if (std::optional<std::string> line = assembler_.next()) {
        return std::move(*line);
      }
      const std::string_view chunk = stream_->receive();
      if (chunk.empty()) {
        throw IMAPError::connectionClosed();
      }
      assembler_.append(chunk);
    }
  });
}

void IMAPConnection::close() noexcept {
  alive_ = false;
  stream_->close();
}

}  // namespace tarnwell
