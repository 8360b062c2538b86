#include "App/Models/AccountDraft.h"

#include <gtest/gtest.h>

#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Field = AccountDraft::Field;
using Finding = AccountDraft::Finding;

struct FindingRow {
  const char* name;
  Field field;
  const char* text;
  Finding finding;
};

class FindingOfField : public testing::TestWithParam<FindingRow> {};

TEST_P(FindingOfField, isOne) {
  const auto& [name, field, text, finding] = GetParam();
  AccountDraft draft;
  switch (field) {
    case Field::email:
      draft.setEmail(text);
      break;
    case Field::host:
      draft.setHost(text);
      break;
    case Field::port:
      draft.setPort(text);
      break;
  }
  EXPECT_EQ(draft.finding(field), finding);
}

INSTANTIATE_TEST_SUITE_P(
    Table, FindingOfField,
    testing::Values(FindingRow{"noAddress", Field::email, "", Finding::empty},
                    FindingRow{"blankAddress", Field::email, " \t", Finding::empty},
                    FindingRow{"address", Field::email, "anna@example.org", Finding::none},
                    FindingRow{"addressWithBlanksAround", Field::email, " anna@example.org ", Finding::none},
                    FindingRow{"addressInFullWidth", Field::email, "anna＠example．org", Finding::none},
                    FindingRow{"loginName", Field::email, "anna", Finding::nameOnly},
                    FindingRow{"nothingAfterAt", Field::email, "anna@", Finding::brokenAddress},
                    FindingRow{"nothingBeforeAt", Field::email, "@example.org", Finding::brokenAddress},
                    FindingRow{"blankInside", Field::email, "anna @example.org", Finding::brokenAddress},
                    FindingRow{"ideographicBlankInside", Field::email, "anna　b@example.org",
                               Finding::brokenAddress},
                    FindingRow{"takesNoPassword", Field::email, "anna@hotmail.com", Finding::takesNoPassword},
                    FindingRow{"noHost", Field::host, " ", Finding::empty},
                    FindingRow{"host", Field::host, "imap.example.org", Finding::none},
                    FindingRow{"hostOfOneWord", Field::host, "localhost", Finding::none},
                    FindingRow{"hostInFullWidth", Field::host, "imap．example．org", Finding::none},
                    FindingRow{"IPv4", Field::host, "127.0.0.1", Finding::none},
                    FindingRow{"IPv6", Field::host, "2001:db8::1", Finding::none},
                    FindingRow{"address as host", Field::host, "anna@example.org", Finding::notAHost},
                    FindingRow{"URL", Field::host, "imaps://imap.example.org", Finding::notAHost},
                    FindingRow{"hostWithPort", Field::host, "imap.example.org:993", Finding::notAHost},
                    FindingRow{"hostWithBlank", Field::host, "imap example.org", Finding::notAHost},
                    FindingRow{"hostWithTwoDots", Field::host, "imap..example.org", Finding::notAHost},
                    FindingRow{"hostWithLeadingDot", Field::host, ".example.org", Finding::notAHost},
                    FindingRow{"hostWithLeadingHyphen", Field::host, "-oProxy", Finding::notAHost},
                    FindingRow{"noPort", Field::port, "", Finding::empty},
                    FindingRow{"port", Field::port, "993", Finding::none},
                    FindingRow{"portInFullWidth", Field::port, "９９３", Finding::none},
                    FindingRow{"smallestPort", Field::port, "1", Finding::none},
                    FindingRow{"largestPort", Field::port, "65535", Finding::none},
                    FindingRow{"zero", Field::port, "0", Finding::notAPort},
                    FindingRow{"tooLarge", Field::port, "65536", Finding::notAPort},
                    FindingRow{"negative", Field::port, "-1", Finding::notAPort},
                    FindingRow{"huge", Field::port, "99999999999999999999", Finding::notAPort},
                    FindingRow{"word", Field::port, "imaps", Finding::notAPort}),
    [](const auto& instance) {
      std::string name = instance.param.name;
      std::erase(name, ' ');
      return name;
    });

TEST(AccountDraft, knownProviderFillsInServerAndPort) {
  AccountDraft draft;
  draft.setEmail("anna@icloud.com");
  EXPECT_EQ(draft.host(), "imap.mail.me.com");
  EXPECT_EQ(draft.port(), "993");
  draft.setEmail("anna@gmail.com");
  EXPECT_EQ(draft.host(), "imap.gmail.com");
  draft.setEmail("anna@gmail.com.example.org");
  EXPECT_EQ(draft.host(), "");
}

TEST(AccountDraft, whatWasTypedIsNotFilledInOver) {
  AccountDraft draft;
  draft.setHost("mail.example.org");
  draft.setPort("1993");
  draft.setEmail("anna@icloud.com");
  EXPECT_EQ(draft.host(), "mail.example.org");
  EXPECT_EQ(draft.port(), "1993");
  EXPECT_EQ(draft.provider(), nullptr);
  EXPECT_EQ(draft.providerOfAddress()->host, "imap.mail.me.com");
  draft.setHost("");
  draft.setEmail("anna@me.com");
  EXPECT_EQ(draft.host(), "imap.mail.me.com");
  EXPECT_EQ(draft.port(), "1993");
}

/// SoftBank's server wants only what stands before the "@": the person deletes the rest.
TEST(AccountDraft, nameWithoutAtKeepsTheServerOfTheAddressBefore) {
  AccountDraft draft;
  QString address = "anna@i.softbank.jp";
  draft.setEmail(address);
  while (address != "anna") {
    address.chop(1);
    draft.setEmail(address);
  }
  EXPECT_EQ(draft.host(), "imap.softbank.jp");
  EXPECT_EQ(draft.provider()->name, "SoftBank");
  draft.setEmail("");
  EXPECT_EQ(draft.host(), "");
  draft.setEmail("ben");
  EXPECT_EQ(draft.host(), "");
}

/// A program of one's own may stand between this one and a provider that takes no password.
TEST(AccountDraft, anotherServerMayTakeAPassword) {
  AccountDraft draft;
  draft.setEmail("anna@hotmail.com");
  EXPECT_EQ(draft.finding(Field::email), Finding::takesNoPassword);
  draft.setHost("localhost");
  EXPECT_EQ(draft.finding(Field::email), Finding::none);
  AccountDraft ownDomain;
  ownDomain.setEmail("anna@example.org");
  ownDomain.setHost("outlook.office365.com");
  EXPECT_EQ(ownDomain.finding(Field::email), Finding::takesNoPassword);
}

TEST(AccountDraft, onlyTheNameAloneIsNoObstacle) {
  EXPECT_FALSE(AccountDraft::isObstacle(Finding::none));
  EXPECT_FALSE(AccountDraft::isObstacle(Finding::nameOnly));
  for (const Finding finding : {Finding::empty, Finding::brokenAddress, Finding::takesNoPassword,
                                Finding::notAHost, Finding::notAPort}) {
    EXPECT_TRUE(AccountDraft::isObstacle(finding));
  }
}

TEST(AccountDraft, savedServerOfTheProviderFollowsAnotherAddress) {
  AccountDraft draft(AccountAddress{"anna@icloud.com", "imap.mail.me.com", 993});
  EXPECT_EQ(draft.email(), "anna@icloud.com");
  draft.setEmail("anna@gmail.com");
  EXPECT_EQ(draft.host(), "imap.gmail.com");
}

TEST(AccountDraft, savedServerOfOnesOwnStays) {
  AccountDraft draft(AccountAddress{"anna@example.org", "imap.gmail.com", 1993});
  draft.setEmail("ben@example.org");
  EXPECT_EQ(draft.host(), "imap.gmail.com");
  EXPECT_EQ(draft.port(), "1993");
}

TEST(AccountDraft, noSavedAccountIsAnEmptyForm) {
  EXPECT_EQ(AccountDraft(AccountAddress{}), AccountDraft());
  EXPECT_EQ(AccountDraft().host(), "");
  EXPECT_EQ(AccountDraft().port(), "993");
}

TEST(AccountDraft, addressIsWhatAProgramSends) {
  AccountDraft draft;
  draft.setEmail(" anna＠example.org ");
  draft.setHost(" imap．example．org");
  draft.setPort(" ９９４ ");
  EXPECT_EQ(draft.address(), (AccountAddress{"anna@example.org", "imap.example.org", 994}));
}

}  // namespace
}  // namespace tarnwell::test
