// Counts how many of the sample mails (tests/fixtures/withholding) `strictWithholding` withholds.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/MailSamples.h"
#include "support/WithholdingJudge.h"

namespace tarnwell::test {

namespace {

struct Judged {
  std::vector<std::string> withheld;  // the names of the mails
  std::vector<std::string> returned;
};

Judged judge(const char* file) {
  Judged judged;
  for (const MailSample& mail : readMailSamples(mailSamplesDirectory() / file)) {
    (signalsThatWithhold(mail, true).empty() ? judged.returned : judged.withheld).push_back(mail.id);
  }
  return judged;
}

TEST(WithholdingFigures, withholdsTheSecretMails) {
  constexpr std::size_t enough = 133;
  const Judged judged = judge("secret.mails");
  EXPECT_GE(judged.withheld.size() + judged.returned.size(), 120U);
  EXPECT_GE(judged.withheld.size(), enough) << "returned: " << ::testing::PrintToString(judged.returned);
}

TEST(WithholdingFigures, returnsTheHarmlessMails) {
  constexpr std::size_t most = 2;  // news about two-factor authentication, which have a keyword
  const Judged judged = judge("harmless.mails");
  EXPECT_GE(judged.withheld.size() + judged.returned.size(), 120U);
  EXPECT_LE(judged.withheld.size(), most) << "withheld: " << ::testing::PrintToString(judged.withheld);
}

}  // namespace

}  // namespace tarnwell::test
