// The shapes of letters and digits that count as a code. The words around them are not considered here.

#include <algorithm>
#include <span>

#include "Core/SecurityMail/CodeUnits.h"
#include "Core/SecurityMail/SecretMailScan.h"
#include "Text/ASCIICase.h"

namespace tarnwell {

namespace {

bool isYear(std::string_view digits) {
  return digits.size() == 4 && (digits.starts_with("19") || digits.starts_with("20"));
}

/// As in 20240503.
bool isDate(std::string_view digits) {
  if (digits.size() != 8 || !isYear(digits.substr(0, 4))) {
    return false;
  }
  const std::string_view month = digits.substr(4, 2);
  const std::string_view day = digits.substr(6, 2);
  return month >= "01" && month <= "12" && day >= "01" && day <= "31";
}

bool isCodeNumber(std::string_view digits) {
  return digits.size() >= 4 && digits.size() <= 8 && !isYear(digits) && !isDate(digits);
}

/// False for "0x1F", "xxxx1234", "1080p", "sha256" and "500MB".
bool isCodeOfLettersAndDigits(const CodePart& part, std::string_view text) {
  if (!part.isMixed() || part.size() < 5 || part.size() > 8 || text.starts_with("0x") ||
      text.find_first_not_of("xX0123456789") == std::string_view::npos) {
    return false;
  }
  if (part.isInCapitals()) {
    return part.changes >= 2 || (part.digits >= 3 && isASCIICapital(text.front()));
  }
  return part.changes >= 2 && part.digits >= 2;
}

bool isCodeUnit(const CodeUnit& unit, std::string_view text) {
  const auto partText = [&](std::size_t part) {
    return text.substr(unit.parts[part].begin, unit.parts[part].size());
  };
  const CodePart& first = unit.parts[0];
  if (!unit.isPlain) {
    return false;
  }
  if (unit.count == 1) {
    return first.isNumber() ? isCodeNumber(partText(0)) : isCodeOfLettersAndDigits(first, partText(0));
  }
  const CodePart& second = unit.parts[1];
  if (unit.count == 2 && first.digits == 0 && first.size() <= 2 && second.isNumber()) {
    return isCodeNumber(partText(1));  // G-493021
  }
  const std::span parts(unit.parts.data(), unit.count);
  const bool areNumbers = std::ranges::all_of(parts, &CodePart::isNumber);
  const bool areOneSize =
      std::ranges::all_of(parts, [&](const CodePart& part) { return part.size() == first.size(); });
  if (areNumbers) {
    return unit.count == 2 && areOneSize && (first.size() == 3 || first.size() == 4) &&
           !(isYear(partText(0)) && isYear(partText(1)));
  }
  unsigned digits = 0;
  for (const CodePart& part : parts) {
    digits += part.digits;
  }
  const bool areMixed = std::ranges::all_of(parts, &CodePart::isMixed);
  const bool areInOneCase = std::ranges::all_of(parts, &CodePart::isInCapitals) ||
                            (digits >= 2 && std::ranges::all_of(parts, &CodePart::isInSmallLetters));
  return digits > 0 && areInOneCase && (areOneSize || areMixed) &&
         std::ranges::all_of(parts,
                             [](const CodePart& part) { return part.size() >= 3 && part.size() <= 5; });
}

bool isOneBlankBetween(const CodeUnit& left, const CodeUnit& right, std::string_view text) {
  return right.begin() == left.end + 1 && text[left.end] == ' ';
}

/// True between "8 2 6 1" and "30".
bool isEndOfSingleDigits(std::span<const CodeUnit> units, const CodeUnit& next) {
  const auto isOneDigit = [](const CodeUnit& unit) { return unit.parts[0].size() == 1; };
  return units.size() >= 4 && !isOneDigit(next) && std::ranges::all_of(units, isOneDigit);
}

/// Numbers separated by blanks. They are one code, or no code ("415 555 2671"), or each is judged by itself.
void appendNumbers(std::span<const CodeUnit> units, std::string_view text, std::vector<CodeGroup>& groups) {
  const auto sizeOf = [](const CodeUnit& unit) { return unit.parts[0].size(); };
  const std::size_t first = sizeOf(units.front());
  const bool areOneSize =
      std::ranges::all_of(units, [&](const CodeUnit& unit) { return sizeOf(unit) == first; });
  const std::size_t count = units.size();
  const bool arePlain = std::ranges::all_of(units, &CodeUnit::isPlain);
  if (arePlain && areOneSize &&
      ((count == 2 && (first == 3 || first == 4)) || (count == 3 && first == 2) ||
       (first == 1 && count >= 4 && count <= 8))) {
    groups.push_back({units.front().begin(), units.back().end});
    return;
  }
  std::size_t digits = 0;
  for (const CodeUnit& unit : units) {
    digits += sizeOf(unit);
  }
  const bool areShort = std::ranges::all_of(units, [&](const CodeUnit& unit) { return sizeOf(unit) <= 4; });
  const bool beginsWithZero = text[units.front().begin()] == '0';
  if (count >= 2 &&
      ((!arePlain && digits >= 7) || (digits >= 9 && (beginsWithZero || (count >= 3 && areShort))))) {
    return;  // a telephone or card number
  }
  for (const CodeUnit& unit : units) {
    if (isCodeUnit(unit, text)) {
      groups.push_back({unit.begin(), unit.end});
    }
  }
}

bool isPairOfMixed(const CodeUnit& left, const CodeUnit& right) {
  const auto isHalf = [](const CodeUnit& unit) {
    const CodePart& part = unit.parts[0];
    return unit.isPlain && unit.count == 1 && part.isMixed() && part.isInCapitals() && part.size() >= 3 &&
           part.size() <= 5;
  };
  return isHalf(left) && isHalf(right) && left.parts[0].size() == right.parts[0].size();
}

}  // namespace

std::vector<CodeGroup> codeGroupsIn(std::string_view folded) {
  const std::vector<CodeUnit> units = codeUnitsIn(folded);
  std::vector<CodeGroup> groups;
  for (std::size_t first = 0; first < units.size();) {
    std::size_t end = first + 1;
    if (units[first].isNumber()) {
      while (end < units.size() && units[end].isNumber() &&
             isOneBlankBetween(units[end - 1], units[end], folded) &&
             !isEndOfSingleDigits(std::span(units).subspan(first, end - first), units[end])) {
        ++end;
      }
      appendNumbers(std::span(units).subspan(first, end - first), folded, groups);
    } else if (end < units.size() && isOneBlankBetween(units[first], units[end], folded) &&
               isPairOfMixed(units[first], units[end])) {
      groups.push_back({units[first].begin(), units[end++].end});
    } else if (isCodeUnit(units[first], folded)) {
      groups.push_back({units[first].begin(), units[first].end});
    }
    first = end;
  }
  return groups;
}

}  // namespace tarnwell
