#include "Core/SecurityMail/EmailRiskDetector.h"

#include <set>
#include <thread>

#include "Text/Text.h"
#include "support/RowName.h"

namespace tarnwell {

void PrintTo(const RiskSignal& signal, std::ostream* stream) {
  *stream << '(' << signal.category << ", " << signal.term << ", " << signal.location << ')';
}

namespace {

struct Row {
  std::string name;
  std::optional<std::string> subject;
  std::optional<std::string> from;
  std::optional<std::string> body;
  std::vector<RiskSignal> signals;
};

class Assessment : public testing::TestWithParam<Row> {};

TEST_P(Assessment, givesTheSignals) {
  const Row& row = GetParam();
  const RiskAssessment assessment = EmailRiskDetector::shared().assess(
      {.subject = row.subject, .from = row.from, .bodyPrefix = row.body, .scanLimit = std::nullopt});
  EXPECT_EQ(assessment.signals, row.signals);
  EXPECT_EQ(assessment.shouldBlockBody(), !row.signals.empty());
}

using Signals = std::vector<RiskSignal>;

Row inSubject(std::string name, std::string subject, Signals signals) {
  return {std::move(name), std::move(subject), std::nullopt, std::nullopt, std::move(signals)};
}

INSTANTIATE_TEST_SUITE_P(
    Substrings, Assessment,
    testing::Values(
        Row{"nothingGiven", {}, {}, {}, {}}, Row{"emptyTexts", "", "", "", {}},
        inSubject("verificationCode", "Your verification code is 123456",
                  {{"verification_code", "verification code", "subject"}}),
        inSubject("caseIsIgnored", "Two-Factor enabled", {{"two_factor", "two-factor", "subject"}}),
        inSubject("allCapitals", "SECURITY ALERT", {{"security_alert", "security alert", "subject"}}),
        inSubject("insideAWord", "multitwo factorization", {{"two_factor", "two factor", "subject"}}),
        inSubject("twoOfOneCategory", "Password reset: reset your password",
                  {{"password_reset", "password reset", "subject"},
                   {"password_reset", "reset your password", "subject"}}),
        inSubject("twiceInOnePlace", "otp otp OTP", {{"otp", "otp", "subject"}}),
        inSubject("tableOrderNotTextOrder", "OTP: the verification code",
                  {{"verification_code", "verification code", "subject"}, {"otp", "otp", "subject"}}),
        inSubject("overlappingTerms", "one-time password reset",
                  {{"otp", "one-time password", "subject"}, {"password_reset", "password reset", "subject"}}),
        inSubject("lineBreakIsNoSpace", "verification\ncode", {}),
        inSubject("twoSpacesAreNotOne", "verification  code", {}),
        inSubject("cutAtTheEnd", "your verification cod", {}),
        inSubject("ordinaryMail", "Lunch on Friday? The code review is done.", {}),
        Row{"sender",
            {},
            "Security Code <no-reply@example.org>",
            {},
            {{"security_code", "security code", "from"}}},
        Row{"allPlaces",
            "OTP",
            "otp@example.org",
            "Otp.",
            {{"otp", "otp", "subject"}, {"otp", "otp", "from"}, {"otp", "otp", "body"}}},
        Row{"nextToInvalidBytes", "\xFFlogin code\xFF", {}, {}, {{"login_code", "login code", "subject"}}}),
    rowName);

INSTANTIATE_TEST_SUITE_P(
    WholeWords, Assessment,
    testing::Values(inSubject("hotpot", "Hotpot recipes", {}),
                    inSubject("otp", "Your OTP: 4711", {{"otp", "otp", "subject"}}),
                    inSubject("otpAlone", "otp", {{"otp", "otp", "subject"}}),
                    inSubject("otpInBrackets", "(OTP)", {{"otp", "otp", "subject"}}),
                    inSubject("otpWithHyphen", "OTP-Code", {{"otp", "otp", "subject"}}),
                    inSubject("otpPlural", "OTPs", {}), inSubject("otpWithDigit", "OTP1", {}),
                    inSubject("otpWithUnderscore", "my_otp", {}),
                    inSubject("otpAfterHotpot", "hotpot OTP", {{"otp", "otp", "subject"}}),
                    inSubject("twoFA", "Enable 2FA now", {{"two_factor", "2fa", "subject"}}),
                    inSubject("twoFast", "2FAST 2FURIOUS", {}), inSubject("twelveFA", "12FA", {}),
                    // Letters of all scripts are parts of words. There is no boundary between P and a kana.
                    inSubject("otpBeforeHiragana", "OTPは4711です", {}),
                    inSubject("otpAfterKanji", "本日のOTP", {}),
                    inSubject("otpInJapaneseBrackets", "【OTP】4711", {{"otp", "otp", "subject"}}),
                    inSubject("otpBeforeIdeographicComma", "OTP、4711", {{"otp", "otp", "subject"}}),
                    inSubject("otpBeforeIdeographicSpace", "OTP\u3000は4711", {{"otp", "otp", "subject"}}),
                    inSubject("otpWithCombiningMark", "OTP\u0301", {}),
                    inSubject("otpBesideCyrillic", "яOTP", {}), inSubject("fullWidthOTP", "ＯＴＰ", {}),
                    inSubject("twoFABeforeKana", "2FAの設定", {}),
                    inSubject("otpBeforeLongVowelMark", "OTPー", {})),
    rowName);

INSTANTIATE_TEST_SUITE_P(Japanese, Assessment,
                         testing::Values(inSubject("fullWidthTwo", "２段階認証のお知らせ",
                                                   {{"two_factor", "２段階認証", "subject"}}),
                                         inSubject("halfWidthTwo", "2段階認証のお知らせ",
                                                   {{"two_factor", "2段階認証", "subject"}}),
                                         inSubject("inTheMiddle", "ログイン用の認証コードをお送りします",
                                                   {{"verification_code", "認証コード", "subject"}}),
                                         inSubject("ordinaryMail", "来週の会議の確認とコードレビュー", {}),
                                         inSubject("halfTheTerm", "認証コー", {}),
                                         inSubject("otherTerm", "証コード", {}),
                                         inSubject("passwords", "ワンタイムパスワードとパスワードの再設定",
                                                   {{"otp", "ワンタイムパスワード", "subject"},
                                                    {"password_reset", "パスワードの再設定", "subject"}})),
                         rowName);

constexpr std::pair<std::string_view, std::string_view> allTerms[] = {
    {"verification code", "verification_code"},
    {"confirmation code", "verification_code"},
    {"one-time password", "otp"},
    {"one time password", "otp"},
    {"two-factor", "two_factor"},
    {"two factor", "two_factor"},
    {"password reset", "password_reset"},
    {"reset your password", "password_reset"},
    {"security code", "security_code"},
    {"sign-in code", "login_code"},
    {"sign in code", "login_code"},
    {"login code", "login_code"},
    {"recovery code", "recovery_code"},
    {"security alert", "security_alert"},
    {"security warning", "security_alert"},
    {"otp", "otp"},
    {"2fa", "two_factor"},
    {"認証コード", "verification_code"},
    {"確認コード", "verification_code"},
    {"ワンタイムパスワード", "otp"},
    {"パスワードリセット", "password_reset"},
    {"パスワードの再設定", "password_reset"},
    {"セキュリティコード", "security_code"},
    {"ログインコード", "login_code"},
    {"二要素認証", "two_factor"},
    {"2段階認証", "two_factor"},
    {"２段階認証", "two_factor"},
    {"セキュリティ警告", "security_alert"}};

TEST(EmailRiskDetector, everyTermIsFoundInEveryPlaceAndEitherCase) {
  const EmailRiskDetector& detector = EmailRiskDetector::shared();
  for (const auto& [term, category] : allTerms) {
    for (const std::string& text : {std::string(term), uppercased(term), "x, " + std::string(term) + " y"}) {
      const auto expected = [found = std::string(term), kind = std::string(category)](std::string location) {
        return Signals{{kind, found, std::move(location)}};
      };
      EXPECT_EQ(detector.assess({.subject = text}).signals, expected("subject")) << text;
      EXPECT_EQ(detector.assess({.from = text}).signals, expected("from")) << text;
      EXPECT_EQ(detector.assess({.bodyPrefix = text}).signals, expected("body")) << text;
    }
  }
}

TEST(EmailRiskDetector, theTableHasEveryTermOnceInOrder) {
  const auto keywords = EmailRiskDetector(1).keywords();
  ASSERT_EQ(keywords.size(), std::size(allTerms));
  std::set<std::string> distinct;
  for (std::size_t row = 0; row < keywords.size(); ++row) {
    EXPECT_EQ(lowercased(keywords[row].term), allTerms[row].first);
    EXPECT_EQ(keywords[row].category, allTerms[row].second);
    EXPECT_EQ(keywords[row].wordBoundary, keywords[row].term == "OTP" || keywords[row].term == "2FA");
    distinct.insert(lowercased(keywords[row].term));
  }
  EXPECT_EQ(distinct.size(), keywords.size());
}

struct LimitRow {
  std::string name;
  std::size_t charactersBefore;
  std::optional<std::size_t> scanLimit;
  bool found;
};

class ScanLimit : public testing::TestWithParam<LimitRow> {};

TEST_P(ScanLimit, widensTheScanAndNeverNarrowsIt) {
  // An e with an accent is one character and three bytes.
  for (const std::string& filler : {std::string("-"), std::string("e\u0301"), std::string("日")}) {
    std::string body;
    for (std::size_t i = 0; i < GetParam().charactersBefore; ++i) {
      body += filler;
    }
    body += "認証コード";
    const RiskAssessment assessment =
        EmailRiskDetector::shared().assess({.bodyPrefix = body, .scanLimit = GetParam().scanLimit});
    EXPECT_EQ(assessment.shouldBlockBody(), GetParam().found) << filler;
  }
}

INSTANTIATE_TEST_SUITE_P(Table, ScanLimit,
                         testing::Values(LimitRow{"beyondTheDefault", 900, std::nullopt, false},
                                         LimitRow{"widened", 900, 1000, true},
                                         LimitRow{"notNarrowed", 700, 100, true},
                                         LimitRow{"narrowLimitStillEndsAtTheDefault", 900, 100, false},
                                         LimitRow{"zeroLimit", 700, 0, true},
                                         LimitRow{"lastThatFits", 795, std::nullopt, true},
                                         LimitRow{"oneTooFar", 796, std::nullopt, false},
                                         LimitRow{"hugeLimit", 5000, static_cast<std::size_t>(-1), true}),
                         rowName);

TEST(EmailRiskDetector, subjectAndSenderAreScannedInFull) {
  const std::string text = std::string(5000, '-') + "OTP";
  EXPECT_EQ(EmailRiskDetector(1).assess({.subject = text, .from = text, .bodyPrefix = text}).signals,
            (Signals{{"otp", "otp", "subject"}, {"otp", "otp", "from"}}));
}

TEST(EmailRiskDetector, withoutSignalsThereIsNoReason) {
  const RiskAssessment assessment = EmailRiskDetector::shared().assess({});
  EXPECT_EQ(assessment, RiskAssessment::none);
  EXPECT_EQ(assessment.reason(), "");
  EXPECT_TRUE(assessment.categories().empty());
  EXPECT_FALSE(assessment.shouldBlockBody());
}

TEST(EmailRiskDetector, theReasonNamesEachCategoryOnceInOrderOfAppearance) {
  const RiskAssessment assessment =
      EmailRiskDetector::shared().assess({.subject = "OTP", .bodyPrefix = "login code, one-time password"});
  EXPECT_EQ(assessment.categories(), (std::vector<std::string>{"otp", "login_code"}));
  EXPECT_EQ(
      assessment.reason(),
      "Body withheld: looks like a sensitive security message (otp, login_code). OTP / verification-code / "
      "password-reset / security-alert content is never returned by this bridge.");
}

TEST(EmailRiskDetector, manyThreadsAssessAtOnce) {
  std::vector<std::size_t> found(4);
  std::vector<std::thread> threads;
  for (std::size_t& count : found) {
    threads.emplace_back([&count] {
      for (int i = 0; i < 100; ++i) {
        count += EmailRiskDetector::shared().assess({.subject = "OTP", .from = "2FA"}).signals.size();
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(found, std::vector<std::size_t>(4, 200));
}

TEST(EmailRiskDetector, keywordOfAPassageCountsWhenItBeginsBeforeTheEnd) {
  const struct {
    std::string text;
    std::size_t end;
    std::vector<std::string> terms;
  } rows[] = {
      {"", 0, {}},
      {"security code", 0, {}},
      {"security code", 1, {"security code"}},
      {"security code", 13, {"security code"}},
      {"security code", 99, {"security code"}},
      {"my security code", 3, {}},
      {"my security code", 4, {"security code"}},
      {"my OTP", 3, {}},
      {"my OTP", 4, {"otp"}},
      {"my OTPs", 4, {}},
      {"hotpot OTP", 7, {}},
      {"hotpot OTP", 8, {"otp"}},
      {"my OTP認", 4, {}},
      {"my OTP\u3002", 4, {"otp"}},
      {"İ OTP", 3, {}},
      {"İ OTP", 4, {"otp"}},
      {"認証コード、確認コード", 15, {"認証コード"}},
      {"認証コード、確認コード", 19, {"認証コード", "確認コード"}},
  };
  for (const auto& row : rows) {
    std::vector<std::string> terms;
    for (const RiskSignal& signal : EmailRiskDetector::shared().assessPassage(row.text, row.end).signals) {
      EXPECT_EQ(signal.location, "body");
      terms.push_back(signal.term);
    }
    EXPECT_EQ(terms, row.terms) << row.text << ", " << row.end;
  }
}

}  // namespace
}  // namespace tarnwell
