#include "MCP/JSONRPC.h"

#include <utility>

namespace tarnwell {

namespace {

/// The line without one CR at its end; absent when nothing is left.
std::optional<std::string> withoutLineEnd(std::string line) {
  if (line.ends_with('\r')) {
    line.pop_back();
  }
  if (line.empty()) {
    return std::nullopt;
  }
  return line;
}

}  // namespace

std::optional<JSONRPCRequest> JSONRPCRequest::parse(std::string_view data) {
  std::optional<JSONValue> message = JSONValue::decode(data);
  if (!message) {
    return std::nullopt;
  }
  std::optional<std::string> method = (*message)["method"].stringValue();
  if (!method) {
    return std::nullopt;
  }
  return JSONRPCRequest{message->takeMember("id"), std::move(*method), message->takeMember("params")};
}

JSONValue JSONRPC::success(std::optional<JSONValue> id, JSONValue result) {
  return JSONObject{
      {"id", std::move(id).value_or(nullptr)}, {"jsonrpc", "2.0"}, {"result", std::move(result)}};
}

JSONValue JSONRPC::failure(std::optional<JSONValue> id, std::int64_t code, std::string message,
                           std::optional<JSONValue> data) {
  JSONObject error{{"code", code}, {"message", std::move(message)}};
  if (data) {
    error.emplace("data", std::move(*data));
  }
  return JSONObject{{"jsonrpc", "2.0"}, {"id", std::move(id).value_or(nullptr)}, {"error", std::move(error)}};
}

std::vector<std::string> NDJSONFramer::push(std::string_view chunk) {
  std::vector<std::string> lines;
  for (std::size_t end; (end = chunk.find('\n')) != std::string_view::npos; chunk.remove_prefix(end + 1)) {
    buffer_.append(chunk.substr(0, end));
    if (std::optional<std::string> line = withoutLineEnd(std::exchange(buffer_, {}))) {
      lines.push_back(std::move(*line));
    }
  }
  buffer_.append(chunk);
  return lines;
}

std::optional<std::string> NDJSONFramer::finish() { return withoutLineEnd(std::exchange(buffer_, {})); }

std::string ndjsonFrame(const JSONValue& value) { return value.serialized() + '\n'; }

}  // namespace tarnwell
