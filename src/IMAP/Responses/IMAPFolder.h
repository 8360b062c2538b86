#pragma once

/// A mailbox as the server lists it (RFC 3501, section 7.2.2; special uses of RFC 6154).
/// Threads: plain values.

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// The special-use attributes of RFC 6154, and the inbox.
enum class SpecialUse { inbox, archive, drafts, sent, junk, trash, flagged, all };

/// The attribute with its backslash, such as "\Trash". The JSON form is the same.
std::string_view rawValue(SpecialUse use);
/// Exact and case-sensitive. Absent for any other text.
std::optional<SpecialUse> specialUse(std::string_view rawValue);

/// The JSON form is the raw value. Reading any other text throws an exception of the JSON library.
void to_json(nlohmann::json& json, SpecialUse use);
void from_json(const nlohmann::json& json, SpecialUse& use);

struct IMAPFolder {
  /// The last component of the path, as the server spells it. For people use `readableName`.
  std::string name;
  /// The full mailbox name as the server spells it, in modified UTF-7. Commands use this name.
  std::string path;
  /// The hierarchy delimiter, for example "/".
  std::string delimiter;
  /// One of the raw values of `SpecialUse`, kept as text.
  std::optional<std::string> specialUse;
  /// False when the server marks the mailbox \Noselect.
  bool selectable = true;

  bool operator==(const IMAPFolder&) const = default;
};

/// The name and the path with modified UTF-7 decoded (`ModifiedUTF7::readable`). The path is decoded level by
/// level; a level that cannot be decoded stays unchanged. For people, and to find what they ask for. Never
/// for a command.
std::string readableName(const IMAPFolder& folder);
std::string readablePath(const IMAPFolder& folder);

/// Keys are the field names. An absent special use is left out. Reading throws the JSON library's exception
/// when another field is missing or a field has the wrong type.
void to_json(nlohmann::json& json, const IMAPFolder& folder);
void from_json(const nlohmann::json& json, IMAPFolder& folder);

}  // namespace tarnwell
