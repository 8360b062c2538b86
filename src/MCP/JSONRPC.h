#pragma once

/// JSON-RPC 2.0 messages, and their framing as one object a line.
///
/// Nothing here knows methods or streams. A message with an id, even null, is a request; one without an id is
/// a notification. Reading is tolerant: "jsonrpc" is only looked at, and unknown members are ignored. Batches
/// are not accepted.
///
/// Threads: plain values.

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

struct JSONRPCRequest {
  /// As sent, of any type. Absent for a notification.
  std::optional<JSONValue> id;
  std::string method;
  /// As sent, of any type.
  std::optional<JSONValue> params;
  /// "jsonrpc" is "2.0". Only the current revision of MCP asks for it.
  bool isVersion2 = false;

  bool isNotification() const { return !id; }

  /// Absent unless the bytes are a JSON object with a text as "method".
  static std::optional<JSONRPCRequest> parse(std::string_view data);

  /// Compares what is asked.
  bool operator==(const JSONRPCRequest& other) const {
    return id == other.id && method == other.method && params == other.params;
  }
};

/// Error codes of JSON-RPC 2.0, section 5.1.
/// Deliberate: `internalError` is never sent, because a failing tool gives a result with an error flag. And
/// `invalidRequest` is sent only in the current revision of MCP; before, a malformed request is a parse
/// error.
namespace JSONRPCErrorCode {
inline constexpr std::int64_t parseError = -32700;
inline constexpr std::int64_t invalidRequest = -32600;
inline constexpr std::int64_t methodNotFound = -32601;
inline constexpr std::int64_t invalidParams = -32602;
inline constexpr std::int64_t internalError = -32603;
}  // namespace JSONRPCErrorCode

namespace JSONRPC {

/// An absent id is sent as null.
JSONValue success(std::optional<JSONValue> id, JSONValue result);
JSONValue failure(std::optional<JSONValue> id, std::int64_t code, std::string message,
                  std::optional<JSONValue> data = std::nullopt);

}  // namespace JSONRPC

/// Cuts a stream of bytes into lines. A line ends in LF. One CR before the LF is dropped, and so are empty
/// lines. Accepts bytes of any kind and length, and reads each byte once.
class NDJSONFramer {
 public:
  /// Calls `use` with each line that this piece completes, in order. A line is valid during its call. A line
  /// that lies within the piece is not copied.
  template <std::invocable<std::string_view> Use>
  void push(std::string_view chunk, const Use& use);

  /// The lines that this piece completes, in order.
  std::vector<std::string> push(std::string_view chunk);

  /// The bytes of the line that has begun and not ended.
  std::size_t begunSize() const { return buffer_.size(); }

  /// At the end of the stream: the last line without an LF. Absent when there is none.
  std::optional<std::string> finish();

 private:
  static std::string_view withoutCarriageReturn(std::string_view line) {
    return line.ends_with('\r') ? line.substr(0, line.size() - 1) : line;
  }

  std::string buffer_;  // received after the last LF; contains no LF
};

template <std::invocable<std::string_view> Use>
void NDJSONFramer::push(std::string_view chunk, const Use& use) {
  for (std::size_t end; (end = chunk.find('\n')) != std::string_view::npos; chunk.remove_prefix(end + 1)) {
    std::string_view line = chunk.substr(0, end);
    std::string begun;
    if (!buffer_.empty()) {
      begun = std::exchange(buffer_, {}).append(line);
      line = begun;
    }
    if (line = withoutCarriageReturn(line); !line.empty()) {
      use(line);
    }
  }
  buffer_.append(chunk);
}

/// The compact value, and one LF.
std::string ndjsonFrame(const JSONValue& value);

}  // namespace tarnwell
