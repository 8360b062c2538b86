#include "JSONEditor/JSONEditor.h"

#include <limits>

#include "EditedTexts.h"

namespace tarnwell::test {
namespace {

struct ChangedRow {
  const char* name;
  JSONPath path;
  JSONValue value;
  std::string before, after;
};

class ChangedMember : public testing::TestWithParam<ChangedRow> {};

TEST_P(ChangedMember, keepsItsPlace) {
  const ChangedRow& row = GetParam();
  const std::string after = withJSONMember(row.before, row.path, row.value);
  EXPECT_EQ(after, row.after);
  EXPECT_EQ(withJSONMember(after, row.path, row.value), after) << "twice is not the same as once";
  EXPECT_TRUE(!JSONValue::decode(row.before) || JSONValue::decode(after)) << "no longer plain JSON";
}

const ChangedRow changedRows[] = {
    {"number", {"a"}, 2, "{ \"a\" : 1 /* one */, }", "{ \"a\" : 2 /* one */, }"},
    {"sameNumber", {"a"}, 100.0, R"({"a": 1e2})", R"({"a": 1e2})"},
    {"sameTextWithEscapes", {"a"}, "/é", R"({"a": "\/\u00e9"})", R"({"a": "\/\u00e9"})"},
    {"sameListInOtherLines",
     {"a"},
     JSONArray{1, 2},
     "{\"a\": [\n1, // one\n2,]}",
     "{\"a\": [\n1, // one\n2,]}"},
    {"otherList", {"a"}, JSONArray{1, 3}, "{\n  \"a\": [\n    1,\n    2\n  ]\n}", "{\n  \"a\": [1, 3]\n}"},
    {"listOfLists",
     {"a"},
     JSONArray{JSONArray{1}, JSONObject{}},
     "{\n  \"a\": 0\n}",
     "{\n  \"a\": [\n    [1],\n    {}\n  ]\n}"},
    {"objectForAnotherValue",
     {"a"},
     JSONObject{{"b", JSONObject{{"c", true}}}},
     "{\n\t\"a\": null\n}",
     "{\n\t\"a\": {\n\t\t\"b\": {\n\t\t\t\"c\": true\n\t\t}\n\t}\n}"},
    {"objectForAnotherValueOnOneLine", {"a"}, JSONObject{{"b", 1}}, R"({"a":null})", R"({"a":{"b":1}})"},
    {"otherValueForAnObject", {"a"}, "b", R"({"a": {"c": 1}})", R"({"a": "b"})"},
    {"onlyWhatDiffers",
     {"mcpServers", "tarnwell"},
     helperEntry,
     R"({
  "mcpServers": {
    "tarnwell": {
      // moved
      "command": "/usr/local/bin/tarnwell", // old
      "args": [
        "serve"
      ],
      "env": { "LANG": "ja_JP.UTF-8" },
      "disabled": false
    }
  }
})",
     R"({
  "mcpServers": {
    "tarnwell": {
      // moved
      "command": "/opt/tarnwell", // old
      "args": [
        "serve"
      ],
      "env": { "LANG": "ja_JP.UTF-8" },
      "disabled": false
    }
  }
})"},
    {"whatIsMissing",
     {"tarnwell"},
     helperEntry,
     "{\n  \"tarnwell\": {\n    \"command\": \"/opt/tarnwell\", // ours\n  },\n}",
     "{\n  \"tarnwell\": {\n    \"command\": \"/opt/tarnwell\", // ours\n    \"args\": [\"serve\"],\n  "
     "},\n}"},
    {"objectsInObjects",
     {"a"},
     JSONObject{{"b", JSONObject{{"c", 1}, {"d", 2}}}},
     R"({"a": {"b": {"c": 0, "e": 5}}})",
     R"({"a": {"b": {"c": 1, "e": 5, "d": 2}}})"},
    {"emptyObjectIntoAnother", {"a"}, JSONObject{}, R"({"a": {"b": 1}})", R"({"a": {"b": 1}})"},
    {"valueThatNoNumberHolds", {"a"}, 1, R"({"a": 1e999})", R"({"a": 1})"},
    {"keysWithEscapes", {"\"\n\u65E5"}, "\t\x01", "{}", "{\n  \"\\\"\\n\u65E5\": \"\\t\\u0001\"\n}"},
    {"emptyKey", {""}, 1, R"({"": 0})", R"({"": 1})"},
};

INSTANTIATE_TEST_SUITE_P(Texts, ChangedMember, testing::ValuesIn(changedRows), rowName);

struct RemovedRow {
  const char* name;
  std::string before, after;  // the member "x"
};

class RemovedMember : public testing::TestWithParam<RemovedRow> {};

TEST_P(RemovedMember, takesItsCommaAndItsLine) {
  const RemovedRow& row = GetParam();
  const std::string after = withoutJSONMember(row.before, {"x"});
  EXPECT_EQ(after, row.after);
  EXPECT_EQ(withoutJSONMember(after, {"x"}), after) << "twice is not the same as once";
  EXPECT_TRUE(!JSONValue::decode(row.before) || JSONValue::decode(after)) << "no longer plain JSON";
}

const RemovedRow removedRows[] = {
    {"firstOfThree", "{\n  \"x\": 0,\n  \"a\": 1,\n  \"b\": 2\n}", "{\n  \"a\": 1,\n  \"b\": 2\n}"},
    {"middleOfThree", "{\n  \"a\": 1,\n  \"x\": 0,\n  \"b\": 2\n}", "{\n  \"a\": 1,\n  \"b\": 2\n}"},
    {"lastOfThree", "{\n  \"a\": 1,\n  \"b\": 2,\n  \"x\": 0\n}", "{\n  \"a\": 1,\n  \"b\": 2\n}"},
    {"lastWithAComma", "{\n  \"a\": 1,\n  \"x\": 0,\n}", "{\n  \"a\": 1,\n}"},
    {"onlyOne", "{\n  \"x\": 0\n}\n", "{}\n"},
    {"onlyOneWithAComma", "{ \"x\": 0, }", "{}"},
    {"onlyOneAfterAComment", "{\n  // mine\n  \"x\": 0\n}", "{\n  // mine\n}"},
    {"onlyOneBeforeAComment", "{ \"x\": 0 /* mine */ }", "{ /* mine */ }"},
    {"ofSeveralLines", "{\r\n  \"x\": {\r\n    \"y\": 1\r\n  },\r\n  \"a\": 1\r\n}", "{\r\n  \"a\": 1\r\n}"},
    {"commentsInIt", "{\n  \"x\": { // mine\n    /* }, */\n  },\n  \"a\": 1\n}", "{\n  \"a\": 1\n}"},
    {"commentAbove", "{\n  // mine\n  \"x\": 0,\n  \"a\": 1\n}", "{\n  // mine\n  \"a\": 1\n}"},
    {"commentAtTheEndOfTheLine", "{\n  \"x\": 0, // mine\n  \"a\": 1\n}", "{\n  // mine\n  \"a\": 1\n}"},
    {"commentAtTheEndOfTheLineBefore", "{\n  \"a\": 1, // one\n  \"x\": 0\n}", "{\n  \"a\": 1 // one\n}"},
    {"commentAndNoCommaAtTheEndOfTheLine", "{\n  \"a\": 1,\n  \"x\": 0 // mine\n}",
     "{\n  \"a\": 1\n  // mine\n}"},
    {"commentBeforeItsComma", "{ \"x\": 0 /* mine */, \"a\": 1 }", "{ /* mine */ \"a\": 1 }"},
    {"lineCommentBeforeItsComma", "{\n  \"x\": 0 // mine\n  , \"a\": 1\n}", "{\n  // mine\n   \"a\": 1\n}"},
    {"commentAfterTheCommaBefore", "{\"a\": 1, /* mine */ \"x\": 0}", "{\"a\": 1 /* mine */}"},
    {"firstOnOneLine", R"({ "x": 0, "a": 1 })", R"({ "a": 1 })"},
    {"middleOnOneLine", R"({ "a": 1, "x": 0, "b": 2 })", R"({ "a": 1, "b": 2 })"},
    {"lastOnOneLine", R"({ "a": 1, "x": 0 })", R"({ "a": 1 })"},
    {"firstWithoutBlanks", R"({"x":0,"a":1})", R"({"a":1})"},
    {"firstWithABlankAfterTheComma", R"({"x":0, "a":1})", R"({"a":1})"},
    {"lastWithoutBlanks", R"({"a":1,"x":0})", R"({"a":1})"},
    {"firstOfALine", "{\n  \"x\": 0, \"a\": 1\n}", "{\n  \"a\": 1\n}"},
    {"lastOfALine", "{\n  \"a\": 1, \"x\": 0,\n  \"b\": 2\n}", "{\n  \"a\": 1,\n  \"b\": 2\n}"},
    {"commaBeforeIt", "{\n  \"a\": 1\n, \"x\": 0\n}", "{\n  \"a\": 1\n}"},
    {"commaBeforeItAndTheNext", "{\n  \"a\": 1\n, \"x\": 0\n, \"b\": 2\n}", "{\n  \"a\": 1\n, \"b\": 2\n}"},
    {"blankLines", "{\n\n  \"x\": 0,\n\n  \"a\": 1\n}", "{\n\n\n  \"a\": 1\n}"},
    {"escapedKey", R"({"\u0078": 0, "a": 1})", R"({"a": 1})"},
    {"otherValueInside", R"({"a": {"x": 0}})", R"({"a": {"x": 0}})"},
};

INSTANTIATE_TEST_SUITE_P(Texts, RemovedMember, testing::ValuesIn(removedRows), rowName);

TEST(JSONMember, isReadWithoutCommentsAndTrailingCommas) {
  const std::string text = "{\"a\": /* 1 */ {\"b\": [1, -2.5, \"//\", {},], // two\n \"c\": null,}}";
  EXPECT_EQ(jsonMember(text, {"a"}),
            JSONValue(JSONObject{{"b", JSONArray{1, -2.5, "//", JSONObject{}}}, {"c", nullptr}}));
  EXPECT_EQ(jsonMember(text, {"a", "c"}), JSONValue());
  EXPECT_EQ(jsonMember(text, {"a", "d"}), std::nullopt);
  EXPECT_EQ(jsonMember(text, {"d", "c"}), std::nullopt);
  EXPECT_EQ(jsonMember(" // nothing", {"a"}), std::nullopt);
  EXPECT_THROW((void)jsonMember("{\"a\": \"\\ud83d\"}", {"a"}), JSONEditError);
}

TEST(JSONDocument, isReadWithoutCommentsAndTrailingCommas) {
  EXPECT_EQ(jsonDocument("\xEF\xBB\xBF// one\n {\"a\": [1, /* two */],} // three\n"),
            JSONValue(JSONObject{{"a", JSONArray{1}}}));
  EXPECT_EQ(jsonDocument(" 7 "), JSONValue(7));
  EXPECT_EQ(jsonDocument(" // nothing"), std::nullopt);
  EXPECT_THROW((void)jsonDocument("{} {}"), JSONEditError);
  EXPECT_THROW((void)jsonDocument("{\"a\": 1e999}"), JSONEditError);
}

TEST(JSONEditor, refusesWhatNoJSONHolds) {
  JSONValue deep;
  for (std::size_t depth = 0; depth < JSONValue::maximumDepth; ++depth) {
    deep = JSONArray{std::move(deep)};
  }
  for (const JSONValue& value :
       {JSONValue("\xFF"), JSONValue(std::numeric_limits<double>::infinity()), deep}) {
    EXPECT_THROW((void)withJSONMember("{}", {"a"}, value), std::invalid_argument);
  }
  EXPECT_THROW((void)withJSONMember("{}", {"\xFF"}, 1), std::invalid_argument);
  EXPECT_THROW((void)withJSONMember("{}", {}, JSONObject{}), std::invalid_argument);
  EXPECT_THROW((void)withoutJSONMember("{}", {}), std::invalid_argument);
}

TEST(JSONEditor, textThatWouldBecomeTooLargeIsRefused) {
  const std::string text = "{}" + std::string(maximumJSONTextSize - 2, ' ');
  EXPECT_EQ(jsonMember(text, {"a"}), std::nullopt);
  EXPECT_THROW((void)withJSONMember(text, {"a"}, 1), JSONEditError);
}

/// Quadratic steps would take many minutes.
TEST(JSONEditor, largeTextsTakeLinearTime) {
  const auto filled = [](std::string_view begin, std::string_view part, std::string_view end) {
    std::string text(begin);
    while (text.size() < 1024 * 1024) {
      text += part;
    }
    return text.append(end);
  };
  for (const std::string& text : {
           filled("{\"a\": [0", ",0", "]}"),
           filled("{\"a\": 0", ",\"b\":0", "}"),
           filled("{\"a\": \"", "\\u0041", "\"}"),
           filled("{\"a\": 0 ", "/**/", "}"),
           filled("{\"a\": 0 ", "//\n", "}"),
           filled("{\"a\": 0", "\r\n", "}"),
       }) {
    const std::string with = withJSONMember(text, {"x"}, 1);
    EXPECT_EQ(jsonMember(with, {"x"}), JSONValue(1));
    EXPECT_EQ(jsonMember(withoutJSONMember(with, {"x"}), {"x"}), std::nullopt);
  }
}

}  // namespace
}  // namespace tarnwell::test
