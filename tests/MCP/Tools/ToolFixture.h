#pragma once

/// The tools with the test's own settings file, a fixed password and a fake server.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <ostream>
#include <string>

#include "Core/ConfigStore.h"
#include "Core/LogBuffer.h"
#include "MCP/Tools/MCPTools.h"
#include "support/FakeIMAPServer.h"

namespace tarnwell {

/// A failed comparison of results shows both of them in this form.
inline void PrintTo(const JSONValue& value, std::ostream* out) { *out << value.prettyString(); }

}  // namespace tarnwell

namespace tarnwell::test {

/// Holds one password for every account, or answers with a status.
class FixedSecretItems : public SecretItems {
 public:
  std::optional<std::string> password = testPassword;
  std::int32_t status = SecretStatus::success;

  std::int32_t copyMatching(const SecretItemQuery& query, Receiver& receiver) override {
    if (status != SecretStatus::success) {
      return status;
    }
    if (!password || query.accessGroup) {
      return SecretStatus::itemNotFound;
    }
    receiver.receive(*password);
    return SecretStatus::success;
  }
  std::int32_t add(const SecretItemQuery&, std::string_view) override { return SecretStatus::badParameter; }
  std::int32_t remove(const SecretItemQuery&) override { return SecretStatus::badParameter; }
  std::optional<std::string> message(std::int32_t) override { return "told by the store"; }
};

class ToolTest : public testing::Test {
 protected:
  ToolTest() : directory_(newDirectory()), store_(directory_) {
    config.email = testEmail;
    config.imapHost = "localhost";
    LogBuffer::shared().clear();
  }
  ~ToolTest() override {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
  }

  /// Starts the server that the settings name.
  FakeIMAPServer& serve(Dialogue dialogue) {
    server_ = std::make_unique<FakeIMAPServer>(std::move(dialogue));
    config.imapPort = server_->port();
    return *server_;
  }

  MCPTools tools() {
    return {store_, KeychainStore("service", "group", items), EmailRiskDetector::shared(),
            [](std::string host, std::int64_t port, std::string email, Secret password) {
              constexpr std::chrono::seconds patience{10};
              return std::make_unique<IMAPClient>(std::move(host), port, std::move(email),
                                                  std::move(password), patience);
            }};
  }

  /// Writes the settings as the companion app does.
  void save() { store_.save(config); }

  ToolCallResult call(std::string_view name, const JSONValue& arguments = JSONObject{}) {
    save();
    ToolCallResult result = tools().handle(name, arguments);
    EXPECT_EQ(result.isError, result.structured.member("error") != nullptr);
    return result;
  }

  const ConfigStore& store() const { return store_; }

  /// The text of an error result.
  std::string errorOf(const ToolCallResult& result) {
    EXPECT_TRUE(result.isError);
    EXPECT_EQ(result.structured.objectValue()->size(), 1u);
    return result.structured["error"].stringValue().value_or("no text");
  }

  AppConfig config;
  FixedSecretItems items;

 private:
  static std::filesystem::path newDirectory() {
    std::string pattern = std::filesystem::temp_directory_path() / "tarnwell-tools-XXXXXX";
    return mkdtemp(pattern.data());
  }

  std::filesystem::path directory_;
  ConfigStore store_;
  std::unique_ptr<FakeIMAPServer> server_;
};

}  // namespace tarnwell::test
