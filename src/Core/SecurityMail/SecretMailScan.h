#pragma once

/// Finds the words of `SecretMailWords` and the groups with the shape of a code. The text must have the form
/// of `foldedForScanning`.
///
///     wordsIn("Your sign-in code: 493 021");       // "sign in code", "sign in", "code"
///     codeGroupsIn("Your sign-in code: 493 021");  // the bytes 19 to 26
///
/// Both run in linear time: they read each place of the text a bounded number of times.
///
/// Threads: pure functions over tables that are built once.

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

/// In the order of their first bytes, and longer words before shorter ones. Leaves out words that begin
/// inside a word with the role `other`.
std::vector<FoundWord> wordsIn(std::string_view folded);

struct CodeGroup {
  std::size_t begin;  // bytes
  std::size_t end;

  bool operator==(const CodeGroup&) const = default;
};

/// In the order of the text. These look like a code:
/// - 4 to 8 digits: 493021
/// - two groups of three or four digits, with a blank or a hyphen: 493 021, 4930-2178
/// - three groups of two digits, with blanks: 49 30 21
/// - 4 to 8 single digits with blanks between them, even before a longer number: 4 9 3 0 2 1
/// - one or two letters, a hyphen, and 4 to 8 digits: G-493021
/// - 5 to 8 letters and digits: R4K2P
/// - two to four groups of 3 to 5 letters and digits, with hyphens: A7K-9QX. Two such groups may have a
///   blank.
/// The form or the neighbours of a group can show that it is no code. This covers years and dates, times,
/// prices, versions, parts of addresses, numbers that count something, telephone and card numbers, and
/// numbers after "#".
std::vector<CodeGroup> codeGroupsIn(std::string_view folded);

}  // namespace tarnwell
