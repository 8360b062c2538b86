#include "MCP/Tools/MailScreen.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "IMAP/TextDecoding.h"
#include "MCP/Tools/MessageJSON.h"

namespace tarnwell {

ScreenedBody MailScreen::fetchBody(IMAPClient& client, const IMAPMessage& message,
                                   std::int64_t maxChars) const {
  ScreenedBody only;
  fetchBodies(client, {&message, 1}, maxChars,
              [&only](std::size_t, ScreenedBody body) { only = std::move(body); });
  return only;
}

void MailScreen::fetchBodies(IMAPClient& client, std::span<const IMAPMessage> messages, std::int64_t maxChars,
                             const BodyUser& use) const {
  std::vector<const IMAPMessage*> readable;
  for (std::size_t i = 0; i < messages.size(); ++i) {
    RiskAssessment header = assessHeader(messages[i]);
    if (withholds(header)) {
      use(i, {std::move(header), true, {}});
    } else {
      readable.push_back(&messages[i]);
    }
  }
  client.fetchBodyTexts(readable, [&](const IMAPMessage& message, IMAPClient::BodyText body) {
    use(static_cast<std::size_t>(&message - messages.data()),
        screened(message, std::move(body.text), maxChars));
  });
}

ScreenedBody MailScreen::screened(const IMAPMessage& message, std::string text, std::int64_t maxChars) const {
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
