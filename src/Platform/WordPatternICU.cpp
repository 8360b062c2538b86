#include "Platform/Text.h"

#include <unicode/uchar.h>
#include <unicode/uregex.h>
#include <unicode/utext.h>

#include <algorithm>
#include <iterator>

#include "Platform/ASCIICase.h"
#include "Platform/UTF8.h"

namespace tarnwell {

namespace {

struct CloseExpression {
  void operator()(URegularExpression* expression) const { uregex_close(expression); }
};
using Expression = std::unique_ptr<URegularExpression, CloseExpression>;

/// Every ASCII character that is neither letter nor digit gets a backslash, which ICU takes for the
/// character itself.
std::string escaped(std::string_view term) {
  std::string pattern;
  for (const char character : term) {
    if (!isASCIILetterOrDigit(character) && (character & 0x80) == 0) {
      pattern.push_back('\\');
    }
    pattern.push_back(character);
  }
  return pattern;
}

Expression compiled(const std::string& pattern) {
  UErrorCode status = U_ZERO_ERROR;
  UText text = UTEXT_INITIALIZER;
  utext_openUTF8(&text, pattern.data(), static_cast<int64_t>(pattern.size()), &status);
  Expression expression(uregex_openUText(&text, UREGEX_CASE_INSENSITIVE, nullptr, &status));
  utext_close(&text);
  return U_SUCCESS(status) ? std::move(expression) : nullptr;
}

bool isASCIIWordCharacter(char character) { return isASCIILetterOrDigit(character) || character == '_'; }

/// True for letters, which are parts of words, unless they are passed over in the search for a boundary (as
/// the half-width voicing marks are). It may be false for others of the kind: that costs time.
bool isLetter(char32_t codePoint) {
  if (codePoint < 0x80) {
    return isASCIIWordCharacter(static_cast<char>(codePoint));
  }
  if ((codePoint >= 0x3041 && codePoint <= 0x3096) ||  // Hiragana
      (codePoint >= 0x30A1 && codePoint <= 0x30FA) ||  // Katakana
      (codePoint >= 0x4E00 && codePoint <= 0x9FFF)) {  // Han
    return true;
  }
  const auto character = static_cast<UChar32>(codePoint);
  return u_isalpha(character) != 0 && u_hasBinaryProperty(character, UCHAR_GRAPHEME_EXTEND) == 0;
}

/// The code point that ends right before `position`.
char32_t codePointBefore(std::string_view text, std::size_t position) {
  std::size_t start = position - 1;
  while (start > 0 && position - start < 4 && isContinuationByte(text[start])) {
    --start;
  }
  const char32_t codePoint = nextCodePoint(text, start);
  return start == position ? codePoint : replacementCharacter;
}

/// True when a letter stands right before or behind the span, which is no word of its own then.
bool touchesLetter(std::string_view text, std::size_t begin, std::size_t end) {
  return (begin > 0 && isLetter(codePointBefore(text, begin))) ||
         (end < text.size() && isLetter(nextCodePoint(text, end)));
}

}  // namespace

struct WordPattern::Compiled {
  Expression expression;
  std::string lowerTerm;
  /// Only ASCII can match, and the term begins and ends with a part of a word.
  bool isPlainWord = false;

  /// A cheap look that may say true for too much, never false for a match: most texts do not have the term,
  /// and most that do have it inside of longer words.
  bool mayBeIn(std::string_view text) const {
    if (!isPlainWord) {
      return true;
    }
    const char lower = lowerTerm.front();
    const char upper = lower >= 'a' && lower <= 'z' ? static_cast<char>(lower & ~0x20) : lower;
    return mayBeginWith(lower, text) || (upper != lower && mayBeginWith(upper, text));
  }

  /// Whether the term stands anywhere with this first letter, in any case of the others, and without a letter
  /// beside it.
  bool mayBeginWith(char first, std::string_view text) const {
    for (std::size_t begin = 0; (begin = text.find(first, begin)) != std::string_view::npos; ++begin) {
      if (startsWithIgnoringASCIICase(text.substr(begin), lowerTerm) &&
          !touchesLetter(text, begin, begin + lowerTerm.size())) {
        return true;
      }
    }
    return false;
  }
};

WordPattern::WordPattern(std::string_view term) : compiled_(std::make_unique<Compiled>()) {
  compiled_->expression = compiled("\\b" + escaped(term) + "\\b");
  std::ranges::transform(term, std::back_inserter(compiled_->lowerTerm), asciiLowercasedByte);
  const std::string_view lowerTerm = compiled_->lowerTerm;
  compiled_->isPlainWord = foldsFromASCIIOnly(lowerTerm) && !lowerTerm.empty() &&
                           isASCIIWordCharacter(lowerTerm.front()) && isASCIIWordCharacter(lowerTerm.back());
}

WordPattern::~WordPattern() = default;
WordPattern::WordPattern(WordPattern&&) noexcept = default;
WordPattern& WordPattern::operator=(WordPattern&&) noexcept = default;

bool WordPattern::isUsable() const { return compiled_ != nullptr && compiled_->expression != nullptr; }

bool WordPattern::isFoundIn(std::string_view text) const {
  if (!isUsable() || !compiled_->mayBeIn(text)) {
    return false;
  }
  UErrorCode status = U_ZERO_ERROR;
  // A matcher keeps its position in itself, so that each search has its own.
  const Expression matcher(uregex_clone(compiled_->expression.get(), &status));
  UText subject = UTEXT_INITIALIZER;
  utext_openUTF8(&subject, text.data(), static_cast<int64_t>(text.size()), &status);
  uregex_setUText(matcher.get(), &subject, &status);
  const bool isFound = uregex_find64(matcher.get(), 0, &status) && U_SUCCESS(status);
  utext_close(&subject);
  return isFound;
}

}  // namespace tarnwell
