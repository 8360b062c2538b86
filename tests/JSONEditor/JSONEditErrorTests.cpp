/// Texts that are not edited, with the reason and the place.

#include "EditedTexts.h"
#include "JSONEditor/JSONEditor.h"

namespace tarnwell::test {
namespace {

using Kind = JSONEditError::Kind;

struct RefusedRow {
  const char* name;
  std::string text;
  Kind kind;
  std::size_t line, column;
};

std::string repeated(std::string_view text, std::size_t count) {
  std::string result;
  for (std::size_t index = 0; index < count; ++index) {
    result += text;
  }
  return result;
}

class RefusedText : public testing::TestWithParam<RefusedRow> {};

TEST_P(RefusedText, isRefusedByEachFunction) {
  const RefusedRow& row = GetParam();
  const std::function<void()> uses[] = {
      [&] { (void)jsonMember(row.text, servers); },
      [&] { (void)withJSONMember(row.text, servers, helperEntry); },
      [&] { (void)withoutJSONMember(row.text, servers); },
  };
  for (const auto& use : uses) {
    try {
      use();
      ADD_FAILURE() << "not refused";
    } catch (const JSONEditError& error) {
      EXPECT_EQ(error.kind(), row.kind) << error.what();
      EXPECT_EQ(error.line(), row.line);
      EXPECT_EQ(error.column(), row.column);
    }
  }
}

const RefusedRow rows[] = {
    {"singleQuotes", "{'mcpServers': {}}", Kind::notJSON, 1, 2},
    {"keyWithoutQuotes", "{\n  mcpServers: {}\n}", Kind::notJSON, 2, 3},
    {"valueInSingleQuotes", R"({"a": 'b'})", Kind::notJSON, 1, 7},
    {"hexadecimalNumber", R"({"a": 0x10})", Kind::notJSON, 1, 8},
    {"leadingZero", R"({"a": 01})", Kind::notJSON, 1, 8},
    {"plusSign", R"({"a": +1})", Kind::notJSON, 1, 7},
    {"numberThatBeginsWithAPoint", R"({"a": .5})", Kind::notJSON, 1, 7},
    {"numberThatEndsWithAPoint", R"({"a": 5.})", Kind::notJSON, 1, 9},
    {"exponentWithoutDigits", R"({"a": 1e+})", Kind::notJSON, 1, 10},
    {"minusAlone", R"({"a": -})", Kind::notJSON, 1, 8},
    {"notANumber", R"({"a": NaN})", Kind::notJSON, 1, 7},
    {"otherWord", R"({"a": True})", Kind::notJSON, 1, 7},
    {"cutWord", R"({"a": tru)", Kind::notJSON, 1, 10},
    {"commaMissing", "{\"a\": 1\r\n \"b\": 2}", Kind::notJSON, 2, 2},
    {"colonMissing", R"({"a" 1})", Kind::notJSON, 1, 6},
    {"twoCommas", R"({"a": 1,, "b": 2})", Kind::notJSON, 1, 9},
    {"commaAlone", "{,}", Kind::notJSON, 1, 2},
    {"commaAloneInAList", R"({"a": [,]})", Kind::notJSON, 1, 8},
    {"commaAfterTheValue", "{},", Kind::notJSON, 1, 3},
    {"twoValues", "{}\n{}", Kind::notJSON, 2, 1},
    {"otherBracket", R"({"a": [1}])", Kind::notJSON, 1, 9},
    {"objectWithoutEnd", "{\"a\": 1,\n", Kind::notJSON, 2, 1},
    {"listWithoutEnd", R"({"a": [1)", Kind::notJSON, 1, 9},
    {"textWithoutEnd", R"({"a": "b)", Kind::notJSON, 1, 9},
    {"textThatEndsInAnEscape", R"({"a": "\)", Kind::notJSON, 1, 9},
    {"lineEndInAText", "{\"a\": \"b\n\"}", Kind::notJSON, 1, 9},
    {"tabInAText", "{\"a\": \"\t\"}", Kind::notJSON, 1, 8},
    {"unknownEscape", R"({"a": "\x41"})", Kind::notJSON, 1, 9},
    {"shortEscape", R"({"a": "\u12"})", Kind::notJSON, 1, 12},
    {"commentWithoutEnd", "{} /* a", Kind::notJSON, 1, 4},
    {"commentThatOnlyBegins", "{} /*/", Kind::notJSON, 1, 4},
    {"oneSlash", "{} / a", Kind::notJSON, 1, 4},
    {"numberSign", "# mine\n{}", Kind::notJSON, 1, 1},
    {"TOML", "[mcp_servers.a]\ncommand = \"a\"\n", Kind::notJSON, 1, 2},
    {"YAML", "mcpServers:\n  a:\n", Kind::notJSON, 1, 1},
    {"secondByteOrderMark", "\xEF\xBB\xBF\xEF\xBB\xBF{}", Kind::notJSON, 1, 1},
    {"otherBlank", "{\u00A0}", Kind::notJSON, 1, 2},
    {"columnsAreCodePoints", "\xEF\xBB\xBF// 日本\r{\"メール\": 😀}", Kind::notJSON, 2, 9},
    {"nestedTooDeeply", repeated("[", 513), Kind::notJSON, 1, 513},
    {"nestedFarTooDeeply", repeated("{\"\":", 1'000'000), Kind::notJSON, 1, 2049},

    {"list", " []", Kind::notAnObject, 1, 2},
    {"text", "\"a\"", Kind::notAnObject, 1, 1},
    {"null", "\n null", Kind::notAnObject, 2, 2},
    {"listOnTheWay", "{\"mcpServers\": []}", Kind::notAnObject, 1, 16},
    {"nullOnTheWay", "{\"mcpServers\": null}", Kind::notAnObject, 1, 16},

    {"keyOnTheWayTwice", R"({"mcpServers": {}, "mcpServers": {}})", Kind::ambiguous, 1, 20},
    {"keyOnTheWayTwiceWithAnEscape", R"({"mcpServers": {}, "mcpServer\u0073": {}})", Kind::ambiguous, 1, 20},
    {"ownKeyTwice", "{\"mcpServers\": {\n\"tarnwell\": 1,\n\"tarnwell\": 1}}", Kind::ambiguous, 3, 1},

    {"invalidUTF8", "{\n\"a\": \"\xE9\"}", Kind::notUTF8, 2, 7},
    {"surrogateInUTF8", "{\"a\": \"\xED\xA0\x80\"}", Kind::notUTF8, 1, 8},
    {"invalidUTF8InAComment", "{} // \xFF", Kind::notUTF8, 1, 7},
    {"UTF16", std::string("\xFF\xFE{\0}\0", 6), Kind::notUTF8, 1, 1},
    {"UTF16WithoutMark", std::string("{\0}\0", 4), Kind::notUTF8, 1, 2},
    {"zeroByteInAComment", std::string("{} // \0", 7), Kind::notUTF8, 1, 7},

    {"moreThanTheLimit", "{}" + std::string(maximumJSONTextSize - 1, ' '), Kind::tooLarge, 0, 0},
};

INSTANTIATE_TEST_SUITE_P(Texts, RefusedText, testing::ValuesIn(rows), rowName);

TEST(JSONEditError, saysWhatAndWhere) {
  EXPECT_STREQ(JSONEditError(Kind::tooLarge).what(), "too large");
  EXPECT_STREQ(JSONEditError(Kind::notJSON, 3, 7).what(), "line 3, column 7: not JSON");
}

}  // namespace
}  // namespace tarnwell::test
