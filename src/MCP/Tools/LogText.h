#pragma once

/// Texts for the log. The log keeps its entries in memory, so long texts from outside are cut.
///
/// Threads: all functions are pure.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwell {

class IMAPError;

/// A client's UTF-8 text with e-mail addresses masked, cut to `count` user-perceived characters. Also cut to
/// eight bytes for each of them, because a character may have any number of combining marks. Never cut within
/// a code point.
std::string loggable(std::string_view text, std::size_t count = 300);

/// The description of an error with e-mail addresses masked. A `folderNotFound` is cut like a client's text,
/// because the client chose the folder's name. Other descriptions have a higher limit, which they reach only
/// with characters of very many bytes.
std::string loggable(const IMAPError& error);

/// "1 message", "2 messages".
std::string counted(std::int64_t count, std::string_view noun);

}  // namespace tarnwell
