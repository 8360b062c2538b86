#pragma once

/// Names of mailboxes in modified UTF-7 (RFC 3501, section 5.1.3). Servers use it for everything that is not
/// printable ASCII.
///
///     encoded("ゴミ箱")             // "&MLQw33ux-"
///     decoded("&MLQw33ux-")         // "ゴミ箱"
///     decoded("R&-D")               // "R&D"
///     readable("&MLQw33ux-/&oops")  // "&MLQw33ux-/&oops": not all of it is valid
///
/// Each text has exactly one valid spelling. A name is valid when encoding its text gives the same bytes.
/// This enforces every rule of the section:
/// - Outside a shift, only printable ASCII stands for itself, and "&" is "&-".
/// - Inside a shift, only letters of its alphabet occur. The alphabet has "," in place of "/" and no padding.
/// - Inside a shift, there is no surrogate without its partner, no character that could stand for itself, and
///   no bit after the last character.
/// - A shift ends in "-", and another shift does not follow it at once (the null shift "-&").
///
/// Threads: all functions are pure.

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::ModifiedUTF7 {

/// The name of a UTF-8 text. Bytes that are not UTF-8 count as U+FFFD.
std::string encoded(std::string_view text);

/// The text of a name as UTF-8. Absent when the name is not valid.
std::optional<std::string> decoded(std::string_view name);

/// A name for people: its text, or the unchanged name when it is not valid. The name also stays unchanged
/// when its text has control characters (general category Cc), line or paragraph separators, or bidirectional
/// embeddings, overrides and isolates (U+2028 to U+202E, U+2066 to U+2069). Such a text can look like another
/// one.
std::string readable(std::string_view name);

}  // namespace tarnwell::ModifiedUTF7
