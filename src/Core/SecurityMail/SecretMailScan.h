#pragma once

/// Finds the words of `SecretMailWords` and the groups shaped like a code in a text in the form of
/// `foldedForScanning`.
///
///     wordsIn("Your sign-in code: 493 021");       // "sign in code", "sign in", "code"
///     codeGroupsIn("Your sign-in code: 493 021");  // the bytes 19 to 26
///
/// Both are linear: each place of the text is looked at a bounded number of times.
/// Threads: pure functions over tables that are made once.

#include <cstddef>
#include <string_view>
#include <vector>

#include "Core/SecurityMail/SecretMailWords.h"

namespace tarnwell {

struct FoundWord {
  std::size_t begin;  // bytes
  std::size_t end;
  std::string_view term;  // as in the table
  MailRoles roles;

  bool is(MailRoles wanted) const { return (roles & wanted) != 0; }
  bool operator==(const FoundWord&) const = default;
};

/// In the order of their beginnings, the longer before the shorter; none that begins inside of one with the
/// role `other`.
std::vector<FoundWord> wordsIn(std::string_view folded);

struct CodeGroup {
  std::size_t begin;  // bytes
  std::size_t end;

  bool operator==(const CodeGroup&) const = default;
};

/// In the order of the text. What looks like a code:
///   - 4 to 8 digits: 493021
///   - in threes or fours, with a blank or a hyphen: 493 021, 4930-2178; in twos, with blanks: 49 30 21
///   - 4 to 8 single digits with blanks between them, before a longer number too: 4 9 3 0 2 1
///   - one or two letters, a hyphen, and 4 to 8 digits: G-493021
///   - letters and digits, 5 to 8: R4K2P
///   - letters and digits in two to four groups of 3 to 5, with hyphens, or two with a blank: A7K-9QX
/// What does not, by its own form or its neighbours: years and dates, times, prices, versions, parts of
/// addresses, numbers that count something, telephone and card numbers, numbers behind "#".
std::vector<CodeGroup> codeGroupsIn(std::string_view folded);

}  // namespace tarnwell
