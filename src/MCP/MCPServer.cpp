#include "MCP/MCPServer.h"

#include "Core/AppLogger.h"
#include "Core/BridgeConstants.h"
#include "MCP/CurrentRevision.h"
#include "MCP/Tools/LogText.h"
#include "MCP/Tools/MCPToolSchemas.h"

namespace tarnwell {

namespace {

/// Messages that some clients send with an id although they need no answer.
bool needsNoAnswer(std::string_view method) {
  return method == "notifications/initialized" || method == "notifications/cancelled" ||
         method == "initialized";
}

}  // namespace

std::optional<std::string> MCPServer::handleRaw(std::string_view data) {
  return handleParsed(JSONRPCRequest::parse(data));
}

std::optional<std::string> MCPServer::handleParsed(std::optional<JSONRPCRequest>&& request,
                                                   const MCPExchange& exchange) {
  if (!request) {
    return JSONRPC::failure(std::nullopt, JSONRPCErrorCode::parseError, "Parse error").serialized();
  }
  const std::optional<JSONValue> response = handle(*std::move(request), exchange);
  return response ? std::optional(response->serialized()) : std::nullopt;
}

std::optional<JSONValue> MCPServer::handle(JSONRPCRequest&& request, const MCPExchange& exchange) {
  return CurrentRevision::isClaimedBy(request) ? handleCurrent(std::move(request), exchange)
                                               : handleWithHandshake(std::move(request));
}

bool MCPServer::isHandledAtOnce(const JSONRPCRequest& request) {
  return CurrentRevision::isClaimedBy(request) && !request.isNotification() && request.method != "tools/call";
}

std::optional<JSONValue> MCPServer::handleWithHandshake(JSONRPCRequest&& request) {
  const std::lock_guard oneAtATime(oneAtATime_);
  const std::string_view method = request.method;
  if (request.isNotification() || needsNoAnswer(method)) {
    return std::nullopt;
  }
  if (method == "initialize") {
    return JSONRPC::success(std::move(request.id), initializeResult(request.params));
  }
  if (method == "ping") {
    return JSONRPC::success(std::move(request.id), JSONObject{});
  }
  if (method == "tools/list") {
    return JSONRPC::success(std::move(request.id), JSONObject{{"tools", MCPToolSchemas::toolsListJSON()}});
  }
  if (method == "tools/call") {
    return toolsCall(std::move(request));
  }
  return JSONRPC::failure(std::move(request.id), JSONRPCErrorCode::methodNotFound,
                          "Method not found: " + request.method);
}

/// Deliberate: accepts and returns whatever version the client names. What this server offers is the same in
/// every version of the protocol.
JSONValue MCPServer::initializeResult(const std::optional<JSONValue>& params) const {
  std::string version{defaultProtocolVersion};
  if (params) {
    version = (*params)["protocolVersion"].stringValue().value_or(version);
  }
  constexpr std::size_t loggedLength = 100;  // the client may send a text of any length
  AppLogger::info(AppLogger::Category::mcp, "initialize (protocol " + loggable(version, loggedLength) + ")");
  return JSONObject{
      {"protocolVersion", version},
      {"capabilities", JSONObject{{"tools", JSONObject{{"listChanged", false}}}}},
      {"serverInfo",
       JSONObject{{"name", BridgeConstants::productName}, {"version", BridgeConstants::version}}},
  };
}

JSONValue MCPServer::toolsCall(JSONRPCRequest request) const {
  static const JSONValue none;
  const JSONValue& params = request.params ? *request.params : none;
  const std::optional<std::string> name = params["name"].stringValue();
  if (!name) {
    return JSONRPC::failure(std::move(request.id), JSONRPCErrorCode::invalidParams,
                            "tools/call requires a 'name'.");
  }
  const JSONValue* arguments = params.member("arguments");
  return JSONRPC::success(std::move(request.id),
                          tools_.handle(*name, arguments ? *arguments : JSONValue(JSONObject{})).toJSON());
}

}  // namespace tarnwell
