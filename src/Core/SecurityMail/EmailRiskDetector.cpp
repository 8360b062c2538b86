#include "Core/SecurityMail/EmailRiskDetector.h"

#include <algorithm>

#include "Text/ASCIICase.h"
#include "Text/Text.h"

namespace tarnwell {

namespace {

/// The signals of a text have this order. Japanese mail writes the 2 of "two-step" in half or full width.
constexpr Keyword keywordTable[] = {
    {"verification code", "verification_code", false},
    {"confirmation code", "verification_code", false},
    {"one-time password", "otp", false},
    {"one time password", "otp", false},
    {"two-factor", "two_factor", false},
    {"two factor", "two_factor", false},
    {"password reset", "password_reset", false},
    {"reset your password", "password_reset", false},
    {"security code", "security_code", false},
    {"sign-in code", "login_code", false},
    {"sign in code", "login_code", false},
    {"login code", "login_code", false},
    {"recovery code", "recovery_code", false},
    {"security alert", "security_alert", false},
    {"security warning", "security_alert", false},
    {"OTP", "otp", true},
    {"2FA", "two_factor", true},
    {"認証コード", "verification_code", false},
    {"確認コード", "verification_code", false},
    {"ワンタイムパスワード", "otp", false},
    {"パスワードリセット", "password_reset", false},
    {"パスワードの再設定", "password_reset", false},
    {"セキュリティコード", "security_code", false},
    {"ログインコード", "login_code", false},
    {"二要素認証", "two_factor", false},
    {"2段階認証", "two_factor", false},
    {"２段階認証", "two_factor", false},
    {"セキュリティ警告", "security_alert", false},
};

bool isFound(const Keyword& keyword, std::string_view lowerTerm, std::string_view lowerText,
             std::size_t end) {
  return keyword.wordBoundary ? hasWord(lowerText, lowerTerm, end) : lowerText.find(lowerTerm) < end;
}

/// Appends the signals of the terms that begin in the first `end` bytes of a text. The table has each term
/// once, so each signal of a text occurs once.
void scan(std::string_view text, std::size_t end, std::string_view location,
          std::vector<RiskSignal>& signals) {
  if (text.empty()) {
    return;
  }
  const std::string lowerText = lowercased(text);
  const std::size_t lowerEnd = end < text.size() ? lowercased(text.substr(0, end)).size() : lowerText.size();
  for (const Keyword& keyword : keywordTable) {
    const std::string lowerTerm = asciiLowercased(std::string(keyword.term));
    if (isFound(keyword, lowerTerm, lowerText, lowerEnd)) {
      signals.push_back({std::string(keyword.category), lowerTerm, std::string(location)});
    }
  }
}

void scan(std::string_view text, std::string_view location, std::vector<RiskSignal>& signals) {
  scan(text, text.size(), location, signals);
}

}  // namespace

const RiskAssessment RiskAssessment::none{};

std::vector<std::string> RiskAssessment::categories() const {
  std::vector<std::string> distinct;
  for (const RiskSignal& signal : signals) {
    if (std::ranges::find(distinct, signal.category) == distinct.end()) {
      distinct.push_back(signal.category);
    }
  }
  return distinct;
}

std::string RiskAssessment::reason() const {
  if (signals.empty()) {
    return {};
  }
  std::string list;
  for (const std::string& category : categories()) {
    if (!list.empty()) {
      list += ", ";
    }
    list += category;
  }
  return "Body withheld: looks like a sensitive security message (" + list +
         "). OTP / verification-code / password-reset / security-alert content is "
         "never returned by this bridge.";
}

EmailRiskDetector::EmailRiskDetector(std::size_t bodyScanPrefix) : bodyScanPrefix_(bodyScanPrefix) {}

const EmailRiskDetector& EmailRiskDetector::shared() {
  static const EmailRiskDetector detector(800);
  return detector;
}

RiskAssessment EmailRiskDetector::assess(const Input& input) const {
  RiskAssessment assessment;
  if (input.subject) {
    scan(*input.subject, "subject", assessment.signals);
  }
  if (input.from) {
    scan(*input.from, "from", assessment.signals);
  }
  if (input.bodyPrefix) {
    // Deliberate: a caller's limit can widen the scan but never narrow it. A preview of 200 characters of a
    // security mail can reveal as much as the whole.
    const std::size_t limit = std::max(bodyScanPrefix_, input.scanLimit.value_or(0));
    scan(characterPrefix(*input.bodyPrefix, limit), "body", assessment.signals);
  }
  return assessment;
}

RiskAssessment EmailRiskDetector::assessPassage(std::string_view text, std::size_t end) const {
  RiskAssessment assessment;
  scan(text, end, "body", assessment.signals);
  return assessment;
}

std::span<const Keyword> EmailRiskDetector::keywords() const { return keywordTable; }

}  // namespace tarnwell
