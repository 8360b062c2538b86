#include "MCP/Tools/MCPToolSchemas.h"

#include "MCP/Tools/ToolTable.h"

namespace tarnwell {

JSONValue MCPToolDefinition::toJSON() const {
  return JSONObject{{"name", name}, {"description", description}, {"inputSchema", inputSchema}};
}

const std::vector<MCPToolDefinition>& MCPToolSchemas::all() {
  static const std::vector<MCPToolDefinition> catalogue = [] {
    std::vector<MCPToolDefinition> definitions;
    for (const ToolRow& row : ToolRow::all()) {
      definitions.push_back(row.definition);
    }
    return definitions;
  }();
  return catalogue;
}

std::optional<MCPToolDefinition> MCPToolSchemas::definition(ToolName name) {
  return ToolRow::of(name).definition;
}

JSONValue MCPToolSchemas::toolsListJSON() {
  JSONArray tools;
  for (const MCPToolDefinition& tool : all()) {
    tools.push_back(tool.toJSON());
  }
  return tools;
}

/// Deliberate: what is read counts as an open world, because strangers wrote it.
JSONValue MCPToolSchemas::currentToolJSON(ToolName name) {
  using enum ToolRow::Effect;
  const ToolRow& row = ToolRow::of(name);
  JSONValue tool = row.definition.toJSON();
  JSONObject& members = *tool.objectValue();
  members.emplace("title", row.title);
  members.emplace("annotations", JSONObject{
                                     {"readOnlyHint", !changesMailbox(name)},
                                     {"destructiveHint", row.effect == movesMail},
                                     {"idempotentHint", row.effect != movesMail},
                                     {"openWorldHint", row.effect != tellsOfItself},
                                 });
  return tool;
}

JSONValue MCPToolSchemas::currentToolsListJSON() {
  JSONArray tools;
  for (const ToolName name : allToolNames()) {
    tools.push_back(currentToolJSON(name));
  }
  return tools;
}

JSONValue MCPToolSchemas::prop(std::string_view type, std::string_view description, const JSONObject& extra) {
  JSONObject property{{"type", type}, {"description", description}};
  for (const auto& [key, value] : extra) {
    property[key] = value;
  }
  return property;
}

JSONValue MCPToolSchemas::object(JSONObject properties, const std::vector<std::string>& required) {
  JSONObject schema{
      {"type", "object"}, {"properties", std::move(properties)}, {"additionalProperties", false}};
  if (!required.empty()) {
    schema.emplace("required", JSONValue::strings(required));
  }
  return schema;
}

}  // namespace tarnwell
