#pragma once

/// The message in the body of a POST, and the answer to it.
///
/// A message of the current revision of MCP (`CurrentRevision.h`) repeats in its headers what its body says:
///
///     MCP-Protocol-Version: 2026-07-28
///     Mcp-Method: tools/call
///     Mcp-Name: search_inbox
///
/// It counts as one when the body claims a revision, or when the first header is a date from 2026-07-28 on.
/// What does not fit together is refused with 400. So is a message that its revision refuses whatever the
/// method, and an unknown method gets 404. All other answers have 200, errors too.
///
/// Messages of older revisions have no such headers. Each of their answers has 200.
///
/// Threads: any.

#include <optional>
#include <string_view>

#include "MCP/HTTP/HTTPRequestHead.h"
#include "MCP/HTTP/HTTPResponse.h"
#include "MCP/MCPServer.h"

namespace tarnwell {

/// True when the answer takes a moment and does not wait for a call of a tool, whatever the body says.
bool isAnsweredAtOnce(const HTTPRequestHead& head);

/// 202 when the message has no answer. Absent when the exchange was cancelled.
std::optional<HTTPResponse> answerToPost(MCPServer& server, const HTTPRequestHead& head,
                                         std::string_view body, const MCPExchange& exchange);

}  // namespace tarnwell
