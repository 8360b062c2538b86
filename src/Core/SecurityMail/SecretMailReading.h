#pragma once

/// A mail after one pass over it: its words, the groups with the shape of a code, and the words near a place.
/// The two questions of `SecretMailRule` work on it.
///
/// Threads: an immutable value.

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Core/SecurityMail/SecretMailScan.h"

namespace tarnwell {

struct MailPlace {
  std::size_t begin;  // bytes
  std::size_t end;
};

/// The bytes between two places. 0 when they overlap.
std::size_t distance(const MailPlace& left, const MailPlace& right);

inline MailPlace placeOf(const FoundWord& word) { return {word.begin, word.end}; }

class SecretMailReading {
 public:
  /// The texts are not folded yet.
  SecretMailReading(std::string_view subject, std::string_view from, std::string_view body);

  /// The folded subject and body, with a line feed between them.
  std::string_view text() const { return text_; }

  bool isInSubject(std::size_t position) const { return position < endOfSubject_; }

  std::span<const FoundWord> wordsOfSubject() const;
  std::span<const FoundWord> wordsOfBody() const;
  std::span<const FoundWord> wordsOfSender() const { return wordsOfSender_; }

  const std::vector<CodeGroup>& groups() const { return groups_; }

  /// The roles of all words in the subject, and of the sender's words only the role `signIn`.
  MailRoles headerRoles() const { return headerRoles_; }

  /// The words that begin at most `before` bytes before the place or at most `after` bytes after it.
  std::span<const FoundWord> wordsAround(const MailPlace& place, std::size_t before, std::size_t after) const;

  /// The roles of the words that begin within so many bytes of the place.
  MailRoles rolesAround(const MailPlace& place, std::size_t bytes) const;

 private:
  std::string text_;
  std::size_t endOfSubject_ = 0;
  std::vector<FoundWord> words_;
  std::vector<FoundWord> wordsOfSender_;
  std::vector<CodeGroup> groups_;
  MailRoles headerRoles_ = 0;
};

/// A mail with this many points is withheld.
constexpr int enoughPoints = 3;

enum class MailLocation { subject, body };

/// The word that shows a code in this location. Absent when there is none.
std::optional<std::string_view> wordTellingCode(const SecretMailReading& mail, MailLocation location);

/// The first word that names a one-time code.
std::optional<std::string_view> codeNameIn(std::span<const FoundWord> words);

/// The word that shows an account link in this location. Absent when there is none.
std::optional<std::string_view> wordTellingLink(const SecretMailReading& mail, MailLocation location);

}  // namespace tarnwell
