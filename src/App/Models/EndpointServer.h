#pragma once

/// The local endpoint while it serves: the tools, and what speaks HTTP, as one thing.
///
///     auto server = std::make_shared<EndpointServer>(tools, 8765, token);
///     if (std::error_code failure = server->failure()) { ... }
///     server->end();                                   // waits for a call that runs
///
/// Threads: one at a time. Each function waits for the endpoint's own thread, `end` also for a call, which
/// lasts a minute at most: none of them belongs on the thread of the window. The destructor never waits. It
/// leaves what runs to a thread of its own.

#include <cstdint>
#include <memory>
#include <string>
#include <system_error>

#include "Core/Secret.h"
#include "MCP/Tools/MCPTools.h"

namespace tarnwell {

class EndpointServer {
 public:
  /// Listens, or has a failure.
  EndpointServer(MCPTools tools, std::int64_t port, Secret token);
  ~EndpointServer();
  EndpointServer(const EndpointServer&) = delete;
  EndpointServer& operator=(const EndpointServer&) = delete;

  /// Why it does not listen. No error when it does.
  std::error_code failure() const { return failure_; }

  /// Where it listens.
  const std::string& url() const { return url_; }

  /// Counts from now on instead of the one before.
  void requireToken(Secret token);

  /// Closes the endpoint at once and waits for the call that runs. May be called again.
  void end();

 private:
  struct Running;

  std::unique_ptr<Running> running_;
  std::error_code failure_;
  std::string url_;
};

}  // namespace tarnwell
