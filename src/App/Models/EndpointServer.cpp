#include "App/Models/EndpointServer.h"

#include <thread>
#include <utility>

#include "MCP/HTTP/MCPHTTPServer.h"

namespace tarnwell {

struct EndpointServer::Running {
  Running(MCPTools tools, std::int64_t port) : server(std::move(tools)), http(server, port) {}

  MCPServer server;
  MCPHTTPServer http;
};

EndpointServer::EndpointServer(MCPTools tools, std::int64_t port, Secret token)
    : running_(std::make_unique<Running>(std::move(tools), port)) {
  MCPHTTPServer& http = running_->http;
  http.requireToken(std::move(token));
  http.start();
  failure_ = http.startFailure();
  url_ = http.endpointURL();
}

EndpointServer::~EndpointServer() {
  if (running_) {
    std::thread([running = std::move(running_)]() mutable { running.reset(); }).detach();
  }
}

void EndpointServer::requireToken(Secret token) {
  if (running_) {
    running_->http.requireToken(std::move(token));
  }
}

/// `stop` first, because the log then tells of it.
void EndpointServer::end() {
  if (running_) {
    running_->http.stop();
    running_.reset();
  }
}

}  // namespace tarnwell
