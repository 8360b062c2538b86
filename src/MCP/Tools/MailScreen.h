#pragma once

/// The rule that no text of a mail leaves before the detector has seen it: what leaves was scanned.
///
/// Threads: an immutable value, any; what fetches, as its client.

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Core/AppConfig.h"
#include "Core/EmailRiskDetector.h"
#include "IMAP/IMAPClient.h"
#include "IMAP/IMAPMessage.h"

namespace tarnwell {

/// The text of a message, as far as it may leave.
struct ScreenedBody {
  RiskAssessment assessment;
  bool isWithheld = false;
  std::string text;  // empty when withheld, and when the message has none
};

/// Looks at mail on behalf of one tool call.
class MailScreen {
 public:
  /// Blocks or not as `blockAuthCodeBodies` says. The detector must outlive the screen.
  MailScreen(const EmailRiskDetector& detector, const SafetySettings& settings)
      : detector_(detector), isBlocking_(settings.blockAuthCodeBodies) {}

  /// The body's text, of which at most `maxChars` user-perceived characters from its beginning are to leave.
  /// It is fetched only when subject and sender do not already withhold it.
  ScreenedBody fetchBody(IMAPClient& client, const IMAPMessage& message, std::int64_t maxChars) const;

  /// Takes the body of the message at an index.
  using BodyUser = std::function<void(std::size_t index, ScreenedBody body)>;
  /// The same for several messages. Each of them is used once, in any order, and before the next body is
  /// read, so that only one text is in memory. The server sends the next one meanwhile: `use` must not use
  /// the client.
  void fetchBodies(IMAPClient& client, std::span<const IMAPMessage> messages, std::int64_t maxChars,
                   const BodyUser& use) const;

  /// What subject and sender tell.
  RiskAssessment assessHeader(const IMAPMessage& message) const;

  /// What subject, sender and body tell, when at most `maxChars` user-perceived characters from the
  /// beginning of the body are to leave. At least as many are scanned as they stand. While blocking is on
  /// they are scanned a second time with white space collapsed, and a little beyond the cut: a keyword
  /// split by a line break, standing behind a page of blanks, or cut in two is found only there. That scan
  /// can withhold more, never less.
  RiskAssessment assessBody(const IMAPMessage& message, std::string_view body, std::int64_t maxChars) const;

  /// True when blocking is on and the assessment says to withhold.
  bool withholds(const RiskAssessment& assessment) const;

 private:
  RiskAssessment assess(const IMAPMessage& message, std::optional<std::string_view> body,
                        std::int64_t scanLimit) const;
  ScreenedBody screened(const IMAPMessage& message, std::string text, std::int64_t maxChars) const;

  const EmailRiskDetector& detector_;
  bool isBlocking_;
};

}  // namespace tarnwell
