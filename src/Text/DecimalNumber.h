#pragma once

/// The only reader of decimal numbers: lengths, UIDs, ports, fields of dates. The whole text must be the
/// number: a sign if the caller allows it, and one or more ASCII digits. Leading zeros are allowed. Any other
/// text is absent: also an empty one, one with blanks, and a number that does not fit the integer type.
///
///     decimalNumber<std::uint32_t>("007");                   // 7
///     decimalNumber<std::uint32_t>("4294967296");            // absent
///     decimalNumber<std::int64_t>("-1");                     // absent
///     decimalNumber<std::int64_t>("-1", Sign::plusOrMinus);  // -1
///
/// Threads: all functions are pure.

#include <charconv>
#include <concepts>
#include <optional>
#include <string_view>
#include <system_error>

namespace tarnwell {

enum class Sign { none, plus, plusOrMinus };

template <std::integral Integer>
std::optional<Integer> decimalNumber(std::string_view text, Sign sign = Sign::none) {
  if (sign != Sign::none && text.starts_with('+')) {
    text.remove_prefix(1);
    sign = Sign::none;
  }
  if (sign != Sign::plusOrMinus && text.starts_with('-')) {
    return std::nullopt;
  }
  Integer number = 0;
  const char* const textEnd = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), textEnd, number);
  return error == std::errc() && end == textEnd ? std::optional(number) : std::nullopt;
}

}  // namespace tarnwell
