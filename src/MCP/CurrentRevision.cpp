#include "MCP/CurrentRevision.h"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

#include "Core/BridgeConstants.h"
#include "MCP/Tools/MCPToolSchemas.h"

namespace tarnwell {

namespace {

constexpr std::string_view protocolVersionKey = "io.modelcontextprotocol/protocolVersion";
constexpr std::string_view clientCapabilitiesKey = "io.modelcontextprotocol/clientCapabilities";
constexpr std::string_view clientInfoKey = "io.modelcontextprotocol/clientInfo";
constexpr std::string_view logLevelKey = "io.modelcontextprotocol/logLevel";
constexpr std::string_view serverInfoKey = "io.modelcontextprotocol/serverInfo";
constexpr std::string_view progressTokenKey = "progressToken";

/// How long a client may keep an answer that is the same until the next version of the program.
constexpr std::int64_t timeToLive = 3'600'000;  // milliseconds

const JSONValue& metaOf(const JSONRPCRequest& request) {
  static const JSONValue none;
  return request.params ? (*request.params)["_meta"] : none;
}

bool isText(const JSONValue& value) { return std::holds_alternative<std::string>(value.payload()); }

bool isTextOrInteger(const JSONValue& value) {
  return isText(value) || std::holds_alternative<std::int64_t>(value.payload());
}

bool isObject(const JSONValue& value) { return value.objectValue() != nullptr; }

bool isClientInfo(const JSONValue& value) { return isText(value["name"]) && isText(value["version"]); }

bool isLogLevel(const JSONValue& value) {
  static constexpr std::array<std::string_view, 8> levels{"debug", "info",     "notice", "warning",
                                                          "error", "critical", "alert",  "emergency"};
  const std::optional<std::string> text = value.stringValue();
  return text && std::ranges::find(levels, *text) != levels.end();
}

/// The members of `_meta` that are known. Others may have any value.
struct MetaMember {
  std::string_view key;
  bool isRequired;
  bool (*isValid)(const JSONValue&);
};

constexpr MetaMember metaMembers[] = {
    {protocolVersionKey, true, isText},
    {clientCapabilitiesKey, true, isObject},
    {clientInfoKey, false, isClientInfo},
    {logLevelKey, false, isLogLevel},
    {progressTokenKey, false, isTextOrInteger},
    // Trace Context and Baggage of the W3C, which the server does not use.
    {"traceparent", false, isText},
    {"tracestate", false, isText},
    {"baggage", false, isText},
};

JSONObject cacheable(JSONObject result) {
  result.emplace("ttlMs", timeToLive);
  result.emplace("cacheScope", "public");
  return result;
}

}  // namespace

bool CurrentRevision::isClaimedBy(const JSONRPCRequest& request) {
  return metaOf(request).member(protocolVersionKey) != nullptr;
}

std::optional<std::string> CurrentRevision::claimedVersion(const JSONRPCRequest& request) {
  return metaOf(request)[protocolVersionKey].stringValue();
}

bool CurrentRevision::isUsableID(const std::optional<JSONValue>& id) { return id && isTextOrInteger(*id); }

std::optional<JSONValue> CurrentRevision::refusal(const JSONRPCRequest& request) {
  if (!isUsableID(request.id)) {
    return failure(request.id, JSONRPCErrorCode::invalidRequest, "The id is neither a text nor an integer.");
  }
  if (!request.isVersion2) {
    return failure(request.id, JSONRPCErrorCode::invalidRequest, "'jsonrpc' is not '2.0'.");
  }
  if (std::optional<std::string> claimed = claimedVersion(request); claimed && *claimed != version) {
    return failure(request.id, ErrorCode::unsupportedVersion, "Unsupported protocol version",
                   JSONObject{{"supported", JSONArray{version}}, {"requested", *std::move(claimed)}});
  }
  for (const MetaMember& known : metaMembers) {
    const JSONValue* value = metaOf(request).member(known.key);
    if (value ? !known.isValid(*value) : known.isRequired) {
      return failure(request.id, JSONRPCErrorCode::invalidParams,
                     "Missing or invalid in '_meta': " + std::string(known.key));
    }
  }
  return std::nullopt;
}

JSONValue CurrentRevision::success(std::optional<JSONValue> id, JSONObject result) {
  result.emplace("resultType", "complete");
  result.emplace("_meta", JSONObject{{serverInfoKey, JSONObject{{"name", BridgeConstants::productName},
                                                                {"version", BridgeConstants::version}}}});
  return JSONRPC::success(std::move(id), std::move(result));
}

JSONValue CurrentRevision::failure(const std::optional<JSONValue>& id, std::int64_t code, std::string message,
                                   std::optional<JSONValue> data) {
  JSONValue answer = JSONRPC::failure(id, code, std::move(message), std::move(data));
  return isUsableID(id) ? answer : JSONObject{{"jsonrpc", answer["jsonrpc"]}, {"error", answer["error"]}};
}

JSONObject CurrentRevision::discoverResult() {
  return cacheable(
      {{"supportedVersions", JSONArray{version}}, {"capabilities", JSONObject{{"tools", JSONObject{}}}}});
}

JSONObject CurrentRevision::toolsListResult() {
  return cacheable({{"tools", MCPToolSchemas::currentToolsListJSON()}});
}

std::optional<JSONValue> CurrentRevision::progressToken(const JSONRPCRequest& request) {
  const JSONValue* token = metaOf(request).member(progressTokenKey);
  return token ? std::optional(*token) : std::nullopt;
}

JSONValue CurrentRevision::progress(JSONValue token, std::int64_t done, std::int64_t total) {
  return JSONObject{
      {"jsonrpc", "2.0"},
      {"method", "notifications/progress"},
      {"params", JSONObject{{"progressToken", std::move(token)}, {"progress", done}, {"total", total}}}};
}

}  // namespace tarnwell
