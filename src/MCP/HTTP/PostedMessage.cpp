#include "MCP/HTTP/PostedMessage.h"

#include <algorithm>
#include <string>
#include <utility>

#include "MCP/CurrentRevision.h"
#include "Text/ASCIICase.h"

namespace tarnwell {

namespace {

constexpr std::string_view callMethod = "tools/call";

/// Four digits, two and two, with hyphens between them.
bool isDate(std::string_view text) {
  constexpr std::string_view form = "dddd-dd-dd";
  return std::ranges::equal(
      text, form, [](char byte, char wanted) { return wanted == 'd' ? isASCIIDigit(byte) : byte == wanted; });
}

bool namesCurrentRevision(const HTTPRequestHead& head) {
  const std::optional<std::string>& version = head.protocolVersion;
  return version && isDate(*version) && *version >= CurrentRevision::version;
}

/// RFC 4648, section 4.
std::string base64(std::string_view bytes) {
  constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  for (; !bytes.empty(); bytes.remove_prefix(std::min<std::size_t>(3, bytes.size()))) {
    const auto byteAt = [bytes](std::size_t index) -> std::uint32_t {
      return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
    };
    const std::uint32_t group = byteAt(0) << 16 | byteAt(1) << 8 | byteAt(2);
    text += digits[group >> 18];
    text += digits[group >> 12 & 63];
    text += bytes.size() > 1 ? digits[group >> 6 & 63] : '=';
    text += bytes.size() > 2 ? digits[group & 63] : '=';
  }
  return text;
}

/// A header cannot hold every name, so a name may come as base64 within marks.
bool saysName(const std::optional<std::string>& header, std::string_view name) {
  constexpr std::string_view begin = "=?base64?";
  constexpr std::string_view end = "?=";
  const auto isPlain = [](char byte) { return (byte >= ' ' && byte <= '~') || byte == '\t'; };
  if (header && header->starts_with(begin) && header->ends_with(end)) {
    return *header == std::string(begin) + base64(name) + std::string(end);
  }
  return header == name && std::ranges::all_of(name, isPlain);
}

/// The answer to a request whose headers do not say what its body says. Absent when they do, or when the
/// request is refused for a reason that comes before.
std::optional<JSONValue> headerRefusal(const HTTPRequestHead& head, const JSONRPCRequest& request) {
  const auto refused = [&request](std::string_view header) {
    return CurrentRevision::failure(request.id, CurrentRevision::ErrorCode::headerMismatch,
                                    "Header missing or different from the body: " + std::string(header));
  };
  if (!CurrentRevision::isUsableID(request.id) || !request.isVersion2) {
    return std::nullopt;
  }
  const std::optional<std::string> claimed = CurrentRevision::claimedVersion(request);
  if (claimed ? head.protocolVersion != claimed : request.method == "initialize") {
    return refused("MCP-Protocol-Version");
  }
  if (claimed != CurrentRevision::version) {
    return std::nullopt;
  }
  if (head.mcpMethod != request.method) {
    return refused("Mcp-Method");
  }
  const std::optional<std::string> name =
      request.method == callMethod && request.params ? (*request.params)["name"].stringValue() : std::nullopt;
  if (name && !saysName(head.mcpName, *name)) {
    return refused("Mcp-Name");
  }
  return std::nullopt;
}

HTTPResponse response(int status, const JSONValue& answer) {
  return {status, "application/json", answer.serialized()};
}

}  // namespace

/// A request with these headers and the method "tools/call" in its body is refused.
bool isAnsweredAtOnce(const HTTPRequestHead& head) {
  return namesCurrentRevision(head) && head.mcpMethod != callMethod;
}

std::optional<HTTPResponse> answerToPost(MCPServer& server, const HTTPRequestHead& head,
                                         std::string_view body, const MCPExchange& exchange) {
  std::optional<JSONRPCRequest> request = JSONRPCRequest::parse(body);
  const bool isCurrent = namesCurrentRevision(head) || (request && CurrentRevision::isClaimedBy(*request));
  if (!isCurrent) {
    std::optional<std::string> answer = server.handleParsed(std::move(request));
    return answer ? HTTPResponse{200, "application/json", *std::move(answer)} : HTTPResponse{202};
  }
  if (!request) {
    return response(400, CurrentRevision::failure(std::nullopt, JSONRPCErrorCode::parseError, "Parse error"));
  }
  if (request->isNotification()) {
    return HTTPResponse{202};
  }
  if (const std::optional<JSONValue> refusal = headerRefusal(head, *request)) {
    return response(400, *refusal);
  }
  if (const std::optional<JSONValue> refusal = CurrentRevision::refusal(*request)) {
    return response(400, *refusal);
  }
  const std::optional<JSONValue> answer = server.handle(*std::move(request), exchange);
  if (!answer) {
    return std::nullopt;
  }
  const bool isUnknownMethod = (*answer)["error"]["code"] == JSONValue(JSONRPCErrorCode::methodNotFound);
  return response(isUnknownMethod ? 404 : 200, *answer);
}

}  // namespace tarnwell
