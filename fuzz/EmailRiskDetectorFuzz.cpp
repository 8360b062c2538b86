// The input is a mail: a line for the subject, a line for the sender, and the body. The signals are those of
// a plain search for every keyword, and ASCII letter case does not matter.

#include "Core/SecurityMail/EmailRiskDetector.h"

#include <string>

#include "Fuzzing.h"
#include "Text/ASCIICase.h"
#include "Text/Text.h"
#include "support/RegexReference.h"

namespace tarnwell {
namespace {

std::string asciiUppercased(std::string_view text) {
  std::string upper(text);
  for (char& byte : upper) {
    byte = byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
  }
  return upper;
}

/// Searches for each keyword. Finds whole words with ICU's regular expressions.
void appendSignals(std::string_view text, const char* location, std::vector<RiskSignal>& signals) {
  const std::string lower = lowercased(text);
  for (const Keyword& keyword : EmailRiskDetector::shared().keywords()) {
    const std::string term = lowercased(keyword.term);
    if (keyword.wordBoundary ? isFoundByICU(lower, "\\b" + term + "\\b", LetterCase::isIgnored)
                             : lower.find(term) != std::string::npos) {
      signals.push_back({std::string(keyword.category), term, location});
    }
  }
}

}  // namespace
}  // namespace tarnwell

FUZZ_TARGET(std::string_view input) {
  const std::string_view subject = takeLine(input);
  const std::string_view from = takeLine(input);
  const std::string_view body = input;
  const EmailRiskDetector& detector = EmailRiskDetector::shared();
  const RiskAssessment found = detector.assess({.subject = subject, .from = from, .bodyPrefix = body});

  std::vector<RiskSignal> expected;
  appendSignals(subject, "subject", expected);
  appendSignals(from, "from", expected);
  appendSignals(characterPrefix(body, detector.bodyScanPrefix()), "body", expected);
  require(found.signals == expected, "the signals are those of the plain search");
  require(found.reason().empty() == !found.shouldBlockBody(), "a withheld body has a reason");

  const std::string upperSubject = asciiUppercased(subject);
  const std::string upperFrom = asciiUppercased(from);
  const std::string upperBody = asciiUppercased(body);
  require(detector.assess({.subject = upperSubject, .from = upperFrom, .bodyPrefix = upperBody}) == found,
          "letter case hides nothing");
}
