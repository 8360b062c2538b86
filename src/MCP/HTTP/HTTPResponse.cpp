#include "MCP/HTTP/HTTPResponse.h"

namespace tarnwell {

std::string_view HTTPResponse::reason(int status) {
  switch (status) {
    case 200:
      return "OK";
    case 202:
      return "Accepted";
    case 204:
      return "No Content";
    case 400:
      return "Bad Request";
    case 401:
      return "Unauthorized";
    case 403:
      return "Forbidden";
    case 404:
      return "Not Found";
    case 405:
      return "Method Not Allowed";
    case 413:
      return "Payload Too Large";
    case 431:
      return "Request Header Fields Too Large";
    default:
      return "Unknown";
  }
}

/// Deliberate: 204 also carries "Content-Length: 0", which RFC 9110, section 8.6 forbids. To a client the
/// answer ends with its header block whatever the length says (RFC 9112, section 6.3), and one form for all
/// answers is simpler.
/// Deliberate: every origin is allowed here, although requests from foreign pages are refused. The refusal
/// comes before the request is handled. This header only lets a page of this machine read its answer.
std::string HTTPResponse::serialized(HTTPAccess access) const {
  std::string text = "HTTP/1.1 " + std::to_string(status) + " ";
  text.append(reason(status));
  text += "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n";
  if (contentType) {
    text += "Content-Type: " + *contentType + "\r\n";
  }
  if (challenge) {
    text += "WWW-Authenticate: " + *challenge + "\r\n";
  }
  text +=
      "Connection: close\r\n"
      "Access-Control-Allow-Origin: *\r\n"
      "Access-Control-Allow-Methods: POST, OPTIONS\r\n"
      "Access-Control-Allow-Headers: Content-Type";
  text += access == HTTPAccess::withToken ? ", Authorization\r\n\r\n" : "\r\n\r\n";
  return text + body;
}

}  // namespace tarnwell
