#pragma once

/// What the log says at the end of a tool call that went well: counts and decisions, and nothing that a mail,
/// a search or a mailbox is called.
///
///     outcomeText(ToolName::searchInbox, result)  // "20 messages, 1 withheld"

#include <string>

#include "MCP/JSON/JSONValue.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

/// In a few words what the tool's result gave. The result is one that the tool made itself.
std::string outcomeText(ToolName tool, const JSONValue& result);

}  // namespace tarnwell
