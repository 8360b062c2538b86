#include "MCP/HTTP/BearerToken.h"

#include <gtest/gtest.h>

#include "MCP/HTTP/HTTPRequestReader.h"
#include "support/RowName.h"

namespace tarnwell {
namespace {

constexpr const char* token = "fJ2_kQ-9Zz";

struct Row {
  const char* name;
  /// With "%" for the token.
  std::string headers;
  Authorization expected;
  const char* method = "POST";
};

std::string withToken(std::string text) {
  for (std::size_t place = text.find('%'); place != text.npos; place = text.find('%', place)) {
    text.replace(place, 1, token);
  }
  return text;
}

class BearerToken : public testing::TestWithParam<Row> {};

TEST_P(BearerToken, isRead) {
  const std::string head =
      std::string(GetParam().method) + " /mcp HTTP/1.1\r\n" + withToken(GetParam().headers) + "\r\n\r\n";
  EXPECT_EQ(authorizationOf(HTTPRequestHead::parse(head), Secret(token)), GetParam().expected);

  // The reader decides the same, byte by byte, before any of the body has come.
  const std::optional<Secret> wanted(token);
  HTTPRequestReader reader(wanted);
  for (const char byte : head) {
    reader.push({&byte, 1});
  }
  if (GetParam().expected == Authorization::given) {
    EXPECT_NE(reader.state(), HTTPRequestReader::State::refused);
  } else {
    EXPECT_EQ(reader.state(), HTTPRequestReader::State::refused);
    EXPECT_EQ(reader.refusal(), authorizationRefusal(GetParam().expected));
  }
  EXPECT_TRUE(reader.head().authorizations.empty()) << "it is not kept";
}

using enum Authorization;

INSTANTIATE_TEST_SUITE_P(
    Right, BearerToken,
    testing::Values(Row{"plain", "Authorization: Bearer %", given},
                    Row{"schemeInLowerCase", "Authorization: bearer %", given},
                    Row{"schemeInMixedCase", "Authorization: bEARER %", given},
                    Row{"nameInLowerCase", "authorization: Bearer %", given},
                    Row{"nameInUpperCase", "AUTHORIZATION:Bearer %", given},
                    Row{"severalBlanksBetween", "Authorization: Bearer    %", given},
                    Row{"blanksAround", "Authorization: \t Bearer % \t", given},
                    Row{"blankBeforeTheColon", "Authorization : Bearer %", given},
                    Row{"amongOthers", "Host: localhost\r\nAuthorization: Bearer %\r\nA: b", given},
                    Row{"withABody", "Content-Length: 5\r\nAuthorization: Bearer %", given},
                    Row{"get", "Authorization: Bearer %", given, "GET"},
                    Row{"preflight", "Origin: http://localhost:5173", given, "OPTIONS"},
                    Row{"preflightWithoutALength", "Content-Length: 0", given, "OPTIONS"},
                    Row{"preflightWithAWrongToken", "Authorization: Bearer x", given, "OPTIONS"}),
    rowName);

INSTANTIATE_TEST_SUITE_P(Missing, BearerToken,
                         testing::Values(Row{"noHeader", "Host: localhost", missing},
                                         Row{"emptyHeader", "Authorization:", missing},
                                         Row{"anotherScheme", "Authorization: Basic %", missing},
                                         Row{"tokenWithoutAScheme", "Authorization: %", missing},
                                         Row{"schemeWithoutABlank", "Authorization: Bearer%", missing},
                                         Row{"schemeAndATab", "Authorization: Bearer\t%", missing},
                                         Row{"longerScheme", "Authorization: Bearers %", missing},
                                         Row{"inAProxyHeader", "Proxy-Authorization: Bearer %", missing},
                                         Row{"inAnotherHeader", "X-Authorization: Bearer %", missing},
                                         Row{"asACookie", "Cookie: Authorization=Bearer %", missing},
                                         Row{"get", "Host: localhost", missing, "GET"},
                                         Row{"optionsInLowerCase", "Host: localhost", missing, "options"},
                                         Row{"optionsWithABody", "Content-Length: 1", missing, "OPTIONS"},
                                         Row{"withABody", "Content-Length: 4194304", missing},
                                         Row{"withATooLargeBody", "Content-Length: 4194305", missing},
                                         Row{"withConflictingLengths",
                                             "Content-Length: 1\r\nContent-Length: 2", missing}),
                         rowName);

INSTANTIATE_TEST_SUITE_P(
    Wrong, BearerToken,
    testing::Values(Row{"another", "Authorization: Bearer fJ2_kQ-9Zy", wrong},
                    Row{"beginning", "Authorization: Bearer fJ2_kQ-9Z", wrong},
                    Row{"longer", "Authorization: Bearer %x", wrong},
                    Row{"twiceInARow", "Authorization: Bearer %%", wrong},
                    Row{"otherCase", "Authorization: Bearer Fj2_kq-9zZ", wrong},
                    Row{"none", "Authorization: Bearer", wrong},
                    Row{"onlyBlanks", "Authorization: Bearer   ", wrong},
                    Row{"quoted", "Authorization: Bearer \"%\"", wrong},
                    Row{"aListOfTwo", "Authorization: Bearer %, Bearer %", wrong},
                    Row{"tabInTheMiddle", "Authorization: Bearer \t%", wrong},
                    Row{"zeroByteAfter", std::string("Authorization: Bearer %\0", 24), wrong},
                    Row{"notASCII", "Authorization: Bearer \xff\xfe", wrong},
                    Row{"long", "Authorization: Bearer " + std::string(16000, 'x'), wrong}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Repeated, BearerToken,
    testing::Values(Row{"rightAndWrong", "Authorization: Bearer %\r\nAuthorization: Bearer x", repeated},
                    Row{"wrongAndRight", "Authorization: Bearer x\r\nAuthorization: Bearer %", repeated},
                    Row{"twiceTheSame", "Authorization: Bearer %\r\nauthorization: Bearer %", repeated},
                    Row{"anotherSchemeToo", "Authorization: Basic eA==\r\nAuthorization: Bearer %", repeated},
                    Row{"emptyToo", "Authorization:\r\nAuthorization: Bearer %", repeated}),
    rowName);

TEST(BearerTokenOfTheEndpoint, emptyOneAuthorizesNobody) {
  for (const char* header :
       {"", "Authorization: Bearer", "Authorization: Bearer ", "Authorization: Bearer x"}) {
    const auto head = HTTPRequestHead::parse("POST / HTTP/1.1\r\n" + std::string(header) + "\r\n\r\n");
    EXPECT_NE(authorizationOf(head, Secret()), Authorization::given) << header;
  }
}

/// Host and Origin come before: a foreign page does not learn that a token is asked for.
TEST(BearerTokenOfTheEndpoint, isAskedForAfterTheOriginAndBeforeTheLengths) {
  const std::optional<Secret> wanted(token);
  const std::pair<std::string, int> rows[] = {
      {"Origin: https://evil.example", 403},
      {withToken("Host: evil.example\r\nAuthorization: Bearer %"), 403},
      {"Content-Length: 9999999", 401},
      {withToken("Content-Length: 9999999\r\nAuthorization: Bearer %"), 413},
      {"Content-Length: 1\r\nContent-Length: 2", 401},
      {withToken("Content-Length: 1\r\nContent-Length: 2\r\nAuthorization: Bearer %"), 400},
  };
  for (const auto& [headers, status] : rows) {
    HTTPRequestReader reader(wanted);
    EXPECT_EQ(reader.push("POST / HTTP/1.1\r\n" + headers + "\r\n\r\n"), HTTPRequestReader::State::refused);
    EXPECT_EQ(reader.refusal().status, status) << headers;
    EXPECT_TRUE(reader.head().authorizations.empty()) << "not kept: " << headers;
  }
}

/// RFC 6750, section 3.1.
TEST(BearerTokenOfTheEndpoint, refusalNamesItsReason) {
  EXPECT_EQ(authorizationRefusal(missing),
            (HTTPResponse{.status = 401, .challenge = "Bearer realm=\"tarnwell\""}));
  EXPECT_EQ(authorizationRefusal(wrong),
            (HTTPResponse{.status = 401, .challenge = "Bearer error=\"invalid_token\""}));
  EXPECT_EQ(authorizationRefusal(repeated),
            (HTTPResponse{.status = 400, .challenge = "Bearer error=\"invalid_request\""}));
}

}  // namespace
}  // namespace tarnwell
