#pragma once

/// Digits, letters and letter case of ASCII, for the words of protocols, which may come in any letter case
/// (RFC 3501, sections 1.2 and 9). A byte beyond ASCII equals only itself. The user's language changes
/// nothing.
///
/// Threads: all functions are pure.

#include <algorithm>
#include <string>
#include <string_view>

namespace tarnwell {

constexpr bool isASCIIDigit(char byte) { return byte >= '0' && byte <= '9'; }

constexpr bool isASCIICapital(char byte) { return byte >= 'A' && byte <= 'Z'; }

constexpr char asciiLowercasedByte(char byte) {
  return isASCIICapital(byte) ? static_cast<char>(byte - 'A' + 'a') : byte;
}

constexpr bool isASCIILetterOrDigit(char byte) {
  const char lower = asciiLowercasedByte(byte);
  return (lower >= 'a' && lower <= 'z') || isASCIIDigit(byte);
}

inline std::string asciiLowercased(std::string text) {
  for (char& byte : text) {
    byte = asciiLowercasedByte(byte);
  }
  return text;
}

constexpr bool equalsIgnoringASCIICase(std::string_view left, std::string_view right) {
  return left.size() == right.size() &&
         std::equal(left.begin(), left.end(), right.begin(), [](char leftByte, char rightByte) {
           return leftByte == rightByte || asciiLowercasedByte(leftByte) == asciiLowercasedByte(rightByte);
         });
}

constexpr bool startsWithIgnoringASCIICase(std::string_view text, std::string_view prefix) {
  return equalsIgnoringASCIICase(text.substr(0, prefix.size()), prefix);
}

}  // namespace tarnwell
