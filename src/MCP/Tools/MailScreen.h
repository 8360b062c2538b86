#pragma once

/// The rule that no text of a mail leaves before the detector has seen it: what leaves was scanned.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Core/AppConfig.h"
#include "Core/EmailRiskDetector.h"
#include "IMAP/IMAPMessage.h"

namespace tarnwell {

/// Looks at mail on behalf of one tool call.
class MailScreen {
 public:
  /// Blocks or not as `blockAuthCodeBodies` says. The detector must outlive the screen.
  MailScreen(const EmailRiskDetector& detector, const SafetySettings& settings)
      : detector_(detector), isBlocking_(settings.blockAuthCodeBodies) {}

  /// What the subject and the sender tell.
  RiskAssessment assessHeader(const IMAPMessage& message) const;

  /// True when blocking is on and the assessment says to withhold.
  bool withholds(const RiskAssessment& assessment) const;

  struct ScannedSnippet {
    RiskAssessment assessment;
    /// Absent when it must be withheld.
    std::optional<std::string> text;
    bool truncated = false;
  };

  /// A preview of at most `maxChars` user-perceived characters of a body, if it may leave. The body is
  /// scanned as it is, at least `maxChars` characters of it. While blocking is on it is scanned a second
  /// time with its white space collapsed, the form in which it leaves: a keyword split by a line break, or
  /// standing behind a page of blanks, is found only there.
  ScannedSnippet snippet(const IMAPMessage& message, std::string_view body, std::int64_t maxChars) const;

 private:
  RiskAssessment assess(const IMAPMessage& message, std::optional<std::string_view> body,
                        std::int64_t scanLimit) const;

  const EmailRiskDetector& detector_;
  bool isBlocking_;
};

}  // namespace tarnwell
