#include "Account/Providers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Password = Provider::Password;
using LoginName = Provider::LoginName;

struct AddressRow {
  const char* name;
  const char* address;
  const char* host;  // empty for an unknown provider
  Password password = Password::app;
  LoginName loginName = LoginName::address;
};

class ProviderOfAddress : public testing::TestWithParam<AddressRow> {};

TEST_P(ProviderOfAddress, isFoundByItsDomain) {
  const AddressRow& row = GetParam();
  const Provider* provider = providerOf(row.address);
  if (std::string(row.host).empty()) {
    EXPECT_EQ(provider, nullptr) << provider->host;
    return;
  }
  ASSERT_NE(provider, nullptr);
  EXPECT_EQ(provider->host, row.host);
  EXPECT_EQ(provider->port, 993);
  EXPECT_EQ(provider->password, row.password);
  EXPECT_EQ(provider->loginName, row.loginName);
  EXPECT_EQ(providerAt(row.host)->name, provider->name);
}

INSTANTIATE_TEST_SUITE_P(
    Table, ProviderOfAddress,
    testing::Values(
        AddressRow{"iCloud", "anna@icloud.com", "imap.mail.me.com"},
        AddressRow{"iCloudMe", "anna@me.com", "imap.mail.me.com"},
        AddressRow{"iCloudMac", "anna@mac.com", "imap.mail.me.com"},
        AddressRow{"gmail", "anna@gmail.com", "imap.gmail.com", Password::appAfterTwoStep},
        AddressRow{"googlemail", "anna@googlemail.com", "imap.gmail.com", Password::appAfterTwoStep},
        AddressRow{"outlook", "anna@outlook.com", "outlook.office365.com", Password::none},
        AddressRow{"outlookJapan", "anna@outlook.jp", "outlook.office365.com", Password::none},
        AddressRow{"hotmail", "anna@hotmail.com", "outlook.office365.com", Password::none},
        AddressRow{"hotmailBritain", "anna@hotmail.co.uk", "outlook.office365.com", Password::none},
        AddressRow{"hotmailBrazil", "anna@hotmail.com.br", "outlook.office365.com", Password::none},
        AddressRow{"live", "anna@live.co.jp", "outlook.office365.com", Password::none},
        AddressRow{"liveLastOfItsRow", "anna@livemail.tw", "outlook.office365.com", Password::none},
        AddressRow{"msn", "anna@msn.com", "outlook.office365.com", Password::none},
        AddressRow{"yahoo", "anna@yahoo.com", "imap.mail.yahoo.com"},
        AddressRow{"yahooFrance", "anna@yahoo.fr", "imap.mail.yahoo.com"},
        AddressRow{"yahooJapan", "anna@yahoo.co.jp", "imap.mail.yahoo.co.jp", Password::ordinary,
                   LoginName::other},
        AddressRow{"ymail", "anna@ymail.com", "imap.mail.yahoo.com"},
        AddressRow{"docomo", "anna@docomo.ne.jp", "imap.spmode.ne.jp", Password::ownForIMAP,
                   LoginName::other},
        AddressRow{"softbank", "anna@i.softbank.jp", "imap.softbank.jp", Password::ordinary,
                   LoginName::localPart},
        AddressRow{"au", "anna@au.com", "imap.ezweb.ne.jp", Password::ownForIMAP, LoginName::other},
        AddressRow{"ezweb", "anna@ezweb.ne.jp", "imap.ezweb.ne.jp", Password::ownForIMAP, LoginName::other},
        AddressRow{"fastmail", "anna@fastmail.com", "imap.fastmail.com"},
        AddressRow{"aol", "anna@aol.com", "imap.aol.com"},
        AddressRow{"gmxGermany", "anna@gmx.de", "imap.gmx.net"},
        AddressRow{"gmxNet", "anna@gmx.net", "imap.gmx.net"},
        AddressRow{"gmxCom", "anna@gmx.com", "imap.gmx.com"},
        AddressRow{"gmxBritain", "anna@gmx.co.uk", "imap.gmx.com"},
        AddressRow{"webDe", "anna@web.de", "imap.web.de", Password::app, LoginName::localPart},
        AddressRow{"mailCom", "anna@mail.com", "imap.mail.com"},
        AddressRow{"zoho", "anna@zoho.com", "imap.zoho.com", Password::appWithTwoStep},
        AddressRow{"zohoJapan", "anna@zohomail.jp", "imap.zoho.jp", Password::appWithTwoStep},
        AddressRow{"posteo", "anna@posteo.de", "posteo.de"},
        AddressRow{"mailboxOrg", "anna@mailbox.org", "imap.mailbox.org", Password::appWithTwoStep},
        AddressRow{"anyLetterCase", "Anna@ICloud.COM", "imap.mail.me.com"},
        AddressRow{"blanksAround", " anna@icloud.com\t", "imap.mail.me.com"},
        AddressRow{"lastAt", "\"a@gmail.com\"@icloud.com", "imap.mail.me.com"},
        AddressRow{"ownDomain", "anna@example.org", ""}, AddressRow{"onlyPOPIsKnown", "anna@nifty.com", ""},
        AddressRow{"softbankWithoutIMAP", "anna@softbank.ne.jp", ""},
        AddressRow{"longerDomain", "anna@icloud.com.example.org", ""},
        AddressRow{"longerName", "anna@noticloud.com", ""},
        AddressRow{"nameOfAFamilyAlone", "anna@yahoo", ""},
        AddressRow{"familyWithoutCountry", "anna@yahoo.example", ""},
        AddressRow{"familyOfSomebodyElse", "anna@yahoo.co.example.org", ""},
        AddressRow{"unfinished", "anna@", ""}, AddressRow{"noAt", "icloud.com", ""},
        AddressRow{"nothing", "", ""}, AddressRow{"blanksOnly", "  ", ""}),
    rowName);

TEST(Providers, serverTellsTheProviderOfAnOwnDomain) {
  ASSERT_NE(providerAt("OUTLOOK.office365.com "), nullptr);
  EXPECT_EQ(providerAt("OUTLOOK.office365.com ")->password, Password::none);
  EXPECT_EQ(providerAt("imap.example.org"), nullptr);
  EXPECT_EQ(providerAt(""), nullptr);
}

TEST(Providers, linksAreThoseOfTheProvidersAndSecure) {
  for (const char* address : {"a@icloud.com", "a@gmail.com", "a@yahoo.com", "a@docomo.ne.jp",
                              "a@fastmail.com", "a@aol.com", "a@gmx.com", "a@zoho.eu", "a@posteo.de"}) {
    EXPECT_THAT(std::string(providerOf(address)->help), testing::StartsWith("https://")) << address;
  }
  // No page of theirs is known for sure.
  for (const char* address : {"a@outlook.com", "a@yahoo.co.jp", "a@i.softbank.jp", "a@au.com"}) {
    EXPECT_EQ(providerOf(address)->help, "") << address;
  }
}

TEST(Providers, blanksAreDroppedOnlyWhereTheProviderShowsThem) {
  EXPECT_EQ(passwordToSend(providerOf("a@gmail.com"), Secret("abcd efgh ijkl mnop")).view(),
            "abcdefghijklmnop");
  EXPECT_EQ(passwordToSend(providerOf("a@icloud.com"), Secret("abcd-efgh ijkl")).view(), "abcd-efgh ijkl");
  EXPECT_EQ(passwordToSend(providerOf("a@gmail.com"), Secret("abcd\u00a0efgh\tijkl mnop\r\n")).view(),
            "abcdefghijklmnop");
  EXPECT_EQ(passwordToSend(providerOf("a@gmail.com"), Secret("  ")).view(), "");
  EXPECT_EQ(passwordToSend(nullptr, Secret(" a b ")).view(), " a b ");
  EXPECT_EQ(passwordToSend(nullptr, Secret("a\nb\u00a0c\r\n")).view(), "a\nb\u00a0c");
}

}  // namespace
}  // namespace tarnwell::test
