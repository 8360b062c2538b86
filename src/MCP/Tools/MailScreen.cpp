#include "MCP/Tools/MailScreen.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "Core/SecurityMail/SecretMailRule.h"
#include "IMAP/Decoding/Readings.h"
#include "IMAP/Decoding/TextDecoding.h"
#include "MCP/Tools/MessageJSON.h"
#include "Text/Text.h"
#include "Text/UTF8.h"

namespace tarnwell {

namespace {

std::size_t scanLimit(Leaving leaving) {
  return static_cast<std::size_t>(std::max<std::int64_t>(leaving.maxChars, 0));
}

/// The number of bytes of the text that leave.
std::size_t leavingBytes(std::string_view text, Leaving leaving) {
  if (leaving.form == Leaving::Form::asItStands) {
    return characterPrefix(text, scanLimit(leaving)).size();
  }
  return TextDecoding::snippetSourceLength(text, leaving.maxChars);
}

/// The part of a reading that leaves. If the cut splits a code, the rest of the code is included.
std::string_view leavingPartOf(const TextDecoding::Passage& reading) {
  constexpr std::size_t longestCode = 32;
  const std::string_view text = reading.text;
  const std::size_t end =
      std::min(text.find(' ', std::min(reading.end, text.size())), reading.end + longestCode);
  return bytePrefix(text, end);
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
  const std::vector<TextDecoding::Passage> readings =
      TextDecoding::bodyReadings(body.source, body.text, leavingBytes(body.text, leaving));
  for (const TextDecoding::Passage& reading : readings) {
    if (RiskAssessment found = detector_.assessPassage(reading.text, reading.end); found.shouldBlockBody()) {
      return found;
    }
  }
  if (!isStrict_) {
    return RiskAssessment::none;
  }
  if (input.bodyPrefix) {
    const std::size_t limit = std::max(detector_.bodyScanPrefix(), scanLimit(leaving));
    if (RiskAssessment found = assessStrictly(message, characterPrefix(body.text, limit));
        found.shouldBlockBody()) {
      return found;
    }
  }
  for (const TextDecoding::Passage& reading : readings) {
    if (RiskAssessment found = assessStrictly(message, leavingPartOf(reading)); found.shouldBlockBody()) {
      return found;
    }
  }
  return RiskAssessment::none;
}

RiskAssessment MailScreen::assessOtherReadings(const IMAPMessage& message) const {
  const std::string subject = message.envelope.subject.value_or("");
  const std::string sender = senderText(message).value_or("");
  const auto folded = [](std::string_view field) {
    return foldedForScanning(bytePrefix(field, TextDecoding::mostBytesOfAField));
  };
  std::vector<std::string> subjects = TextDecoding::headerReadings(message.headerBytes.subject);
  subjects.push_back(folded(subject));
  for (const std::string& reading : subjects) {
    if (RiskAssessment found = detector_.assess({.subject = reading}); found.shouldBlockBody()) {
      return found;
    }
  }
  std::vector<std::string> senders = TextDecoding::headerReadings(message.headerBytes.sender);
  senders.push_back(folded(sender));
  for (const std::string& reading : senders) {
    if (RiskAssessment found = detector_.assess({.from = reading}); found.shouldBlockBody()) {
      return found;
    }
  }
  if (!isStrict_) {
    return RiskAssessment::none;
  }
  for (const std::string& reading : subjects) {
    if (RiskAssessment found{SecretMailRule::signals({.subject = reading, .from = sender})};
        found.shouldBlockBody()) {
      return found;
    }
  }
  for (const std::string& reading : senders) {
    if (RiskAssessment found{SecretMailRule::signals({.subject = subject, .from = reading})};
        found.shouldBlockBody()) {
      return found;
    }
  }
  return RiskAssessment::none;
}

RiskAssessment MailScreen::assessStrictly(const IMAPMessage& message, std::string_view text) const {
  const std::string sender = senderText(message).value_or("");
  return {SecretMailRule::signals(
      {.subject = message.envelope.subject.value_or(""), .from = sender, .text = text})};
}

void MailScreen::maskCodes(IMAPMessage& message, Judgement judgement) const {
  if (!isBlocking_ || !isStrict_ || judgement == Judgement::returned) {
    return;
  }
  if (std::optional<std::string>& subject = message.envelope.subject) {
    subject = SecretMailRule::maskedCodes(*subject);
  }
  for (IMAPAddress& sender : message.envelope.from) {
    if (sender.name) {
      sender.name = SecretMailRule::maskedCodes(*sender.name);
    }
  }
}

}  // namespace tarnwell
