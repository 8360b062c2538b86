#pragma once

/// Changes one member of a JSON text that a person or another program wrote, and leaves every other byte as
/// it is: comments, trailing commas, byte-order mark, line ends, indentation, order.
///
///     withJSONMember("{\n  // mine\n  \"theme\": \"dark\",\n}\n", {"servers", "mail"}, JSONObject{{"port",
///     1}})
///
/// gives
///
///     {
///       // mine
///       "theme": "dark",
///       "servers": {
///         "mail": {
///           "port": 1
///         }
///       },
///     }
///
/// It reads JSON (RFC 8259) with comments and with a comma after the last member or element. It writes no
/// comment, and a comma at the end only after a member that had one. So a text of plain JSON stays one. A new
/// member stands last in its object. It follows the layout of its neighbours: line ends, indentation, and
/// whether an object stands on one line.
///
/// Every function reads the whole text and throws `JSONEditError` when it is not such a text. Then, and for a
/// value without a JSON form, nothing is lost: the caller still has the old text. The time is linear in the
/// size of the text.
///
/// Threads: all functions are pure.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JSONEditor/JSONEditError.h"
#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

/// In bytes.
constexpr std::size_t maximumJSONTextSize = std::size_t{16} * 1024 * 1024;

/// The keys from the outermost object to the member, at least one: {"mcpServers", "tarnwell"}. A key is
/// compared by its characters, so "\u0061" in the text is the same key as "a".
using JSONPath = std::vector<std::string>;

/// The value of the member. Absent when the member or an object on the way is missing. An empty text, or one
/// of blanks and comments only, has no members. Throws `notJSON` for a value that no `JSONValue` can hold,
/// such as the number 1e999.
std::optional<JSONValue> jsonMember(std::string_view text, const JSONPath& path);

/// The value of the whole text. Absent for an empty text, or one of blanks and comments only. Throws as
/// `jsonMember` does.
std::optional<JSONValue> jsonDocument(std::string_view text);

/// The text with this value at the path. Makes the objects that are missing on the way. An existing member
/// keeps its place. If the old and the new value are objects, they are merged: only members that differ
/// change, and members that only the old one has stay. So a second call with the same value changes nothing.
/// Throws `std::invalid_argument` for a value or path that has no JSON form or is nested too deeply.
std::string withJSONMember(std::string_view text, const JSONPath& path, const JSONValue& value);

/// The text without the member and its comma, and without its lines when nothing else stands on them.
/// Comments outside of the member stay. Objects on the way stay, also empty ones. The same text when there is
/// no such member.
std::string withoutJSONMember(std::string_view text, const JSONPath& path);

}  // namespace tarnwell
