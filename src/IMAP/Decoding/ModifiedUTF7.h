#pragma once

/// Names of mailboxes in modified UTF-7 (RFC 3501, section 5.1.3), in which servers send everything that is
/// not printable ASCII.
///
///     encoded("ゴミ箱")             // "&MLQw33ux-"
///     decoded("&MLQw33ux-")         // "ゴミ箱"
///     decoded("R&-D")               // "R&D"
///     readable("&MLQw33ux-/&oops")  // "&MLQw33ux-/&oops": not all of it is valid
///
/// Each text has one valid spelling only. A name is valid when encoding its text gives the same bytes, which
/// enforces every rule of the section at once: outside a shift only printable ASCII stands for itself; "&" is
/// "&-"; inside a shift there are only the letters of its alphabet, which has "," in place of "/" and no
/// padding, no surrogate without its partner, no character that could stand for itself and no bits beyond the
/// last character; a shift ends in "-" and no other one follows it at once (the null shift "-&").
///
/// Threads: all functions are pure.

#include <optional>
#include <string>
#include <string_view>

namespace tarnwell::ModifiedUTF7 {

/// The name of a UTF-8 text; bytes that are not UTF-8 count as U+FFFD.
std::string encoded(std::string_view text);

/// The text of a name as UTF-8; absent when the name is not valid.
std::optional<std::string> decoded(std::string_view name);

/// A name for people: its text, or the name as it stands when it is not valid. It also stays when its text
/// would hold control characters (general category Cc), line or paragraph separators, or bidirectional
/// embeddings, overrides and isolates (U+2028 to U+202E, U+2066 to U+2069), because such a text can look like
/// another one.
std::string readable(std::string_view name);

}  // namespace tarnwell::ModifiedUTF7
