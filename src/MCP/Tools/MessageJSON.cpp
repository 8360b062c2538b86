#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

JSONValue riskSignalsJSON(const std::vector<RiskSignal>& signals) {
  JSONArray array;
  for (const RiskSignal& signal : signals) {
    array.push_back(
        JSONObject{{"category", signal.category}, {"term", signal.term}, {"location", signal.location}});
  }
  return array;
}

std::optional<std::string> senderText(const IMAPMessage& message) {
  const std::vector<IMAPAddress>& from = message.envelope.from;
  return from.empty() ? std::nullopt : std::optional(from.front().display());
}

}  // namespace tarnwell
