#pragma once

/// Small readers for the words of the protocol.
/// Threads: all functions are pure.

#include <cstdint>
#include <optional>
#include <string_view>

namespace tarnwell {

/// Takes the next word off a line: the bytes up to the next blank, blanks before it skipped. Empty at the
/// end of the line.
std::string_view takeWord(std::string_view& line);

/// A decimal number of 32 bits, with an optional "+" before it; absent for any other text.
std::optional<std::uint32_t> unsigned32(std::string_view text);

}  // namespace tarnwell
