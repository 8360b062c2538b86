#pragma once

/// Judges a written mail as `get_message_body` does: first subject and sender, then the text.
///
///     for (const RiskSignal& signal : signalsThatWithhold(mail, true)) { ... signal.term ... }
///
/// An HTML text is first turned into plain text, as for a mail from a server.

#include <string>
#include <vector>

#include "IMAP/Decoding/TextDecoding.h"
#include "MCP/Tools/MailScreen.h"
#include "support/MailSamples.h"

namespace tarnwell::test {

/// Empty when the mail is not withheld. `isStrict` is the setting `AppConfig::strictWithholding`.
inline std::vector<RiskSignal> signalsThatWithhold(const MailSample& mail, bool isStrict) {
  IMAPMessage message;
  message.envelope.subject = mail.subject;
  message.envelope.from = {{mail.from, std::nullopt, std::nullopt}};
  TextDecoding::DecodedPart part = TextDecoding::decodePart(mail.body, "8bit", "utf-8");
  part.source.isHTML = mail.isHTML;
  if (part.source.isHTML) {
    TextDecoding::reduceHTMLToText(part.text);
  }
  AppConfig config;
  config.strictWithholding = isStrict;
  const MailScreen screen(EmailRiskDetector::shared(), config);
  const Leaving leaving{Leaving::Form::asItStands, config.safety.maxBodyChars};
  const IMAPClient::BodyText body{std::move(part.text), true, std::move(part.source)};
  for (const RiskAssessment& assessment :
       {screen.assessHeader(message), screen.assessBody(message, body, leaving)}) {
    if (screen.withholds(assessment)) {
      return assessment.signals;
    }
  }
  return {};
}

}  // namespace tarnwell::test
