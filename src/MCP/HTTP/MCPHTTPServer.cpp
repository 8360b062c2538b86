#include "MCP/HTTP/MCPHTTPServer.h"

#include <atomic>
#include <boost/asio/dispatch.hpp>
#include <boost/asio/executor_work_guard.hpp>
#include <boost/asio/io_context.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <future>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "Core/AppLogger.h"
#include "Core/BridgeConstants.h"
#include "MCP/HTTP/HTTPConnection.h"

namespace tarnwell {

namespace {

namespace asio = boost::asio;
using asio::ip::tcp;
using boost::system::error_code;
using Clock = std::chrono::steady_clock;
using Category = AppLogger::Category;

}  // namespace

struct MCPHTTPServer::State {
  State(MCPServer& server, std::int64_t wantedPort, Clock::duration requestTimeout)
      : configuredPort(static_cast<std::uint16_t>(
            std::in_range<std::uint16_t>(wantedPort) ? wantedPort : BridgeConstants::defaultHTTPPort)),
        port(configuredPort),
        dispatch{server, requestTimeout, [this] { connectionEnded(); }} {
    thread = std::thread([this] { queue.run(); });
  }

  ~State() {
    onQueue([this] { closeAll(); });
    dispatch.worker.join();
    keepsRunning.reset();
    thread.join();
  }

  State(const State&) = delete;
  State& operator=(const State&) = delete;

  /// Runs the task on the queue's thread and waits until it ends. Called on that thread, runs it at once.
  template <class Task>
  void onQueue(Task task) {
    std::packaged_task<void()> waiting(std::move(task));
    std::future<void> ended = waiting.get_future();
    // The handler owns the task, because the wait may end before the task's call returns.
    asio::dispatch(queue, [taken = std::move(waiting)]() mutable { taken(); });
    ended.get();
  }

  void listen() {
    error_code error;
    const tcp::endpoint wanted(asio::ip::address_v4::loopback(), configuredPort);
    auto candidate = std::make_shared<tcp::acceptor>(queue);
    const auto step = [&error](auto operation) {
      if (!error) {
        operation();
      }
    };
    step([&] { candidate->open(wanted.protocol(), error); });
    step([&] { candidate->set_option(tcp::acceptor::reuse_address(true), error); });
    step([&] { candidate->bind(wanted, error); });
    step([&] { candidate->listen(tcp::acceptor::max_listen_connections, error); });
    step([&] { port = candidate->local_endpoint(error).port(); });
    if (error) {
      return fail(error);
    }
    listener = std::move(candidate);
    failure.clear();
    accept();
    isRunning = true;
    AppLogger::info(Category::http,
                    "localhost MCP HTTP server listening on 127.0.0.1:" + std::to_string(port));
    tell(true, std::nullopt);
  }

  void fail(error_code error) {
    port = configuredPort;
    failure = error;
    const std::string reason = "127.0.0.1:" + std::to_string(port) + ": " + error.message();
    AppLogger::error(Category::http, "HTTP listener failed: " + reason);
    isRunning = false;
    tell(false, reason);
  }

  /// Takes the next connection. With as many as may be open, the system keeps it until one of them ends.
  void accept() {
    isAccepting = openConnections < maximumConnections;
    if (!isAccepting) {
      return;
    }
    listener->async_accept([this, accepting = listener](error_code error, tcp::socket socket) {
      // A connection that arrived just before `stop` is reported after it, when there may be a new listener.
      if (accepting != listener) {
        return;
      }
      if (error) {
        return acceptLater();
      }
      std::erase_if(connections, [](const auto& connection) { return connection.expired(); });
      // Not by make_shared: a call that was withdrawn still holds a weak pointer, and the memory of the whole
      // connection with it.
      const std::shared_ptr<HTTPConnection> connection(new HTTPConnection(std::move(socket), dispatch));
      connections.push_back(connection);
      ++openConnections;
      connection->start();
      accept();
    });
  }

  void connectionEnded() {
    --openConnections;
    if (listener && !isAccepting) {
      accept();
    }
  }

  /// Tries again after a pause. Accepting fails when no descriptor or memory is left, and other connections
  /// will end soon.
  void acceptLater() {
    constexpr std::chrono::milliseconds pause{100};
    acceptPause.expires_after(pause);
    acceptPause.async_wait([this, accepting = listener](error_code) {
      if (accepting == listener) {
        accept();
      }
    });
  }

  void closeAll() {
    if (listener) {
      error_code ignored;
      listener->close(ignored);
      listener.reset();
    }
    acceptPause.cancel();
    for (const auto& open : connections) {
      if (const auto connection = open.lock()) {
        connection->close();
      }
    }
    connections.clear();
    isRunning = false;
  }

  void tell(bool running, std::optional<std::string> message) {
    if (const StateCallback current = callback) {  // a copy: the callback may replace itself
      current(running, std::move(message));
    }
  }

  const std::uint16_t configuredPort;
  std::atomic<std::uint16_t> port;
  std::atomic<bool> isRunning = false;
  std::error_code failure;
  StateCallback callback;

  asio::io_context queue{1};
  asio::executor_work_guard<asio::io_context::executor_type> keepsRunning{queue.get_executor()};
  HTTPDispatch dispatch;
  std::shared_ptr<tcp::acceptor> listener;
  asio::steady_timer acceptPause{queue};
  std::vector<std::weak_ptr<HTTPConnection>> connections;
  std::size_t openConnections = 0;
  bool isAccepting = false;
  std::thread thread;
};

MCPHTTPServer::MCPHTTPServer(MCPServer& server, std::int64_t port, Clock::duration requestTimeout)
    : state_(std::make_unique<State>(server, port, requestTimeout)) {}

MCPHTTPServer::~MCPHTTPServer() = default;

std::string MCPHTTPServer::endpointURL() const {
  return "http://127.0.0.1:" + std::to_string(state_->port) + "/mcp";
}

bool MCPHTTPServer::isRunning() const { return state_->isRunning; }

void MCPHTTPServer::onStateChange(StateCallback callback) {
  state_->onQueue([&] { state_->callback = std::move(callback); });
}

void MCPHTTPServer::requireToken(Secret token) {
  state_->onQueue([this, &token] { state_->dispatch.token = std::move(token); });
}

std::error_code MCPHTTPServer::startFailure() const {
  std::error_code failure;
  state_->onQueue([&] { failure = state_->failure; });
  return failure;
}

void MCPHTTPServer::start() {
  state_->onQueue([this] {
    if (!state_->listener) {
      state_->listen();
    }
  });
}

void MCPHTTPServer::stop() {
  state_->onQueue([this] {
    const bool wasListening = state_->listener != nullptr;
    state_->closeAll();
    AppLogger::info(Category::http, "localhost MCP HTTP server stopped");
    if (wasListening) {
      state_->tell(false, std::nullopt);
    }
  });
}

}  // namespace tarnwell
