#pragma once

/// One accepted connection of the HTTP endpoint: reads one request, sends its answer, then ends.
///
/// A call whose connection ends before the call begins is not run. So the connection reads on after a POST,
/// and discards what it reads. A call begins when the calls before it have ended, so at once when there are
/// none. A client that closes only its sending side looks the same as one that has gone (TCP shows both as
/// the end of the stream). While its call waits, this counts as closing. After the call has begun, it gets
/// its answer. But a call of the current revision of MCP is cancelled then, because that revision says so.
///
/// A request of the current revision that runs no tool is answered on the queue's thread, and does not wait
/// for a call. Reading it as JSON takes milliseconds at most.
///
/// Include this header only in source files of the HTTP endpoint: it brings Asio with it.
///
/// Threads: all socket operations run on the queue's thread, and `close` is called there. Only the tool call
/// runs on the worker's thread.
/// Lifetime: each pending operation keeps the object alive, and `close` ends them all. The `HTTPDispatch`
/// must outlive the connection.

#include <array>
#include <atomic>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <boost/asio/thread_pool.hpp>
#include <boost/system/error_code.hpp>
#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Core/Secret.h"
#include "MCP/HTTP/HTTPRequestReader.h"
#include "MCP/HTTP/HTTPResponse.h"
#include "MCP/MCPServer.h"

namespace tarnwell {

/// Shared by all connections: the dispatcher, and the worker, the only thread that calls it. `unfinished`
/// counts the calls that were handed to the worker and have not ended. `connectionEnded` is called on the
/// queue's thread, once for each connection, when its socket is closed. `token` belongs to that thread too.
struct HTTPDispatch {
  MCPServer& server;
  std::chrono::steady_clock::duration requestTimeout;
  std::function<void()> connectionEnded;
  std::optional<Secret> token{};
  std::atomic<int> unfinished = 0;
  boost::asio::thread_pool worker{1};
};

class HTTPConnection : public std::enable_shared_from_this<HTTPConnection> {
 public:
  HTTPConnection(boost::asio::ip::tcp::socket socket, HTTPDispatch& dispatch);

  void start();

  /// Also prevents a call that has not begun, and cancels one of the current revision. May be called again.
  void close();

 private:
  void bound(std::chrono::steady_clock::duration time);
  void unbound();
  void read();
  void take(std::size_t count);
  void inviteBody();
  void process();
  void answerAtOnce();
  void handOver();
  void call();
  bool withdrawCall();
  void send(const HTTPResponse& response);
  void finish();
  void discard();
  void inputEnded(boost::system::error_code error);

  boost::asio::ip::tcp::socket socket_;
  boost::asio::steady_timer timer_;
  HTTPDispatch& dispatch_;
  /// The worker begins a call, and the queue's thread withdraws it. Only one of them can change `waiting`.
  enum class Call { none, waiting, begun, withdrawn };
  std::atomic<Call> call_ = Call::none;
  Cancellation cancellation_;
  bool isOpen_ = true;
  bool isInputOver_ = false;
  bool isAnswered_ = false;
  HTTPRequestReader reader_;
  std::array<char, 16384> received_;
  std::string answer_;
};

}  // namespace tarnwell
