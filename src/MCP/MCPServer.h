#pragma once

/// The MCP dispatcher: one incoming JSON-RPC message in, at most one response out.
///
/// It knows the methods `initialize`, `ping`, `tools/list` and `tools/call` and swallows notifications. It
/// knows no stream, so every transport can use it, and keeps no state for a client.
///
/// Threads: any; requests are handled one at a time, each completely, its tool call included.

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

  /// One framed message, without its line end, as bytes; the compact response, or absent when nothing is
  /// to be sent.
  std::optional<std::string> handleRaw(std::string_view data);

  std::optional<JSONValue> handle(JSONRPCRequest&& request);

 private:
  /// Answers `initialize` when the client names no version.
  static constexpr std::string_view defaultProtocolVersion = "2024-11-05";

  JSONValue initializeResult(const std::optional<JSONValue>& params) const;
  JSONValue toolsCall(JSONRPCRequest request) const;

  std::mutex oneAtATime_;
  MCPTools tools_;
};

}  // namespace tarnwell
