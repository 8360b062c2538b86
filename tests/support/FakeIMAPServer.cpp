#include "support/FakeIMAPServer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/read.hpp>
#include <boost/asio/ssl.hpp>
#include <boost/asio/write.hpp>
#include <condition_variable>
#include <mutex>
#include <thread>

#include "support/Repeated.h"
#include "support/WireGuard.h"

namespace tarnwell::test {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;

namespace {

/// A hang is told before ctest ends the test.
constexpr std::chrono::seconds patience{60};

/// The bytes with visible line ends, for messages.
std::string visible(const std::string& bytes) {
  std::string text;
  for (const char byte : bytes) {
    if (byte == '\r') {
      text += "\\r";
    } else if (byte == '\n') {
      text += "\\n";
    } else {
      text += byte;
    }
  }
  return text;
}

}  // namespace

struct FakeIMAPServer::State {
  State(Dialogue steps, FakeServerOptions chosen) : dialogue(std::move(steps)), options(std::move(chosen)) {
    const TestCertificates::Identity identity =
        TestCertificates::shared().serverIdentity(options.certificate);
    SSL_CTX* native = tls.native_handle();
    SSL_CTX_use_certificate(native, identity.certificate.get());
    SSL_CTX_use_PrivateKey(native, identity.key.get());
    if (options.maximumTLSVersion != 0) {
      SSL_CTX_set_security_level(native, 0);
      SSL_CTX_set_min_proto_version(native, 0);
      SSL_CTX_set_max_proto_version(native, options.maximumTLSVersion);
    }
    thread = std::thread([this] { serve(); });
  }

  /// Ends the thread. Nothing changes after it.
  void stop() {
    {
      const std::lock_guard lock(mutex);
      stopping = true;
      idle.notify_all();
      if (socket) {
        ::shutdown(socket->native_handle(), SHUT_RDWR);
      }
    }
    // Wakes the blocking accept.
    ::shutdown(acceptor.native_handle(), SHUT_RDWR);
    thread.join();
  }

  void serve() {
    for (;;) {
      tcp::socket peer(context);
      error_code error;
      acceptor.accept(peer, error);
      {
        const std::lock_guard lock(mutex);
        if (error || stopping) {
          return;
        }
        ++accepted;
        ++open;
        socket = &peer;
      }
      // Otherwise the greeting would wait for the acknowledgement of the last bytes of the handshake.
      peer.set_option(tcp::no_delay(true), error);
      guard = WireGuard();
      const std::string problem = converse(peer);
      {
        const std::lock_guard lock(mutex);
        socket = nullptr;
        --open;
        if (!problem.empty() && firstProblem.empty()) {
          firstProblem = problem;
        }
        if (violation.empty()) {
          violation = guard.violation();
        }
        idle.notify_all();
      }
    }
  }

  std::string converse(tcp::socket& peer) {
    if (options.mute) {
      drain(peer);
      return {};
    }
    if (options.plainText) {
      return play(peer, peer);
    }
    asio::ssl::stream<tcp::socket&> secured(peer, tls);
    error_code error;
    secured.handshake(asio::ssl::stream_base::server, error);
    return error ? "TLS handshake: " + error.message() : play(secured, peer);
  }

  template <class Stream>
  std::string play(Stream& stream, tcp::socket& peer) {
    for (const Step& step : dialogue) {
      error_code error;
      switch (step.kind) {
        case Step::Kind::expect:
          if (std::string problem = readExpected(stream, step.bytes); !problem.empty()) {
            return problem;
          }
          break;
        case Step::Kind::answer:
          guard.serverSent(step.bytes);
          writeTimes(stream, step, error);
          break;
        case Step::Kind::answerSlowly:
          guard.serverSent(step.bytes);
          for (const char& byte : step.bytes) {
            asio::write(stream, asio::buffer(&byte, 1), error);
          }
          break;
        case Step::Kind::close:
          shutDown(stream);
          return {};
        case Step::Kind::cut:
          return {};
        case Step::Kind::drip:
          drip(stream, step);
          return {};
        case Step::Kind::halfClose:
          peer.shutdown(tcp::socket::shutdown_send, error);
          drain(stream);
          return {};
        case Step::Kind::pause:
          pause();
          break;
        case Step::Kind::reset:
          // Closed here, because the socket's destructor would turn the option off again.
          peer.set_option(asio::socket_base::linger(true, 0), error);
          close(peer);
          return {};
        case Step::Kind::stall:
          drain(stream);
          return {};
        case Step::Kind::wait:
          wait(step.interval);
          break;
      }
      if (error) {
        return "could not send: " + error.message();
      }
    }
    // Bytes that still come are not in the dialogue.
    const std::string extra = drain(stream);
    return extra.empty() ? "" : "after the dialogue came: " + visible(extra);
  }

  void pause() {
    std::unique_lock lock(mutex);
    pausing = true;
    idle.notify_all();
    idle.wait(lock, [this] { return !pausing || stopping; });
  }

  void wait(std::chrono::milliseconds interval) {
    std::unique_lock lock(mutex);
    idle.wait_for(lock, interval, [this] { return stopping; });
  }

  template <class Stream>
  void drip(Stream& stream, const Step& step) {
    error_code error;
    for (std::size_t position = 0; !error; ++position) {
      asio::write(stream, asio::buffer(&step.bytes[position % step.bytes.size()], 1), error);
      std::unique_lock lock(mutex);
      if (idle.wait_for(lock, step.interval, [this] { return stopping; })) {
        return;
      }
    }
  }

  /// Repeats the bytes of an answer in blocks. Short bytes then do not need one TLS record each.
  template <class Stream>
  void writeTimes(Stream& stream, const Step& step, error_code& error) {
    constexpr std::size_t wanted = std::size_t{64} * 1024;
    const std::size_t inBlock = std::min(step.times, wanted / (step.bytes.size() + 1) + 1);
    const std::string block = repeated(step.bytes, inBlock);
    for (std::size_t left = step.times; left > 0 && !error;) {
      const std::size_t now = std::min(left, inBlock);
      asio::write(stream, asio::buffer(block.data(), now * step.bytes.size()), error);
      left -= now;
    }
  }

  template <class Stream>
  std::string readExpected(Stream& stream, const std::string& expected) {
    std::string bytes(expected.size(), '\0');
    error_code error;
    std::size_t count = 0;
    std::size_t checked = 0;
    // Reads only what is there. A difference then shows at once, without a wait for more bytes.
    while (count < bytes.size() && !error &&
           bytes.compare(checked, count - checked, expected, checked, count - checked) == 0) {
      checked = count;
      count += stream.read_some(asio::buffer(&bytes[count], bytes.size() - count), error);
    }
    bytes.resize(count);
    keep(bytes);
    if (bytes != expected) {
      keepWhatIsThere(stream);
    }
    return bytes == expected ? "" : "expected: " + visible(expected) + " but came: " + visible(bytes);
  }

  template <class Stream>
  std::string drain(Stream& stream) {
    std::string all;
    std::string chunk(4096, '\0');
    error_code error;
    while (!error) {
      const std::size_t count = stream.read_some(asio::buffer(chunk), error);
      all.append(chunk, 0, count);
      keep(chunk.substr(0, count));
    }
    return all;
  }

  /// Reads the rest of what the client sent before the dialogue ends early. Does not wait for more.
  void keepWhatIsThere(asio::ssl::stream<tcp::socket&>& stream) {
    error_code error;
    while (!error && (SSL_pending(stream.native_handle()) > 0 || stream.next_layer().available(error) > 0)) {
      std::string chunk(4096, '\0');
      chunk.resize(stream.read_some(asio::buffer(chunk), error));
      keep(chunk);
    }
  }
  void keepWhatIsThere(tcp::socket&) {}

  /// Sends the closing message of TLS. Waits only a moment for the peer's, which need not come.
  void shutDown(asio::ssl::stream<tcp::socket&>& stream) {
    constexpr std::chrono::milliseconds moment{50};
    stream.async_shutdown([](error_code) {});
    context.restart();
    context.run_for(moment);
    close(stream.next_layer());
    context.restart();
    context.run();
  }
  void shutDown(tcp::socket&) {}

  /// Closes the socket while `stop` cannot use it.
  void close(tcp::socket& peer) {
    const std::lock_guard lock(mutex);
    socket = nullptr;
    error_code ignored;
    peer.close(ignored);
  }

  void keep(const std::string& bytes) {
    guard.clientSent(bytes);
    const std::lock_guard lock(mutex);
    received += bytes;
  }

  Dialogue dialogue;
  FakeServerOptions options;
  asio::io_context context;
  asio::ssl::context tls{asio::ssl::context::tls_server};
  tcp::acceptor acceptor{context, tcp::endpoint(asio::ip::make_address_v4(options.address), 0)};
  std::uint16_t port = acceptor.local_endpoint().port();
  /// Used by the server's thread only.
  WireGuard guard;

  mutable std::mutex mutex;
  std::condition_variable idle;
  bool stopping = false;
  bool pausing = false;
  int accepted = 0;
  int open = 0;
  tcp::socket* socket = nullptr;
  std::string received;
  std::string firstProblem;
  std::string violation;
  std::thread thread;
};

FakeIMAPServer::FakeIMAPServer(Dialogue dialogue, FakeServerOptions options)
    : state_(std::make_unique<State>(std::move(dialogue), std::move(options))) {}

FakeIMAPServer::~FakeIMAPServer() {
  state_->stop();
  if (!state_->violation.empty()) {
    ADD_FAILURE() << "a client sent what must never be sent: " << visible(state_->violation);
  }
}

std::uint16_t FakeIMAPServer::port() const { return state_->port; }

int FakeIMAPServer::acceptCount() const {
  const std::lock_guard lock(state_->mutex);
  return state_->accepted;
}

std::string FakeIMAPServer::received() const {
  const std::lock_guard lock(state_->mutex);
  return state_->received;
}

bool FakeIMAPServer::awaitPause() {
  std::unique_lock lock(state_->mutex);
  return state_->idle.wait_for(lock, patience, [&] { return state_->pausing; });
}

void FakeIMAPServer::resume() {
  const std::lock_guard lock(state_->mutex);
  state_->pausing = false;
  state_->idle.notify_all();
}

std::string FakeIMAPServer::mismatch() {
  std::unique_lock lock(state_->mutex);
  if (!state_->idle.wait_for(lock, patience, [&] { return state_->open == 0; })) {
    return "a connection is still open";
  }
  return state_->firstProblem;
}

}  // namespace tarnwell::test
