#include "Core/SecretMailRule.h"

#include <optional>

#include "Core/SecretMailReading.h"
#include "Platform/Text.h"
#include "Platform/UTF8.h"

namespace tarnwell {

std::vector<RiskSignal> SecretMailRule::signals(const Mail& mail) {
  const SecretMailReading reading(mail.subject, mail.from, mail.text);
  std::vector<RiskSignal> found;
  const auto add = [&](const char* category, const char* location, std::optional<std::string_view> term) {
    if (term) {
      found.push_back({category, std::string(*term), location});
    }
  };
  add("one_time_code", "subject", wordTellingCode(reading, MailLocation::subject));
  add("one_time_code", "from", codeNameIn(reading.wordsOfSender()));
  add("one_time_code", "body", wordTellingCode(reading, MailLocation::body));
  add("account_link", "subject", wordTellingLink(reading, MailLocation::subject));
  add("account_link", "body", wordTellingLink(reading, MailLocation::body));
  return found;
}

std::string SecretMailRule::maskedCodes(std::string_view text) {
  struct Origin {
    std::size_t begin;
    std::size_t end;
  };
  std::string folded;
  std::vector<Origin> origins;  // of each byte of the folded text
  for (std::size_t next = 0; next < text.size();) {
    const std::size_t begin = next;
    const char32_t codePoint = nextCodePoint(text, next);
    if (isWhitespace(codePoint)) {
      folded += ' ';
    } else if (codePoint < 0x80) {
      folded += static_cast<char>(codePoint);
    } else {
      folded += foldedForScanning(text.substr(begin, next - begin));
    }
    origins.resize(folded.size(), {begin, next});
  }
  std::string masked;
  std::size_t copied = 0;
  for (const CodeGroup& group : codeGroupsIn(folded)) {
    masked.append(text, copied, origins[group.begin].begin - copied);
    copied = origins[group.end - 1].end;
    for (std::size_t byte = group.begin; byte < group.end; ++byte) {
      const bool isFirstOfCharacter = byte == group.begin || origins[byte].begin != origins[byte - 1].begin;
      masked += isFirstOfCharacter ? "•" : "";
    }
  }
  masked.append(text, copied);
  return masked;
}

}  // namespace tarnwell
