#include "MCP/JSONRPC.h"

namespace tarnwell {

namespace {

JSONValue response(std::optional<JSONValue>&& id, const char* outcomeKey, JSONValue&& outcome) {
  std::vector<JSONMember> members;
  members.reserve(3);
  members.emplace_back("id", id ? *std::move(id) : JSONValue());
  members.emplace_back("jsonrpc", "2.0");
  members.emplace_back(outcomeKey, std::move(outcome));
  return JSONObject(std::move(members));
}

/// Moves the member out of the object. Absent when there is none.
std::optional<JSONValue> taken(JSONObject& members, std::string_view key) {
  JSONValue* value = members.find(key);
  return value ? std::optional(std::move(*value)) : std::nullopt;
}

}  // namespace

std::optional<JSONRPCRequest> JSONRPCRequest::parse(std::string_view data) {
  std::optional<JSONValue> message = JSONValue::decode(data);
  std::optional<std::string> method = message ? (*message)["method"].stringValue() : std::nullopt;
  if (!method) {
    return std::nullopt;
  }
  JSONObject& members = *message->objectValue();
  return JSONRPCRequest{taken(members, "id"), *std::move(method), taken(members, "params"),
                        (*message)["jsonrpc"] == JSONValue("2.0")};
}

JSONValue JSONRPC::success(std::optional<JSONValue> id, JSONValue result) {
  return response(std::move(id), "result", std::move(result));
}

JSONValue JSONRPC::failure(std::optional<JSONValue> id, std::int64_t code, std::string message,
                           std::optional<JSONValue> data) {
  JSONObject error{{"code", code}, {"message", std::move(message)}};
  if (data) {
    error.emplace("data", std::move(*data));
  }
  return response(std::move(id), "error", std::move(error));
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
