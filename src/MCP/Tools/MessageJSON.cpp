#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

JSONValue safetyJSON(const SafetySettings& settings) {
  JSONObject object;
  forEachSafetySetting(settings, [&object](const char* key, auto value) { object.emplace(key, value); });
  return object;
}

JSONValue riskSignalsJSON(const std::vector<RiskSignal>& signals) {
  JSONArray array;
  for (const RiskSignal& signal : signals) {
    array.push_back(
        JSONObject{{"category", signal.category}, {"term", signal.term}, {"location", signal.location}});
  }
  return array;
}

JSONValue addressesJSON(const std::vector<IMAPAddress>& addresses) {
  JSONArray array;
  for (const IMAPAddress& address : addresses) {
    array.push_back(JSONObject{{"name", JSONValue::of(address.name)},
                               {"email", JSONValue::of(address.email())},
                               {"display", address.display()}});
  }
  return array;
}

std::optional<std::string> senderText(const IMAPMessage& message) {
  const std::vector<IMAPAddress>& from = message.envelope.from;
  return from.empty() ? std::nullopt : std::optional(from.front().display());
}

JSONValue messageHeaderJSON(const IMAPMessage& message, const std::optional<std::string>& snippet,
                            const std::vector<RiskSignal>& signals) {
  return JSONObject{
      {"uid", message.uid},
      {"messageId", JSONValue::of(message.envelope.messageID)},
      {"subject", JSONValue::of(message.envelope.subject)},
      {"from", JSONValue::of(senderText(message))},
      {"date", JSONValue::of(message.envelope.date)},
      {"flags", JSONValue::strings(message.flags)},
      {"unread", message.isUnread()},
      {"hasAttachments", message.hasAttachments()},
      {"snippet", snippet.value_or(std::string(withheldText))},
      {"detectedRiskSignals", riskSignalsJSON(signals)},
  };
}

}  // namespace tarnwell
