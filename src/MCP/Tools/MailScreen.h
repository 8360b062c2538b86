#pragma once

/// The detector scans every text of a mail before it leaves the program.
///
/// It scans each part of a mail in up to three steps. The first step that finds something gives the signals.
/// 1. The part as it stands. Of a body this is at least the first `EmailRiskDetector::bodyScanPrefix`
///    characters. For a preview of the clean-up, this step does not scan the body.
/// 2. The text that is to leave, unchanged and folded. If the cut splits a keyword, the rest of the keyword
///    is scanned too.
/// 3. The other readings of the same bytes (IMAP/Decoding/Readings.h).
///
/// In steps 2 and 3 a keyword that begins after the cut does not count.
///
/// The signals do not depend on whether blocking is on, with one exception: with blocking on, a body is not
/// fetched when the header already withholds it. Then the signals are those of the header.
///
/// With `strictWithholding`, `SecretMailRule` judges the same texts when they have no keyword.
///
/// Threads: an immutable value; any. Functions that fetch follow the rule of their client.

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
  std::string text;  // empty when the body is withheld or has no text

  Judgement judgement() const { return isWithheld ? Judgement::withheld : Judgement::returned; }
};

/// The form in which the beginning of a body leaves, and its greatest length in user-perceived characters.
struct Leaving {
  enum class Form {
    asItStands,
    asSnippet,
    /// As a snippet. Only the text that leaves is scanned, and not a longer beginning of the body.
    asPreview,
  };
  Form form;
  std::int64_t maxChars;
};

/// Screens mail for one tool call.
class MailScreen {
 public:
  /// Withholds mail only when `blockAuthCodeBodies` is on. The detector must outlive the screen.
  MailScreen(const EmailRiskDetector& detector, const AppConfig& config)
      : detector_(detector),
        isBlocking_(config.safety.blockAuthCodeBodies),
        isStrict_(config.strictWithholding) {}

  /// The text of the body. Does not fetch it when subject and sender already withhold it.
  ScreenedBody fetchBody(IMAPClient& client, const IMAPMessage& message, Leaving leaving) const;

  /// Takes the body of the message at an index.
  using BodyUser = std::function<void(std::size_t index, ScreenedBody body)>;
  /// The same for several messages. Calls `use` once for each of them, in any order. Reads the next body only
  /// after `use` has returned, so only one text is in memory when the server answers in order. The server
  /// already sends the other bodies meanwhile, so `use` must not use the client.
  void fetchBodies(IMAPClient& client, std::span<const IMAPMessage> messages, Leaving leaving,
                   const BodyUser& use) const;

  /// The signals of subject and sender.
  RiskAssessment assessHeader(const IMAPMessage& message) const;

  /// The signals of subject, sender and body.
  RiskAssessment assessBody(const IMAPMessage& message, const IMAPClient::BodyText& body,
                            Leaving leaving) const;

  /// True when blocking is on and the assessment says to withhold.
  bool withholds(const RiskAssessment& assessment) const;

  /// Masks groups that are shaped like a code in the subject and in the senders' names. Each of their
  /// characters becomes "•". Does this only with blocking and `strictWithholding` on, and only for a message
  /// that is withheld or whose body was not looked at. That body could show that the group is a code.
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
