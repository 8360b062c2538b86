#pragma once

/// Recognises mail that must not reach an assistant: one-time passwords, verification codes, password resets
/// and security alerts.
///
/// The rule: subject, sender and the beginning of the body are lower-cased and searched for a fixed table of
/// English and Japanese keywords. One keyword in one place is enough. Two short Latin acronyms must be whole
/// words: "hotpot" must not match "OTP". All other terms match anywhere.
///
///     auto assessment = EmailRiskDetector::shared().assess({.subject = "Your OTP: 4711"});
///     assessment.shouldBlockBody();  // true
///     assessment.signals;            // {{"otp", "otp", "subject"}}
///
/// Threads: an immutable value; any.

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwell {

/// One row of the detector's table.
struct Keyword {
  std::string_view term;
  std::string_view category;
  /// True when the term must be a whole word, as `hasWord` defines it.
  bool wordBoundary;
};

/// One match. The JSON form has the same keys.
struct RiskSignal {
  std::string category;
  std::string term;      // lower-cased
  std::string location;  // "subject", "from" or "body"

  bool operator==(const RiskSignal&) const = default;
};

struct RiskAssessment {
  std::vector<RiskSignal> signals;

  /// The assessment with no signals.
  static const RiskAssessment none;

  bool shouldBlockBody() const { return !signals.empty(); }

  /// The distinct categories in order of first appearance.
  std::vector<std::string> categories() const;

  /// The sentence that replaces a withheld body. Empty without signals.
  std::string reason() const;

  bool operator==(const RiskAssessment&) const = default;
};

class EmailRiskDetector {
 public:
  /// `bodyScanPrefix` is the least number of user-perceived characters of a body to scan.
  explicit EmailRiskDetector(std::size_t bodyScanPrefix);

  /// The detector with a prefix of 800 characters.
  static const EmailRiskDetector& shared();

  /// The texts to search. `scanLimit` (user-perceived characters of the body) can widen the scan but never
  /// narrow it.
  struct Input {
    std::optional<std::string_view> subject = std::nullopt;
    std::optional<std::string_view> from = std::nullopt;
    std::optional<std::string_view> bodyPrefix = std::nullopt;
    std::optional<std::size_t> scanLimit = std::nullopt;
  };

  RiskAssessment assess(const Input& input) const;

  /// The signals of keywords that begin in the first `end` bytes of a text from a body. The text after them
  /// is read only to complete a keyword that begins before `end`.
  RiskAssessment assessPassage(std::string_view text, std::size_t end) const;

  std::span<const Keyword> keywords() const;

  std::size_t bodyScanPrefix() const { return bodyScanPrefix_; }

 private:
  std::size_t bodyScanPrefix_;
};

}  // namespace tarnwell
