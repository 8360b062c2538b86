#include "Core/CodeUnits.h"

#include <algorithm>
#include <span>

#include "Platform/ASCIICase.h"
#include "Platform/UTF8.h"

namespace tarnwell {

namespace {

/// Directly before a number, or with a blank between.
constexpr std::string_view currencies[] = {"$", "£", "¥", "€", "₩", "₹"};
/// Directly before: what makes a number a telephone number, a label, the rest of a card number, an address.
constexpr std::string_view signsBefore[] = {"+", "#", "/", "@", "&", "\\", "..", "•", "×", "〒", "第", "~"};
/// Directly after.
constexpr std::string_view signsAfter[] = {"%",  "°",  "$",    "€",        "£",      "円", "年", "月", "日",
                                           "時", "分", "秒",   "個",       "件",     "名", "人", "点", "回",
                                           "枚", "台", "階",   "号",       "番地",   "万", "億", "千", "歳",
                                           "通", "社", "ドル", "ポイント", "マイル", "**"};
/// Directly after or with a blank between, as whole words in lower case.
constexpr std::string_view unitsAfter[] = {
    "usd",  "eur",     "gbp",  "jpy",     "yen", "dollars", "euros", "points", "pts",     "miles",    "km",
    "kg",   "gb",      "mb",   "kb",      "px",  "ml",      "items", "users",  "people",  "years",    "hours",
    "days", "minutes", "mins", "seconds", "ms",  "steps",   "words", "views",  "members", "followers"};

bool isDigit(char byte) { return byte >= '0' && byte <= '9'; }
bool isCapital(char byte) { return byte >= 'A' && byte <= 'Z'; }

char byteOrNothing(std::string_view text, std::size_t position) {
  return position < text.size() ? text[position] : '\0';
}

CodePart readPart(std::string_view text, std::size_t begin) {
  CodePart part{.begin = begin, .end = begin};
  for (; part.end < text.size() && isASCIILetterOrDigit(text[part.end]); ++part.end) {
    const char byte = text[part.end];
    part.digits += isDigit(byte) ? 1U : 0U;
    part.capitals += isCapital(byte) ? 1U : 0U;
    part.changes += part.end > begin && isDigit(byte) != isDigit(text[part.end - 1]) ? 1U : 0U;
  }
  return part;
}

/// What ties two parts together without being a hyphen: "12.5", "4,930", "10:30", "05/03", "a_1", "a@b1".
bool isTie(char tie, char before, char after) {
  switch (tie) {
    case '.':
    case ',':
      return isDigit(after);
    case ':':
      return isDigit(before) && isDigit(after);
    case '/':
    case '@':
    case '_':
    case '\'':
      return true;
    default:
      return false;
  }
}

bool endsWithAny(std::string_view text, std::span<const std::string_view> endings) {
  return std::ranges::any_of(endings, [text](std::string_view ending) { return text.ends_with(ending); });
}

bool isOtherNumberBefore(std::string_view before) {
  if (endsWithAny(before, signsBefore) || endsWithAny(before, currencies)) {
    return true;
  }
  if (!before.empty() && byteAt(before, before.size() - 1) >= 0x80 && before.size() >= 2) {
    const unsigned char lead = byteAt(before, before.size() - 2);
    return lead >= 0xC3 && lead < 0xE0;  // a letter of two bytes
  }
  if (!before.ends_with(' ')) {
    return before.ends_with('_');
  }
  before.remove_suffix(1);
  // An area code in parentheses.
  return endsWithAny(before, currencies) ||
         (before.ends_with(')') && before.size() >= 2 && isDigit(before[before.size() - 2]));
}

bool isOtherNumberAfter(std::string_view after) {
  if (std::ranges::any_of(signsAfter, [after](std::string_view sign) { return after.starts_with(sign); })) {
    return true;
  }
  if (after.starts_with(' ')) {
    after.remove_prefix(1);
  }
  return after.starts_with("€") || std::ranges::any_of(unitsAfter, [after](std::string_view unit) {
           return startsWithIgnoringASCIICase(after, unit) &&
                  !isASCIILetterOrDigit(byteOrNothing(after, unit.size()));
         });
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

/// The end of the address of a page that begins here; the same place when none does.
std::size_t endOfAddress(std::string_view text, std::size_t begin) {
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

}  // namespace

std::vector<CodeUnit> codeUnitsIn(std::string_view text) {
  std::vector<CodeUnit> units;
  for (std::size_t next = 0; next < text.size();) {
    if (!isASCIILetterOrDigit(text[next])) {
      ++next;
      continue;
    }
    if (const std::size_t end = endOfAddress(text, next); end != next) {
      next = end;
      continue;
    }
    CodeUnit unit = readUnit(text, next);
    next = unit.end;
    const std::span parts(unit.parts.data(), unit.count);
    if (std::ranges::any_of(parts, [](const CodePart& part) { return part.digits > 0; })) {
      unit.isPlain = unit.isPlain && !isOtherNumberBefore(text.substr(0, unit.begin())) &&
                     !isOtherNumberAfter(text.substr(unit.end));
      units.push_back(unit);
    }
  }
  return units;
}

}  // namespace tarnwell
