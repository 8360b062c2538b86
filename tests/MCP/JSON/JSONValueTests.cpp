#include "MCP/JSON/JSONValue.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <random>

namespace tarnwell::test {
namespace {

constexpr std::int64_t smallest = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t largest = std::numeric_limits<std::int64_t>::max();

std::string nested(std::size_t depth) { return std::string(depth, '[') + std::string(depth, ']'); }

struct DecodeRow {
  const char* text;
  JSONValue value;
};

TEST(JSONValue, documentsDecodeToTheirKinds) {
  const DecodeRow rows[] = {
      {"null", nullptr},
      {" true ", true},
      {"false", false},
      {"1", 1},
      {"-0", 0},
      {"9223372036854775807", largest},
      {"-9223372036854775808", smallest},
      {"9223372036854775808", 9223372036854775808.0},
      {"-9223372036854775809", -9223372036854775809.0},
      {"18446744073709551615", 18446744073709551615.0},
      {"18446744073709551616", 18446744073709551616.0},
      {"100000000000000000000000", 1e23},
      {"0.1", 0.1},
      {"1e2", 100.0},
      {"-2.5E-3", -0.0025},
      {"5e-324", 5e-324},
      {"1e-400", 0.0},
      {"\"\"", ""},
      {R"("\u00e9\ud83d\ude00\n\/")", "\u00e9\U0001F600\n/"},
      {"\"\\u0000\"", std::string(1, '\0')},
      {"\"日本\"", "日本"},
      {"[]", JSONArray{}},
      {"{}", JSONObject{}},
      {R"([1, "a", null, {"k": false}])", JSONArray{1, "a", nullptr, JSONObject{{"k", false}}}},
      {R"({"a":1,"a":2})", JSONObject{{"a", 2}}},
      {R"({"":[[]]})", JSONObject{{"", JSONArray{JSONValue(JSONArray{})}}}},
  };
  for (const DecodeRow& row : rows) {
    EXPECT_EQ(JSONValue::decode(row.text), row.value) << row.text;
  }
}

TEST(JSONValue, everythingElseDoesNotDecode) {
  const std::string rows[] = {
      "",
      " ",
      "nul",
      "True",
      "1 2",
      "[1,]",
      "[1",
      "{\"a\"}",
      "{\"a\":1,}",
      "{a:1}",
      "'a'",
      "01",
      "+1",
      ".5",
      "1.",
      "-",
      "0x1",
      "NaN",
      "Infinity",
      "[1e400]",
      "-1e400",
      "\"\\ud800\"",
      "\"\\ude00\"",
      "\"\\ud800\\u0041\"",
      "\"\\x\"",
      "\"a\nb\"",
      "\"abc",
      "\"\xff\"",
      "\"\xc0\xaf\"",
      "\"\xed\xa0\x80\"",
      "\"\xf4\x90\x80\x80\"",
      "[1] x",
      "// c\n1",
      std::string("1\0", 2),
      std::string("\0", 1),
  };
  for (const std::string& text : rows) {
    EXPECT_EQ(JSONValue::decode(text), std::nullopt) << text;
  }
}

TEST(JSONValue, depthIsBounded) {
  EXPECT_TRUE(JSONValue::decode(nested(512)));
  EXPECT_FALSE(JSONValue::decode(nested(513)));
  EXPECT_FALSE(JSONValue::decode(nested(1'000'000)));
  EXPECT_FALSE(JSONValue::decode(std::string(1'000'000, '[')));
  std::string objects;
  for (int i = 0; i < 513; ++i) {
    objects += "{\"a\":";
  }
  EXPECT_FALSE(JSONValue::decode(objects + "1" + std::string(513, '}')));
  EXPECT_TRUE(JSONValue::decode("[" + nested(511) + "," + nested(511) + "]"));
}

TEST(JSONValue, membersAreThoseOfAMapInWhateverOrderTheyCome) {
  constexpr unsigned startValue = 20251121;
  std::mt19937 random(startValue);
  for (int round = 0; round < 2000; ++round) {
    std::map<std::string, std::int64_t> expected;
    std::string text;
    for (auto left = random() % 40; left > 0; --left) {
      const std::string key = std::to_string(random() % 30);
      expected[key] = static_cast<std::int64_t>(left);
      text.append(text.empty() ? "{" : ",").append("\"" + key + "\":" + std::to_string(left));
    }
    const std::optional<JSONValue> decoded = JSONValue::decode(text.empty() ? "{}" : text + "}");
    ASSERT_TRUE(decoded) << text;
    JSONObject inserted;
    for (const auto& [key, number] : expected) {
      inserted.emplace(key, number);
    }
    ASSERT_EQ(*decoded, JSONValue(inserted)) << "start value " << startValue << " " << text;
    for (int key = 0; key < 30; ++key) {
      const auto found = expected.find(std::to_string(key));
      ASSERT_EQ((*decoded)[std::to_string(key)].intValue(),
                found == expected.end() ? std::nullopt : std::optional(found->second))
          << text << " " << key;
    }
  }
}

TEST(JSONValue, membersAreSetAndAdded) {
  JSONObject object{{"b", 1}, {"a", 2}, {"b", 3}};
  object["c"] = 4;
  object["a"] = 5;
  object.emplace("a", 6);
  object.emplace("", 7);
  EXPECT_EQ(JSONValue(object).serialized(), R"({"":7,"a":5,"b":3,"c":4})");
  EXPECT_EQ(object.size(), 4u);
}

TEST(JSONValue, aMovedTextIsNotCopied) {
  std::string text(1000, 'x');
  const char* const bytes = text.data();
  const JSONValue value =
      JSONObject{{"result", JSONObject{{"number", 1}, {"text", std::move(text)}}}, {"id", 1}};
  EXPECT_EQ(std::get<std::string>(value["result"]["text"].payload()).data(), bytes);
}

TEST(JSONValue, integerAndDoubleAreDifferent) {
  EXPECT_NE(JSONValue(1), JSONValue(1.0));
  EXPECT_NE(JSONValue(true), JSONValue(1));
  EXPECT_NE(JSONValue(nullptr), JSONValue(JSONObject{}));
  EXPECT_EQ(JSONValue(JSONObject{{"a", 1}, {"b", 2}}), JSONValue(JSONObject{{"b", 2}, {"a", 1}}));
  EXPECT_NE(JSONValue(JSONArray{1, 2}), JSONValue(JSONArray{2, 1}));
}

TEST(JSONValue, compactFormHasNoBlanksAndPlainSlashes) {
  const JSONValue value =
      JSONObject{{"b", JSONArray{1, -2.5, "x/y\"\\\n\u00e9"}}, {"a", nullptr}, {"c", true}};
  EXPECT_EQ(value.serialized(), "{\"a\":null,\"b\":[1,-2.5,\"x/y\\\"\\\\\\n\u00e9\"],\"c\":true}");
  EXPECT_EQ(JSONValue(smallest).serialized(), "-9223372036854775808");
  EXPECT_EQ(JSONValue(std::string(1, '\0')).serialized(), "\"\\u0000\"");
}

TEST(JSONValue, prettyFormSortsKeysAndKeepsSlashes) {
  const JSONValue value = JSONObject{{"b", "x/y"}, {"a", JSONArray{1}}};
  EXPECT_EQ(value.prettyString(), "{\n  \"a\": [\n    1\n  ],\n  \"b\": \"x/y\"\n}");
}

TEST(JSONValue, bothFormsAreThoseOfTheLibrary) {
  JSONObject everyCharacter;
  for (int byte = 0; byte < 0x80; ++byte) {
    everyCharacter[std::string(1, static_cast<char>(byte))] =
        std::string(2, static_cast<char>(byte)) + "é髙😀";
  }
  const JSONValue values[] = {
      nullptr,
      true,
      false,
      0,
      -1,
      smallest,
      0.1,
      -0.0,
      1e300,
      5e-324,
      100.0,
      1e16,
      "",
      "\u2028\x7F",
      JSONArray{},
      JSONObject{},
      JSONArray{JSONArray{}, JSONObject{}, JSONArray{1, JSONArray{2}}},
      JSONObject{{"", JSONObject{{"a", JSONArray{nullptr, JSONObject{{"b", "c"}}}}}}, {"d", 1.5}},
      everyCharacter};
  for (const JSONValue& value : values) {
    const nlohmann::json library = nlohmann::json::parse(value.serialized());
    EXPECT_EQ(value.serialized(), library.dump());
    EXPECT_EQ(value.prettyString(), library.dump(2));
    EXPECT_EQ(JSONValue::decode(value.serialized()), value);
  }
}

/// A long text is written in pieces, and no character may be cut.
TEST(JSONValue, longTextsAreWrittenLikeShortOnes) {
  for (const char* const filling : {"a", "é", "髙", "😀", "\n", "\x01"}) {
    for (std::size_t before = 0; before < 4; ++before) {
      std::string text(before, 'x');
      while (text.size() < 140'000) {
        text += filling;
      }
      const JSONValue value = JSONObject{{text, text}};
      const nlohmann::json library = {{text, text}};
      EXPECT_TRUE(value.serialized() == library.dump()) << filling << " after " << before;
      EXPECT_TRUE(value.prettyString() == library.dump(2)) << filling << " after " << before;
      for (const std::size_t place : {65'530U, 65'535U, 65'536U, 65'537U, 131'072U}) {
        std::string spoilt = text;
        spoilt[place] = '\xFF';
        EXPECT_EQ(JSONValue(spoilt).serialized(), "null") << filling << " at " << place;
      }
      text.pop_back();
      EXPECT_EQ(JSONValue(text).serialized().size() > 4, filling[1] == '\0') << filling;
    }
  }
}

TEST(JSONValue, doublesComeBackExactly) {
  for (const double number :
       {0.1, 1.0 / 3, 5e-324, 1.7976931348623157e308, -0.0, 3.0, 1e23, 123456789.123456789}) {
    const std::optional<JSONValue> back = JSONValue::decode(JSONValue(number).serialized());
    ASSERT_TRUE(back) << number;
    ASSERT_TRUE(std::holds_alternative<double>(back->payload())) << number;
    EXPECT_EQ(*back->doubleValue(), number);
    EXPECT_EQ(std::signbit(*back->doubleValue()), std::signbit(number));
  }
}

TEST(JSONValue, whatHasNoJSONFormBecomesAPlaceholder) {
  const double infinite = std::numeric_limits<double>::infinity();
  const double notANumber = std::numeric_limits<double>::quiet_NaN();
  for (const JSONValue& value : {JSONValue(infinite), JSONValue(-infinite), JSONValue(notANumber),
                                 JSONValue(JSONObject{{"deep", JSONArray{1, infinite}}}), JSONValue("\xff"),
                                 JSONValue(JSONObject{{"\xff", 1}})}) {
    EXPECT_EQ(value.serialized(), "null");
    EXPECT_EQ(value.prettyString(), "{}");
  }
}

TEST(JSONValue, intValueConverts) {
  const struct {
    JSONValue value;
    std::optional<std::int64_t> expected;
  } rows[] = {
      {42, 42},
      {2.9, 2},
      {-2.9, -2},
      {-0.5, 0},
      {1e19, std::nullopt},
      {-9223372036854775808.0, smallest},
      {9223372036854775808.0, std::nullopt},
      {std::numeric_limits<double>::quiet_NaN(), std::nullopt},
      {-std::numeric_limits<double>::infinity(), std::nullopt},
      {"+42", 42},
      {"-0", 0},
      {"-7", -7},
      {"007", 7},
      {"9223372036854775807", largest},
      {"-9223372036854775808", smallest},
      {"9223372036854775808", std::nullopt},
      {" 42", std::nullopt},
      {"42 ", std::nullopt},
      {"4.2", std::nullopt},
      {"", std::nullopt},
      {"+", std::nullopt},
      {"-", std::nullopt},
      {"+-1", std::nullopt},
      {"--1", std::nullopt},
      {"0x1", std::nullopt},
      {"１", std::nullopt},
      {true, std::nullopt},
      {nullptr, std::nullopt},
      {JSONArray{1}, std::nullopt},
      {JSONObject{}, std::nullopt},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.value.intValue(), row.expected) << row.value.serialized();
  }
}

TEST(JSONValue, boolValueTakesIntegersButNothingElse) {
  EXPECT_EQ(JSONValue(true).boolValue(), true);
  EXPECT_EQ(JSONValue(0).boolValue(), false);
  EXPECT_EQ(JSONValue(-3).boolValue(), true);
  EXPECT_EQ(JSONValue(1.0).boolValue(), std::nullopt);
  EXPECT_EQ(JSONValue("true").boolValue(), std::nullopt);
  EXPECT_EQ(JSONValue(nullptr).boolValue(), std::nullopt);
}

TEST(JSONValue, otherAccessorsConvertNothingButIntegersToDoubles) {
  EXPECT_EQ(JSONValue(3).doubleValue(), 3.0);
  EXPECT_EQ(JSONValue("3").doubleValue(), std::nullopt);
  EXPECT_EQ(JSONValue(3).stringValue(), std::nullopt);
  EXPECT_EQ(JSONValue("x").stringValue(), "x");
  EXPECT_EQ(JSONValue(JSONObject{}).arrayValue(), nullptr);
  EXPECT_EQ(JSONValue(JSONArray{}).objectValue(), nullptr);
  EXPECT_NE(JSONValue(JSONArray{}).arrayValue(), nullptr);
}

TEST(JSONValue, membersAreFoundByKeyInObjectsOnly) {
  const JSONValue object = JSONObject{{"k", nullptr}};
  EXPECT_NE(object.member("k"), nullptr);
  EXPECT_EQ(object.member("x"), nullptr);
  EXPECT_EQ(JSONValue("k").member("k"), nullptr);
  EXPECT_TRUE(object["x"].isNull());
}

TEST(JSONValue, absentValuesBecomeNull) {
  EXPECT_TRUE(JSONValue::of(std::optional<std::string>()).isNull());
  EXPECT_TRUE(JSONValue::of(std::optional<std::int64_t>()).isNull());
  EXPECT_TRUE(JSONValue::of(std::optional<double>()).isNull());
  EXPECT_EQ(JSONValue::of(std::optional<std::int64_t>(5)), JSONValue(5));
  EXPECT_EQ(JSONValue::of(std::optional<double>(5)), JSONValue(5.0));
  EXPECT_EQ(JSONValue::of(std::optional<std::string>("x")), JSONValue("x"));
  EXPECT_EQ(JSONValue::of(true), JSONValue(true));
  EXPECT_EQ(JSONValue::strings({"b", "a"}), JSONValue(JSONArray{"b", "a"}));
}

}  // namespace
}  // namespace tarnwell::test
