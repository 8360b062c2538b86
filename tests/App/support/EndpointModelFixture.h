#pragma once

/// The endpoint's model on settings and a keyring of its own, with tools of which one call can be held up.

#include <gtest/gtest.h>

#include <QTest>
#include <atomic>
#include <memory>
#include <optional>
#include <string>

#include "App/Models/EndpointModel.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/IMAPClient.h"
#include "MCP/HTTP/LoopbackPort.h"
#include "support/Gate.h"
#include "support/InMemorySecretItems.h"
#include "support/LoopbackClient.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

class EndpointModelFixture {
 public:
  static constexpr const char* address = "user@example.org";
  static constexpr const char* ping = R"({"id":1,"method":"ping"})";
  static constexpr const char* pong = R"({"id":1,"jsonrpc":"2.0","result":{}})";
  /// Comes to the gate and fails after it.
  static constexpr const char* slowCall =
      R"({"id":2,"method":"tools/call","params":{"name":"list_folders"}})";

  EndpointModelFixture() {
    items.put({"service", address, std::nullopt}, "app-pass-word");
    store.update([&](AppConfig& config) {
      config.email = address;
      config.httpPort = freePort();
    });
  }
  ~EndpointModelFixture() {
    gate->open();
    model.reset();
    // What runs on refers to the settings of this object.
    EXPECT_TRUE(until([this] { return toolsOfModel.expired(); }));
  }

  /// The system gives another one to each program that runs the tests at the same time.
  static std::uint16_t freePort() { return freeLoopbackPort(0).value(); }

  /// After the end of the one before, which closes its port on a thread of its own.
  EndpointModel& open() {
    model.reset();
    EXPECT_TRUE(until([this] { return toolsOfModel.expired(); }));
    settings.emplace(store);
    auto mark = std::make_shared<int>();
    toolsOfModel = mark;
    MCPTools tools(store, passwords, EmailRiskDetector::shared(),
                   [mark = std::move(mark), gate = gate](auto&&...) -> std::unique_ptr<IMAPClient> {
                     gate->pass();
                     throw IMAPError::connectionClosed();
                   });
    model.emplace(*settings, passwords, std::move(tools),
                  KeyringAccess{[state = keyring] { return state->load(); },
                                [answer = unlocking](const KeyringUnlock&) { return answer->load(); }});
    return *model;
  }

  template <class Condition>
  static bool until(Condition condition) {
    return QTest::qWaitFor(condition, 20'000);
  }
  bool become(EndpointModel::State state) {
    return until([&] { return model->state() == state; });
  }
  bool start() {
    model->start();
    return become(EndpointModel::State::running);
  }

  std::optional<std::string> storedToken() const {
    return items.at({"app.tarnwell.Tarnwell.endpoint", "local-endpoint", std::nullopt});
  }
  std::string token() const { return std::string(model->token().value().view()); }

  LoopbackClient connect() const { return LoopbackClient(static_cast<std::uint16_t>(model->port())); }
  static std::string request(const std::string& token, std::string_view body) {
    return "POST /mcp HTTP/1.1\r\nHost: 127.0.0.1\r\nAuthorization: Bearer " + token +
           "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
  }
  std::string answerTo(const std::string& bytes) const {
    LoopbackClient client = connect();
    client.send(bytes);
    return client.readAll();
  }
  int statusWith(const std::string& token) const {
    return std::stoi(answerTo(request(token, ping)).substr(9, 3));
  }

  TemporaryDirectory directory;
  InMemorySecretItems& items = InMemorySecretItems::kept();
  ConfigStore store{directory / "settings"};
  KeychainStore passwords{"service", std::nullopt, items};
  std::shared_ptr<Gate> gate = std::make_shared<Gate>();
  std::shared_ptr<std::atomic<KeyringState>> keyring =
      std::make_shared<std::atomic<KeyringState>>(KeyringState::ready);
  std::shared_ptr<std::atomic<UnlockOutcome>> unlocking =
      std::make_shared<std::atomic<UnlockOutcome>>(UnlockOutcome::unlocked);
  std::weak_ptr<int> toolsOfModel;
  std::optional<SettingsFile> settings;
  std::optional<EndpointModel> model;
};

}  // namespace tarnwell::test
