#include "MCP/Tools/MailScreen.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "IMAP/Readings.h"
#include "IMAP/TextDecoding.h"
#include "MCP/Tools/MessageJSON.h"
#include "Platform/Text.h"
#include "Platform/UTF8.h"

namespace tarnwell {

namespace {

std::size_t scanLimit(Leaving leaving) {
  return static_cast<std::size_t>(std::max<std::int64_t>(leaving.maxChars, 0));
}

/// How many bytes of the text leave.
std::size_t leavingBytes(std::string_view text, Leaving leaving) {
  if (leaving.form == Leaving::Form::asItStands) {
    return characterPrefix(text, scanLimit(leaving)).size();
  }
  return IMAPParser::snippetSourceLength(text, leaving.maxChars);
}

}  // namespace

ScreenedBody MailScreen::fetchBody(IMAPClient& client, const IMAPMessage& message, Leaving leaving) const {
  ScreenedBody only;
  fetchBodies(client, {&message, 1}, leaving,
              [&only](std::size_t, ScreenedBody body) { only = std::move(body); });
  return only;
}

void MailScreen::fetchBodies(IMAPClient& client, std::span<const IMAPMessage> messages, Leaving leaving,
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
    use(static_cast<std::size_t>(&message - messages.data()), screened(message, std::move(body), leaving));
  });
}

ScreenedBody MailScreen::screened(const IMAPMessage& message, IMAPClient::BodyText body,
                                  Leaving leaving) const {
  RiskAssessment whole = assessBody(message, body, leaving);
  if (withholds(whole)) {
    return {std::move(whole), true, {}};
  }
  return {std::move(whole), false, std::move(body.text)};
}

RiskAssessment MailScreen::assessHeader(const IMAPMessage& message) const {
  const std::optional<std::string> sender = senderText(message);
  RiskAssessment asItStands = detector_.assess({.subject = message.envelope.subject, .from = sender});
  return asItStands.shouldBlockBody() ? asItStands : assessOtherReadings(message);
}

bool MailScreen::withholds(const RiskAssessment& assessment) const {
  return isBlocking_ && assessment.shouldBlockBody();
}

RiskAssessment MailScreen::assessBody(const IMAPMessage& message, const IMAPClient::BodyText& body,
                                      Leaving leaving) const {
  const std::optional<std::string> sender = senderText(message);
  EmailRiskDetector::Input input{.subject = message.envelope.subject, .from = sender};
  if (leaving.form != Leaving::Form::asPreview) {
    input.bodyPrefix = body.text;
    input.scanLimit = scanLimit(leaving);
  }
  RiskAssessment asItStands = detector_.assess(input);
  if (asItStands.shouldBlockBody()) {
    return asItStands;
  }
  if (RiskAssessment header = assessOtherReadings(message); header.shouldBlockBody()) {
    return header;
  }
  for (const IMAPParser::Passage& reading :
       IMAPParser::bodyReadings(body.source, body.text, leavingBytes(body.text, leaving))) {
    if (RiskAssessment found = detector_.assessPassage(reading.text, reading.end); found.shouldBlockBody()) {
      return found;
    }
  }
  return RiskAssessment::none;
}

RiskAssessment MailScreen::assessOtherReadings(const IMAPMessage& message) const {
  const auto folded = [](std::string_view field) {
    return foldedForScanning(bytePrefix(field, IMAPParser::mostBytesOfAField));
  };
  std::vector<std::string> subjects = IMAPParser::headerReadings(message.headerBytes.subject);
  subjects.push_back(folded(message.envelope.subject.value_or("")));
  for (const std::string& subject : subjects) {
    if (RiskAssessment found = detector_.assess({.subject = subject}); found.shouldBlockBody()) {
      return found;
    }
  }
  std::vector<std::string> senders = IMAPParser::headerReadings(message.headerBytes.sender);
  senders.push_back(folded(senderText(message).value_or("")));
  for (const std::string& sender : senders) {
    if (RiskAssessment found = detector_.assess({.from = sender}); found.shouldBlockBody()) {
      return found;
    }
  }
  return RiskAssessment::none;
}

}  // namespace tarnwell
