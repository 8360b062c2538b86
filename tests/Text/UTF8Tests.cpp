#include "Text/UTF8.h"

namespace tarnwell {
namespace {

TEST(BytePrefix, endsBeforeTheSequenceThatDoesNotFit) {
  const struct {
    const char* text;
    std::size_t size;
    const char* prefix;
  } rows[] = {
      {"", 0, ""},
      {"abc", 0, ""},
      {"abc", 2, "ab"},
      {"abc", 3, "abc"},
      {"abc", 9, "abc"},
      {"é", 1, ""},
      {"aé", 2, "a"},
      {"日本", 3, "日"},
      {"日本", 4, "日"},
      {"日本", 5, "日"},
      {"日本", 6, "日本"},
      {"a\U0001F600", 4, "a"},
      {"\x80\x80\x80\x80\x80\x80", 5, "\x80\x80"},
  };
  for (const auto& [text, size, prefix] : rows) {
    EXPECT_EQ(bytePrefix(text, size), prefix) << text << ", " << size;
  }
}

}  // namespace
}  // namespace tarnwell
