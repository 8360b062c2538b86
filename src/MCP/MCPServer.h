#pragma once

/// The MCP dispatcher: one incoming JSON-RPC message in, at most one response out.
///
/// A message that claims a revision (`CurrentRevision.h`) gets `server/discover`, `tools/list` and
/// `tools/call` of revision 2026-07-28. Any other message gets the older revisions: `initialize`, `ping`,
/// `tools/list` and `tools/call`. This is decided for each message by itself, in `handle`. Notifications are
/// ignored. The server knows no stream, so every transport can use it. It keeps no state of a client.
///
/// Threads: any. Messages of the older revisions are handled one at a time, each with its tool call to the
/// end. Of the current revision this holds for calls of tools alone.

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "MCP/JSONRPC.h"
#include "MCP/Tools/MCPTools.h"

namespace tarnwell {

/// What a message of the current revision can do besides its answer. Older ones have no part in it.
struct MCPExchange {
  /// Gives the call of a tool up. There is no answer then, unless the call ends all the same.
  Cancellation cancellation{};
  /// Sends a notification before the answer. Empty when the transport cannot. Called on the thread that
  /// handles the message.
  std::function<void(const JSONValue&)> notify{};
};

class MCPServer {
 public:
  explicit MCPServer(MCPTools tools) : tools_(std::move(tools)) {}

  /// Takes one framed message as bytes, without its line end. Returns the compact response, or absent when
  /// there is nothing to send.
  std::optional<std::string> handleRaw(std::string_view data);

  /// The same for a message that was parsed already. Absent means that it was unreadable.
  std::optional<std::string> handleParsed(std::optional<JSONRPCRequest>&& request,
                                          const MCPExchange& exchange = {});

  std::optional<JSONValue> handle(JSONRPCRequest&& request, const MCPExchange& exchange = {});

  /// True for a request whose handling runs no tool and does not wait for one.
  static bool isHandledAtOnce(const JSONRPCRequest& request);

 private:
  /// The answer to `initialize` when the client names no version.
  static constexpr std::string_view defaultProtocolVersion = "2024-11-05";

  std::optional<JSONValue> handleWithHandshake(JSONRPCRequest&& request);
  JSONValue initializeResult(const std::optional<JSONValue>& params) const;
  JSONValue toolsCall(JSONRPCRequest request) const;

  std::optional<JSONValue> handleCurrent(JSONRPCRequest&& request, const MCPExchange& exchange);
  std::optional<JSONValue> currentToolsCall(JSONRPCRequest&& request, const MCPExchange& exchange);

  std::mutex oneAtATime_;
  MCPTools tools_;
};

}  // namespace tarnwell
