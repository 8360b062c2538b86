#include "App/Models/ReadOnlyTools.h"

#include "Core/AppLogger.h"

namespace tarnwell {

ToolCall ReadOnlyTools::call(ToolName tool, JSONObject arguments, const CallWatch& watch) const {
  if (changesMailbox(tool)) {
    arguments["dryRun"] = true;
  }
  const JSONValue sent = std::move(arguments);
  AppLogger::info(AppLogger::Category::tool, "tried by the user: " + std::string(rawValue(tool)));
  ToolCall call{
      .tool = tool,
      .request = JSONValue(JSONObject{{"name", rawValue(tool)}, {"arguments", sent}}).prettyString(),
      .result = tools_.handle(rawValue(tool), sent, watch)};
  call.answer = call.result.text();
  return call;
}

}  // namespace tarnwell
