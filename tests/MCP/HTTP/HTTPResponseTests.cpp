#include "MCP/HTTP/HTTPResponse.h"

#include <gtest/gtest.h>

namespace tarnwell {
namespace {

const std::string closing =
    "Connection: close\r\n"
    "Access-Control-Allow-Origin: *\r\n"
    "Access-Control-Allow-Methods: POST, OPTIONS\r\n"
    "Access-Control-Allow-Headers: Content-Type\r\n"
    "\r\n";

TEST(HTTPResponseBytes, haveAFixedOrder) {
  EXPECT_EQ((HTTPResponse{200, "application/json", "{}"}.serialized()),
            "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nContent-Type: application/json\r\n" + closing + "{}");
}

TEST(HTTPResponseBytes, lengthCountsBytes) {
  EXPECT_EQ((HTTPResponse{405, "text/plain", "é\n"}.serialized()),
            "HTTP/1.1 405 Method Not Allowed\r\nContent-Length: 3\r\nContent-Type: text/plain\r\n" + closing +
                "é\n");
}

TEST(HTTPResponseBytes, withoutABodyTheLengthIsZeroAlsoForNoContent) {
  const std::pair<int, const char*> rows[] = {
      {202, "Accepted"},          {204, "No Content"},
      {400, "Bad Request"},       {401, "Unauthorized"},
      {403, "Forbidden"},         {404, "Not Found"},
      {413, "Payload Too Large"}, {431, "Request Header Fields Too Large"},
  };
  for (const auto& [status, reason] : rows) {
    EXPECT_EQ(HTTPResponse{status}.serialized(),
              "HTTP/1.1 " + std::to_string(status) + " " + reason + "\r\nContent-Length: 0\r\n" + closing);
  }
}

TEST(HTTPResponseBytes, challengeFollowsTheContentType) {
  EXPECT_EQ((HTTPResponse{400, "text/plain", "x", "Bearer a=\"b\""}.serialized()),
            "HTTP/1.1 400 Bad Request\r\nContent-Length: 1\r\nContent-Type: text/plain\r\n"
            "WWW-Authenticate: Bearer a=\"b\"\r\n" +
                closing + "x");
}

TEST(HTTPResponseBytes, withATokenPagesMaySendIt) {
  std::string expected = HTTPResponse{204}.serialized();
  expected.insert(expected.find("Content-Type") + std::string_view("Content-Type").size(), ", Authorization");
  EXPECT_EQ(HTTPResponse{204}.serialized(HTTPAccess::withToken), expected);
}

TEST(HTTPResponseBytes, anyOriginIsNamedAsAllowed) {
  EXPECT_NE(HTTPResponse{403}.serialized().find("\r\nAccess-Control-Allow-Origin: *\r\n"), std::string::npos);
}

}  // namespace
}  // namespace tarnwell
