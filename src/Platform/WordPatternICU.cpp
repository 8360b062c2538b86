#include "Platform/Text.h"

#include <unicode/uregex.h>
#include <unicode/utext.h>

#include <algorithm>

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
    const bool isPlain = (character >= '0' && character <= '9') || (character >= 'A' && character <= 'Z') ||
                         (character >= 'a' && character <= 'z') || (character & 0x80) != 0;
    if (!isPlain) {
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

/// True when only ASCII can match the term without regard to case. Outside of ASCII, U+017F and U+212A
/// fold to s and k, and some ligatures to pairs of s, t, f, i and l; nothing else folds to ASCII
/// (Unicode 15, CaseFolding.txt).
bool matchesOnlyASCII(std::string_view lowerTerm) {
  const auto isSafe = [](char character) {
    return (character & 0x80) == 0 && character != 's' && character != 'k';
  };
  if (!std::ranges::all_of(lowerTerm, isSafe)) {
    return false;
  }
  return std::ranges::none_of(std::initializer_list<std::string_view>{"ff", "fi", "fl"}, [&](auto ligature) {
    return lowerTerm.find(ligature) != std::string_view::npos;
  });
}

}  // namespace

struct WordPattern::Compiled {
  Expression expression;
  std::string lowerTerm;
  bool onlyASCII = false;

  /// A cheap look that may say true for too much, never false for a match.
  bool mayBeIn(std::string_view text) const {
    if (!onlyASCII || lowerTerm.empty()) {
      return true;
    }
    const auto sameLetter = [](char left, char right) { return asciiLowercasedByte(left) == right; };
    return std::search(text.begin(), text.end(), lowerTerm.begin(), lowerTerm.end(), sameLetter) !=
           text.end();
  }
};

WordPattern::WordPattern(std::string_view term) : compiled_(std::make_unique<Compiled>()) {
  compiled_->expression = compiled("\\b" + escaped(term) + "\\b");
  std::ranges::transform(term, std::back_inserter(compiled_->lowerTerm), asciiLowercasedByte);
  compiled_->onlyASCII = matchesOnlyASCII(compiled_->lowerTerm);
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
