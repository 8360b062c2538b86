/// get_status and list_folders.

#include "Core/ISO8601.h"
#include "Core/SafetyPolicy.h"
#include "IMAP/IMAPClient.h"
#include "MCP/Tools/LogText.h"
#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

namespace {

/// False also when the store cannot be read.
bool hasUsablePassword(const KeychainStore& keychain, const std::string& email) {
  try {
    const std::optional<Secret> password = keychain.read(email);
    return password && !password->empty();
  } catch (const KeychainError&) {
    return false;
  }
}

/// The nine safety settings under their own names.
JSONValue safetyJSON(const SafetySettings& settings) {
  JSONObject object;
  forEachSafetySetting(settings, [&object](const char* key, auto value) { object.emplace(key, value); });
  return object;
}

JSONValue folderJSON(const IMAPFolder& folder, bool includeSpecialUse) {
  JSONObject object{
      {"name", readableName(folder)},
      {"path", folder.path},
      {"delimiter", folder.delimiter},
      {"selectable", folder.selectable},
  };
  if (includeSpecialUse) {
    object.emplace("specialUse", JSONValue::of(folder.specialUse));
  }
  return object;
}

}  // namespace

ToolOutcome MCPTools::getStatus(const JSONValue& /*arguments*/, const CallWatch& /*watch*/) const {
  const AppConfig config = configStore_.load();
  const bool isConfigured = config.isConfigured() && hasUsablePassword(keychain_, config.email);
  JSONArray toolNames;
  for (const ToolName tool : allToolNames()) {
    toolNames.emplace_back(rawValue(tool));
  }
  JSONObject status{
      {"configured", isConfigured},
      {"email", config.isConfigured() ? JSONValue(config.email) : JSONValue()},
      {"imapHost", config.imapHost},
      {"imapPort", config.imapPort},
      {"mode", rawValue(SafetyPolicy(config.safety).mode())},
      {"safety", safetyJSON(config.safety)},
      {"availableTools", std::move(toolNames)},
  };
  if (config.lastConnectionTestDate) {
    status.emplace("lastConnectionTest",
                   JSONObject{{"date", formatISO8601(*config.lastConnectionTestDate)},
                              {"success", config.lastConnectionTestSuccess.value_or(false)}});
  }
  return {{std::move(status)}, isConfigured ? "configured" : "not configured"};
}

ToolOutcome MCPTools::listFolders(const JSONValue& arguments, const CallWatch& watch) const {
  const bool includeSpecialUse = arguments["includeSpecialUse"].boolValue().value_or(true);
  return withIMAP(configStore_.load(), IMAPClient::Access::readOnly, watch, [&](IMAPClient& client) {
    JSONArray folders;
    for (const IMAPFolder& folder : client.listFolders()) {
      folders.push_back(folderJSON(folder, includeSpecialUse));
    }
    const auto count = static_cast<std::int64_t>(folders.size());
    return ToolOutcome{{JSONObject{{"count", count}, {"folders", std::move(folders)}}},
                       counted(count, "folder")};
  });
}

}  // namespace tarnwell
