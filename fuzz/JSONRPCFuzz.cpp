// Lines of a client, cut at any place, go through the framer, the JSON reader and the dispatcher to tools
// whose connections all fail. Each request gets one answer of one line, with its own id, by the rules of its
// revision. The queue keeps what nobody cancels. The JSON library must accept the same texts and read the
// same values.

#include "Fuzzing.h"
#include "IMAP/Connection/ByteStream.h"
#include "IMAP/Connection/IMAPConnection.h"
#include "IMAP/Connection/IMAPError.h"
#include "MCP/CurrentRevision.h"
#include "MCP/MCPServer.h"
#include "MCP/RequestQueue.h"
#include "SilentLog.h"
#include "support/InMemorySecretItems.h"
#include "support/ReferenceJSON.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell {
namespace {

class UnreachableServer : public ByteStream {
 public:
  void endBy(std::chrono::steady_clock::time_point) override {}
  void connect() override { throw IMAPError::connectionFailed("nobody there"); }
  void send(std::string_view) override { throw IMAPError::connectionClosed(); }
  std::string_view receive() override { return {}; }
  void close() noexcept override {}
};

/// Allows everything and has an account, so a call reaches its connection.
class Bridge {
 public:
  Bridge() {
    AppConfig config;
    config.email = "user@example.org";
    config.safety.readOnly = false;
    config.safety.allowTrash = true;
    store_.save(config);
    items_.put({.service = "service", .account = config.email, .accessGroup = std::nullopt}, "secret");
  }

  std::optional<std::string> handle(std::string_view line) {
    items_.calls.clear();
    return server_.handleRaw(line);
  }

 private:
  static std::unique_ptr<IMAPClient> unconnectedClient(std::string email, Secret password) {
    const auto makeConnection = [] {
      return std::make_unique<IMAPConnection>(std::make_unique<UnreachableServer>());
    };
    return std::make_unique<IMAPClient>(makeConnection, std::move(email), std::move(password));
  }

  fuzz::SilentLog silentLog_;
  test::TemporaryDirectory directory_;
  ConfigStore store_{directory_.path()};
  test::InMemorySecretItems items_;
  MCPServer server_{MCPTools(store_, KeychainStore("service", std::nullopt, items_),
                             EmailRiskDetector::shared(),
                             [](std::string, std::int64_t, std::string email, Secret password) {
                               return unconnectedClient(std::move(email), std::move(password));
                             })};
};

std::vector<std::string> linesOf(std::string_view stream, const fuzz::Cuts& cuts) {
  NDJSONFramer framer;
  std::vector<std::string> lines;
  cuts.forEachPiece(stream, [&](std::string_view piece) {
    for (std::string& line : framer.push(piece)) {
      lines.push_back(std::move(line));
    }
  });
  if (std::optional<std::string> last = framer.finish()) {
    lines.push_back(*std::move(last));
  }
  return lines;
}

/// True for a message to which its revision has no answer.
bool asksForNothing(const JSONRPCRequest& request) {
  return request.isNotification() ||
         (!CurrentRevision::isClaimedBy(request) &&
          (request.method.ends_with("initialized") || request.method == "notifications/cancelled"));
}

void requireID(const JSONValue& answer, const std::optional<JSONRPCRequest>& request) {
  const JSONValue* id = answer.member("id");
  if (request && CurrentRevision::isClaimedBy(*request) && !CurrentRevision::isUsableID(request->id)) {
    fuzz::require(!id, "an id that nobody can use is not sent back");
    fuzz::require(answer["error"]["code"] == JSONValue(JSONRPCErrorCode::invalidRequest),
                  "an id that nobody can use is an error");
  } else {
    fuzz::require(id && *id == (request ? *request->id : JSONValue()), "an answer has the id of its request");
  }
}

void requireCurrentForm(const JSONValue& answer) {
  if (const JSONValue* result = answer.member("result")) {
    fuzz::require((*result)["resultType"] == JSONValue("complete"), "a result is complete");
    return;
  }
  const std::int64_t code = answer["error"]["code"].intValue().value_or(0);
  fuzz::require(code == JSONRPCErrorCode::invalidRequest || code == JSONRPCErrorCode::methodNotFound ||
                    code == JSONRPCErrorCode::invalidParams ||
                    code == CurrentRevision::ErrorCode::unsupportedVersion,
                "an error of the current revision has one of its codes");
}

void requireAnswer(const std::string& answer, const std::optional<JSONRPCRequest>& request) {
  fuzz::require(answer.find('\n') == std::string::npos, "an answer is one line");
  const std::optional<JSONValue> value = JSONValue::decode(answer);
  fuzz::require(value.has_value(), "an answer is JSON");
  fuzz::require((*value)["jsonrpc"] == JSONValue("2.0"), "an answer is one of JSON-RPC 2.0");
  fuzz::require((value->member("result") == nullptr) != (value->member("error") == nullptr),
                "an answer has a result or an error");
  requireID(*value, request);
  if (request && CurrentRevision::isClaimedBy(*request)) {
    requireCurrentForm(*value);
  }
}

/// Pushes every line, then handles what is left.
void requireQueue(const std::vector<std::string>& lines) {
  RequestQueue queue({.count = lines.size() + 1, .bytes = SIZE_MAX});
  std::size_t cancellations = 0;
  for (const std::string& line : lines) {
    std::optional<JSONRPCRequest> request = JSONRPCRequest::parse(line);
    cancellations += request && request->method == "notifications/cancelled" ? 1 : 0;
    queue.push(std::move(request), line.size());
  }
  queue.end();
  std::size_t handled = 0;
  while (const std::optional<RequestQueue::Message> message = queue.next()) {
    const bool isCurrent = message->request && CurrentRevision::isClaimedBy(*message->request);
    fuzz::require(message->cancellation.isCancelled() == isCurrent,
                  "the end of the input cancels the current revision alone");
    ++handled;
  }
  fuzz::require(handled + cancellations <= lines.size(), "no message is handled twice");
  fuzz::require(cancellations > 0 || handled == lines.size(), "what nobody cancels is handled");
}

void requireReading(std::string_view line) {
  const std::optional<JSONValue> value = JSONValue::decode(line);
  const std::optional<JSONValue> expected = test::decodedByLibrary(line);
  fuzz::require(test::areSameToTheBit(value, expected), "a document reads as the library reads it");
  if (value) {
    fuzz::require(JSONValue::decode(value->serialized()) == value, "the compact form gives the value back");
    fuzz::require(JSONValue::decode(value->prettyString()) == value, "the pretty form gives the value back");
  }
}

}  // namespace
}  // namespace tarnwell

FUZZ_TARGET(std::string_view input) {
  static Bridge bridge;
  const Cuts cuts(input);
  const std::vector<std::string> lines = linesOf(input, cuts);
  require(lines == linesOf(input, Cuts::intoSingleBytes()), "the cuts do not change the lines");
  requireQueue(lines);
  for (const std::string& line : lines) {
    requireReading(line);
    const std::optional<JSONRPCRequest> request = JSONRPCRequest::parse(line);
    const std::optional<std::string> answer = bridge.handle(line);
    require(answer || (request && asksForNothing(*request)), "only what asks for nothing has no answer");
    if (answer) {
      requireAnswer(*answer, request);
    }
  }
}
