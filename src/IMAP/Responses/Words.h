#pragma once

/// Readers for the words of the protocol.
/// Threads: all functions are pure.

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwell {

/// Removes the next word from the line and returns it: the bytes up to the next blank, without blanks before
/// them. Empty at the end of the line.
std::string_view takeWord(std::string_view& line);

/// A decimal 32-bit number, with an optional "+" before it. Absent for any other text.
std::optional<std::uint32_t> unsigned32(std::string_view text);

}  // namespace tarnwell
