#include "MCP/Tools/MailScreen.h"

#include <algorithm>
#include <utility>

#include "IMAP/TextDecoding.h"
#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

ScreenedBody MailScreen::fetchBody(IMAPClient& client, const IMAPMessage& message,
                                   std::int64_t maxChars) const {
  RiskAssessment header = assessHeader(message);
  if (withholds(header)) {
    return {std::move(header), true, {}};
  }
  std::string text = client.fetchBodyText(message).text;
  RiskAssessment whole = assessBody(message, text, maxChars);
  if (withholds(whole)) {
    return {std::move(whole), true, {}};
  }
  return {std::move(whole), false, std::move(text)};
}

RiskAssessment MailScreen::assessHeader(const IMAPMessage& message) const {
  return assess(message, std::nullopt, 0);
}

bool MailScreen::withholds(const RiskAssessment& assessment) const {
  return isBlocking_ && assessment.shouldBlockBody();
}

RiskAssessment MailScreen::assessBody(const IMAPMessage& message, std::string_view body,
                                      std::int64_t maxChars) const {
  RiskAssessment asItStands = assess(message, body, maxChars);
  if (!isBlocking_ || asItStands.shouldBlockBody()) {
    return asItStands;
  }
  const auto beyondTheCut = static_cast<std::int64_t>(detector_.longestTerm());
  const auto reach = std::max(maxChars + beyondTheCut, static_cast<std::int64_t>(detector_.bodyScanPrefix()));
  RiskAssessment collapsed = assess(message, IMAPParser::snippet(body, reach).text, reach);
  return collapsed.shouldBlockBody() ? collapsed : asItStands;
}

RiskAssessment MailScreen::assess(const IMAPMessage& message, std::optional<std::string_view> body,
                                  std::int64_t scanLimit) const {
  const std::optional<std::string> sender = senderText(message);
  return detector_.assess({.subject = message.envelope.subject,
                           .from = sender,
                           .bodyPrefix = body,
                           .scanLimit = static_cast<std::size_t>(std::max<std::int64_t>(scanLimit, 0))});
}

}  // namespace tarnwell
