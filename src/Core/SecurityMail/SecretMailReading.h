#pragma once

/// A mail that was looked through once: its words, its groups shaped like a code, and what stands near a
/// place. The two questions of `SecretMailRule` are answered over it.
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

/// The bytes between two places; 0 where they overlap.
std::size_t distance(const MailPlace& left, const MailPlace& right);

inline MailPlace placeOf(const FoundWord& word) { return {word.begin, word.end}; }

class SecretMailReading {
 public:
  /// The texts are unfolded.
  SecretMailReading(std::string_view subject, std::string_view from, std::string_view body);

  /// Subject and body, folded, with a line feed between them.
  std::string_view text() const { return text_; }

  bool isInSubject(std::size_t position) const { return position < endOfSubject_; }

  std::span<const FoundWord> wordsOfSubject() const;
  std::span<const FoundWord> wordsOfBody() const;
  std::span<const FoundWord> wordsOfSender() const { return wordsOfSender_; }

  const std::vector<CodeGroup>& groups() const { return groups_; }

  /// What the words of the subject say; of those of the sender, whether the mail is about signing in.
  MailRoles headerRoles() const { return headerRoles_; }

  /// The words that begin at most `before` bytes before the place and at most `after` behind it.
  std::span<const FoundWord> wordsAround(const MailPlace& place, std::size_t before, std::size_t after) const;

  /// What the words say that begin so many bytes around the place.
  MailRoles rolesAround(const MailPlace& place, std::size_t bytes) const;

 private:
  std::string text_;
  std::size_t endOfSubject_ = 0;
  std::vector<FoundWord> words_;
  std::vector<FoundWord> wordsOfSender_;
  std::vector<CodeGroup> groups_;
  MailRoles headerRoles_ = 0;
};

/// How many points withhold a mail.
constexpr int enoughPoints = 3;

enum class MailLocation { subject, body };

/// The word that tells of a code there; absent when nothing does.
std::optional<std::string_view> wordTellingCode(const SecretMailReading& mail, MailLocation location);

/// The first of the words that names a one-time code.
std::optional<std::string_view> codeNameIn(std::span<const FoundWord> words);

/// The word that tells of an account link there; absent when nothing does.
std::optional<std::string_view> wordTellingLink(const SecretMailReading& mail, MailLocation location);

}  // namespace tarnwell
