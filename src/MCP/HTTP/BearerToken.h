#pragma once

/// Whether a request knows the token that the endpoint asks for (RFC 6750, sections 2.1 and 3).
///
///     Authorization: Bearer fJ2...
///
/// Deliberate: a preflight needs no token. A browser sends it without credentials (Fetch standard, section
/// 4.8), and its answer tells nothing but which methods and headers there are. An OPTIONS request that
/// announces a body is no preflight.
///
/// Threads: the functions are pure.

#include "Core/Secret.h"
#include "MCP/HTTP/HTTPRequestHead.h"
#include "MCP/HTTP/HTTPResponse.h"

namespace tarnwell {

enum class Authorization {
  given,     // or not needed
  missing,   // no Authorization header, or one of another scheme
  wrong,     // another token, or none that can be read
  repeated,  // several headers, even when they are the same
};

/// An empty token authorizes nobody.
Authorization authorizationOf(const HTTPRequestHead& head, const Secret& token);

/// The answer to what is not `given`: 401, or 400 for several headers, with the reason for the client.
HTTPResponse authorizationRefusal(Authorization authorization);

}  // namespace tarnwell
