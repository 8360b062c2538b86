#pragma once

/// Hexadecimal digits in escapes and character references.
/// Threads: all functions are pure.

#include <array>
#include <cstddef>
#include <string_view>

namespace tarnwell::TextDecoding {

/// The value of each byte as a hexadecimal digit in either case, or -1.
inline constexpr std::array<signed char, 256> hexDigitValues = [] {
  std::array<signed char, 256> values{};
  values.fill(-1);
  for (const std::string_view digits : {"0123456789ABCDEF", "0123456789abcdef"}) {
    for (std::size_t value = 0; value < digits.size(); ++value) {
      values[static_cast<unsigned char>(digits[value])] = static_cast<signed char>(value);
    }
  }
  return values;
}();

inline int hexDigitValue(char digit) { return hexDigitValues[static_cast<unsigned char>(digit)]; }

}  // namespace tarnwell::TextDecoding
