#include "IMAP/Decoding/ModifiedUTF7.h"

#include <cstdint>

#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell::ModifiedUTF7 {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+,";

constexpr unsigned bitsOfUnit = 16;   // of UTF-16
constexpr unsigned bitsOfLetter = 6;  // of the alphabet

bool isPrintableASCII(char32_t codePoint) { return codePoint >= ' ' && codePoint <= '~'; }
bool isHighSurrogate(char32_t unit) { return unit >= 0xD800 && unit <= 0xDBFF; }
bool isLowSurrogate(char32_t unit) { return unit >= 0xDC00 && unit <= 0xDFFF; }

bool canMislead(char32_t codePoint) {
  return isControlCharacter(codePoint) || (codePoint >= 0x2028 && codePoint <= 0x202E) ||
         (codePoint >= 0x2066 && codePoint <= 0x2069);
}

void appendUTF16(std::u16string& units, char32_t codePoint) {
  if (codePoint < 0x10000) {
    units += static_cast<char16_t>(codePoint);
    return;
  }
  const char32_t offset = codePoint - 0x10000;
  units += static_cast<char16_t>(0xD800 + (offset >> 10));
  units += static_cast<char16_t>(0xDC00 + (offset & 0x3FF));
}

void appendShift(std::string& name, const std::u16string& units) {
  if (units.empty()) {
    return;
  }
  name += '&';
  std::uint32_t bits = 0;
  unsigned count = 0;  // of the low bits not written yet
  for (const char16_t unit : units) {
    bits = bits << bitsOfUnit | unit;
    for (count += bitsOfUnit; count >= bitsOfLetter; count -= bitsOfLetter) {
      name += alphabet[bits >> (count - bitsOfLetter) & 63];
    }
  }
  if (count > 0) {
    name += alphabet[bits << (bitsOfLetter - count) & 63];
  }
  name += '-';
}

/// The text of the letters between "&" and "-". Drops bits that are left over. A surrogate without its
/// partner becomes U+FFFD. Absent when a letter is not in the alphabet.
std::optional<std::string> textOfShift(std::string_view letters) {
  std::u16string units;
  std::uint32_t bits = 0;
  unsigned count = 0;  // of the low bits not read yet
  for (const char letter : letters) {
    const std::size_t value = alphabet.find(letter);
    if (value == std::string_view::npos) {
      return std::nullopt;
    }
    bits = bits << bitsOfLetter | static_cast<std::uint32_t>(value);
    count += bitsOfLetter;
    if (count >= bitsOfUnit) {
      count -= bitsOfUnit;
      units += static_cast<char16_t>(bits >> count);
    }
  }
  std::string text;
  for (std::size_t at = 0; at < units.size(); ++at) {
    char32_t codePoint = units[at];
    if (isHighSurrogate(codePoint) && at + 1 < units.size() && isLowSurrogate(units[at + 1])) {
      codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (units[++at] - 0xDC00U);
    }
    appendCodePoint(text, codePoint);
  }
  return text;
}

/// The text of any name that can be read at all, even of an invalid one.
std::optional<std::string> leniently(std::string_view name) {
  std::string text;
  for (std::size_t begin = 0;;) {
    const std::size_t shift = name.find('&', begin);
    text += name.substr(begin, shift - begin);
    if (shift == std::string_view::npos) {
      return text;
    }
    const std::size_t end = name.find('-', shift);
    if (end == std::string_view::npos) {
      return std::nullopt;
    }
    const std::string_view letters = name.substr(shift + 1, end - shift - 1);
    const std::optional<std::string> shifted = letters.empty() ? "&" : textOfShift(letters);
    if (!shifted) {
      return std::nullopt;
    }
    text += *shifted;
    begin = end + 1;
  }
}

}  // namespace

std::string encoded(std::string_view text) {
  std::string name;
  std::u16string shifted;
  for (std::size_t position = 0; position < text.size();) {
    const char32_t codePoint = nextCodePoint(text, position);
    if (!isPrintableASCII(codePoint)) {
      appendUTF16(shifted, codePoint);
      continue;
    }
    appendShift(name, shifted);
    shifted.clear();
    name += static_cast<char>(codePoint);
    if (codePoint == '&') {
      name += '-';
    }
  }
  appendShift(name, shifted);
  return name;
}

std::optional<std::string> decoded(std::string_view name) {
  std::optional<std::string> text = leniently(name);
  return text && encoded(*text) == name ? text : std::nullopt;
}

std::string readable(std::string_view name) {
  std::string text = decoded(name).value_or(std::string(name));
  for (std::size_t position = 0; position < text.size();) {
    if (canMislead(nextCodePoint(text, position))) {
      return std::string(name);
    }
  }
  return text;
}

}  // namespace tarnwell::ModifiedUTF7
