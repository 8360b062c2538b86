// A mail as subject, sender and body, one line each and the rest: the signals are those of a plain search
// for every keyword, and ASCII letter case hides nothing.

#include "Core/EmailRiskDetector.h"

#include <string>

#include "Fuzzing.h"
#include "Platform/ASCIICase.h"
#include "Platform/Text.h"

namespace tarnwell {
namespace {

std::string asciiUppercased(std::string_view text) {
  std::string upper(text);
  for (char& byte : upper) {
    byte = byte >= 'a' && byte <= 'z' ? static_cast<char>(byte - 'a' + 'A') : byte;
  }
  return upper;
}

/// Keyword by keyword.
void appendSignals(std::string_view text, const char* location, std::vector<RiskSignal>& signals) {
  static const auto patterns = [] {
    std::vector<std::pair<std::string, WordPattern>> compiled;
    for (const Keyword& keyword : EmailRiskDetector::shared().keywords()) {
      compiled.emplace_back(lowercased(keyword.term), WordPattern(lowercased(keyword.term)));
    }
    return compiled;
  }();
  const std::string lower = lowercased(text);
  for (std::size_t row = 0; row < patterns.size(); ++row) {
    const auto& [term, pattern] = patterns[row];
    const Keyword& keyword = EmailRiskDetector::shared().keywords()[row];
    if (keyword.wordBoundary ? pattern.isFoundIn(lower) : lower.find(term) != std::string::npos) {
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
