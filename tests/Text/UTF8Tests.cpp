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

TEST(PreviousCodePoint, isTheLastWholeSequenceOrAReplacement) {
  const struct {
    std::string text;
    char32_t codePoint;
    std::size_t start;
  } rows[] = {
      {"a", U'a', 0},
      {"日a", U'a', 3},
      {"a\u00E9", 0xE9, 1},
      {"a日", U'日', 1},
      {"日\U0001F600", 0x1F600, 3},
      {"a\x80", 0xFFFD, 1},
      {"a\xFF", 0xFFFD, 1},
      {"\u00E9\x80", 0xFFFD, 2},
      {"日\x80\x80\x80\x80", 0xFFFD, 6},
      {"a\xF0\x9F\x98", 0xFFFD, 1},
      {"a\xED\xA0\x80", 0xFFFD, 3},
  };
  for (const auto& [text, codePoint, start] : rows) {
    std::size_t position = text.size();
    EXPECT_EQ(previousCodePoint(text, position), codePoint) << testing::PrintToString(text);
    EXPECT_EQ(position, start) << testing::PrintToString(text);
  }
}

TEST(AppendCodePoint, writesWhatIsReadAgain) {
  for (char32_t codePoint = 0; codePoint <= 0x110000; ++codePoint) {
    std::string text = "a";
    appendCodePoint(text, codePoint);
    std::size_t position = 1;
    const bool isScalarValue = codePoint < 0xD800 || (codePoint > 0xDFFF && codePoint <= 0x10FFFF);
    ASSERT_EQ(nextCodePoint(text, position), isScalarValue ? codePoint : replacementCharacter);
    ASSERT_EQ(position, text.size());
  }
}

TEST(IsASCII, seesEveryByte) {
  EXPECT_TRUE(isASCII(""));
  for (std::size_t size = 1; size < 40; ++size) {
    std::string text(size, '\x7F');
    EXPECT_TRUE(isASCII(text));
    for (std::size_t place = 0; place < size; ++place) {
      text[place] = '\x80';
      EXPECT_FALSE(isASCII(text)) << place << " of " << size;
      text[place] = 'a';
    }
  }
}

}  // namespace
}  // namespace tarnwell
