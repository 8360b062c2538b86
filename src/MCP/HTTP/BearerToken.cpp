#include "MCP/HTTP/BearerToken.h"

#include "Text/ASCIICase.h"

namespace tarnwell {

Authorization authorizationOf(const HTTPRequestHead& head, const Secret& token) {
  constexpr std::string_view scheme = "bearer";
  if (head.method == "OPTIONS" && head.contentLength == 0) {
    return Authorization::given;
  }
  if (head.authorizations.empty()) {
    return Authorization::missing;
  }
  if (head.authorizations.size() > 1) {
    return Authorization::repeated;
  }
  std::string_view credentials = head.authorizations.front().view();
  const std::size_t schemeEnd = credentials.find(' ');
  if (!equalsIgnoringASCIICase(credentials.substr(0, schemeEnd), scheme)) {
    return Authorization::missing;
  }
  // One blank or more (RFC 9110, section 11.4).
  const std::size_t begin = credentials.find_first_not_of(' ', scheme.size());
  credentials.remove_prefix(begin == std::string_view::npos ? credentials.size() : begin);
  return !token.empty() && token == Secret(credentials) ? Authorization::given : Authorization::wrong;
}

/// A challenge has at least one attribute, and a request without credentials is not told of an error (RFC
/// 6750, sections 3 and 3.1).
HTTPResponse authorizationRefusal(Authorization authorization) {
  switch (authorization) {
    case Authorization::wrong:
      return {.status = 401, .challenge = R"(Bearer error="invalid_token")"};
    case Authorization::repeated:
      return {.status = 400, .challenge = R"(Bearer error="invalid_request")"};
    case Authorization::given:
    case Authorization::missing:
      break;
  }
  return {.status = 401, .challenge = R"(Bearer realm="tarnwell")"};
}

}  // namespace tarnwell
