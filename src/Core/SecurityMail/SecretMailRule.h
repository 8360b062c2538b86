#pragma once

/// Recognises mail that carries a secret: a one-time code, or a link that opens an account. It stands beside
/// the keywords of `EmailRiskDetector` and sees what they have no word for.
///
///     SecretMailRule::signals({.subject = "493021 is your Acme code"});
///     // {{"one_time_code", "code", "subject"}}
///     SecretMailRule::maskedCodes("G-493021 is your code");  // "•••••••• is your code"
///
/// The rule. Words come from the tables of `SecretMailWords`, groups that are shaped like a code from
/// `codeGroupsIn`; what stands near is counted in points, and three points are enough.
///   - A code: 3 for a word that names a one-time code near the group, 1 for one that may ("code", "PIN").
///     One more each for handing over ("enter", "code is"; in a subject also "log in"), for signing in or
///     confirming, for what expires, is secret or was not asked for, for blanks inside of the group, and for
///     a word and a group that both stand in the subject. Less 3 near parcels, doors, meetings or sales, but
///     not for "password: ...". Right behind another number's name ("order no.") a group is none.
///   - A name of a one-time code is enough in a sender; in a subject too, unless the subject is about
///     parcels and the like or the name's matter is over ("recovery codes regenerated"); and in a text that
///     hands it over and says when it expires or what to do when it was not asked for.
///   - A name of a password, with six or more characters behind it among which is a digit.
///   - A link: 2 for an action with its object ("confirm your email") or for a link's name. One more each
///     for a link or an invitation to press nearby, for looking like the label of a button, for standing
///     in the subject, and for what expires or was not asked for. Less 1 near parcels, doors, meetings or
///     sales. What is over ("was successful") is none, nor is advice ("if this wasn't you, change your
///     password", "パスワードをお忘れの場合").
///   - A subject that says that a password was forgotten.
///   - Signing in, not as a part of an address, near an invitation to press, when the subject begins with it
///     or near a link that expires or a sign-in not asked for.
///
/// "Near" is a number of bytes of UTF-8, so that fewer Japanese characters are near than Latin ones: each of
/// them says more. Bytes that are not UTF-8 are read as U+FFFD.
///
/// Threads: pure functions over tables that are made once.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Core/SecurityMail/EmailRiskDetector.h"

namespace tarnwell {

class SecretMailRule {
 public:
  /// As the message has them.
  struct Mail {
    std::string_view subject = {};
    std::string_view from = {};
    std::string_view text = {};
  };

  /// The first signal of each category and location, codes before links and in the order "subject", "from",
  /// "body". Empty: this rule does not withhold the mail. The categories are "one_time_code" and
  /// "account_link"; the term is the word that told.
  static std::vector<RiskSignal> signals(const Mail& mail);

  /// No more of the subject, of the sender and of the text is looked at by `signals`, in bytes.
  static constexpr std::size_t mostLookedAt = 64 * 1024;

  /// The text with "•" for every character of each group that is shaped like a code, the blanks and hyphens
  /// inside of it included. All else stays byte for byte. A long text is read in pieces: beside the result
  /// it takes a bounded memory.
  static std::string maskedCodes(std::string_view text);
};

}  // namespace tarnwell
