#include "MCP/Tools/LogText.h"

#include <gtest/gtest.h>

namespace tarnwell::test {
namespace {

std::string marked(std::string text, const char* mark, int count) {
  for (int number = 0; number < count; ++number) {
    text += mark;
  }
  return text;
}

TEST(LogText, isCutByCharactersAndByBytes) {
  const std::string family = "\U0001F468\u200D\U0001F469";
  const struct {
    const char* name;
    std::string text;
    std::string expected;
  } rows[] = {
      {"empty", "", ""},
      {"short", "日本", "日本"},
      {"characters", "abcdef", "abc"},
      {"wide characters", "日本語日本語", "日本語"},
      {"as many bytes as allowed", family + family, family + family},
      {"one character of many marks", marked("e", "\u0301", 1000), marked("e", "\u0301", 11)},
      {"not within a code point", marked("ab", "\u20DD", 1000), marked("ab", "\u20DD", 7)},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(loggable(row.text, 3), row.expected) << row.name;
  }
}

}  // namespace
}  // namespace tarnwell::test
