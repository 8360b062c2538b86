#pragma once

/// The answers of the HTTP endpoint (RFC 9110, RFC 9112), from status to bytes.
///
///     HTTPResponse{200, "application/json", "{}"}.serialized();
///     // HTTP/1.1 200 OK, Content-Length: 2, Content-Type: application/json, Connection: close, ...
///
/// An endpoint that asks for a token lets pages of this machine send it, and says so in each answer.
///
/// Threads: a plain value.

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

enum class HTTPAccess { open, withToken };

struct HTTPResponse {
  int status;
  std::optional<std::string> contentType = std::nullopt;
  std::string body = {};
  /// How to ask again with the right to (WWW-Authenticate; RFC 9110, section 11.6.1).
  std::optional<std::string> challenge = std::nullopt;

  /// Tells a client that sent "Expect: 100-continue" to send its body (RFC 9110, section 15.2.1).
  static constexpr std::string_view interimContinue = "HTTP/1.1 100 Continue\r\n\r\n";

  /// "OK" for 200; "Unknown" for a status that the endpoint never sends.
  static std::string_view reason(int status);

  /// Status line, header block and body. Every answer has the same form: with its length, "Connection: close"
  /// and the permissions for browsers.
  std::string serialized(HTTPAccess access = HTTPAccess::open) const;

  bool operator==(const HTTPResponse&) const = default;
};

}  // namespace tarnwell
