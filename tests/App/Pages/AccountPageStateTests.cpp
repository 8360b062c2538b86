/// How the account page shows what it did not cause: the keyring, the settings file, a small window.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <fstream>

#include "App/Pages/AccountPageFixture.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;
using Kind = AccountNews::Kind;

class AccountPageStateTest : public AccountPageTest {};
INSTANTIATE_TEST_SUITE_P(In, AccountPageStateTest, testing::ValuesIn(AppLanguages::allCases),
                         [](const auto& instance) { return std::string(rawValue(instance.param)); });

TEST_P(AccountPageStateTest, keyringsTroubleLeavesThePasswordInTheField) {
  open();
  fillIn("anna@example.org", "imap.example.org", 993, "geheim");
  items.answers = {SecretStatus::interactionNotAllowed};
  keyring->state = KeyringState::locked;
  pressButton(save());
  ASSERT_TRUE(saysNews(Kind::keyringLocked));
  EXPECT_EQ(textOf(password()), "geheim");
  ASSERT_TRUE(says(AccountTexts::keyring(KeyringState::locked)));
  keyring->state = KeyringState::ready;
  pressButton(textWord("&Unlock"));
  ASSERT_TRUE(saysNews(Kind::unlocked));
  EXPECT_TRUE(until([&] { return !shown().contains(AccountTexts::keyring(KeyringState::locked)); }));
  pressButton(save());
  ASSERT_TRUE(saysNews(Kind::saved));
  EXPECT_EQ(stored("anna@example.org"), "geheim");
}

TEST_P(AccountPageStateTest, missingKeyringIsMadeAndAMissingServiceNamesItsPackage) {
  keyring->state = KeyringState::absent;
  open();
  ASSERT_TRUE(says(AccountTexts::keyring(KeyringState::absent)));
  EXPECT_NE(button(textWord("Make a &keyring")), nullptr);
  keyring->state = KeyringState::noService;
  model->refreshKeyring();
  ASSERT_TRUE(says("gnome-keyring"));
  EXPECT_EQ(button(textWord("Make a &keyring")), nullptr);
  EXPECT_FALSE(shown().contains("KWallet"));
  qputenv("XDG_CURRENT_DESKTOP", "KDE");
  EXPECT_TRUE(AccountTexts::keyring(KeyringState::noService).contains("KWallet"));
  qunsetenv("XDG_CURRENT_DESKTOP");
}

TEST_P(AccountPageStateTest, removalAsksOnce) {
  saveOutside("anna@example.org", "imap.example.org");
  items.put({"service", "anna@example.org", std::nullopt}, "geheim");
  open();
  pressButton(removal());
  ASSERT_EQ(questions.asked.size(), 1U);
  EXPECT_TRUE(questions.asked.front().isDangerous);
  questions.answer(false);
  EXPECT_EQ(model->activity(), AccountModel::Activity::none);
  EXPECT_EQ(stored("anna@example.org"), "geheim");
  press(Qt::Key_Space);
  ASSERT_EQ(questions.asked.size(), 2U);
  questions.answer(true);
  ASSERT_TRUE(saysNews(Kind::removed));
  EXPECT_EQ(stored("anna@example.org"), std::nullopt);
  EXPECT_EQ(textOf(email()), "");
  EXPECT_EQ(focusName(), email());
  EXPECT_EQ(button(removal()), nullptr);
  EXPECT_TRUE(shown().contains(AccountTexts::welcome().first()));
}

TEST_P(AccountPageStateTest, fieldWithTheFocusIsNotOverwritten) {
  saveOutside("anna@example.org", "imap.example.org");
  open();
  EXPECT_EQ(focusName(), email());
  saveOutside("ben@example.org", "mail.example.org");
  ASSERT_TRUE(until([&] { return settings->config().email == "ben@example.org"; }));
  EXPECT_EQ(textOf(email()), "anna@example.org");
  EXPECT_EQ(textOf(host()), "imap.example.org");
  ASSERT_TRUE(tabTo(testing_()));
  EXPECT_EQ(textOf(email()), "ben@example.org");
  EXPECT_EQ(textOf(host()), "mail.example.org");
}

TEST_P(AccountPageStateTest, damagedFileIsShownBeforeSaving) {
  std::ofstream(store.configURL()) << "{\"email\": ";
  open();
  EXPECT_TRUE(shown().contains(AccountTexts::file(*settings)));
  fillIn("anna@example.org", "imap.example.org", 993, "geheim");
  pressButton(save());
  ASSERT_TRUE(saysNews(Kind::saved));
  ASSERT_TRUE(until([&] { return settings->state() == ConfigStore::FileState::good; }));
  EXPECT_EQ(std::distance(fs::directory_iterator(directory.path()), fs::directory_iterator()), 2);
}

TEST_P(AccountPageStateTest, untrustedFileSaysWhyNothingCanBeSaved) {
  std::ofstream(store.configURL()) << "{}";
  fs::permissions(store.configURL(), fs::perms::others_write, fs::perm_options::add);
  open();
  EXPECT_TRUE(shown().contains(QString::fromStdString(store.configURL().string())));
  fillIn("anna@example.org", "imap.example.org", 993, "geheim");
  EXPECT_FALSE(button(save())->isEnabled());
  EXPECT_TRUE(button(testing_())->isEnabled());
}

/// In a window of 800 by 600 the page does not show all at once.
TEST_P(AccountPageStateTest, whatHappensIsScrolledIntoView) {
  FakeIMAPServer server(Dialogue{pauseHere()} + pageSession());
  keyring->state = KeyringState::locked;
  open();
  page->resize(600, 560);
  fillIn(testEmail, "localhost", server.port(), testPassword);
  pressButton(testing_());
  ASSERT_TRUE(server.awaitPause());
  EXPECT_TRUE(until([&] { return isSeen<StageRow>(); }));
  server.resume();
  ASSERT_TRUE(saysNews(Kind::testSucceeded));
  EXPECT_TRUE(until([&] { return seenNotices().contains(AccountTexts::news(model->news())); }));
}

/// Each text in the place where it stands, as wide as the page is in a window of 800 by 600.
TEST_P(AccountPageStateTest, nothingIsCutOff) {
  saveOutside("anna@example.org", "imap.example.org");
  keyring->state = KeyringState::locked;
  open();
  page->resize(600, 560);
  ASSERT_TRUE(says(AccountTexts::keyring(KeyringState::locked)));
  for (const char* address : {"anna@icloud.com", "anna@gmail.com", "anna@hotmail.com", "anna@docomo.ne.jp",
                              "anna@web.de", "anna@zoho.com", "anna@example.com"}) {
    write(address);
    QCoreApplication::processEvents();
    EXPECT_EQ(cutOff(), QStringList()) << address;
  }
  items.answers = {SecretStatus::notAvailable};
  write("anna@icloud.com");
  pressButton(testing_());
  ASSERT_TRUE(saysNews(Kind::keyringMissing));
  QCoreApplication::processEvents();
  EXPECT_EQ(cutOff(), QStringList());
}

}  // namespace
}  // namespace tarnwell::test
