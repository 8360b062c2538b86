#pragma once

/// Reads TOML 1.0, for the entry in the configuration of a client that keeps it so.
///
///     decodeTOML("[mcp_servers.mail]\ncommand = 'mail'\n")  // {"mcp_servers":{"mail":{"command":"mail"}}}
///
/// Tables become objects. Of an array of tables ([[name]]) only the last one is kept. Numbers, dates and
/// times become texts as they are written. Some texts that TOML forbids are accepted: a number with a letter
/// in it, a line break in an inline table, a key that stands twice (the last one counts).
///
/// Threads: pure.

#include <cstddef>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

#include "MCP/JSON/JSONValue.h"

namespace tarnwell {

/// In bytes. It bounds the time: a table takes the square of the number of its keys.
constexpr std::size_t maximumTOMLSize = std::size_t{256} * 1024;

/// The document, or the line (from 1) that cannot be read: line 1 for a text that is not UTF-8 or longer than
/// `maximumTOMLSize`. Nesting beyond 64 is not read. `statements`, if given, gets each header and each member
/// with its name, up to the end of its line.
std::variant<JSONValue, std::size_t> decodeTOML(std::string_view text,
                                                std::vector<std::string_view>* statements = nullptr);

}  // namespace tarnwell
