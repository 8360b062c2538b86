#pragma once

/// Finds the places of values in a JSON text with comments and trailing commas. A place is a position in
/// bytes.
///
/// Threads: all functions are pure.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "JSONEditor/JSONReader.h"

namespace tarnwell {

/// An object, and its member with the key that was asked for.
struct ObjectPlace {
  TextRange range;  // with both braces
  std::optional<MemberPlace> first;
  std::optional<MemberPlace> last;
  std::optional<MemberPlace> found;
};

/// Checks the whole text and returns where its value begins. Absent when there are only blanks and comments.
/// Throws `JSONEditError` for any other text.
std::optional<std::size_t> placeOfRoot(std::string_view text);

/// The object that begins at this place of a checked text. Throws `notAnObject` when another value begins
/// there, and `ambiguous` when the key stands in it twice.
ObjectPlace objectAt(std::string_view text, std::size_t place, std::string_view key);

/// The end of the comment that begins at this place of a checked text. The place itself when none begins
/// there. The end of the line does not belong to a comment.
std::size_t afterComment(std::string_view text, std::size_t place);

/// A value of a checked text as plain JSON: without comments, blanks and trailing commas.
std::string plainJSON(std::string_view value);

}  // namespace tarnwell
