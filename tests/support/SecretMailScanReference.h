#pragma once

/// The words and groups of `SecretMailScan`, found slowly and simply: tries every term at every place, and
/// finds the groups with ICU's regular expressions.

#include <algorithm>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/SecurityMail/SecretMailScan.h"
#include "Text/ASCIICase.h"
#include "support/RegexReference.h"

namespace tarnwell {

/// An expression for one term at the beginning of a text.
inline std::string patternOfTerm(std::string_view term) {
  std::string pattern;
  for (std::size_t place = 0; place < term.size(); ++place) {
    const bool isSecondJapanese = place > 0 && (term[place - 1] & 0x80) != 0 && (term[place] & 0xC0) == 0xC0;
    pattern += isSecondJapanese ? " ?" : "";
    pattern += term[place] == ' ' ? "[ -]?" : term[place] == '.' ? "\\." : std::string(1, term[place]);
  }
  constexpr std::string_view noWord = "(?![A-Za-z0-9_\\u00C0-\\u07FF])";
  const bool isLatinEnd = (term.back() & 0x80) == 0;
  return "\\A" + pattern + (isLatinEnd ? "(?:s" + std::string(noWord) + "|" + std::string(noWord) + ")" : "");
}

/// The length in bytes of the match of an expression that begins with \A. Absent without a match.
inline std::optional<std::size_t> lengthByICU(std::string_view text, std::string_view pattern,
                                              LetterCase letterCase) {
  std::optional<std::size_t> length;
  if (isFoundByICU(text, pattern, letterCase)) {
    replaceByICU(text, pattern, letterCase, [&](const RegexGroups& groups) {
      length = groups[0].size();
      return std::string();
    });
  }
  return length;
}

inline bool isWordByte(char byte) { return isASCIILetterOrDigit(byte) || byte == '_'; }

struct ReferenceTerm {
  std::string_view term;
  MailRoles roles;
  std::string pattern;
};

/// All terms, the longest first.
inline std::vector<ReferenceTerm> referenceTerms() {
  std::map<std::string_view, MailRoles> roles;
  for (const auto& rows : {englishCodeWords(), englishContextWords(), japaneseSecretMailWords()}) {
    for (const SecretMailWords& row : rows) {
      std::size_t begin = 0;
      for (std::size_t bar = 0; bar != std::string_view::npos; begin = bar + 1) {
        bar = row.terms.find('|', begin);
        roles[row.terms.substr(begin, bar - begin)] |= row.roles;
      }
    }
  }
  std::vector<ReferenceTerm> terms;
  for (const auto& [term, rolesOfTerm] : roles) {
    terms.push_back({term, rolesOfTerm, patternOfTerm(term)});
  }
  std::ranges::sort(terms, std::greater<>(),
                    [](const auto& term) { return std::pair(term.term.size(), term.term); });
  return terms;
}

/// False for most terms that do not begin there. Only the others are given to ICU.
inline bool mayBegin(std::string_view text, std::string_view term) {
  return asciiLowercasedByte(text[0]) == term[0] &&
         (term[1] == ' ' || (text.size() > 1 && asciiLowercasedByte(text[1]) == term[1]));
}

inline std::vector<FoundWord> referenceWords(std::string_view text) {
  static const std::vector<ReferenceTerm> terms = referenceTerms();
  std::vector<FoundWord> words;
  std::size_t free = 0;  // the end of the last word with the role `other`
  for (std::size_t begin = 0; begin < text.size(); ++begin) {
    const bool isInside = (text[begin] & 0xC0) == 0x80;
    const std::string_view before = text.substr(0, begin);
    const bool isAfterLetter =
        begin > 0 && (isWordByte(before.back()) || (begin > 1 && (before.back() & 0xC0) == 0x80 &&
                                                    static_cast<unsigned char>(before[begin - 2]) >= 0xC3 &&
                                                    static_cast<unsigned char>(before[begin - 2]) < 0xE0));
    if (begin < free || isInside || (isASCIILetterOrDigit(text[begin]) && isAfterLetter)) {
      continue;
    }
    for (const auto& [term, roles, pattern] : terms) {
      const std::string_view rest = text.substr(begin, 120);  // longer than any term
      const auto length =
          mayBegin(rest, term) ? lengthByICU(rest, pattern, LetterCase::isIgnored) : std::nullopt;
      if (length) {
        words.push_back({begin, begin + *length, term, roles});
        if (words.back().is(mail_role::other)) {
          free = begin + *length;
          break;
        }
      }
    }
  }
  return words;
}

inline bool isLike(std::string_view text, std::string_view pattern) {
  return isFoundByICU(text, "\\A(?:" + std::string(pattern) + ")\\z", LetterCase::matters);
}

/// A run of letters, digits and the characters that join them, with at least one digit.
struct ReferenceUnit {
  std::size_t begin;
  std::size_t end;
  std::string text;
  bool isPlain;
};

inline std::vector<ReferenceUnit> referenceUnits(std::string_view text) {
  constexpr std::string_view address = "(?i:https?://|www\\.)[!-\\x7F&&[^<>\"]]*";
  constexpr std::string_view unit =
      "[A-Za-z0-9]+(?:(?:[-/@_']|[.,](?=[0-9])|(?<=[0-9]):(?=[0-9]))[A-Za-z0-9]+)*";
  constexpr std::string_view otherBefore =
      "(?:[+#/@&\\\\_~$•×〒第£¥€₩₹\u00C0-\u07FF]|\\.\\.|"
      "[$£¥€₩₹] |[0-9]\\) )\\z";
  constexpr std::string_view otherAfter =
      "\\A(?:[%$°€£]|\\*\\*| €|"
      "[円年月日時分秒個件名人点回枚台階号万億千歳通社]|番地|ドル|ポイント|マイル|"
      " ?(?i:days|dollars|eur|euros|followers|gb|gbp|hours|items|jpy|kb|kg|km|mb|members|miles|mins|minutes|"
      "ml|ms|"
      "people|points|pts|px|seconds|steps|usd|users|views|words|years|yen)(?![A-Za-z0-9]))";
  std::vector<ReferenceUnit> units;
  std::size_t position = 0;
  const std::string both = std::string(address) + "|" + std::string(unit);
  const auto take = [&](const std::string& found) {
    const std::size_t begin = text.find(found, position);
    position = begin + found.size();
    if (isLike(found, address) || found.find_first_of("0123456789") == std::string::npos) {
      return;
    }
    const bool isOther = isFoundByICU(text.substr(0, begin), otherBefore, LetterCase::matters) ||
                         isFoundByICU(text.substr(position), otherAfter, LetterCase::matters);
    units.push_back({begin, position, found, isLike(found, "[A-Za-z0-9-]+") && !isOther});
  };
  replaceByICU(text, both, LetterCase::matters, [&](const RegexGroups& groups) {
    take(groups[0]);
    return std::string();
  });
  return units;
}

inline bool isReferenceCode(const ReferenceUnit& unit) {
  constexpr std::string_view number =
      "(?!(?:19|20)[0-9]{2}\\z)(?!(?:19|20)[0-9]{2}(?:0[1-9]|1[0-2])(?:0[1-9]|[12][0-9]|3[01])\\z)[0-9]{4,8}";
  const std::string_view text = unit.text;
  if (!unit.isPlain) {
    return false;
  }
  if (isLike(text, number) || isLike(text, "[0-9]{3}-[0-9]{3}")) {
    return true;
  }
  if (isLike(text, "[0-9]{4}-[0-9]{4}")) {
    return !isLike(text, "(?:19|20)..-(?:19|20)..");
  }
  if (isLike(text, "[A-Za-z]{1,2}-" + std::string(number))) {
    return true;
  }
  if (isLike(text, "(?=.*[0-9])(?=.*[A-Za-z])(?!0x)(?![xX0-9]*\\z)[A-Za-z0-9]{5,8}")) {
    constexpr std::string_view twoChanges = "[A-Za-z]+[0-9]+[A-Za-z].*|[0-9]+[A-Za-z]+[0-9].*";
    constexpr std::string_view twoDigits = ".*[0-9].*[0-9].*";
    return isLike(text, "[A-Z0-9]*") ? isLike(text, twoChanges) || isLike(text, "[A-Z]+[0-9]{3,}")
                                     : isLike(text, twoChanges) && isLike(text, twoDigits);
  }
  constexpr std::string_view mixed = "(?=[A-Z]*[0-9])(?=[0-9]*[A-Z])[A-Z0-9]{3,5}";
  constexpr std::string_view mixedSmall = "(?=[a-z]*[0-9])(?=[0-9]*[a-z])[a-z0-9]{3,5}";
  const auto inGroups = [&](std::string_view group) {
    const std::string one(group);
    return isLike(text, one + "(?:-" + one + "){1,3}");
  };
  const bool areOneSize = isLike(text, ".{3}(?:-.{3}){1,3}|.{4}(?:-.{4}){1,3}|.{5}(?:-.{5}){1,3}");
  const bool hasBoth = isLike(text, "(?=.*[0-9])(?=.*[A-Za-z]).*");
  const bool hasTwoDigits = isLike(text, "(?:[^0-9]*[0-9]){2}.*");
  return inGroups(mixed) || (hasTwoDigits && inGroups(mixedSmall)) ||
         (areOneSize && hasBoth &&
          (inGroups("[A-Z0-9]{3,5}") || (hasTwoDigits && inGroups("[a-z0-9]{3,5}"))));
}

inline std::vector<CodeGroup> referenceGroups(std::string_view text) {
  const std::vector<ReferenceUnit> units = referenceUnits(text);
  const auto isNumber = [&](std::size_t at) { return at < units.size() && isLike(units[at].text, "[0-9]+"); };
  const auto isAfterBlank = [&](std::size_t at) {
    return at < units.size() && units[at - 1].end + 1 == units[at].begin && text[units[at - 1].end] == ' ';
  };
  std::vector<CodeGroup> groups;
  for (std::size_t at = 0; at < units.size();) {
    std::size_t end = at + 1;
    const auto areSingleDigits = [&] {
      bool areSingle = end - at >= 4;
      for (std::size_t each = at; each < end; ++each) {
        areSingle = areSingle && units[each].text.size() == 1;
      }
      return areSingle;
    };
    while (isNumber(at) && isNumber(end) && isAfterBlank(end) &&
           !(areSingleDigits() && units[end].text.size() > 1)) {
      ++end;
    }
    const std::string whole(text.substr(units[at].begin, units[end - 1].end - units[at].begin));
    const auto digits = std::ranges::count_if(whole, [](char byte) { return byte != ' '; });
    constexpr std::string_view half = "(?=[A-Z]*[0-9])(?=[0-9]*[A-Z])";
    bool arePlain = true;
    for (std::size_t each = at; each < end; ++each) {
      arePlain = arePlain && units[each].isPlain;
    }
    if (end - at > 1 && arePlain &&
        isLike(whole,
               "[0-9]{3} [0-9]{3}|[0-9]{4} [0-9]{4}|[0-9]{2} [0-9]{2} [0-9]{2}|"
               "[0-9](?: [0-9]){3,7}")) {
      groups.push_back({units[at].begin, units[end - 1].end});
    } else if (end - at > 1 && ((!arePlain && digits >= 7) ||
                                (digits >= 9 && isLike(whole, "0.*|[0-9]{1,4}(?: [0-9]{1,4}){2,}")))) {
      // No code.
    } else if (end - at == 1 && end < units.size() && !isNumber(at) && isAfterBlank(end) &&
               units[at].isPlain && units[end].isPlain && units[at].text.size() == units[end].text.size() &&
               isLike(units[at].text, std::string(half) + "[A-Z0-9]{3,5}") &&
               isLike(units[end].text, std::string(half) + "[A-Z0-9]{3,5}")) {
      groups.push_back({units[at].begin, units[end].end});
      ++end;
    } else {
      for (std::size_t single = at; single < end; ++single) {
        if (isReferenceCode(units[single])) {
          groups.push_back({units[single].begin, units[single].end});
        }
      }
    }
    at = end;
  }
  return groups;
}

}  // namespace tarnwell
