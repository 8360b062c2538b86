#pragma once

/// The catalogue of tools that `tools/list` returns: name, description and the JSON Schema of the
/// arguments, all fixed. In the revisions of MCP that begin with a handshake a tool has these three members;
/// later it has a title and hints too.
///
/// The client's model reads the descriptions. They state the limits of each tool in words. The schemas check
/// nothing. Each tool checks its own arguments.
///
/// Threads: any. The first use builds the catalogue.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MCP/JSON/JSONValue.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

struct MCPToolDefinition {
  std::string name;
  std::string description;
  JSONValue inputSchema;

  /// The three members.
  JSONValue toJSON() const;
};

namespace MCPToolSchemas {

/// The nine definitions in the order of `allToolNames`.
const std::vector<MCPToolDefinition>& all();

std::optional<MCPToolDefinition> definition(ToolName name);

/// The array under "tools" in the answer to `tools/list`.
JSONValue toolsListJSON();

/// One tool in the form of revision 2026-07-28: also with a title and with hints for the client, which it may
/// show or use to decide what it asks the user. The hints are the same whatever the settings allow.
JSONValue currentToolJSON(ToolName name);

/// The array under "tools" in that form.
JSONValue currentToolsListJSON();

/// One property of a schema: its type, its description and further members such as "minimum".
JSONValue prop(std::string_view type, std::string_view description, const JSONObject& extra = {});

/// The schema of an object with these properties and no others. "required" is left out when empty.
JSONValue object(JSONObject properties, const std::vector<std::string>& required = {});

}  // namespace MCPToolSchemas

}  // namespace tarnwell
