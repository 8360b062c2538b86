#include "Core/SecurityMail/EmailRiskDetector.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <map>
#include <memory>
#include <mutex>

#include "Text/ASCIICase.h"
#include "Text/Text.h"

namespace tarnwell {

namespace {

/// The order is that of the signals. Japanese mail writes the two of "two-step" in either width.
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

/// A whole word is looked for only where the term is a substring of the lower-cased text. The one implies the
/// other for terms to which nothing outside of ASCII folds.
static_assert(std::ranges::all_of(keywordTable, [](const Keyword& keyword) {
  return !keyword.wordBoundary || foldsFromASCIIOnly(keyword.term);
}));

/// How many bytes of each term the search looks up in its table; no term is shorter.
constexpr std::size_t lookAhead = 3;
static_assert(std::ranges::all_of(keywordTable,
                                  [](const Keyword& keyword) { return keyword.term.size() >= lookAhead; }));

/// A set of rows of the table, one bit for each.
using Rows = std::uint32_t;
static_assert(std::size(keywordTable) <= 32);

constexpr Rows bitOf(std::size_t row) { return Rows{1} << row; }

/// Finds all terms in one walk over a text. A table tells for each byte which rows have it in which of the
/// first places of their terms; where the last bytes fit into the places of a row, the rest of its term is
/// compared.
class TermSearch {
 public:
  TermSearch() {
    for (std::size_t row = 0; row < std::size(keywordTable); ++row) {
      lowerTerms_[row] = lowercased(keywordTable[row].term);
      for (std::size_t place = 0; place < lookAhead; ++place) {
        rowsWith_[static_cast<unsigned char>(lowerTerms_[row][place])][place] |= bitOf(row);
      }
    }
  }

  const std::string& lowerTerm(std::size_t row) const { return lowerTerms_[row]; }

  /// The rows whose lower-cased terms occur in the text and begin before `end`.
  Rows foundIn(std::string_view text, std::size_t end) const {
    static_assert(lookAhead == 3);
    Rows found = 0;
    Rows withFirst = 0;  // whose first byte is the one before
    Rows withFirstTwo = 0;
    const std::size_t lastLookAt = end + std::min(text.size(), lookAhead - 1);
    for (std::size_t next = 0; next < std::min(text.size(), lastLookAt); ++next) {
      const RowsInPlaces& rows = rowsWith_[static_cast<unsigned char>(text[next])];
      const Rows candidates = withFirstTwo & rows[2];
      withFirstTwo = withFirst & rows[1];
      withFirst = rows[0];
      if (candidates != 0) {
        found |= confirmed(candidates & ~found, text.substr(next + 1 - lookAhead));
      }
    }
    return found;
  }

 private:
  using RowsInPlaces = std::array<Rows, lookAhead>;

  Rows confirmed(Rows candidates, std::string_view text) const {
    Rows found = 0;
    for (; candidates != 0; candidates &= candidates - 1) {
      const auto row = static_cast<std::size_t>(std::countr_zero(candidates));
      if (text.starts_with(lowerTerms_[row])) {
        found |= bitOf(row);
      }
    }
    return found;
  }

  std::array<std::string, std::size(keywordTable)> lowerTerms_;
  std::array<RowsInPlaces, 256> rowsWith_{};
};

const TermSearch& termSearch() {
  static const TermSearch search;
  return search;
}

/// Compiled word patterns, one for each lower-cased term, for the life of the process.
class WordRegexCache {
 public:
  static WordRegexCache& shared() {
    static WordRegexCache cache;
    return cache;
  }

  /// The pattern of the term, or null when there can be none. The lock covers looking up
  /// and compiling; searching with the pattern needs none.
  std::shared_ptr<const WordPattern> pattern(const std::string& lowerTerm) {
    const std::lock_guard lock(mutex_);
    const auto known = patterns_.find(lowerTerm);
    if (known != patterns_.end()) {
      return known->second;
    }
    auto compiled = std::make_shared<const WordPattern>(lowerTerm);
    if (!compiled->isUsable()) {
      return nullptr;
    }
    patterns_.emplace(lowerTerm, compiled);
    return compiled;
  }

 private:
  std::mutex mutex_;
  std::map<std::string, std::shared_ptr<const WordPattern>> patterns_;
};

/// For a term that is a substring of the text.
bool isFoundAsWord(const std::string& lowerTerm, std::string_view lowerText, std::size_t end) {
  const auto pattern = WordRegexCache::shared().pattern(lowerTerm);
  return pattern == nullptr || pattern->isFoundIn(lowerText, end);
}

/// Appends the signals of one text whose terms begin in its first `end` bytes. No term stands in the table
/// twice, so that no signal does either.
void scan(std::string_view text, std::size_t end, std::string_view location,
          std::vector<RiskSignal>& signals) {
  if (text.empty()) {
    return;
  }
  const std::string lowerText = lowercased(text);
  const std::size_t lowerEnd = end < text.size() ? lowercased(text.substr(0, end)).size() : lowerText.size();
  const Rows substrings = termSearch().foundIn(lowerText, lowerEnd);
  for (std::size_t row = 0; row < std::size(keywordTable); ++row) {
    if ((substrings & bitOf(row)) == 0) {
      continue;
    }
    const std::string& lowerTerm = termSearch().lowerTerm(row);
    if (!keywordTable[row].wordBoundary || isFoundAsWord(lowerTerm, lowerText, lowerEnd)) {
      signals.push_back({std::string(keywordTable[row].category), lowerTerm, std::string(location)});
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
    // Deliberate: a caller's limit widens the scan and never narrows it, since a preview of 200
    // characters of a security mail is as telling as the whole.
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
