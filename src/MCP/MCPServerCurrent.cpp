/// The methods of revision 2026-07-28.

#include <chrono>

#include "MCP/CurrentRevision.h"
#include "MCP/MCPServer.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds shortestInterval{200};  // of the notifications of progress

/// Tells the client of the steps of a call, when it wants that, and five times a second at most. Never of the
/// last one: the answer follows at once, and clients complain when they read both together. For the same
/// reason a short call tells of nothing.
std::function<void(std::int64_t, std::int64_t)> progressReport(const JSONRPCRequest& request,
                                                               const MCPExchange& exchange) {
  std::optional<JSONValue> token = CurrentRevision::progressToken(request);
  if (!token || !exchange.notify) {
    return {};
  }
  return [token = *std::move(token), notify = exchange.notify, last = Clock::now()](
             std::int64_t done, std::int64_t total) mutable {
    if (done < total && Clock::now() - last >= shortestInterval) {
      last = Clock::now();
      notify(CurrentRevision::progress(token, done, total));
    }
  };
}

}  // namespace

std::optional<JSONValue> MCPServer::handleCurrent(JSONRPCRequest&& request, const MCPExchange& exchange) {
  if (request.isNotification()) {
    return std::nullopt;
  }
  if (std::optional<JSONValue> refusal = CurrentRevision::refusal(request)) {
    return refusal;
  }
  if (request.method == "server/discover") {
    return CurrentRevision::success(std::move(request.id), CurrentRevision::discoverResult());
  }
  if (request.method == "tools/list") {
    // The list has one page, so no cursor was ever handed out.
    if (request.params->member("cursor")) {
      return CurrentRevision::failure(request.id, JSONRPCErrorCode::invalidParams, "Unknown cursor.");
    }
    return CurrentRevision::success(std::move(request.id), CurrentRevision::toolsListResult());
  }
  if (request.method == "tools/call") {
    return currentToolsCall(std::move(request), exchange);
  }
  return CurrentRevision::failure(request.id, JSONRPCErrorCode::methodNotFound,
                                  "Method not found: " + request.method);
}

/// Deliberate: an unknown tool is an error of the protocol here, and a result of the tool before.
std::optional<JSONValue> MCPServer::currentToolsCall(JSONRPCRequest&& request, const MCPExchange& exchange) {
  static const JSONValue none = JSONObject{};
  const auto invalid = [&request](std::string message) {
    return CurrentRevision::failure(request.id, JSONRPCErrorCode::invalidParams, std::move(message));
  };
  const std::optional<std::string> name = (*request.params)["name"].stringValue();
  if (!name) {
    return invalid("tools/call requires a 'name'.");
  }
  if (!toolName(*name)) {
    return invalid("Unknown tool: " + *name);
  }
  const JSONValue* arguments = request.params->member("arguments");
  if (arguments && !arguments->objectValue()) {
    return invalid("'arguments' is not an object.");
  }
  const std::lock_guard oneAtATime(oneAtATime_);
  try {
    ToolCallResult result = tools_.handle(
        *name, arguments ? *arguments : none,
        {.cancellation = exchange.cancellation, .progressed = progressReport(request, exchange)});
    return CurrentRevision::success(std::move(request.id), std::move(result).toJSON());
  } catch (const Cancelled&) {
    return std::nullopt;
  }
}

}  // namespace tarnwell
