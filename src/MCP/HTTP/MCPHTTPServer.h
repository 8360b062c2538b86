#pragma once

/// Offers an `MCPServer` over plain HTTP/1.1 on 127.0.0.1: one JSON-RPC message in the body of each POST.
///
///     MCPHTTPServer http(server, 8765);
///     http.onStateChange([](bool isRunning, std::optional<std::string> message) { ... });
///     http.start();
///     http.endpointURL();  // "http://127.0.0.1:8765/mcp"
///
/// An answer is 200 with the response, 202 when there is none (a notification), 204 to OPTIONS, 405 to any
/// other method, or a refusal (HTTPRequestReader.h). Then the connection is closed. A client that closes
/// early, or whose request has not arrived after 30 seconds, gets no answer.
///
/// Many connections may be open at once. Their bytes are moved by one thread, the queue; the messages are
/// handled in the order of their completion by another, the worker, so that a slow tool call holds up
/// nothing but the calls behind it.
///
/// Threads: one at a time calls `start`, `stop` and `onStateChange`, the callback included; `isRunning` and
/// `endpointURL` any. The callback runs on the queue's thread, and `start` and `stop` return when it did: it
/// must be quick, must not throw and must not wait for the thread that called them.
/// Lifetime: the `MCPServer` must outlive this. The destructor stops and tells nobody; it waits for a call
/// that runs (a tool call is bounded by its time-outs) and for nothing else, and may not run inside the
/// callback.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "MCP/MCPServer.h"

namespace tarnwell {

class MCPHTTPServer {
 public:
  using StateCallback = std::function<void(bool isRunning, std::optional<std::string> message)>;

  static constexpr std::chrono::seconds defaultRequestTimeout{30};

  /// Opens nothing. A port outside 0 to 65535 means 8765; 0 means any free port, which `start` chooses.
  /// `requestTimeout` bounds the time from accepting a connection to the end of its request, and again the
  /// sending of the answer.
  MCPHTTPServer(MCPServer& server, std::int64_t port,
                std::chrono::steady_clock::duration requestTimeout = defaultRequestTimeout);
  ~MCPHTTPServer();
  MCPHTTPServer(const MCPHTTPServer&) = delete;
  MCPHTTPServer& operator=(const MCPHTTPServer&) = delete;

  /// "http://127.0.0.1:PORT/mcp", with the port in use.
  std::string endpointURL() const;

  bool isRunning() const;

  /// Told of every change: running; failed, with the reason; stopped.
  void onStateChange(StateCallback callback);

  /// Listens when it returns, or has told the callback and the log why not; it can then be tried again. Does
  /// nothing while listening.
  void start();

  /// Closes the listener and every connection. A call that runs is finished and its answer dropped, since it
  /// cannot be taken back halfway; calls that have not begun never will. `start` begins anew.
  void stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tarnwell
