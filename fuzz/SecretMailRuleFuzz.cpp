// The input is a mail: a line for the subject, a line for the sender, and the text. The words, the groups and
// the signals are those of the slow reference, and masking hides only the groups.

#include "Core/SecurityMail/SecretMailRule.h"

#include <string>

#include "Fuzzing.h"
#include "Text/Text.h"
#include "support/SecretMailReference.h"

namespace tarnwell {
namespace {

/// Removes the characters that masking writes.
std::string withoutBullets(std::string text) {
  constexpr std::string_view bullet = "•";
  for (std::size_t at = 0; (at = text.find(bullet, at)) != std::string::npos;) {
    text.erase(at, bullet.size());
  }
  return text;
}

/// True when `other` becomes the text by leaving out some of its bytes.
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
  constexpr std::size_t longest = 2'000;  // the reference is slow
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
