#pragma once

/// The assistant's tools, as far as they change nothing. The app runs tools only through this gate.
///
///     ToolCall call = tools.call(ToolName::trashMessage, {{"uid", 7}}, watch);
///     call.request;  // what was asked, with "dryRun": true
///
/// Tools that read pass as they are. A tool that can change the mailbox only tells what it would do, whatever
/// the arguments say. The log tells each call as one that the user tries.
///
/// Threads: a value; one call at a time. Several values may be used at once.

#include <string>

#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/ToolName.h"

namespace tarnwell {

/// A call and its answer, as an assistant would send and receive them.
struct ToolCall {
  ToolName tool{};
  /// The params of `tools/call`. The sizes of blanks are ours.
  std::string request{};
  ToolCallResult result{};
  /// Byte for byte the text of the answer (`content`).
  std::string answer{};
};

class ReadOnlyTools {
 public:
  explicit ReadOnlyTools(MCPTools tools) : tools_(std::move(tools)) {}

  /// Waits for the mail server. Throws `Cancelled`.
  ToolCall call(ToolName tool, JSONObject arguments, const CallWatch& watch = {}) const;

 private:
  MCPTools tools_;
};

}  // namespace tarnwell
