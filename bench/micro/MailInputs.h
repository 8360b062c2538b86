#pragma once

/// Artificial mail for the measurements. It has the shapes of real mail and the same bytes in every run.
///
///     std::string page = newsletter(1'000'000);  // HTML of at least a million bytes
///
/// Sizes are in bytes and are minimums. A text ends with the sentence or block that reaches the size. Only
/// `repeated` stays within its size.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell::bench {

enum class Script { latin, japanese, emoji, latinWithEmoji };

/// Sentences and paragraphs.
std::string prose(Script script, std::size_t size);

/// An HTML newsletter: a head with styles and a script, then blocks of nested tables with inline styles, long
/// tracking links, images, short sentences and character references.
std::string newsletter(std::size_t size);

/// The response lines to a UID FETCH of flags, date, envelope and body structure, one for each message: plain
/// messages, alternatives, and messages with attachments. A third of them have encoded subjects.
std::vector<std::string> fetchResponses(std::size_t count);

/// Subjects and names from headers. Most have encoded words: B and Q, UTF-8 and ISO-2022-JP.
std::vector<std::string> headerFields(std::size_t count);

/// Base64 in lines of 76 columns (RFC 2045, section 6.8).
std::string base64Lines(std::string_view bytes);

/// Quoted-printable in lines of at most 76 columns (RFC 2045, section 6.7).
std::string quotedPrintableLines(std::string_view text);

/// Bytes without a pattern, like a compressed attachment.
std::string randomBytes(std::size_t size);

/// The whole fragment as often as it fits into `size` bytes, but at least once. A part of it at the end, such
/// as half a character, would be read differently at different sizes.
std::string repeated(std::string_view fragment, std::size_t size);

}  // namespace tarnwell::bench
