#pragma once

/// What the endpoint needs to know of a request's header block (RFC 9112, sections 3 to 6), and the rule by
/// which a request may have come from a web page.
///
///     HTTPRequestHead head = HTTPRequestHead::parse("POST /mcp HTTP/1.1\r\ncontent-length: 5\r\n\r\n");
///     head.method;              // "POST"
///     head.contentLength;       // 5
///     isFromThisMachine(head);  // true
///
/// Any page in a browser can reach a loopback port. What it cannot do is leave out or choose the names that
/// the browser sends along: its own origin, and the host that it was told to ask, even where a foreign name
/// server has given that host the address 127.0.0.1. So both must name this machine.
///
/// Any bytes are accepted; a line that cannot be read counts for nothing.
///
/// Threads: a plain value; the functions are pure.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell {

struct HTTPRequestHead {
  /// The first word of the request line, as sent. The target is of no importance: every path is the same
  /// endpoint.
  std::string method;
  /// 0 when the length is missing or not a decimal number. The greatest value stands for any number that
  /// does not fit: it must not be taken for none, or its body would be taken for something else.
  std::uint64_t contentLength = 0;
  /// The header is there more than once, with different meanings (RFC 9112, section 6.3).
  bool hasConflictingLengths = false;
  /// The values of every Host and of every Origin, as sent.
  std::vector<std::string> hosts;
  std::vector<std::string> origins;
  /// The client may wait for an invitation before it sends the body (RFC 9110, section 10.1.1).
  bool expectsContinue = false;

  /// The block from the request line on, with or without the blank line that ends it.
  static HTTPRequestHead parse(std::string_view block);

  bool operator==(const HTTPRequestHead&) const = default;
};

/// True when every Host and every Origin names this machine, also when there is none.
bool isFromThisMachine(const HTTPRequestHead& head);

/// "localhost", an address of 127.0.0.0/8 in four decimal numbers, or "[::1]"; each with or without a port.
bool isLoopbackAuthority(std::string_view authority);

/// "http://" or "https://" and a loopback authority, and nothing else: "null" is none.
bool isLoopbackOrigin(std::string_view origin);

}  // namespace tarnwell
