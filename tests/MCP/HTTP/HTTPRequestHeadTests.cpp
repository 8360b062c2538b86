#include "MCP/HTTP/HTTPRequestHead.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "support/RowName.h"

namespace tarnwell {

void PrintTo(const HTTPRequestHead& head, std::ostream* out) {
  *out << "method \"" << head.method << "\", length " << head.contentLength
       << (head.hasConflictingLengths ? ", conflicting lengths" : "")
       << (head.expectsContinue ? ", expects 100" : "") << ", hosts " << testing::PrintToString(head.hosts)
       << ", origins " << testing::PrintToString(head.origins) << ", revision "
       << head.protocolVersion.value_or("none") << ", MCP method " << head.mcpMethod.value_or("none")
       << ", name " << head.mcpName.value_or("none");
}

namespace {

constexpr std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max();

struct Row {
  const char* name;
  std::string block;
  HTTPRequestHead head;
};

class HTTPHead : public testing::TestWithParam<Row> {};

TEST_P(HTTPHead, isRead) { EXPECT_EQ(HTTPRequestHead::parse(GetParam().block), GetParam().head); }

std::string post(const std::string& lines) { return "POST /mcp HTTP/1.1\r\n" + lines; }

HTTPRequestHead ofLength(std::uint64_t length) { return {.method = "POST", .contentLength = length}; }

HTTPRequestHead conflict(std::uint64_t lastLength) {
  return {.method = "POST", .contentLength = lastLength, .hasConflictingLengths = true};
}

INSTANTIATE_TEST_SUITE_P(
    RequestLine, HTTPHead,
    testing::Values(
        Row{"nothing", "", {}}, Row{"onlyALineEnd", "\r\n", {}}, Row{"blankLine", "\r\n\r\n", {}},
        Row{"methodAlone", "GET", {.method = "GET"}},
        Row{"anyPath", "GET /a/b?c HTTP/1.1\r\n\r\n", {.method = "GET"}},
        Row{"methodsAreCaseSensitive", "post / HTTP/1.1\r\n", {.method = "post"}},
        Row{"noVersion", "OPTIONS *\r\n", {.method = "OPTIONS"}},
        Row{"leadingBlank", " POST / HTTP/1.1\r\n", {}},
        Row{"bareLineFeedsAreNoLineEnds", "POST / HTTP/1.1\nContent-Length: 5\n", {.method = "POST"}},
        Row{"bytesOfAnyKind", std::string("\xff\0\x80", 3), {.method = std::string("\xff\0\x80", 3)}}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Message, HTTPHead,
    testing::Values(
        Row{"all",
            post("MCP-Protocol-Version: 2026-07-28\r\nMcp-Method: tools/call\r\nMcp-Name: x\r\n\r\n"),
            {.method = "POST", .protocolVersion = "2026-07-28", .mcpMethod = "tools/call", .mcpName = "x"}},
        Row{"inAnyCaseAndWithBlanks",
            post("mcp-protocol-version:2026-07-28\r\nMCP-METHOD: \t Tools/Call \t\r\nmCP-nAME:x y\r\n"),
            {.method = "POST", .protocolVersion = "2026-07-28", .mcpMethod = "Tools/Call", .mcpName = "x y"}},
        Row{"empty",
            post("Mcp-Method:\r\nMcp-Name: \r\n"),
            {.method = "POST", .mcpMethod = "", .mcpName = ""}},
        Row{"twiceIsJoined",
            post("Mcp-Method: a\r\nMcp-Name: b\r\nMcp-Method: c\r\n"),
            {.method = "POST", .mcpMethod = "a, c", .mcpName = "b"}}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    ContentLength, HTTPHead,
    testing::Values(
        Row{"missing", post(""), ofLength(0)}, Row{"plain", post("Content-Length: 5\r\n\r\n"), ofLength(5)},
        Row{"anyCase", post("cOnTeNt-LENGTH: 5\r\n"), ofLength(5)},
        Row{"noBlankAfterTheColon", post("Content-Length:5"), ofLength(5)},
        Row{"blanksAround", post("Content-Length: \t 5 \t\r\n"), ofLength(5)},
        Row{"blankBeforeTheColon", post("Content-Length : 5\r\n"), ofLength(5)},
        Row{"leadingZeros", post("Content-Length: 0000000000000000000000005\r\n"), ofLength(5)},
        Row{"afterOtherHeaders", post("A: b\r\nno colon\r\n: no name\r\nContent-Length: 5\r\n"), ofLength(5)},
        Row{"limit", post("Content-Length: 4194304\r\n"), ofLength(4194304)},
        Row{"beyond32Bits", post("Content-Length: 4294967296\r\n"), ofLength(4294967296)},
        Row{"greatest", post("Content-Length: 18446744073709551615\r\n"), ofLength(greatest)},
        Row{"beyond64BitsIsNotNothing", post("Content-Length: 18446744073709551616\r\n"), ofLength(greatest)},
        Row{"farBeyond64Bits", post("Content-Length: 99999999999999999999999\r\n"), ofLength(greatest)},
        Row{"tooManyDigitsAndALetter", post("Content-Length: 99999999999999999999999x\r\n"), ofLength(0)},
        Row{"empty", post("Content-Length:\r\n"), ofLength(0)},
        Row{"negative", post("Content-Length: -5\r\n"), ofLength(0)},
        Row{"plusSign", post("Content-Length: +5\r\n"), ofLength(0)},
        Row{"hexadecimal", post("Content-Length: 0x10\r\n"), ofLength(0)},
        Row{"fraction", post("Content-Length: 5.0\r\n"), ofLength(0)},
        Row{"list", post("Content-Length: 5, 5\r\n"), ofLength(0)},
        Row{"word", post("Content-Length: many\r\n"), ofLength(0)},
        Row{"fullWidthDigits", post("Content-Length: \xef\xbc\x95\r\n"), ofLength(0)},
        Row{"longerName", post("X-Content-Length: 5\r\nContent-Lengths: 6\r\n"), ofLength(0)},
        Row{"inTheRequestLineOnly", "POST Content-Length: 5\r\n", ofLength(0)},
        Row{"twiceTheSame", post("Content-Length: 5\r\ncontent-length: 05\r\n"), ofLength(5)},
        Row{"twoDifferent", post("Content-Length: 5\r\nContent-Length: 6\r\n"), conflict(6)},
        Row{"conflictInTheMiddle", post("Content-Length: 5\r\nContent-Length: 6\r\nContent-Length: 5\r\n"),
            conflict(5)},
        Row{"oneUnreadable", post("Content-Length: 5\r\nContent-Length: x\r\n"), conflict(0)}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    TransferEncoding, HTTPHead,
    testing::Values(Row{"chunkedCountsAsEmpty", post("Transfer-Encoding: chunked\r\n"), ofLength(0)},
                    Row{"lengthCountsBesideIt", post("Transfer-Encoding: chunked\r\nContent-Length: 5\r\n"),
                        ofLength(5)}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    Expectation, HTTPHead,
    testing::Values(
        Row{"asCurlSendsIt", post("Expect: 100-continue\r\n"), {.method = "POST", .expectsContinue = true}},
        Row{"inAnyCase", post("EXPECT:100-CONTINUE\r\n"), {.method = "POST", .expectsContinue = true}},
        Row{"another", post("Expect: wonders\r\n"), {.method = "POST"}},
        Row{"olderClient", "POST / HTTP/1.0\r\nExpect: 100-continue\r\n", {.method = "POST"}}),
    rowName);

INSTANTIATE_TEST_SUITE_P(Names, HTTPHead,
                         testing::Values(Row{
                             "everyHostAndOriginAsSent",
                             post("Host: localhost\r\nhOST : b:1\r\nOrigin:\r\nORIGIN: http://c\r\n"),
                             {.method = "POST", .hosts = {"localhost", "b:1"}, .origins = {"", "http://c"}}}),
                         rowName);

struct SenderRow {
  const char* name;
  std::string block;
  bool isFromThisMachine;
};

class RequestFrom : public testing::TestWithParam<SenderRow> {};

TEST_P(RequestFrom, thisMachineOrElsewhere) {
  EXPECT_EQ(isFromThisMachine(HTTPRequestHead::parse(GetParam().block)), GetParam().isFromThisMachine);
}

INSTANTIATE_TEST_SUITE_P(
    Rebinding, RequestFrom,
    testing::Values(
        SenderRow{"noHostAsInHTTP10", post("A: b\r\n"), true},
        SenderRow{"thisMachine", post("Host: 127.0.0.1:8765\r\nOrigin: http://localhost:3000\r\n"), true},
        SenderRow{"foreignHost", post("Host: evil.example:8765\r\n"), false},
        SenderRow{"foreignOrigin", post("Host: localhost\r\nOrigin: https://evil.example\r\n"), false},
        SenderRow{"anyCaseOfTheNames", post("hOST: evil.example\r\n"), false},
        SenderRow{"anyCaseOfOrigin", post("ORIGIN: http://evil.example\r\n"), false},
        SenderRow{"blankBeforeTheColonHidesNothing", post("Host : evil.example\r\n"), false},
        SenderRow{"emptyHost", post("Host:\r\n"), false},
        SenderRow{"emptyOrigin", post("Origin:\r\n"), false},
        SenderRow{"secondHost", post("Host: localhost\r\nHost: evil.example\r\n"), false},
        SenderRow{"firstHost", post("Host: evil.example\r\nHost: localhost\r\n"), false},
        SenderRow{"secondOrigin", post("Origin: http://localhost\r\nOrigin: http://evil.example\r\n"), false},
        SenderRow{"foldedHost", post("Host: localhost\r\n evil.example\r\nHost:\r\n evil.example\r\n"),
                  false}),
    rowName);

struct NameRow {
  const char* text;
  bool isLoopback;
};

TEST(LoopbackAuthority, isExactlyANameOrAddressOfThisMachine) {
  for (const auto& [text, isLoopback] : std::initializer_list<NameRow>{
           {"localhost", true},
           {"LocalHost:8765", true},
           {"localhost:", true},
           {"127.0.0.1", true},
           {"127.0.0.1:8765", true},
           {"127.255.255.255:1", true},
           {"127.1.2.3", true},
           {"[::1]", true},
           {"[::1]:8765", true},
           {"", false},
           {":8765", false},
           {"localhost.", false},
           {"a.localhost", false},
           {"localhost.evil.example", false},
           {"localhosts", false},
           {"localhos", false},
           {"evil.example", false},
           {"localhost:80:80", false},
           {"localhost:x", false},
           {"localhost:-1", false},
           {"localhost:65535", true},
           {"localhost:65536", false},
           {"localhost:99999999999999999999999", false},
           {"localhost:80@evil.example", false},
           {"evil@localhost", false},
           {"localhost/x", false},
           {"localhost 80", false},
           {"128.0.0.1", false},
           {"0.0.0.0", false},
           {"10.0.0.1", false},
           {"127.0.0", false},
           {"127.0.0.1.1", false},
           {"127.0.0.1.", false},
           {"127.0.0.256", false},
           {"127.0.0.1234", false},
           {"127.0.0.01", false},
           {"0127.0.0.1", false},
           {"127.0.0.00", false},
           {"127.0.0.0", true},
           {"127..0.1", false},
           {"127.0.0.1.evil.example", false},
           {"127.1", false},
           {"2130706433", false},
           {"0x7f.0.0.1", false},
           {"127.0.0.x", false},
           {"127.0.0.-1", false},
           {"127.0.0.99999999999999999999", false},
           {"[::1]x", false},
           {"[::1]:x", false},
           {"[::2]", false},
           {"::1", false},
           {"[::ffff:127.0.0.1]", false},
           {"[::1", false},
           {"\xef\xbd\x8cocalhost", false},
       }) {
    EXPECT_EQ(isLoopbackAuthority(text), isLoopback) << text;
  }
}

TEST(LoopbackOrigin, isAWebOriginOfThisMachineAndNothingElse) {
  for (const auto& [text, isLoopback] : std::initializer_list<NameRow>{
           {"http://localhost", true},
           {"https://localhost:3000", true},
           {"HTTP://LOCALHOST", true},
           {"http://127.0.0.1:8765", true},
           {"https://[::1]:8765", true},
           {"null", false},
           {"", false},
           {"localhost", false},
           {"//localhost", false},
           {"http://", false},
           {"http:/localhost", false},
           {"http://localhost/", false},
           {"http://localhost http://evil.example", false},
           {"http://evil.example", false},
           {"https://localhost.evil.example", false},
           {"http://evil.example#localhost", false},
           {"file://localhost", false},
           {"chrome-extension://localhost", false},
       }) {
    EXPECT_EQ(isLoopbackOrigin(text), isLoopback) << text;
  }
}

}  // namespace
}  // namespace tarnwell
