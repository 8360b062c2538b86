#include "MCP/Tools/MCPTools.h"

#include <chrono>
#include <stdexcept>
#include <utility>

#include "Core/AppLogger.h"
#include "Core/BridgeConstants.h"
#include "IMAP/Connection/IMAPError.h"
#include "IMAP/InboxSession.h"
#include "MCP/Tools/CallLog.h"
#include "MCP/Tools/LogText.h"

namespace tarnwell {

namespace {

using AppLogger::Category;

/// The last line of a call that gave a result. An error has a line of its own; a call whose arguments cannot
/// be used has none.
void logOutcome(const std::string& label, ToolName tool, const ToolCallResult& result,
                std::chrono::steady_clock::time_point start) {
  if (result.isError) {
    return;
  }
  const auto spent =
      std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
  AppLogger::info(Category::tool, label + ": " + outcomeText(tool, result.structured) + " (" +
                                      std::to_string(spent.count()) + " ms)");
}

}  // namespace

ToolCallResult ToolCallResult::error(std::string text) {
  return {JSONObject{{"error", std::move(text)}}, true};
}

MCPTools::MCPTools(ConfigStore configStore, KeychainStore keychain, EmailRiskDetector detector,
                   ClientFactory makeClient)
    : configStore_(std::move(configStore)),
      keychain_(std::move(keychain)),
      detector_(detector),
      makeClient_(std::move(makeClient)) {}

MCPTools MCPTools::shared() {
  return {ConfigStore::shared(), KeychainStore::shared(), EmailRiskDetector::shared(),
          [](std::string host, std::int64_t port, std::string email, Secret password) {
            return std::make_unique<IMAPClient>(std::move(host), port, std::move(email), std::move(password),
                                                BridgeConstants::networkTimeoutSeconds);
          }};
}

ToolCallResult MCPTools::handle(std::string_view name, const JSONValue& arguments) const {
  AppLogger::info(Category::tool, "tool call: " + loggable(name));
  const std::optional<ToolName> tool = toolName(name);
  if (!tool) {
    return ToolCallResult::error("Unknown tool: " + std::string(name));
  }
  const std::string label = "tool " + std::string(name);
  const auto start = std::chrono::steady_clock::now();
  try {
    ToolCallResult result = run(*tool, arguments);
    logOutcome(label, *tool, result, start);
    return result;
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

ToolCallResult MCPTools::run(ToolName tool, const JSONValue& arguments) const {
  switch (tool) {
    case ToolName::getStatus:
      return getStatus();
    case ToolName::listFolders:
      return listFolders(arguments);
    case ToolName::searchInbox:
      return searchInbox(arguments);
    case ToolName::getMessageSummary:
      return getMessageSummary(arguments);
    case ToolName::getMessageBody:
      return getMessageBody(arguments);
    case ToolName::proposeInboxCleanup:
      return proposeInboxCleanup(arguments);
    case ToolName::moveMessage:
      return moveMessage(arguments);
    case ToolName::markAsRead:
      return markAsRead(arguments);
    case ToolName::trashMessage:
      return trashMessage(arguments);
  }
  throw std::logic_error("a tool without a case");
}

ToolCallResult MCPTools::withIMAP(const AppConfig& config, IMAPClient::Access access,
                                  const std::function<ToolCallResult(IMAPClient&)>& body) const {
  if (!config.isConfigured()) {
    throw IMAPError::notConfigured();
  }
  std::optional<Secret> password = keychain_.read(config.email);
  if (!password || password->empty()) {
    throw IMAPError::notConfigured();
  }
  const std::unique_ptr<IMAPClient> client =
      makeClient_(config.imapHost, config.imapPort, config.email, std::move(*password));
  return withInbox(*client, access, body);
}

}  // namespace tarnwell
