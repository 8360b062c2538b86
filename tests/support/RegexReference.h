#pragma once

/// ICU's regular expressions, as the slow reference for the scanners that replace an expression.

#include <gtest/gtest.h>
#include <unicode/regex.h>

#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tarnwell {

enum class LetterCase { matters, isIgnored };

/// The groups of one match. Group 0 is the whole match.
using RegexGroups = std::vector<std::string>;

/// Compiled once: ICU takes milliseconds for an expression that ignores case.
inline const icu::RegexPattern& compiledByICU(std::string_view pattern, LetterCase letterCase) {
  static std::map<std::pair<std::string, LetterCase>, std::unique_ptr<icu::RegexPattern>> patterns;
  auto& compiled = patterns[{std::string(pattern), letterCase}];
  if (!compiled) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError where;
    const uint32_t flags = letterCase == LetterCase::isIgnored ? uint32_t{UREGEX_CASE_INSENSITIVE} : 0U;
    const auto length = static_cast<int32_t>(pattern.size());
    const auto source = icu::UnicodeString::fromUTF8(icu::StringPiece(pattern.data(), length));
    compiled.reset(icu::RegexPattern::compile(source, flags, where, status));
    if (U_FAILURE(status)) {
      throw std::invalid_argument(u_errorName(status));
    }
  }
  return *compiled;
}

inline bool isFoundByICU(std::string_view text, std::string_view pattern, LetterCase letterCase) {
  UErrorCode status = U_ZERO_ERROR;
  const auto length = static_cast<int32_t>(text.size());
  const auto input = icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), length));
  const std::unique_ptr<icu::RegexMatcher> matcher(compiledByICU(pattern, letterCase).matcher(input, status));
  const bool isFound = matcher->find(status) != 0;
  EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
  return isFound;
}

/// Replaces every match of the pattern, from left to right, by the result of `substitute` for its groups.
/// `onGap` gets each text between two matches and may change it. It does not get the texts before the first
/// and after the last match.
inline std::string replaceByICU(
    std::string_view text, std::string_view pattern, LetterCase letterCase,
    const std::function<std::string(const RegexGroups&)>& substitute,
    const std::function<std::string(const std::string&)>& onGap = [](const std::string& gap) {
      return gap;
    }) {
  UErrorCode status = U_ZERO_ERROR;
  const auto toICU = [](std::string_view utf8) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(utf8.data(), static_cast<int32_t>(utf8.size())));
  };
  const auto toUTF8 = [](const icu::UnicodeString& unicode) {
    std::string utf8;
    unicode.toUTF8String(utf8);
    return utf8;
  };
  const icu::UnicodeString input = toICU(text);
  const std::unique_ptr<icu::RegexMatcher> matcher(compiledByICU(pattern, letterCase).matcher(input, status));
  std::string result;
  int32_t copied = 0;
  bool isFirst = true;
  while (U_SUCCESS(status) && matcher->find(status)) {
    RegexGroups groups;
    for (int32_t group = 0; group <= matcher->groupCount(); ++group) {
      groups.push_back(toUTF8(matcher->group(group, status)));
    }
    const std::string gap = toUTF8(input.tempSubStringBetween(copied, matcher->start(status)));
    result += isFirst ? gap : onGap(gap);
    result += substitute(groups);
    copied = matcher->end(status);
    isFirst = false;
  }
  EXPECT_TRUE(U_SUCCESS(status)) << u_errorName(status);
  return result + toUTF8(input.tempSubString(copied));
}

inline std::string replaceByICU(std::string_view text, std::string_view pattern, LetterCase letterCase,
                                const std::string& substitute) {
  return replaceByICU(text, pattern, letterCase, [&](const RegexGroups&) { return substitute; });
}

}  // namespace tarnwell
