#pragma once

/// Texts from outside on their way into the log, which keeps its entries in memory.
/// Threads: all functions are pure.

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnwell {

class IMAPError;

/// The first `count` user-perceived characters, and no more than eight bytes for each: a character has any
/// number of combining marks. The text is UTF-8 and is not cut within a code point.
std::string_view shortened(std::string_view text, std::size_t count);

/// A text that a client gave, of any length: e-mail addresses masked, then cut.
std::string loggable(std::string_view text, std::size_t count = 300);

/// The description of an error: e-mail addresses masked, and whole, but for the name of a folder in it, which
/// is the client's. A server's words in it are short already; the bound is for characters of very many bytes.
std::string loggable(const IMAPError& error);

}  // namespace tarnwell
