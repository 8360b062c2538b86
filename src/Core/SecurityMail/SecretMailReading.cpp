#include "Core/SecurityMail/SecretMailReading.h"

#include <algorithm>

#include "Text/Text.h"

namespace tarnwell {

std::size_t distance(const MailPlace& left, const MailPlace& right) {
  return left.end <= right.begin   ? right.begin - left.end
         : right.end <= left.begin ? left.begin - right.end
                                   : 0;
}

SecretMailReading::SecretMailReading(std::string_view subject, std::string_view from, std::string_view body) {
  text_ = foldedForScanning(subject);
  endOfSubject_ = text_.size();
  text_ += '\n';
  text_ += foldedForScanning(body);
  words_ = wordsIn(text_);
  groups_ = codeGroupsIn(text_);
  wordsOfSender_ = wordsIn(foldedForScanning(from));
  for (const FoundWord& word : words_) {
    headerRoles_ |= isInSubject(word.begin) ? word.roles : 0;
  }
  for (const FoundWord& word : wordsOfSender_) {
    headerRoles_ |= word.roles & mail_role::signIn;
  }
}

std::span<const FoundWord> SecretMailReading::wordsOfSubject() const {
  return std::span(words_).first(words_.size() - wordsOfBody().size());
}

std::span<const FoundWord> SecretMailReading::wordsOfBody() const {
  return {std::ranges::lower_bound(words_, endOfSubject_, {}, &FoundWord::begin), words_.end()};
}

std::span<const FoundWord> SecretMailReading::wordsAround(const MailPlace& place, std::size_t before,
                                                          std::size_t after) const {
  const std::size_t from = place.begin - std::min(place.begin, before);
  const auto first = std::ranges::lower_bound(words_, from, {}, &FoundWord::begin);
  const auto last = std::ranges::upper_bound(first, words_.end(), place.end + after, {}, &FoundWord::begin);
  return {first, last};
}

MailRoles SecretMailReading::rolesAround(const MailPlace& place, std::size_t bytes) const {
  MailRoles roles = 0;
  for (const FoundWord& word : wordsAround(place, bytes, bytes)) {
    roles |= word.roles;
  }
  return roles;
}

}  // namespace tarnwell
