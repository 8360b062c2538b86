#pragma once

/// Messages of the current revision, as clients send them.

#include <string>
#include <string_view>

namespace tarnwell::test {

/// The parts of a message, as JSON. An empty text leaves the member out.
struct MessageParts {
  std::string id = "1";
  std::string jsonrpc = R"("2.0")";
  std::string version = R"("2026-07-28")";
  std::string capabilities = "{}";
  /// More members of `_meta`, each after a comma.
  std::string moreMeta{};
};

/// `params` are members of the parameters, beside `_meta`.
inline std::string request(std::string_view method, std::string_view params = "",
                           const MessageParts& parts = {}) {
  std::string text = R"({"method":")" + std::string(method) + R"(","jsonrpc":)" + parts.jsonrpc;
  if (!parts.id.empty()) {
    text += R"(,"id":)" + parts.id;
  }
  text += R"(,"params":{)" + std::string(params) + (params.empty() ? "" : ",") +
          R"("_meta":{"io.modelcontextprotocol/protocolVersion":)" + parts.version;
  if (!parts.capabilities.empty()) {
    text += R"(,"io.modelcontextprotocol/clientCapabilities":)" + parts.capabilities;
  }
  return text + parts.moreMeta + "}}}";
}

/// A line that calls a tool.
inline std::string lineOfCall(std::string_view tool, std::string_view id, std::string_view arguments = "{}",
                              std::string_view moreMeta = "") {
  return request("tools/call",
                 R"("name":")" + std::string(tool) + R"(","arguments":)" + std::string(arguments),
                 {.id = std::string(id), .moreMeta = std::string(moreMeta)}) +
         "\n";
}

/// The line that cancels a request.
inline std::string lineOfCancel(std::string_view id) {
  return R"({"jsonrpc":"2.0","method":"notifications/cancelled","params":{"requestId":)" + std::string(id) +
         "}}\n";
}

}  // namespace tarnwell::test
