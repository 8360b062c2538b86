#pragma once

/// Offers an `MCPServer` over plain HTTP/1.1 on 127.0.0.1: one JSON-RPC message in the body of each POST.
///
///     MCPHTTPServer http(server, 8765);
///     http.onStateChange([](bool isRunning, std::optional<std::string> message) { ... });
///     http.start();
///     http.endpointURL();  // "http://127.0.0.1:8765/mcp"
///
/// With a token (`requireToken`), only a client that knows it is served. Without one, every program and every
/// user of this computer is.
///
/// An answer is 200 with the response, 202 for a message without a response (a notification), 204 to OPTIONS,
/// 405 to any other method, or a refusal (HTTPRequestReader.h, and PostedMessage.h for the current revision
/// of MCP). Then the connection is closed. A client that closes early, or whose request does not arrive
/// within 30 seconds, gets no answer. A call whose client closes before the call begins is not run. Closing
/// the sending side alone counts as closing while the call waits for others, and no longer when it has begun.
/// In the current revision of MCP closing also gives up a call that has begun, and closing the sending side
/// counts as closing.
///
/// Many connections may be open at once, at most 64. The system keeps the next ones until one of these ends,
/// and the time for their requests begins then. One thread, the queue, moves their bytes. Another thread, the
/// worker, handles the messages in the order in which they are complete. A slow tool call delays only the
/// calls after it. Requests of the current revision that run no tool are answered on the queue.
///
/// Threads: one thread at a time calls the functions that change something and `startFailure`; the callback
/// may call them too.
/// Any thread may call `isRunning` and `endpointURL`. The callback runs on the queue's thread, and `start`
/// and `stop` return after it. It must be quick, must not throw and must not wait for the thread that called
/// them.
/// Lifetime: the `MCPServer` must outlive this object. The destructor stops the server without calling the
/// callback. It waits only for a running call, which has its own time-outs. It must not run inside the
/// callback.

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <system_error>

#include "Core/Secret.h"
#include "MCP/MCPServer.h"

namespace tarnwell {

class MCPHTTPServer {
 public:
  using StateCallback = std::function<void(bool isRunning, std::optional<std::string> message)>;

  static constexpr std::chrono::seconds defaultRequestTimeout{30};
  static constexpr std::size_t maximumConnections = 64;

  /// Opens nothing yet. A port outside 0 to 65535 means 8765; 0 means that `start` chooses a free port.
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

  /// From now on a request must have the header "Authorization: Bearer TOKEN" (BearerToken.h). This is
  /// decided by its headers, before its body is read. A request whose headers have arrived goes on. Call it
  /// before the first `start`. Called again, it replaces the token. An empty one serves nobody.
  void requireToken(Secret token);

  /// Sets the function to call after each change: running; failed, with the reason; stopped.
  void onStateChange(StateCallback callback);

  /// When it returns, the server listens, or the callback and the log have the reason why not. After a
  /// failure it can be called again. Does nothing while the server listens.
  void start();

  /// Why the last `start` failed, such as `std::errc::address_in_use`. No error when it did not.
  std::error_code startFailure() const;

  /// Closes the listener and every connection. A call that has begun is given up in the current revision of
  /// MCP, and finishes in older ones; its answer is dropped. Calls that wait for it never begin. `start` may
  /// be called again.
  void stop();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tarnwell
