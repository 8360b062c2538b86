#include "Core/SecurityMail/CodeUnits.h"

#include <algorithm>
#include <span>
#include <string>

#include "Text/ASCIICase.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

/// A number right after one of these, or after one and a blank, is an amount.
constexpr std::string_view currencies[] = {"$", "£", "¥", "€", "₩", "₹"};
/// A number right after one of these is a telephone number, a label, the rest of a card number or an address.
constexpr std::string_view signsBefore[] = {"+",  "#", "/", "@", "&",  "\\", "_",
                                            "..", "~", "•", "×", "〒", "第"};
/// A number right before one of these counts or measures something.
constexpr std::string_view signsAfter[] = {"%",      "$",  "**", "°",  "€",  "£",  "番地", "ドル", "ポイント",
                                           "マイル", "万", "人", "件", "個", "億", "円",   "分",   "千",
                                           "台",     "号", "名", "回", "年", "日", "時",   "月",   "枚",
                                           "歳",     "点", "社", "秒", "通", "階"};

/// The same, as whole words, also with a blank between. Sorted.
constexpr std::string_view unitsAfter[] = {
    "days",    "dollars", "eur", "euros", "followers", "gb",     "gbp",     "hours",
    "items",   "jpy",     "kb",  "kg",    "km",        "mb",     "members", "miles",
    "mins",    "minutes", "ml",  "ms",    "people",    "points", "pts",     "px",
    "seconds", "steps",   "usd", "users", "views",     "words",  "years",   "yen"};
static_assert(std::ranges::is_sorted(unitsAfter));

char byteOrNothing(std::string_view text, std::size_t position) {
  return position < text.size() ? text[position] : '\0';
}

CodePart readPart(std::string_view text, std::size_t begin) {
  CodePart part{.begin = begin, .end = begin};
  for (; part.end < text.size() && isASCIILetterOrDigit(text[part.end]); ++part.end) {
    const char byte = text[part.end];
    part.digits += isASCIIDigit(byte) ? 1U : 0U;
    part.capitals += isASCIICapital(byte) ? 1U : 0U;
    part.changes += part.end > begin && isASCIIDigit(byte) != isASCIIDigit(text[part.end - 1]) ? 1U : 0U;
  }
  return part;
}

/// True for characters other than a hyphen that join two parts: "12.5", "4,930", "10:30", "05/03", "a_1",
/// "a@b1".
bool isTie(char tie, char before, char after) {
  switch (tie) {
    case '.':
    case ',':
      return isASCIIDigit(after);
    case ':':
      return isASCIIDigit(before) && isASCIIDigit(after);
    case '/':
    case '@':
    case '_':
    case '\'':
      return true;
    default:
      return false;
  }
}

bool isSmallLetter(char byte) { return byte >= 'a' && byte <= 'z'; }

// These two look at one byte first: numbers are frequent, and these signs are rare.
bool endsWithAny(std::string_view text, std::span<const std::string_view> endings) {
  return !text.empty() && std::ranges::any_of(endings, [text](std::string_view ending) {
    return text.back() == ending.back() && text.ends_with(ending);
  });
}

bool beginsWithAny(std::string_view text, std::span<const std::string_view> beginnings) {
  return !text.empty() && std::ranges::any_of(beginnings, [text](std::string_view beginning) {
    return text.front() == beginning.front() && text.starts_with(beginning);
  });
}

bool isOtherNumberBefore(std::string_view before) {
  if (before.ends_with(' ')) {
    before.remove_suffix(1);
    // An amount, or a number after an area code in parentheses.
    return endsWithAny(before, currencies) ||
           (before.ends_with(')') && before.size() >= 2 && isASCIIDigit(before[before.size() - 2]));
  }
  if (before.size() >= 2 && isContinuationByte(before.back())) {
    const unsigned char lead = byteAt(before, before.size() - 2);
    if (lead >= 0xC3 && lead < 0xE0) {
      return true;  // a letter of two bytes
    }
  }
  return endsWithAny(before, signsBefore) || endsWithAny(before, currencies);
}

bool isOtherNumberAfter(std::string_view after) {
  constexpr std::string_view punctuation = ".,;:!?)]\"'\n";
  if (after.empty() || punctuation.find(after.front()) != std::string_view::npos) {
    return false;
  }
  if (beginsWithAny(after, signsAfter)) {
    return true;
  }
  if (after.starts_with(' ')) {
    after.remove_prefix(1);
  }
  constexpr std::size_t longest = 10;
  std::string word;  // short enough to need no heap memory
  for (const char byte : after.substr(0, longest)) {
    const char small = asciiLowercasedByte(byte);
    if (!isSmallLetter(small)) {
      break;
    }
    word += small;
  }
  const bool isWhole = !isASCIILetterOrDigit(byteOrNothing(after, word.size()));
  return after.starts_with("€") || (isWhole && std::ranges::binary_search(unitsAfter, word));
}

CodeUnit readUnit(std::string_view text, std::size_t begin) {
  CodeUnit unit;
  for (std::size_t next = begin;;) {
    const CodePart part = readPart(text, next);
    if (unit.count < CodeUnit::mostParts) {
      unit.parts[unit.count++] = part;
    } else {
      unit.isPlain = false;
    }
    unit.end = part.end;
    const char tie = byteOrNothing(text, unit.end);
    const char after = byteOrNothing(text, unit.end + 1);
    if (!isASCIILetterOrDigit(after)) {
      break;
    }
    if (tie != '-') {
      if (!isTie(tie, text[unit.end - 1], after)) {
        break;
      }
      unit.isPlain = false;
    }
    next = unit.end + 1;
  }
  return unit;
}

/// The end of the web address that begins here. `begin` when none does.
std::size_t endOfAddress(std::string_view text, std::size_t begin) {
  const char first = asciiLowercasedByte(text[begin]);
  if (first != 'h' && first != 'w') {
    return begin;
  }
  const std::string_view rest = text.substr(begin, 8);
  if (!startsWithIgnoringASCIICase(rest, "http://") && !startsWithIgnoringASCIICase(rest, "https://") &&
      !startsWithIgnoringASCIICase(rest, "www.")) {
    return begin;
  }
  std::size_t end = begin;
  while (end < text.size() && byteAt(text, end) > ' ' && byteAt(text, end) < 0x80 && text[end] != '<' &&
         text[end] != '>' && text[end] != '"') {
    ++end;
  }
  return end;
}

/// Skips a web address, or reads a unit and keeps it when it has a digit. Returns its end.
std::size_t readWord(std::string_view text, std::size_t begin, std::vector<CodeUnit>& units) {
  if (const std::size_t end = endOfAddress(text, begin); end != begin) {
    return end;
  }
  CodeUnit unit = readUnit(text, begin);
  const std::span parts(unit.parts.data(), unit.count);
  if (std::ranges::any_of(parts, [](const CodePart& part) { return part.digits > 0; })) {
    unit.isPlain = unit.isPlain && !isOtherNumberBefore(text.substr(0, begin)) &&
                   !isOtherNumberAfter(text.substr(unit.end));
    units.push_back(unit);
  }
  return unit.end;
}

}  // namespace

std::vector<CodeUnit> codeUnitsIn(std::string_view text) {
  std::vector<CodeUnit> units;
  std::size_t next = 0;
  for (;;) {
    // Most of a text has no digits, so only the characters around digits are read.
    const auto found =
        std::find_if(text.begin() + static_cast<std::ptrdiff_t>(next), text.end(), isASCIIDigit);
    if (found == text.end()) {
      return units;
    }
    const auto digit = static_cast<std::size_t>(found - text.begin());
    std::size_t begin = digit;
    while (begin > next && text[begin - 1] != ' ' && byteAt(text, begin - 1) < 0x80) {
      --begin;
    }
    for (next = begin; next <= digit;) {
      next = isASCIILetterOrDigit(text[next]) ? readWord(text, next, units) : next + 1;
    }
  }
}

}  // namespace tarnwell
