#include "MCP/HTTP/HTTPRequestHead.h"

#include <algorithm>
#include <limits>
#include <optional>

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

/// Takes what stands before the separator, and the separator, off the text.
std::string_view takeUntil(std::string_view& text, std::string_view separator) {
  const std::size_t position = text.find(separator);
  const std::string_view taken = text.substr(0, position);
  text.remove_prefix(position == std::string_view::npos ? text.size() : position + separator.size());
  return taken;
}

/// Digits and nothing else; the greatest number when they mean one that does not fit.
std::optional<std::uint64_t> boundedNumber(std::string_view text) {
  if (text.empty() || !std::ranges::all_of(text, isASCIIDigit)) {
    return std::nullopt;
  }
  constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();
  return decimalNumber<std::uint64_t>(text).value_or(greatest);
}

/// Four numbers without leading zeros, which some programs read as octal (RFC 3986, section 3.2.2).
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

/// A port may be left out behind its colon (RFC 3986, section 3.2.3).
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

/// Deliberate: a request without a Host header passes. Only programs leave it out (HTTP/1.0 knows none); a
/// browser always sends it, and browsers are what the rule is for.
/// Deliberate: "Transfer-Encoding" is not read. A chunked body has no announced length, so it counts as
/// empty, and since every connection carries one request its bytes are never taken for another one.
HTTPRequestHead HTTPRequestHead::parse(std::string_view block) {
  HTTPRequestHead head;
  const std::string_view requestLine = takeUntil(block, lineEnd);
  head.method = requestLine.substr(0, requestLine.find(' '));

  std::optional<std::uint64_t> length;
  while (!block.empty()) {
    std::string_view value = takeUntil(block, lineEnd);
    // Blanks before the colon are no part of a valid line, but must not hide a header either.
    const std::string_view name = trimmed(takeUntil(value, ":"));
    value = trimmed(value);
    if (equalsIgnoringASCIICase(name, "content-length")) {
      const std::uint64_t meant = boundedNumber(value).value_or(0);
      head.hasConflictingLengths = head.hasConflictingLengths || length.value_or(meant) != meant;
      length = meant;
    } else if (equalsIgnoringASCIICase(name, "host")) {
      head.isFromThisMachine = head.isFromThisMachine && isLoopbackAuthority(value);
    } else if (equalsIgnoringASCIICase(name, "origin")) {
      head.isFromThisMachine = head.isFromThisMachine && isLoopbackOrigin(value);
    } else if (equalsIgnoringASCIICase(name, "expect")) {
      // HTTP/1.0 knows no interim answers.
      head.expectsContinue =
          requestLine.ends_with(" HTTP/1.1") && equalsIgnoringASCIICase(value, "100-continue");
    }
  }
  head.contentLength = length.value_or(0);
  return head;
}

}  // namespace tarnwell
