#pragma once

/// The rule that no text of a mail leaves before the detector has seen it: what leaves was scanned.
///
/// Each part of a mail is looked at in up to three steps, and the first step that finds something tells the
/// signals: as it stands (of a body at least its beginning, `EmailRiskDetector::bodyScanPrefix`, but for a
/// preview of the clean-up); what is to leave with white space collapsed, and with the rest of a keyword that
/// the cut splits; the other readings of the same bytes (IMAP/Decoding/Readings.h). A keyword that begins
/// after the cut does not count in the later steps. The signals of a text do not depend on whether blocking
/// is on; a body that the header withholds is not fetched, and then the signals are the header's.
///
/// With `strictWithholding` a mail that no keyword tells is judged by `SecretMailRule` too, in the same
/// places.
///
/// Threads: an immutable value, any; what fetches, as its client.

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "Core/AppConfig.h"
#include "Core/SecurityMail/EmailRiskDetector.h"
#include "IMAP/IMAPClient.h"
#include "IMAP/Responses/IMAPMessage.h"

namespace tarnwell {

/// What became of the body of a message.
enum class Judgement { returned, withheld, notLookedAt };

/// The text of a message, as far as it may leave.
struct ScreenedBody {
  RiskAssessment assessment;
  bool isWithheld = false;
  std::string text;  // empty when withheld, and when the message has none

  Judgement judgement() const { return isWithheld ? Judgement::withheld : Judgement::returned; }
};

/// In which form the beginning of a body is to leave, and how many user-perceived characters of it at most.
struct Leaving {
  enum class Form {
    asItStands,
    asSnippet,
    /// As a snippet. The clean-up does not promise that the beginning of a body is scanned beyond what
    /// leaves.
    asPreview,
  };
  Form form;
  std::int64_t maxChars;
};

/// Looks at mail on behalf of one tool call.
class MailScreen {
 public:
  /// Blocks or not as `blockAuthCodeBodies` says. The detector must outlive the screen.
  MailScreen(const EmailRiskDetector& detector, const AppConfig& config)
      : detector_(detector),
        isBlocking_(config.safety.blockAuthCodeBodies),
        isStrict_(config.strictWithholding) {}

  /// The body's text. It is fetched only when subject and sender do not already withhold it.
  ScreenedBody fetchBody(IMAPClient& client, const IMAPMessage& message, Leaving leaving) const;

  /// Takes the body of the message at an index.
  using BodyUser = std::function<void(std::size_t index, ScreenedBody body)>;
  /// The same for several messages. Each of them is used once, in any order, and before the next body is
  /// read, so that only one text is in memory. The server sends the next one meanwhile: `use` must not use
  /// the client.
  void fetchBodies(IMAPClient& client, std::span<const IMAPMessage> messages, Leaving leaving,
                   const BodyUser& use) const;

  /// What subject and sender tell.
  RiskAssessment assessHeader(const IMAPMessage& message) const;

  /// What subject, sender and body tell.
  RiskAssessment assessBody(const IMAPMessage& message, const IMAPClient::BodyText& body,
                            Leaving leaving) const;

  /// True when blocking is on and the assessment says to withhold.
  bool withholds(const RiskAssessment& assessment) const;

  /// Makes the header fit to leave. While blocking is on and strict, a group that is shaped like a code
  /// becomes "•" for each character in the subject and in the senders' names of a message that is withheld,
  /// and of one whose body was not looked at: it may be the code of a mail whose body would tell.
  void maskCodes(IMAPMessage& message, Judgement judgement) const;

 private:
  RiskAssessment assessOtherReadings(const IMAPMessage& message) const;
  RiskAssessment assessStrictly(const IMAPMessage& message, std::string_view text) const;
  ScreenedBody screened(const IMAPMessage& message, IMAPClient::BodyText body, Leaving leaving) const;

  const EmailRiskDetector& detector_;
  bool isBlocking_;
  bool isStrict_;
};

}  // namespace tarnwell
