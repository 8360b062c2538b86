#pragma once

/// The MCP dispatcher: one incoming JSON-RPC message in, at most one response out.
///
/// It answers `initialize`, `ping`, `tools/list` and `tools/call`, and ignores notifications. It knows no
/// stream, so every transport can use it. It keeps no state of a client.
///
/// Threads: any. Requests are handled one at a time, each with its tool call to the end.

#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "MCP/JSONRPC.h"
#include "MCP/Tools/MCPTools.h"

namespace tarnwell {

class MCPServer {
 public:
  explicit MCPServer(MCPTools tools) : tools_(std::move(tools)) {}

  /// Takes one framed message as bytes, without its line end. Returns the compact response, or absent when
  /// there is nothing to send.
  std::optional<std::string> handleRaw(std::string_view data);

  /// The same for a message that was parsed already. Absent means that it was unreadable.
  std::optional<std::string> handleParsed(std::optional<JSONRPCRequest>&& request);

  std::optional<JSONValue> handle(JSONRPCRequest&& request);

 private:
  /// The answer to `initialize` when the client names no version.
  static constexpr std::string_view defaultProtocolVersion = "2024-11-05";

  JSONValue initializeResult(const std::optional<JSONValue>& params) const;
  JSONValue toolsCall(JSONRPCRequest request) const;

  std::mutex oneAtATime_;
  MCPTools tools_;
};

}  // namespace tarnwell
