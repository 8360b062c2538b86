#pragma once

/// The HTTP endpoint on a port that the system chose, over tools of which one call can be held up.

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "IMAP/Connection/IMAPError.h"
#include "MCP/HTTP/HTTPResponse.h"
#include "MCP/HTTP/MCPHTTPServer.h"
#include "MCP/Tools/ToolFixture.h"
#include "support/Gate.h"
#include "support/LoopbackClient.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

using StateChange = std::pair<bool, std::optional<std::string>>;

class HTTPTest : public testing::Test {
 protected:
  static constexpr const char* ping = R"({"id":1,"method":"ping"})";
  static constexpr const char* pong = R"({"id":1,"jsonrpc":"2.0","result":{}})";
  /// Comes to the gate and fails after it.
  static constexpr const char* slowCall =
      R"({"id":2,"method":"tools/call","params":{"name":"list_folders"}})";

  HTTPTest() : server_(gatedTools()) { LogBuffer::shared().clear(); }
  ~HTTPTest() override {
    gate.open();
    http_.reset();
  }

  MCPHTTPServer& startHTTP(
      int port = 0, std::chrono::steady_clock::duration timeout = MCPHTTPServer::defaultRequestTimeout) {
    http_ = std::make_unique<MCPHTTPServer>(server_, port, timeout);
    http_->onStateChange([this](bool running, std::optional<std::string> message) {
      changes.emplace_back(running, std::move(message));
    });
    http_->start();
    return *http_;
  }

  MCPHTTPServer& http() { return *http_; }

  /// Ends the server; a call that runs has ended then.
  void destroyHTTP() { http_.reset(); }

  static std::uint16_t portOf(const MCPHTTPServer& server) {
    const std::string url = server.endpointURL();
    return static_cast<std::uint16_t>(std::stoi(url.substr(url.rfind(':') + 1)));
  }

  LoopbackClient connect() { return LoopbackClient(portOf(*http_)); }

  /// The whole answer to these bytes, sent at once.
  std::string answerTo(std::string_view bytes) {
    LoopbackClient client = connect();
    client.send(bytes);
    return client.readAll();
  }

  /// When it returns, the endpoint has seen all that happened before: this needs several turns of its queue.
  void awaitQueue() { EXPECT_EQ(answerTo("OPTIONS / HTTP/1.1\r\n\r\n"), HTTPResponse{204}.serialized()); }

  static std::string post(std::string_view body) {
    return "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Type: application/json\r\nContent-Length: " +
           std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
  }

  static std::string answerWith(std::string body) {
    return HTTPResponse{200, "application/json", std::move(body)}.serialized();
  }

  /// The messages logged in the category, with their levels.
  static std::vector<std::pair<LogLevel, std::string>> logged() {
    std::vector<std::pair<LogLevel, std::string>> messages;
    for (const LogEntry& entry : LogBuffer::shared().snapshot()) {
      if (entry.category == "http") {
        messages.emplace_back(entry.level, entry.message);
      }
    }
    return messages;
  }

  Gate gate;
  /// Written on the queue's thread before `start` and `stop` return.
  std::vector<StateChange> changes;

 private:
  MCPTools gatedTools() {
    const ConfigStore store(directory_.path());
    AppConfig config;
    config.email = testEmail;
    store.save(config);
    return {store, KeychainStore("service", "group", items_), EmailRiskDetector::shared(),
            [this](auto&&...) -> std::unique_ptr<IMAPClient> {
              gate.pass();
              throw IMAPError::connectionClosed();
            }};
  }

  TemporaryDirectory directory_;
  FixedSecretItems items_;
  MCPServer server_;
  std::unique_ptr<MCPHTTPServer> http_;
};

}  // namespace tarnwell::test
