#pragma once

/// Revision 2026-07-28 of MCP: no handshake and no session. Each message says in `params._meta` which
/// revision it speaks and what its client can do:
///
///     {"jsonrpc":"2.0","id":1,"method":"tools/list","params":{"_meta":{
///       "io.modelcontextprotocol/protocolVersion":"2026-07-28",
///       "io.modelcontextprotocol/clientCapabilities":{}}}}
///
/// A message that claims a revision in this way is handled by the rules below, whatever it claims. Any other
/// message belongs to the revisions that begin with `initialize`. Messages of both kinds may come in any
/// order, because nothing is kept from one to the next.
///
/// Threads: all functions are pure.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "MCP/JSON/JSONValue.h"
#include "MCP/JSONRPC.h"

namespace tarnwell::CurrentRevision {

inline constexpr std::string_view version = "2026-07-28";

/// The error codes that this revision adds to those of JSON-RPC.
namespace ErrorCode {
/// A header of an HTTP request is missing, or says something else than the body.
inline constexpr std::int64_t headerMismatch = -32020;
inline constexpr std::int64_t unsupportedVersion = -32022;
}  // namespace ErrorCode

/// True when the message claims a revision. The value of the claim does not matter.
bool isClaimedBy(const JSONRPCRequest& request);

/// The revision that the message claims. Absent when it claims none, or one that is no text.
std::optional<std::string> claimedVersion(const JSONRPCRequest& request);

/// True for an id that an answer may carry: a text or an integer.
bool isUsableID(const std::optional<JSONValue>& id);

/// The answer to a request that cannot be handled whatever its method: because of its id, of "jsonrpc", of
/// the revision, or of another member of `_meta`, examined in this order. Absent when all is well.
std::optional<JSONValue> refusal(const JSONRPCRequest& request);

/// An answer with this result, "resultType" and the name of the server.
JSONValue success(std::optional<JSONValue> id, JSONObject result);

/// An answer with this error. It has no member "id" when the id is not usable.
JSONValue failure(const std::optional<JSONValue>& id, std::int64_t code, std::string message,
                  std::optional<JSONValue> data = std::nullopt);

/// The results of `server/discover` and `tools/list`.
JSONObject discoverResult();
JSONObject toolsListResult();

/// The token under which the client wants to hear of the progress of its request. Absent when it does not.
std::optional<JSONValue> progressToken(const JSONRPCRequest& request);

/// The notification that so many steps of a request are done.
JSONValue progress(JSONValue token, std::int64_t done, std::int64_t total);

}  // namespace tarnwell::CurrentRevision
