#include "MCP/JSONRPC.h"

namespace tarnwell {

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
  push(chunk, [&lines](std::string_view line) { lines.emplace_back(line); });
  return lines;
}

std::optional<std::string> NDJSONFramer::finish() {
  std::string line = std::exchange(buffer_, {});
  line.resize(withoutCarriageReturn(line).size());
  return line.empty() ? std::nullopt : std::optional(std::move(line));
}

std::string ndjsonFrame(const JSONValue& value) { return value.serialized() + '\n'; }

}  // namespace tarnwell
