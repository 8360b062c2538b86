#pragma once

/// The texts by which MCP clients are told how to start the helper. For a person to copy into the
/// configuration of a client that the app does not change itself.
///
///     connectionBlock(BlockFormat::codexTOML, "/usr/bin/tarnwell");
///     // [mcp_servers.tarnwell]
///     // command = "/usr/bin/tarnwell"
///     // args = ["serve"]
///
/// Any path is quoted as its format wants. A path that is not UTF-8 can stand in none of these formats: the
/// block is then empty, in JSON "{}".
///
/// Threads: any.

#include <filesystem>
#include <string>

namespace tarnwell {

enum class BlockFormat {
  /// JSON with "mcpServers", which most clients read.
  mcpServersJSON,
  /// JSON with "servers", as Visual Studio Code reads it.
  serversJSON,
  /// JSON with "mcp" and one list for program and arguments, as opencode reads it.
  opencodeJSON,
  codexTOML,
  gooseYAML,
  continueYAML,
};

/// Ends with a line feed, except JSON.
std::string connectionBlock(BlockFormat format, const std::filesystem::path& helper);

/// The block for a client that is not known: `mcpServersJSON`.
std::string generalBlock(const std::filesystem::path& helper);

}  // namespace tarnwell
