#include "IMAP/Connection/TLSStream.h"

#include <openssl/err.h>
#include <openssl/x509v3.h>

#include <algorithm>
#include <array>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/write.hpp>
#include <optional>

#include "IMAP/Connection/ConnectionRace.h"
#include "IMAP/Connection/HostLookup.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/Connection/TLSContext.h"

namespace tarnwell {

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Clock = std::chrono::steady_clock;

/// Requires the host's name or address in the certificate. False when that cannot be checked.
bool authenticate(SSL* connection, const std::string& host) {
  X509_VERIFY_PARAM* verification = SSL_get0_param(connection);
  X509_VERIFY_PARAM_set_hostflags(verification, X509_CHECK_FLAG_NO_PARTIAL_WILDCARDS);
  error_code isName;
  asio::ip::make_address(host, isName);
  const bool accepted = isName ? X509_VERIFY_PARAM_set1_host(verification, host.c_str(), 0) == 1 &&
                                     SSL_set_tlsext_host_name(connection, host.c_str()) == 1
                               : X509_VERIFY_PARAM_set1_ip_asc(verification, host.c_str()) == 1;
  if (!accepted) {
    ERR_clear_error();
  }
  return accepted;
}

/// The stream ended, with or without the closing message of TLS.
bool isEndOfStream(error_code error) {
  return error == asio::error::eof || error == asio::ssl::error::stream_truncated;
}

}  // namespace

struct TLSStream::State {
  State(std::string hostName, std::uint16_t portNumber, std::chrono::duration<double> bound)
      : host(std::move(hostName)), port(portNumber), timeout(bound) {}

  std::string host;
  std::uint16_t port;
  std::chrono::duration<double> timeout;
  Clock::time_point lastInstant = Clock::time_point::max();

  asio::io_context queue{1};
  std::optional<asio::ssl::stream<tcp::socket>> stream;
  std::array<char, 65536> received;
  SessionWatch watch;

  Clock::time_point deadline() const {
    return std::min(Clock::now() + std::chrono::duration_cast<Clock::duration>(timeout), lastInstant);
  }

  struct Outcome {
    error_code error;
    std::size_t count = 0;
  };

  /// Stops the queue on a cancellation.
  Cancellation::Waker waker() {
    return {watch.cancellation, [this] { queue.stop(); }};
  }

  /// The one time-out helper. It starts an operation whose handler stores the outcome, and runs the queue
  /// until the handler was called, `end` is reached, or the session is given up. It cancels an unfinished
  /// operation by closing the socket, and still waits for its handler, which refers to this stack frame. Then
  /// it throws `IMAPError::timeout` or `Cancelled`.
  template <class Start>
  Outcome await(Clock::time_point end, Start start) {
    std::optional<Outcome> outcome;
    queue.restart();
    {
      const Cancellation::Waker stop = waker();
      watch.cancellation.throwIfCancelled();
      start([&](error_code error, std::size_t count = 0) { outcome = Outcome{error, count}; });
      queue.run_until(end);
    }
    if (!outcome) {
      close();
      queue.restart();
      queue.run();
      watch.cancellation.throwIfCancelled();
      throw IMAPError::timeout();
    }
    return *outcome;
  }

  std::optional<error_code> connectToFirstOf(const std::vector<tcp::endpoint>& endpoints,
                                             Clock::time_point end) {
    const Cancellation::Waker stop = waker();
    watch.cancellation.throwIfCancelled();
    const auto outcome = connectToFirst(queue, endpoints, end, stream->next_layer());
    watch.cancellation.throwIfCancelled();
    return outcome;
  }

  void openStream() {
    try {
      asio::ssl::context context = newTLSContext();
      stream.emplace(queue, context);  // OpenSSL counts who uses the context
    } catch (const TrustError& nobodyToTrust) {
      fail(nobodyToTrust.what());
    } catch (const boost::system::system_error& noDescriptor) {  // the queue itself needs descriptors
      fail(noDescriptor.code().message());
    }
  }

  void throwIfFailed(error_code error) {
    if (error) {
      fail(reason(error));
    }
  }

  [[noreturn]] void fail(const std::string& text) const {
    throw IMAPError::connectionFailed(host + ":" + std::to_string(port) + ": " + text);
  }

  std::string reason(error_code error) {
    const long verified = stream ? SSL_get_verify_result(stream->native_handle()) : long{X509_V_OK};
    if (verified != X509_V_OK) {
      return std::string("the server's certificate is not accepted (") +
             X509_verify_cert_error_string(verified) + ")";
    }
    if (isEndOfStream(error)) {
      return "the server closed the connection";
    }
    if (error.category() == asio::error::get_ssl_category()) {
      return "TLS failed (" + error.message() + ")";
    }
    return error.message();
  }

  void close() noexcept {
    if (stream) {
      error_code ignored;
      stream->lowest_layer().close(ignored);
    }
  }
};

TLSStream::TLSStream(std::string host, std::uint16_t port, std::chrono::duration<double> timeout)
    : state_(std::make_unique<State>(std::move(host), port, timeout)) {}

TLSStream::~TLSStream() = default;

void TLSStream::endBy(Clock::time_point instant) { state_->lastInstant = instant; }

void TLSStream::watch(const SessionWatch& watch) { state_->watch = watch; }

void TLSStream::connect() {
  State& state = *state_;
  // The system's resolver takes an empty name for this machine, and ignores what follows a zero byte.
  if (state.host.empty() || state.host.find('\0') != std::string::npos) {
    throw IMAPError::connectionFailed("port " + std::to_string(state.port) +
                                      ": the host name is empty or holds a zero byte");
  }
  const Clock::time_point end = state.deadline();

  HostLookup lookup(state.host, state.port);
  state.openStream();
  const std::optional<HostLookup::Answer> found = lookup.await(end, state.watch.cancellation);
  if (!found) {
    throw IMAPError::timeout();
  }
  state.throwIfFailed(found->error);
  state.watch.report(SessionStage::nameFound);
  if (!authenticate(state.stream->native_handle(), state.host)) {
    state.fail("the host name cannot be checked against a certificate");
  }

  tcp::socket& socket = state.stream->next_layer();
  const auto connected = state.connectToFirstOf(alternatingFamilies(found->endpoints), end);
  if (!connected) {
    throw IMAPError::timeout();
  }
  state.throwIfFailed(*connected);
  state.watch.report(SessionStage::connected);
  error_code ignored;
  socket.set_option(tcp::no_delay(true), ignored);
  const auto secured = state.await(
      end, [&](auto handler) { state.stream->async_handshake(asio::ssl::stream_base::client, handler); });
  state.throwIfFailed(secured.error);
  state.watch.report(SessionStage::secured);
}

void TLSStream::send(std::string_view bytes) {
  State& state = *state_;
  const auto outcome = state.await(state.deadline(), [&](auto handler) {
    asio::async_write(*state.stream, asio::buffer(bytes), handler);
  });
  state.throwIfFailed(outcome.error);
}

std::string_view TLSStream::receive() {
  State& state = *state_;
  const auto outcome = state.await(state.deadline(), [&](auto handler) {
    state.stream->async_read_some(asio::buffer(state.received), handler);
  });
  if (isEndOfStream(outcome.error)) {
    return {};
  }
  state.throwIfFailed(outcome.error);
  return {state.received.data(), outcome.count};
}

void TLSStream::close() noexcept { state_->close(); }

}  // namespace tarnwell
