/// get_message_summary and get_message_body.

#include <algorithm>

#include "Core/BridgeConstants.h"
#include "Core/SafetyPolicy.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "MCP/Tools/MCPTools.h"
#include "MCP/Tools/MailScreen.h"
#include "MCP/Tools/MessageJSON.h"
#include "MCP/Tools/ToolArguments.h"
#include "Text/Text.h"

namespace tarnwell {

namespace {

/// The snippet of a summary, as far as it may leave.
struct ScreenedSnippet {
  RiskAssessment assessment;
  Judgement judgement = Judgement::returned;
  std::optional<std::string> text;  // absent when withheld or not requested
};

ScreenedSnippet screenedSnippet(IMAPClient& client, const MailScreen& screen, const IMAPMessage& message,
                                bool isRequested) {
  if (!isRequested) {
    RiskAssessment header = screen.assessHeader(message);
    const Judgement judgement = screen.withholds(header) ? Judgement::withheld : Judgement::notLookedAt;
    return {std::move(header), judgement, std::nullopt};
  }
  constexpr std::int64_t maxChars = BridgeConstants::summarySnippetMaxChars;
  ScreenedBody body = screen.fetchBody(client, message, {Leaving::Form::asSnippet, maxChars});
  if (body.isWithheld) {
    return {std::move(body.assessment), Judgement::withheld, std::nullopt};
  }
  return {std::move(body.assessment), Judgement::returned, TextDecoding::snippet(body.text, maxChars).text};
}

/// An object with name, email and display for each address.
JSONValue addressesJSON(const std::vector<IMAPAddress>& addresses) {
  JSONArray array;
  for (const IMAPAddress& address : addresses) {
    array.push_back(JSONObject{{"name", JSONValue::of(address.name)},
                               {"email", JSONValue::of(address.email())},
                               {"display", address.display()}});
  }
  return array;
}

ToolOutcome summaryOutcome(const IMAPMessage& message, const ScreenedSnippet& snippet) {
  const bool isWithheld = snippet.judgement == Judgement::withheld;
  JSONObject summary{
      {"uid", message.uid},
      {"subject", JSONValue::of(message.envelope.subject)},
      {"from", addressesJSON(message.envelope.from)},
      {"to", addressesJSON(message.envelope.to)},
      {"cc", addressesJSON(message.envelope.cc)},
      {"date", JSONValue::of(message.envelope.date)},
      {"flags", JSONValue::strings(message.flags)},
      {"hasAttachments", message.hasAttachments()},
      {"detectedRiskSignals", riskSignalsJSON(snippet.assessment.signals)},
      {"bodyWithheld", isWithheld},
      {"bodySnippet", JSONValue::of(snippet.text)},
  };
  if (isWithheld) {
    summary.emplace("withheldReason",
                    "Sensitive security content (OTP/2FA/verification/reset). Snippet withheld.");
  }
  return {{std::move(summary)}, isWithheld ? "1 message, withheld" : "1 message"};
}

/// Explains why there is no body.
ToolOutcome noBody(std::uint32_t uid, bool isBlocked, std::string reason, const RiskAssessment& assessment) {
  return {{JSONObject{
              {"uid", uid},
              {"returned", false},
              {"blocked", isBlocked},
              {"reason", std::move(reason)},
              {"detectedRiskSignals", riskSignalsJSON(assessment.signals)},
          }},
          isBlocked ? "withheld" : "no text"};
}

ToolOutcome bodyOutcome(std::uint32_t uid, const std::string& body, std::int64_t maxChars,
                        const RiskAssessment& assessment) {
  const auto count = static_cast<std::int64_t>(characterCount(body));
  // `maxChars` can be below 0: without a request it is the setting. It must not turn into the greatest
  // length.
  const std::int64_t kept = std::max<std::int64_t>(maxChars, 0);
  const bool isTruncated = count > kept;
  return {{JSONObject{
              {"uid", uid},
              {"returned", true},
              {"blocked", false},
              {"truncated", isTruncated},
              {"charCount", count},
              {"maxChars", maxChars},
              {"body",
               isTruncated ? std::string(characterPrefix(body, static_cast<std::size_t>(kept))) + "…" : body},
              {"detectedRiskSignals", riskSignalsJSON(assessment.signals)},
          }},
          "a text of " + std::to_string(count) + " characters"};
}

ToolOutcome readBody(IMAPClient& client, const MailScreen& screen, const IMAPMessage& message,
                     std::int64_t maxChars) {
  const ScreenedBody body = screen.fetchBody(client, message, {Leaving::Form::asItStands, maxChars});
  if (body.isWithheld) {
    return noBody(message.uid, true, body.assessment.reason(), body.assessment);
  }
  if (body.text.empty()) {
    return noBody(message.uid, false, "This message has no readable text body (it may be attachments-only).",
                  body.assessment);
  }
  return bodyOutcome(message.uid, body.text, maxChars, body.assessment);
}

}  // namespace

ToolOutcome MCPTools::withMessage(const AppConfig& config, const JSONValue& arguments, const CallWatch& watch,
                                  const std::function<ToolOutcome(IMAPClient&, IMAPMessage&)>& body) const {
  const std::optional<std::uint32_t> uid = uidArg(arguments);
  if (!uid) {
    return {ToolCallResult::error(invalidUIDText)};
  }
  return withIMAP(config, IMAPClient::Access::readOnly, watch, [&](IMAPClient& client) {
    std::optional<IMAPMessage> message = client.fetchMessage(*uid);
    return message ? body(client, *message) : ToolOutcome{ToolCallResult::error(noMessageText(*uid))};
  });
}

ToolOutcome MCPTools::getMessageSummary(const JSONValue& arguments, const CallWatch& watch) const {
  const AppConfig config = configStore_.load();
  const bool isRequested = arguments["includeBodySnippet"].boolValue().value_or(true);
  const MailScreen screen(detector_, config);
  return withMessage(config, arguments, watch, [&](IMAPClient& client, IMAPMessage& message) {
    const ScreenedSnippet snippet = screenedSnippet(client, screen, message, isRequested);
    screen.maskCodes(message, snippet.judgement);
    return summaryOutcome(message, snippet);
  });
}

ToolOutcome MCPTools::getMessageBody(const JSONValue& arguments, const CallWatch& watch) const {
  const AppConfig config = configStore_.load();
  const std::int64_t maxChars = SafetyPolicy(config.safety).clampBodyChars(arguments["maxChars"].intValue());
  const MailScreen screen(detector_, config);
  return withMessage(config, arguments, watch, [&](IMAPClient& client, const IMAPMessage& message) {
    return readBody(client, screen, message, maxChars);
  });
}

}  // namespace tarnwell
