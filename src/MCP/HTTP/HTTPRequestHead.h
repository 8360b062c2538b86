#pragma once

/// The header block of a request as far as the endpoint needs it (RFC 9112, sections 3 to 6): the method and
/// the length of the body. And the rule that tells whether the request may come from a foreign web page.
///
///     HTTPRequestHead head = HTTPRequestHead::parse("POST /mcp HTTP/1.1\r\ncontent-length: 5\r\n\r\n");
///     head.method;              // "POST"
///     head.contentLength;       // 5
///     isFromThisMachine(head);  // true
///
/// Any page in a browser can reach a loopback port. But a page cannot omit or choose two names that the
/// browser sends: the page's origin, and the host that was asked. This holds even when a foreign name server
/// gives that host the address 127.0.0.1. So both names must be those of this machine.
///
/// Accepts any bytes. A line that cannot be read is ignored.
///
/// Threads: a plain value; the functions are pure.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Secret.h"

namespace tarnwell {

struct HTTPRequestHead {
  /// The first word of the request line, as sent. The target is not read: every path is the same endpoint.
  std::string method;
  /// 0 when the length is missing or not a decimal number. A number that is too large becomes the greatest
  /// value. It must not become 0, because its body would then count as something else.
  std::uint64_t contentLength = 0;
  /// The header occurs more than once, with different values (RFC 9112, section 6.3).
  bool hasConflictingLengths = false;
  /// The values of every Host and of every Origin, as sent.
  std::vector<std::string> hosts{};
  std::vector<std::string> origins{};
  /// The values of every Authorization.
  std::vector<Secret> authorizations{};
  /// MCP-Protocol-Version, Mcp-Method and Mcp-Name. The values of a header that occurs more than once are
  /// joined by commas (RFC 9110, section 5.3).
  std::optional<std::string> protocolVersion{};
  std::optional<std::string> mcpMethod{};
  std::optional<std::string> mcpName{};
  /// The client may wait for an interim answer before it sends the body (RFC 9110, section 10.1.1).
  bool expectsContinue = false;

  /// Reads the block from the request line on, with or without the blank line at its end.
  static HTTPRequestHead parse(std::string_view block);

  bool operator==(const HTTPRequestHead&) const = default;
};

/// True when every Host and every Origin names this machine. Also true when there is none.
bool isFromThisMachine(const HTTPRequestHead& head);

/// "localhost", an address of 127.0.0.0/8 as four decimal numbers, or "[::1]". Each may have a port.
bool isLoopbackAuthority(std::string_view authority);

/// "http://" or "https://" and a loopback authority, nothing else. "null" does not count.
bool isLoopbackOrigin(std::string_view origin);

}  // namespace tarnwell
