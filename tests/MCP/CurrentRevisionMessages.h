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

}  // namespace tarnwell::test
