// A mail as subject, sender and text, one line each and the rest: the words, the groups and the signals are
// those of a slow reading, and masking hides the groups and nothing else.

#include "Core/SecurityMail/SecretMailRule.h"

#include <string>

#include "Fuzzing.h"
#include "Text/Text.h"
#include "support/SecretMailReference.h"

namespace tarnwell {
namespace {

/// Without what masking writes.
std::string withoutBullets(std::string text) {
  constexpr std::string_view bullet = "•";
  for (std::size_t at = 0; (at = text.find(bullet, at)) != std::string::npos;) {
    text.erase(at, bullet.size());
  }
  return text;
}

/// True when the text is the other one with some of its bytes left out.
bool isMadeByLeavingOut(std::string_view text, std::string_view other) {
  for (const char byte : other) {
    if (!text.empty() && text.front() == byte) {
      text.remove_prefix(1);
    }
  }
  return text.empty();
}

}  // namespace
}  // namespace tarnwell

FUZZ_TARGET(std::string_view input) {
  constexpr std::size_t longest = 2'000;  // the reading is slow
  input = input.substr(0, longest);
  const std::string_view subject = takeLine(input);
  const std::string_view from = takeLine(input);
  const SecretMailRule::Mail mail{.subject = subject, .from = from, .text = input};

  const std::string folded = foldedForScanning(input);
  require(foldedForScanning(folded) == folded, "what is folded stays");
  require(wordsIn(folded) == referenceWords(folded), "the words are those of the slow search");
  require(codeGroupsIn(folded) == referenceGroups(folded), "the groups are those of the expressions");
  require(SecretMailRule::signals(mail) == referenceSignals(mail),
          "the signals are those of the slow reading");

  const std::string masked = SecretMailRule::maskedCodes(input);
  require(isMadeByLeavingOut(withoutBullets(masked), input), "masking adds nothing but bullets");
}
