#include "MCP/JSONRPC.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tarnwell::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(JSONRPCRequest, readsIdMethodAndParametersOfAnyType) {
  const struct {
    const char* text;
    JSONRPCRequest request;
  } rows[] = {
      {R"({"jsonrpc":"2.0","id":7,"method":"ping"})", {JSONValue(7), "ping", std::nullopt}},
      {R"({"id":"abc","method":"ping"})", {JSONValue("abc"), "ping", std::nullopt}},
      {R"({"id":null,"method":"ping"})", {JSONValue(nullptr), "ping", std::nullopt}},
      {R"({"method":"ping"})", {std::nullopt, "ping", std::nullopt}},
      {R"({"jsonrpc":"1.0","id":{"a":1},"method":"","params":[1],"more":2})",
       {JSONValue(JSONObject{{"a", 1}}), "", JSONValue(JSONArray{1})}},
      {R"({"id":1.5,"method":"m","params":null})", {JSONValue(1.5), "m", JSONValue(nullptr)}},
      {R"({"params":1,"method":1,"id":1,"method":"m","params":[],"id":2})",
       {JSONValue(2), "m", JSONValue(JSONArray{})}},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(JSONRPCRequest::parse(row.text), row.request) << row.text;
  }
}

TEST(JSONRPCRequest, otherMessagesDoNotParse) {
  for (const char* text : {"", "{", "[]", R"([{"id":1,"method":"ping"}])", R"({"id":1,"method":5})",
                           R"({"id":1})", R"({"method":"m","method":1})", R"("method")", "null",
                           R"({"method":"ping"} x)", "{\"method\":\"\xff\"}"}) {
    EXPECT_EQ(JSONRPCRequest::parse(text), std::nullopt) << text;
  }
}

TEST(JSONRPCRequest, onlyAMissingIdMakesANotification) {
  EXPECT_TRUE(JSONRPCRequest::parse(R"({"method":"m"})")->isNotification());
  EXPECT_FALSE(JSONRPCRequest::parse(R"({"id":null,"method":"m"})")->isNotification());
}

TEST(JSONRPC, successHasThreeMembers) {
  EXPECT_EQ(JSONRPC::success(JSONValue(1), JSONObject{}).serialized(),
            R"({"id":1,"jsonrpc":"2.0","result":{}})");
  EXPECT_EQ(JSONRPC::success(std::nullopt, 5).serialized(), R"({"id":null,"jsonrpc":"2.0","result":5})");
}

TEST(JSONRPC, failureCarriesDataOnlyWhenGiven) {
  EXPECT_EQ(JSONRPC::failure(std::nullopt, JSONRPCErrorCode::parseError, "Parse error").serialized(),
            R"({"error":{"code":-32700,"message":"Parse error"},"id":null,"jsonrpc":"2.0"})");
  EXPECT_EQ(
      JSONRPC::failure(JSONValue("x"), JSONRPCErrorCode::methodNotFound, "m", JSONValue(1)).serialized(),
      R"({"error":{"code":-32601,"data":1,"message":"m"},"id":"x","jsonrpc":"2.0"})");
}

TEST(NDJSONFramer, linesEndAtLineFeeds) {
  NDJSONFramer framer;
  EXPECT_THAT(framer.push("a\r\n\r\nb"), ElementsAre("a"));
  EXPECT_THAT(framer.push("\n"), ElementsAre("b"));
  EXPECT_THAT(framer.push("\n\r\n\n"), IsEmpty());
  EXPECT_THAT(framer.push("c\r\r\nd\re\nf"), ElementsAre("c\r", "d\re"));
  EXPECT_EQ(framer.finish(), "f");
  EXPECT_EQ(framer.finish(), std::nullopt);
}

TEST(NDJSONFramer, aLineWithinThePieceIsAViewOfIt) {
  NDJSONFramer framer;
  const std::string_view piece = "a\nb\r\nc";
  std::vector<std::string_view> lines;
  framer.push(piece, [&lines](std::string_view line) { lines.push_back(line); });
  ASSERT_THAT(lines, ElementsAre("a", "b"));
  EXPECT_EQ(lines[0].data(), piece.data());
  EXPECT_EQ(lines[1].data(), piece.data() + 2);
  std::string cutLine;
  framer.push("d\n", [&cutLine](std::string_view line) { cutLine = line; });
  EXPECT_EQ(cutLine, "cd");
}

TEST(NDJSONFramer, sizeOfTheBegunLineIsKnown) {
  NDJSONFramer framer;
  const std::pair<const char*, std::size_t> rows[] = {
      {"", 0}, {"abc", 3}, {"d\r", 5}, {"\nef", 2}, {"\n", 0}};
  for (const auto& [piece, size] : rows) {
    framer.push(piece);
    EXPECT_EQ(framer.begunSize(), size) << piece;
  }
}

TEST(NDJSONFramer, lastLineLosesItsCarriageReturnToo) {
  NDJSONFramer framer;
  framer.push("a\r");
  EXPECT_EQ(framer.finish(), "a");
  framer.push("\r");
  EXPECT_EQ(framer.finish(), std::nullopt);
}

TEST(NDJSONFramer, anyCutGivesTheSameLines) {
  const std::string stream = "{\"a\":\"日本\"}\r\n\n\r\nx\ny\r\nlast";
  NDJSONFramer whole;
  const std::vector<std::string> expected = whole.push(stream);
  for (std::size_t cut = 0; cut <= stream.size(); ++cut) {
    NDJSONFramer framer;
    std::vector<std::string> lines = framer.push(stream.substr(0, cut));
    for (const char byte : stream.substr(cut)) {
      for (std::string& line : framer.push({&byte, 1})) {
        lines.push_back(std::move(line));
      }
    }
    EXPECT_EQ(lines, expected) << "cut at " << cut;
    EXPECT_EQ(framer.finish(), "last");
  }
}

TEST(NDJSONFramer, frameIsTheCompactValueAndALineFeed) {
  EXPECT_EQ(ndjsonFrame(JSONObject{{"a", JSONArray{1, 2}}}), "{\"a\":[1,2]}\n");
}

}  // namespace
}  // namespace tarnwell::test
