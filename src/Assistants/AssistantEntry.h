#pragma once

/// The entry "tarnwell" in the configuration of a client.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Assistants/AssistantTable.h"
#include "JSONEditor/JSONEditor.h"

namespace tarnwell {

/// Its name among the entries.
constexpr const char* entryName = "tarnwell";

struct AssistantEntry {
  /// Absent for an entry that starts no program.
  std::optional<std::string> command;
  std::vector<std::string> arguments;
  /// Of an entry with an address instead of a command.
  std::string address;
  bool isSwitchedOff = false;
  /// It has nothing but a command and arguments, so another command in its place loses nothing.
  bool isPlain = false;
  JSONValue value;
};

AssistantEntry entryOf(JSONValue value);

/// Has variables, headers, or an address with a user or a query (RFC 3986, sections 3.2.1 and 3.4). A user's
/// passwords are often there, so they never become words of a command, which every user of the machine can
/// read while it runs.
bool hasSecrets(const AssistantEntry& entry);

/// Both have the same meaning for the client, or both are absent.
bool isSameEntry(const std::optional<JSONValue>& one, const std::optional<JSONValue>& other);

struct AssistantReading {
  std::optional<JSONValue> value() const { return entry ? std::optional(entry->value) : std::nullopt; }

  /// Absent when there is none, or nothing can be read.
  std::optional<AssistantEntry> entry{};
  /// For TOML: why it cannot be read. JSON throws instead.
  std::string problem{};
  /// For TOML: the lines of the entry, as they stand.
  std::string lines{};
  /// For TOML: there may be comments among the entries, which the client's commands drop.
  bool hasComments = false;
};

/// Throws `JSONEditError` or `ConfigurationFileError`.
AssistantReading readEntry(const Machine& machine, const AssistantRow& row);

JSONPath entryPath(const AssistantRow& row);

/// Both texts of a configuration say the same apart from the entry, and from an object without entries. False
/// when a TOML text cannot be read whole. Throws `JSONEditError`.
bool isSameBesidesEntry(const AssistantRow& row, std::string_view one, std::string_view other);

/// Starts the helper of this machine, and with the right argument.
bool startsHelper(const Machine& machine, const AssistantEntry& entry);

/// The text of a JSON configuration with the entry for the helper. Of an entry that starts a program all
/// other members stay, such as its environment. Any other one is replaced.
std::string withEntry(std::string_view text, const AssistantRow& row, const std::string& helper);

}  // namespace tarnwell
