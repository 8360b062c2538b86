#pragma once

/// Texts for the log, which keeps its entries in memory. What comes from outside is cut.
/// Threads: all functions are pure.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwell {

class IMAPError;

/// A text that a client gave: e-mail addresses masked, then the first `count` user-perceived characters, and
/// no more than eight bytes for each, since a character has any number of combining marks. The text is UTF-8
/// and is not cut within a code point.
std::string loggable(std::string_view text, std::size_t count = 300);

/// The description of an error: e-mail addresses masked, and whole, but for the name of a folder in it, which
/// is the client's. A server's words in it are short already; the bound is for characters of very many bytes.
std::string loggable(const IMAPError& error);

/// "1 message", "2 messages".
std::string counted(std::int64_t count, std::string_view noun);

}  // namespace tarnwell
