#include "MCP/HTTP/HTTPRequestHead.h"

#include <algorithm>
#include <limits>

#include "Text/ASCIICase.h"
#include "Text/DecimalNumber.h"

namespace tarnwell {

namespace {

constexpr std::string_view lineEnd = "\r\n";
constexpr std::string_view blanks = " \t";

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(blanks);
  if (begin == std::string_view::npos) {
    return {};
  }
  return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// Removes the text before the separator, and the separator, and returns that text.
std::string_view takeUntil(std::string_view& text, std::string_view separator) {
  const std::size_t position = text.find(separator);
  const std::string_view taken = text.substr(0, position);
  text.remove_prefix(position == std::string_view::npos ? text.size() : position + separator.size());
  return taken;
}

/// Accepts digits only. A number that is too large becomes the greatest number.
std::optional<std::uint64_t> boundedNumber(std::string_view text) {
  if (text.empty() || !std::ranges::all_of(text, isASCIIDigit)) {
    return std::nullopt;
  }
  constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();
  return decimalNumber<std::uint64_t>(text).value_or(greatest);
}

/// Four numbers without leading zeros, because some programs read those as octal (RFC 3986, section 3.2.2).
bool isLoopbackAddress(std::string_view text) {
  constexpr std::size_t partCount = 4;
  for (std::size_t index = 0; index < partCount; ++index) {
    const bool isLast = index + 1 == partCount;
    const bool hasMore = text.find('.') != std::string_view::npos;
    const std::string_view part = takeUntil(text, ".");
    const std::optional<std::uint8_t> number = decimalNumber<std::uint8_t>(part);
    if (isLast == hasMore || !number || (part.size() > 1 && part.front() == '0') ||
        (index == 0 && number != 127)) {
      return false;
    }
  }
  return true;
}

void keep(std::optional<std::string>& header, std::string_view value) {
  header = header ? *header + ", " + std::string(value) : std::string(value);
}

/// The port after the colon may be missing (RFC 3986, section 3.2.3).
bool isPort(std::string_view text) { return text.empty() || decimalNumber<std::uint16_t>(text).has_value(); }

}  // namespace

bool isLoopbackAuthority(std::string_view authority) {
  constexpr std::string_view ipv6 = "[::1]";
  const std::size_t nameLength = authority.starts_with(ipv6) ? ipv6.size() : authority.find(':');
  const std::string_view name = authority.substr(0, nameLength);
  const std::string_view port = authority.substr(name.size());
  return (name == ipv6 || equalsIgnoringASCIICase(name, "localhost") || isLoopbackAddress(name)) &&
         (port.empty() || (port.front() == ':' && isPort(port.substr(1))));
}

bool isLoopbackOrigin(std::string_view origin) {
  for (const std::string_view scheme : {"http://", "https://"}) {
    if (startsWithIgnoringASCIICase(origin, scheme)) {
      return isLoopbackAuthority(origin.substr(scheme.size()));
    }
  }
  return false;
}

/// Deliberate: a request without a Host header is accepted. The rule is against browsers, which always send
/// it. Only other programs leave it out, and HTTP/1.0 has no such header.
bool isFromThisMachine(const HTTPRequestHead& head) {
  return std::ranges::all_of(head.hosts, isLoopbackAuthority) &&
         std::ranges::all_of(head.origins, isLoopbackOrigin);
}

/// Deliberate: "Transfer-Encoding" is not read. A chunked body has no announced length and counts as empty.
/// Every connection carries one request, so its bytes are never taken for another request.
HTTPRequestHead HTTPRequestHead::parse(std::string_view block) {
  HTTPRequestHead head;
  const std::string_view requestLine = takeUntil(block, lineEnd);
  head.method = requestLine.substr(0, requestLine.find(' '));

  std::optional<std::uint64_t> length;
  while (!block.empty()) {
    std::string_view value = takeUntil(block, lineEnd);
    // Blanks before the colon are invalid, but they must not hide a header.
    const std::string_view name = trimmed(takeUntil(value, ":"));
    value = trimmed(value);
    if (equalsIgnoringASCIICase(name, "content-length")) {
      const std::uint64_t meant = boundedNumber(value).value_or(0);
      head.hasConflictingLengths = head.hasConflictingLengths || length.value_or(meant) != meant;
      length = meant;
    } else if (equalsIgnoringASCIICase(name, "host")) {
      head.hosts.emplace_back(value);
    } else if (equalsIgnoringASCIICase(name, "origin")) {
      head.origins.emplace_back(value);
    } else if (equalsIgnoringASCIICase(name, "authorization")) {
      head.authorizations.emplace_back(value);
    } else if (equalsIgnoringASCIICase(name, "mcp-protocol-version")) {
      keep(head.protocolVersion, value);
    } else if (equalsIgnoringASCIICase(name, "mcp-method")) {
      keep(head.mcpMethod, value);
    } else if (equalsIgnoringASCIICase(name, "mcp-name")) {
      keep(head.mcpName, value);
    } else if (equalsIgnoringASCIICase(name, "expect")) {
      // HTTP/1.0 has no interim answers.
      head.expectsContinue =
          requestLine.ends_with(" HTTP/1.1") && equalsIgnoringASCIICase(value, "100-continue");
    }
  }
  head.contentLength = length.value_or(0);
  return head;
}

}  // namespace tarnwell
