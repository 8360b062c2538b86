/// `JSONValue::decode` beside the library's parser, on inputs that hurt.

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "MCP/JSON/JSONValue.h"
#include "support/HostileText.h"
#include "support/ReferenceJSON.h"

namespace tarnwell::test {
namespace {

using namespace std::string_literals;
using namespace std::string_view_literals;

/// True when the input is a document.
bool decodesLikeTheLibrary(std::string_view text) {
  const std::vector<char> copy(text.begin(), text.end());  // exact bounds for the sanitizer
  const std::string_view data(copy.data(), copy.size());
  const std::optional<JSONValue> expected = decodedByLibrary(data);
  EXPECT_TRUE(areSameToTheBit(JSONValue::decode(data), expected)) << testing::PrintToString(text);
  return expected.has_value();
}

const std::string_view numbers[] = {
    "0",
    "-0",
    "-0.0",
    "0e400",
    "0.0e-400",
    "-0E+9999999999",
    "00",
    "-01",
    "1.",
    "-.5",
    ".5",
    "+1",
    "1e",
    "1e+",
    "1.e1",
    "--1",
    "-",
    "0x1",
    "1_0",
    "NaN",
    "Infinity",
    "-Infinity",
    "9223372036854775807",
    "9223372036854775808",
    "-9223372036854775808",
    "-9223372036854775809",
    "18446744073709551615",
    "18446744073709551616",
    "9007199254740993",
    "9007199254740993.0",
    "1e308",
    "1.7976931348623157e308",
    "1.7976931348623158e308",
    "1.7976931348623159e308",
    "1e309",
    "1e400",
    "-1e400",
    "1e99999999999999999999",
    "1e-99999999999999999999",
    "2.2250738585072011e-308",
    "2.2250738585072014e-308",
    "4.9406564584124654e-324",
    "2.4703282292062327e-324",
    "2.4703282292062328e-324",
    "1e-400",
    "0.1",
    "3.14159265358979323846264338327950288",
    "1.00000000000000011102230246251565404236316680908203125",
    "1.00000000000000011102230246251565404236316680908203124",
    "1.00000000000000011102230246251565404236316680908203126",
    "6929495644600919.5",
    "123456789012345678901234567890e-29",
};

const std::string_view others[] = {
    "",
    " ",
    "\t\n\r null\t\n\r ",
    "\vnull",
    "\f1",
    "null null",
    "nul",
    "nulll",
    "truefalse",
    "tru\0e"sv,
    "1\0"sv,
    "\0"sv,
    "\"a\0b\""sv,
    "{\"a\":1,}",
    "{,}",
    "{\"a\":1 \"b\":2}",
    "{\"a\" 1}",
    "{\"a\":}",
    "{\"a\"}",
    "{a:1}",
    "{1:1}",
    "{\"a\":1]",
    "[1}",
    "[,]",
    "[1,]",
    "[1 2]",
    "[1,,2]",
    "[",
    "]",
    "{",
    "}",
    "[]]",
    "[1]/**/",
    "//\n1",
    "\xEF\xBB\xBF{}",
    "\xEF\xBB\xBF",
    "\xEF\xBB\xBF\xEF\xBB\xBF{}",
    "\xEF\xBB{}",
    " \xEF\xBB\xBF{}",
    "{}\xEF\xBB\xBF",
    "\xFE\xFF\0{\0}"sv,
    "'a'",
    "\"",
    "\"a",
    "\"\\",
    "\"\\\"",
    "\"\\a\"",
    "\"\\'\"",
    "\"\\U0041\"",
    R"("\"\\\/\b\f\n\r\t")",
    R"("\u0000\u001f\u007F\u0080\u07ff\u0800\uFFFF\uD800\uDC00\udbff\udfff")",
    R"("\ud800")",
    R"("\udc00")",
    R"("\ud800\ud800")",
    R"("\udc00\ud800")",
    R"("\ud800x")",
    R"("\ud800\n")",
    R"("\ud800\u0041")",
    R"("\u")",
    R"("\u123")",
    R"("\u123g")",
    R"("\u+123")",
    R"("\u-123")",
    R"("\u 123")",
    R"("\u0x12")",
    R"("\u12)",
    "\"\x01\"",
    "\"\x1f\"",
    "\"\x7f\"",
    "\"\t\"",
    "\"\n\"",
    "\"\x80\"",
    "\"\xC0\x80\"",
    "\"\xC1\xBF\"",
    "\"\xC2\"",
    "\"\xC2\x41\"",
    "\"\xC3\\u00a9\"",
    "\"\xDF\xBF\"",
    "\"\xE0\x9F\xBF\"",
    "\"\xE0\xA0\x80\"",
    "\"\xE2\x82\"",
    "\"\xE2\x82\\n\xAC\"",
    "\"\xED\x9F\xBF\"",
    "\"\xED\xA0\x80\"",
    "\"\xED\xB0\x80\"",
    "\"\xEF\xBF\xBF\"",
    "\"\xF0\x8F\xBF\xBF\"",
    "\"\xF0\x90\x80\x80\"",
    "\"\xF4\x8F\xBF\xBF\"",
    "\"\xF4\x90\x80\x80\"",
    "\"\xF5\x80\x80\x80\"",
    "\"\xF8\x88\x80\x80\x80\"",
    "\"\xFF\"",
    "{\"\xFF\":1}",
    "\xC3\xA9",
    "\xC2\xA0null",
    R"({"b":1,"a":2,"b":{"c":3,"c":4},"":[]})",
    R"({"b":1,"a":2,"b":)",
};

TEST(JSONDecoding, rowsDecodeLikeTheLibrary) {
  int documents = 0;
  for (const std::string_view text : others) {
    documents += decodesLikeTheLibrary(text) ? 1 : 0;
  }
  EXPECT_EQ(documents, 12);
}

TEST(JSONDecoding, numbersDecodeLikeTheLibrary) {
  const std::string manyZeros(400, '0');
  std::vector<std::string> rows(std::begin(numbers), std::end(numbers));
  rows.insert(rows.end(), {
                              "1" + manyZeros,
                              "1" + manyZeros + "e-400",
                              "1" + manyZeros + ".5e-401",
                              "0." + manyZeros + "1e401",
                              "0." + manyZeros + "1",
                              "9007199254740993." + manyZeros + manyZeros + manyZeros + "1",
                              std::string(2000, '9') + "e-2000",
                          });
  int documents = 0;
  for (const std::string& number : rows) {
    for (const std::string& text :
         {number, "[" + number + "]", "{\"a\":" + number + ",\"b\":" + number + "}"}) {
      documents += decodesLikeTheLibrary(text) ? 1 : 0;
    }
  }
  EXPECT_EQ(documents, 3 * 37);
}

TEST(JSONDecoding, depthIsBoundedLikeTheReference) {
  for (const std::size_t depth : {511U, 512U, 513U}) {
    std::string objects = filledWith("{\"a\":", 5 * depth) + "1" + std::string(depth, '}');
    EXPECT_EQ(decodesLikeTheLibrary(std::string(depth, '[') + std::string(depth, ']')), depth <= 512);
    EXPECT_EQ(decodesLikeTheLibrary(objects), depth <= 512);
    EXPECT_FALSE(decodesLikeTheLibrary(std::string(depth, '[')));
  }
}

TEST(JSONDecoding, fragmentsDecodeLikeTheLibrary) {
  constexpr std::string_view fragments[] = {"{",       "}",       "[",     "]",           ",",        ":",
                                            "\"",      "\"a\":",  "\"b\"", "{\"a\":1",    "1",        "-",
                                            "0",       ".",       "e",     "E+",          "12345678", "null",
                                            "true",    "false",   " ",     "\n",          "\\",       "\\u",
                                            "\\ud83d", "\\ude00", "00e9",  "\\n",         "\x01",     "\xC3",
                                            "\xA9",    "\xED",    "é",     "\U0001F600",  "\0"sv,     "[1,",
                                            "],",      "},",      "\"x\"", "\xEF\xBB\xBF"};
  HostileText texts(fragments);
  int documents = 0;
  for (int round = 0; round < 20'000 && !HasFailure(); ++round) {
    documents += decodesLikeTheLibrary(texts.next(7)) ? 1 : 0;
  }
  EXPECT_GT(documents, 500) << "start value " << HostileText::startValue;
}

/// Documents of every kind of value, the same ones in every run.
class Documents {
 public:
  static constexpr unsigned startValue = 20251121;

  std::string next() { return value(4); }

  /// With one byte exchanged, added or removed.
  std::string spoilt(std::string text) {
    constexpr std::string_view bytes = "{}[]:,\"\\u0e-+. \n\x01\x80\xC3\xED\xFFntd8"sv;
    const std::size_t place = below(text.size() + 1);
    const std::size_t removed = std::min(below(2), text.size() - place);
    return text.replace(place, removed, below(3), bytes[below(bytes.size())]);
  }

  std::size_t below(std::size_t bound) { return random_() % bound; }

 private:
  std::string value(std::size_t depth) {
    switch (below(depth == 0 ? 4 : 6)) {
      case 0:
        return pick({"null", "true", "false", "0", "-1", "1e3", "0e999", "-0.0"});
      case 1:
        return std::to_string(static_cast<std::int64_t>(random_()));
      case 2:
        return pick({"", "-"}) + std::to_string(below(1000)) + "." + std::to_string(random_()) + "e" +
               std::to_string(static_cast<int>(below(700)) - 350);
      case 3:
        return text();
      case 4:
        return "[" + parts([&] { return value(depth - 1); }) + "]";
      default:
        return "{" + parts([&] { return text() + blank() + ":" + value(depth - 1); }) + "}";
    }
  }

  template <class Part>
  std::string parts(const Part& part) {
    std::string all = blank();
    for (std::size_t left = below(5); left > 0; --left) {
      all += part() + blank() + (left > 1 ? "," + blank() : "");
    }
    return all;
  }

  std::string text() {
    std::string text = "\"";
    for (std::size_t left = below(4); left > 0; --left) {
      text += pick({"a", "b", "id", "é", "日本", "\U0001F600", "\\n", "\\\\", "\\\"", "\\/", "\\u00E9",
                    "\\ud83d\\ude00", "\\u0000", " ", "a long text of more than sixteen bytes"});
    }
    return text + "\"";
  }

  std::string blank() { return pick({"", "", "", " ", "\n", "\t \r"}); }

  std::string pick(std::initializer_list<const char*> choices) {
    return choices.begin()[below(choices.size())];
  }

  std::mt19937_64 random_{startValue};
};

TEST(JSONDecoding, madeAndSpoiltDocumentsDecodeLikeTheLibrary) {
  Documents documents;
  int readable = 0;
  int unreadable = 0;
  for (int round = 0; round < 10'000 && !HasFailure(); ++round) {
    const std::string document = documents.next();
    const bool spoiltIsReadable = decodesLikeTheLibrary(documents.spoilt(document));
    readable += decodesLikeTheLibrary(document) && spoiltIsReadable ? 1 : 0;
    unreadable += spoiltIsReadable ? 0 : 1;
  }
  EXPECT_GT(readable, 1000) << "start value " << Documents::startValue;
  EXPECT_GT(unreadable, 1000) << "start value " << Documents::startValue;
}

TEST(JSONDecoding, cutDocumentsDecodeLikeTheLibrary) {
  const std::string document = R"( {"id":[1,-2.5e-3,{"":null}],"text":"a\"\\\u00e9\ud83d\ude00)"
                               "日本\",\"t\":true,\"f\":false} ";
  ASSERT_TRUE(decodesLikeTheLibrary(document));
  for (std::size_t length = 0; length <= document.size(); ++length) {
    decodesLikeTheLibrary(std::string_view(document).substr(0, length));
    decodesLikeTheLibrary(std::string_view(document).substr(length));
  }
}

TEST(JSONDecoding, anyByteAnywhereInATextDecodesLikeTheLibrary) {
  for (int byte = 0; byte < 256; ++byte) {
    for (std::size_t place = 0; place < 4; ++place) {
      std::string text = "\"\\a\xC3\xA9\"";
      text[place] = static_cast<char>(byte);
      decodesLikeTheLibrary(text);
      decodesLikeTheLibrary("\"abcdefgh" + text.substr(1));
    }
  }
}

TEST(JSONDecoding, anyByteAmongEightDecodesAndEncodesLikeTheLibrary) {
  for (const std::string_view filling : {"a", "~", " ", "\x7F", "!", "#", "[", "]", "é"}) {
    const std::string plain = filledWith(filling, 24);
    for (int byte = 0; byte < 256; ++byte) {
      for (std::size_t place = 0; place < 18; ++place) {
        std::string text = plain;
        text[place] = static_cast<char>(byte);
        decodesLikeTheLibrary("\"" + text + "\"");
        const std::string expected =
            nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::ignore);
        const bool isUTF8 = JSONValue::decode(expected) == JSONValue(text);
        EXPECT_EQ(JSONValue(text).serialized(), isUTF8 ? expected : "null") << byte << " at " << place;
      }
    }
  }
}

}  // namespace
}  // namespace tarnwell::test
