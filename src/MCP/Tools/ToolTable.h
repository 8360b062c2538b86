#pragma once

/// The nine tools, one row for each. To add a tool, add its enumerator in `ToolName.h`, its row in
/// `ToolTable.cpp`, and the member function of `MCPTools` that the row names.
///
/// Threads: any. The first use builds the table.

#include <span>

#include "MCP/Tools/MCPToolSchemas.h"
#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

struct ToolRow {
  /// What a call does, at most.
  enum class Effect {
    tellsOfItself,  // looks at the settings, and at no mail
    readsMail,
    marksMail,  // doing it again changes nothing more
    movesMail,
  };

  ToolName tool;
  Effect effect;
  /// For people.
  std::string_view title;
  MCPToolDefinition definition;
  ToolOutcome (MCPTools::*run)(const JSONValue& arguments, const CallWatch& watch) const;

  /// In the order of the catalogue.
  static std::span<const ToolRow> all();
  static const ToolRow& of(ToolName tool);
};

}  // namespace tarnwell
