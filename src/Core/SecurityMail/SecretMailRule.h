#pragma once

/// Recognises mail that carries a secret: a one-time code, or a link that opens an account. It adds to
/// `EmailRiskDetector` the mail that no keyword there matches.
///
///     SecretMailRule::signals({.subject = "493021 is your Acme code"});
///     // {{"one_time_code", "code", "subject"}}
///     SecretMailRule::maskedCodes("G-493021 is your code");  // "•••••••• is your code"
///
/// The rule. Words come from the tables of `SecretMailWords`. Groups with the shape of a code come from
/// `codeGroupsIn`. The words near a group or a link give points, and three points withhold the mail.
/// - A code near a word: 3 points for a name of a one-time code, 1 for a word that may name one ("code",
///   "PIN"). One point more for each of these: a word of handing over ("enter", "code is"; in a subject also
///   "log in"); signing in or confirming; something that expires, is secret or was not asked for; blanks
///   inside the group; word and group both in the subject. 3 points less near parcels, doors, meetings or
///   sales, but not for "password: ...". A group right after the name of another number ("order no.") is no
///   code.
/// - A name of a one-time code. In a sender it is enough. In a subject it is enough unless the subject is
///   about parcels and the like, or says that the matter is over ("recovery codes regenerated"). In a text it
///   is enough when the text hands the code over and also says when it expires, or what to do if nobody asked
///   for it.
/// - A name of a password, when six or more characters with a digit among them follow.
/// - A link: 2 points for an action with its object ("confirm your email") or for the name of a link. One
///   point more for each of these: a link or an invitation to press nearby; the look of a button's label; a
///   place in the subject; something that expires or was not asked for. 1 point less near parcels, doors,
///   meetings or sales. An action that is over ("was successful") does not count. Neither does advice ("if
///   this wasn't you, change your password", "パスワードをお忘れの場合").
/// - A subject that says that a password was forgotten.
/// - A word of signing in that is not part of an address and is near an invitation to press. The subject must
///   begin with it, or near it a link expires or a sign-in was not asked for.
///
/// "Near" is a number of bytes of UTF-8. Fewer Japanese characters than Latin ones are therefore near, which
/// fits because each of them says more. Bytes that are not UTF-8 are read as U+FFFD.
///
/// Threads: pure functions over tables that are built once.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "Core/SecurityMail/EmailRiskDetector.h"

namespace tarnwell {

class SecretMailRule {
 public:
  /// The texts as the message has them.
  struct Mail {
    std::string_view subject = {};
    std::string_view from = {};
    std::string_view text = {};
  };

  /// The first signal of each category and location: codes before links, in the order "subject", "from",
  /// "body". When the result is empty, this rule does not withhold the mail. The categories are
  /// "one_time_code" and "account_link". The term is the word that was found.
  static std::vector<RiskSignal> signals(const Mail& mail);

  /// The most bytes of the subject, of the sender and of the text that `signals` reads.
  static constexpr std::size_t mostLookedAt = 65'536;

  /// The text with each character of each code-shaped group replaced by "•", including blanks and hyphens
  /// inside the group. All other bytes stay the same. A long text is read in pieces, so the memory besides
  /// the result is bounded.
  static std::string maskedCodes(std::string_view text);
};

}  // namespace tarnwell
