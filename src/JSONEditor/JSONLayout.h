#pragma once

/// How members are laid out at a place of a JSON text, and new members in the same layout.
///
/// Threads: all functions are pure.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "JSONEditor/JSONPlaces.h"
#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

struct JSONLayout {
  bool isOnLines = true;  // each member begins a line; otherwise new text has no line end
  bool isSpaced = true;   // a blank after each colon, and after each comma in a line
  std::string lineEnd = "\n";
  std::string indentation;  // of the members
  std::string step = "  ";  // what each level adds to it

  /// The value as it stands after a key. A list of simple values takes one line.
  std::string written(const JSONValue& value) const;
  /// The key and the value.
  std::string written(std::string_view key, const JSONValue& value) const;
};

/// The place after the CR, LF or CR LF that stands at this place.
std::size_t afterLineEnd(std::string_view text, std::size_t place);

/// The line end before this place. When there is none, the first after it. When there is none, LF.
std::string_view lineEndNear(std::string_view text, std::size_t place);

/// True when only blanks stand before this place on its line.
bool beginsLine(std::string_view text, std::size_t place);

/// The blanks at the beginning of the line of this place.
std::string_view indentationAt(std::string_view text, std::size_t place);

/// The layout of the members of an object. `neighbour` is one of them, absent in an empty object. `holder` is
/// the member whose value the object is, absent for the outermost object.
JSONLayout layoutIn(std::string_view text, const ObjectPlace& outermost, const ObjectPlace& object,
                    const std::optional<MemberPlace>& neighbour, const std::optional<MemberPlace>& holder);

}  // namespace tarnwell
