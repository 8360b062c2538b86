#pragma once

/// Texts from outside on their way into the log, which keeps its entries in memory.
/// Threads: all functions are pure.

#include <cstddef>
#include <string_view>

namespace tarnwell {

/// The first `count` user-perceived characters, and no more than eight bytes for each: a character has any
/// number of combining marks. The text is UTF-8 and is not cut within a code point.
std::string_view shortened(std::string_view text, std::size_t count);

}  // namespace tarnwell
