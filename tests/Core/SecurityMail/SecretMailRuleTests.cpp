#include "Core/SecurityMail/SecretMailRule.h"

#include <algorithm>

#include "Core/SecurityMail/SecretMailScan.h"
#include "Text/Text.h"
#include "support/Repeated.h"
#include "support/RowName.h"

namespace tarnwell {
namespace {

struct MaskRow {
  std::string name;
  std::string_view text;
  std::string_view masked;
};

class MaskedCodes : public testing::TestWithParam<MaskRow> {};

TEST_P(MaskedCodes, hideEveryCharacterOfAGroup) {
  EXPECT_EQ(SecretMailRule::maskedCodes(GetParam().text), GetParam().masked);
}

INSTANTIATE_TEST_SUITE_P(
    Table, MaskedCodes,
    testing::Values(
        MaskRow{"empty", "", ""}, MaskRow{"words", "Your code", "Your code"},
        MaskRow{"fourDigits", "PIN 4821", "PIN ••••"}, MaskRow{"eightDigits", "49302178!", "••••••••!"},
        MaskRow{"threeDigits", "code 493", "code 493"}, MaskRow{"nineDigits", "493021789", "493021789"},
        MaskRow{"blankInside", "code 493 021 now", "code ••••••• now"},
        MaskRow{"hyphenInside", "code 493-021 now", "code ••••••• now"},
        MaskRow{"typographicHyphenInside", "493\u2011021", "•••••••"},
        MaskRow{"letterBefore", "G-493021 is", "•••••••• is"},
        MaskRow{"lettersAndDigits", "R4K2P, A7K-9QX, A7K 9QX", "•••••, •••••••, •••••••"},
        MaskRow{"smallLetters", "a1b2c-3d4e5", "•••••••••••"},
        MaskRow{"singleDigits", "4 9 3 0 2 1", "•••••••••••"},
        MaskRow{"singleDigitsBeforeNumber", "8 2 6 1 30分", "••••••• 30分"},
        MaskRow{"pairsOfDigits", "49 30 21", "••••••••"},
        MaskRow{"fullWidth", "コード４９３０２１です", "コード••••••です"},
        MaskRow{"mathematical", "\U0001D7D2\U0001D7D7\U0001D7D1\U0001D7CE", "••••"},
        MaskRow{"circled", "④⑨③⓪", "••••"}, MaskRow{"invisibleInside", "49\u200B3021", "••••••"},
        MaskRow{"invisibleOutside", "\u200B4930\u200B", "\u200B••••\u200B"},
        MaskRow{"ideographicSpace", "４９３\u3000０２１", "•••••••"},
        MaskRow{"severalGroups", "4821 or 493021", "•••• or ••••••"}, MaskRow{"year", "In 2024", "In 2024"},
        MaskRow{"years", "1999-2024", "1999-2024"},
        MaskRow{"date", "2024-06-01, 20240601, 06/01/2024", "2024-06-01, 20240601, 06/01/2024"},
        MaskRow{"time", "at 10:30, 1030:45", "at 10:30, 1030:45"},
        MaskRow{"price", "$4930, 4930円, 4,930.00, € 4930, 4930 EUR",
                "$4930, 4930円, 4,930.00, € 4930, 4930 EUR"},
        MaskRow{"counted", "4930 items, 1200人, 1440 minutes", "4930 items, 1200人, 1440 minutes"},
        MaskRow{"telephone", "+1 415 555 2671, 03-1234-5678, (03) 1234 5678",
                "+1 415 555 2671, 03-1234-5678, (03) 1234 5678"},
        MaskRow{"card", "4930 2178 4930 2178, ...4821", "4930 2178 4930 2178, ...4821"},
        MaskRow{"version", "1.2.3456, v4930.1", "1.2.3456, v4930.1"},
        MaskRow{"numberedIssue", "#493021", "#493021"},
        MaskRow{"address", "https://acme.example/493021?c=A7K9Q a4930@x.example",
                "https://acme.example/493021?c=A7K9Q a4930@x.example"},
        MaskRow{"wordsWithDigits", "sha256 covid19 utf-8 1080p 0x1F4A MP3",
                "sha256 covid19 utf-8 1080p 0x1F4A MP3"},
        MaskRow{"whiteSpaceStays", " a\t 4821\r\n  b ", " a\t ••••\r\n  b "},
        MaskRow{"invalidBytesStay", "\xFF 4821\xC3", "\xFF ••••\xC3"},
        MaskRow{"tornSequence", "\xE8\xAA 4821 \xF0\x9F", "\xE8\xAA •••• \xF0\x9F"}),
    rowName);

TEST(SecretMailWords, areInTheFormThatTheScannerReads) {
  for (const auto& rows : {englishCodeWords(), englishContextWords(), japaneseSecretMailWords()}) {
    for (const SecretMailWords& row : rows) {
      EXPECT_NE(row.roles, 0U) << row.terms;
      std::size_t begin = 0;
      for (std::size_t bar = 0; bar != std::string_view::npos; begin = bar + 1) {
        bar = row.terms.find('|', begin);
        const std::string term(row.terms.substr(begin, bar - begin));
        EXPECT_EQ(lowercased(foldedForScanning(term)), term);
        EXPECT_GE(term.size(), 3U) << term;
        EXPECT_LE(term.size(), 60U) << term;
        EXPECT_TRUE((term.front() & 0x80) == 0 || characterCount(term) >= 2) << term;
        const std::vector<FoundWord> found = wordsIn(term);
        EXPECT_TRUE(std::ranges::any_of(found, [&](const FoundWord& word) {
          return word.term == term && word.is(row.roles) && word.begin == 0 && word.end == term.size();
        })) << term;
      }
    }
  }
}

/// Each text repeats one fragment, so the borders of pieces fall on many places of the fragment.
TEST(SecretMailRule, masksALongTextAsItsFragments) {
  struct Fragment {
    std::string_view text;
    std::string_view masked;
  };
  constexpr std::size_t size = 400'000;
  for (const auto& [text, masked] :
       {Fragment{"Your code 493 021 is good. ", "Your code ••••••• is good. "},
        Fragment{"Use A7K 9QX or $ 4930 as you like, ", "Use ••••••• or $ 4930 as you like, "},
        Fragment{"pay 4930 members by 4 9 3 0 now; ", "pay 4930 members by ••••••• now; "},
        Fragment{"認証コードは４９３\u3000０２１です。この番号を画面に入力してください、4930ポイント。",
                 "認証コードは•••••••です。この番号を画面に入力してください、4930ポイント。"}}) {
    const std::size_t count = size / text.size();
    EXPECT_TRUE(SecretMailRule::maskedCodes(test::repeated(text, count)) == test::repeated(masked, count))
        << text;
  }
}

TEST(SecretMailRule, looksAtTheBeginningOnly) {
  const std::string_view telling = "Your verification code is 493021";
  const std::string before(SecretMailRule::mostLookedAt - telling.size(), ' ');
  EXPECT_FALSE(SecretMailRule::signals({.text = before + std::string(telling)}).empty());
  EXPECT_TRUE(
      SecretMailRule::signals({.text = before + std::string(telling.size(), ' ') + std::string(telling)})
          .empty());
  EXPECT_TRUE(SecretMailRule::signals({.subject = before + "12345678901234567890123456789012 Your passcode"})
                  .empty());
}

/// A function that takes quadratic time would exceed the time limit of ctest.
TEST(SecretMailRule, pathologicalMailEnds) {
  constexpr std::size_t size = 200'000;
  for (const std::string_view fragment :
       {"4", "4930 ", "4 9 ", "A7K-", "code ", "code 4930 ", "confirm ", "sign in ", "パスワード",
        "\u0316\u0301", "\u0301", "\uFDFA", "１", "\xFF", "https://", "a@", " ", "\u200B"}) {
    const std::string text = test::repeated(fragment, size / fragment.size());
    const auto signals = SecretMailRule::signals({.subject = text, .from = text, .text = text});
    const std::string masked = SecretMailRule::maskedCodes(text);
    EXPECT_LE(signals.size(), 5U);
    EXPECT_GE(masked.size(), text.size() / 4);
  }
}

}  // namespace
}  // namespace tarnwell
