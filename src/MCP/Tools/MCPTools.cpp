#include "MCP/Tools/MCPTools.h"

#include <chrono>
#include <utility>

#include "Core/AppLogger.h"
#include "Core/BridgeConstants.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/InboxSession.h"
#include "MCP/Tools/LogText.h"
#include "MCP/Tools/ToolTable.h"

namespace tarnwell {

namespace {

using AppLogger::Category;

auto millisecondsSince(std::chrono::steady_clock::time_point start) {
  const auto spent = std::chrono::steady_clock::now() - start;
  return std::chrono::duration_cast<std::chrono::milliseconds>(spent).count();
}

/// What `ToolCallResult::error` was given.
std::string errorText(const ToolCallResult& result) {
  return result.structured["error"].stringValue().value_or("");
}

}  // namespace

ToolCallResult ToolCallResult::error(std::string text) {
  return {JSONObject{{"error", std::move(text)}}, true};
}

JSONObject ToolCallResult::toJSON() && {
  JSONArray content;  // not in braces, which would copy the text
  content.push_back(JSONObject{{"type", "text"}, {"text", text()}});
  return {
      {"content", std::move(content)},
      {"structuredContent", std::move(structured)},
      {"isError", isError},
  };
}

MCPTools::MCPTools(ConfigStore configStore, KeychainStore keychain, EmailRiskDetector detector,
                   ClientFactory makeClient)
    : configStore_(std::move(configStore)),
      keychain_(std::move(keychain)),
      detector_(detector),
      makeClient_(std::move(makeClient)) {}

MCPTools MCPTools::shared() { return over(ConfigStore::shared(), KeychainStore::shared()); }

MCPTools MCPTools::over(ConfigStore configStore, KeychainStore keychain) {
  return {std::move(configStore), std::move(keychain), EmailRiskDetector::shared(),
          [](std::string host, std::int64_t port, std::string email, Secret password) {
            return std::make_unique<IMAPClient>(std::move(host), port, std::move(email), std::move(password),
                                                BridgeConstants::networkTimeoutSeconds);
          }};
}

ToolCallResult MCPTools::handle(std::string_view name, const JSONValue& arguments,
                                const CallWatch& watch) const {
  AppLogger::info(Category::tool, "tool call: " + loggable(name));
  const std::optional<ToolName> tool = toolName(name);
  if (!tool) {
    return ToolCallResult::error("Unknown tool: " + std::string(name));
  }
  const std::string label = "tool " + std::string(name);
  const auto start = std::chrono::steady_clock::now();
  try {
    ToolOutcome outcome = (this->*ToolRow::of(*tool).run)(arguments, watch);
    if (outcome.result.isError) {
      AppLogger::error(Category::tool, label + " failed: " + loggable(errorText(outcome.result)));
    } else {
      AppLogger::info(Category::tool, label + ": " + outcome.summary + " (" +
                                          std::to_string(millisecondsSince(start)) + " ms)");
    }
    return std::move(outcome.result);
  } catch (const Cancelled&) {
    AppLogger::info(Category::tool,
                    label + ": cancelled (" + std::to_string(millisecondsSince(start)) + " ms)");
    throw;
  } catch (const IMAPError& error) {
    AppLogger::error(Category::tool, label + " failed: " + loggable(error));
    return ToolCallResult::error(error.description());
  } catch (const KeychainError& error) {
    AppLogger::error(Category::tool, label + " keychain error " + loggable(error.description()));
    return ToolCallResult::error(error.description());
  } catch (const std::exception& error) {
    AppLogger::error(Category::tool, label + " error: " + loggable(error.what()));
    return ToolCallResult::error("Internal error while running " + std::string(name) + ".");
  }
}

ToolOutcome MCPTools::withIMAP(const AppConfig& config, IMAPClient::Access access, const CallWatch& watch,
                               const std::function<ToolOutcome(IMAPClient&)>& body) const {
  if (!config.isConfigured()) {
    throw IMAPError::notConfigured();
  }
  watch.cancellation.throwIfCancelled();
  std::optional<Secret> password = keychain_.read(config.email);
  if (!password || password->empty()) {
    throw IMAPError::notConfigured();
  }
  const std::unique_ptr<IMAPClient> client =
      makeClient_(config.imapHost, config.imapPort, config.email, std::move(*password));
  client->watch({.cancellation = watch.cancellation});
  // After a cancellation nobody wants to hear what was read, or what failed. But the result of a change tells
  // whether it was made.
  const auto throwIfUnwanted = [&] {
    if (!client->hasBegunChange()) {
      watch.cancellation.throwIfCancelled();
    }
  };
  try {
    ToolOutcome outcome = withInbox(*client, access, body);
    throwIfUnwanted();
    return outcome;
  } catch (const IMAPError&) {
    throwIfUnwanted();
    throw;
  }
}

}  // namespace tarnwell
