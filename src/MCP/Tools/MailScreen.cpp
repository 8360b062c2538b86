#include "MCP/Tools/MailScreen.h"

#include <algorithm>

#include "IMAP/TextDecoding.h"
#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

RiskAssessment MailScreen::assessHeader(const IMAPMessage& message) const {
  return assess(message, std::nullopt, 0);
}

bool MailScreen::withholds(const RiskAssessment& assessment) const {
  return isBlocking_ && assessment.shouldBlockBody();
}

MailScreen::ScannedSnippet MailScreen::snippet(const IMAPMessage& message, std::string_view body,
                                               std::int64_t maxChars) const {
  RiskAssessment raw = assess(message, body, maxChars);
  if (withholds(raw)) {
    return {std::move(raw), std::nullopt};
  }
  if (isBlocking_) {
    // As far as the detector looks at least, so that a keyword that the cut runs through is seen whole.
    const auto reach = std::max(maxChars, static_cast<std::int64_t>(detector_.bodyScanPrefix()));
    const std::string collapsed = IMAPParser::snippet(body, reach).text;
    RiskAssessment leaving = assess(message, collapsed, reach);
    if (leaving.shouldBlockBody()) {
      return {std::move(leaving), std::nullopt};
    }
  }
  IMAPParser::Snippet preview = IMAPParser::snippet(body, maxChars);
  return {std::move(raw), std::move(preview.text), preview.truncated};
}

RiskAssessment MailScreen::assess(const IMAPMessage& message, std::optional<std::string_view> body,
                                  std::int64_t scanLimit) const {
  const std::optional<std::string> sender = senderText(message);
  return detector_.assess({.subject = message.envelope.subject,
                           .from = sender,
                           .bodyPrefix = body,
                           .scanLimit = static_cast<std::size_t>(scanLimit)});
}

}  // namespace tarnwell
