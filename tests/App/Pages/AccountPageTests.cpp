/// The paths through the account page, by keys alone, in each language.

#include "App/Pages/AccountPage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QDesktopServices>
#include <QUrl>

#include "App/Pages/AccountPageFixture.h"

namespace tarnwell::test {
namespace {

using Kind = AccountNews::Kind;

INSTANTIATE_TEST_SUITE_P(In, AccountPageTest, testing::ValuesIn(AppLanguages::allCases),
                         [](const auto& instance) { return std::string(rawValue(instance.param)); });

TEST_P(AccountPageTest, tabVisitsEverythingInTheOrderOfThePage) {
  open();
  EXPECT_EQ(focusName(), email());
  write("anna@icloud.com");
  ASSERT_TRUE(tabTo(password()));
  write("pass");
  ASSERT_TRUE(tabTo(email()));
  QStringList stops;
  do {
    if (stops.value(stops.size() - 1) != focusName()) {  // a hint comes first, its link second
      stops.append(focusName());
    }
    press(Qt::Key_Tab);
  } while (focusName() != email() && stops.size() < 30);
  const QString hint = stops.value(4);
  EXPECT_EQ(stops, (QStringList{email(), host(), port(), password(), hint, shows(), testing_(), save()}));
  EXPECT_TRUE(hint.contains(textWord("How to make one"))) << hint.toStdString();
}

TEST_P(AccountPageTest, firstStartLeadsToATestedAccount) {
  FakeIMAPServer server(pageSession());
  open();
  for (const QString& line : AccountTexts::welcome()) {
    EXPECT_TRUE(shown().contains(line));
  }
  EXPECT_TRUE(shown().contains(textWord("Begin with your e-mail address.")));
  fillIn(testEmail, "localhost", server.port(), testPassword);
  pressButton(testing_());
  ASSERT_TRUE(saysNews(Kind::testSucceeded));
  EXPECT_EQ(focusName(), testing_());
  pressButton(save());
  ASSERT_TRUE(saysNews(Kind::saved));
  EXPECT_EQ(focusName(), testing_());  // there is nothing to save any more
  EXPECT_EQ(stored(testEmail), testPassword);
  EXPECT_EQ(textOf(password()), "");
  EXPECT_FALSE(shown().contains(AccountTexts::welcome().first()));
  const AppConfig config = store.load();
  EXPECT_EQ(config.email, testEmail);
  EXPECT_EQ(config.imapHost, "localhost");
  EXPECT_EQ(config.imapPort, server.port());
  EXPECT_EQ(config.lastConnectionTestSuccess, true);
  EXPECT_EQ(server.mismatch(), "");
}

TEST_P(AccountPageTest, failureKeepsEverythingThatWasTyped) {
  FakeIMAPServer server({answer("* OK ready\r\n"),
                         expect("A0001 LOGIN \"user@example.org\" \"app-pass-word\"\r\n"),
                         answer("A0001 NO no\r\n"), expect("A0002 LOGOUT\r\n"), answer("A0002 OK done\r\n")});
  open();
  fillIn(testEmail, "localhost", server.port(), testPassword);
  pressButton(testing_());
  ASSERT_TRUE(saysNews(Kind::signInRefused));
  EXPECT_EQ(textOf(email()), testEmail);
  EXPECT_EQ(textOf(host()), "localhost");
  EXPECT_EQ(textOf(port()), QString::number(server.port()));
  EXPECT_EQ(textOf(password()), testPassword);
  // The original text is for the curious.
  const QString original = QString::fromStdString(IMAPError::authenticationFailed().description());
  EXPECT_FALSE(shown().contains(original));
  pressButton(QCoreApplication::translate("tarnwell::Notice", "Details"));
  EXPECT_TRUE(shown().contains(original));
}

TEST_P(AccountPageTest, sameButtonAndEscapeStopTheTest) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Escape}) {
    FakeIMAPServer server({pauseHere(), stallHere()});
    open();
    fillIn(testEmail, "localhost", server.port(), testPassword);
    pressButton(testing_());
    ASSERT_TRUE(server.awaitPause());
    EXPECT_EQ(focusName(), cancel());
    press(key);
    EXPECT_TRUE(shown().contains(AccountTexts::news({.kind = Kind::testCancelled})));
    EXPECT_EQ(focusName(), testing_());
    EXPECT_EQ(textOf(password()), testPassword);
    server.resume();
  }
}

TEST_P(AccountPageTest, returnInAFieldTests) {
  FakeIMAPServer server(pageSession());
  open();
  fillIn(testEmail, "localhost", server.port(), testPassword);
  press(Qt::Key_Return);
  ASSERT_TRUE(saysNews(Kind::testSucceeded));
  EXPECT_EQ(server.mismatch(), "");
}

TEST_P(AccountPageTest, knownProviderIsFilledInAndItsPasswordExplained) {
  open();
  write("anna@icloud.com");
  EXPECT_EQ(textOf(host()), "imap.mail.me.com");
  EXPECT_TRUE(
      shown().contains(textWord("%1 needs an app password, not your ordinary one.").arg("iCloud Mail")));
  EXPECT_TRUE(shown().contains("<a href=\"https://support.apple.com/102654\">"));
}

/// Notes the pages that would open in the browser.
class Browser : public QObject {
  Q_OBJECT

 public:
  Browser() { QDesktopServices::setUrlHandler("https", this, "open"); }
  ~Browser() override { QDesktopServices::unsetUrlHandler("https"); }

  Q_INVOKABLE void open(const QUrl& url) { opened.append(url.toString()); }

  QStringList opened;
};

TEST_P(AccountPageTest, linkOpensByKeys) {
  const Browser browser;
  open();
  write("anna@icloud.com");
  ASSERT_TRUE(tabTo(password()));
  press(Qt::Key_Tab);
  press(Qt::Key_Tab);
  press(Qt::Key_Return);
  EXPECT_EQ(browser.opened, QStringList("https://support.apple.com/102654"));
}

TEST_P(AccountPageTest, providerWithoutPasswordsIsNamedWhileTyping) {
  open();
  write("anna@hotmail.com");
  EXPECT_EQ(focus()->property("invalid"), true);
  EXPECT_TRUE(shown().contains(
      AccountTexts::finding(AccountDraft::Finding::takesNoPassword, providerOf("anna@hotmail.com"))));
  EXPECT_FALSE(button(testing_())->isEnabled());
  EXPECT_FALSE(button(save())->isEnabled());
}

TEST_P(AccountPageTest, nameWithoutAtIsTakenWithAHint) {
  open();
  fillIn("anna", "imap.example.org", 993, "pass");
  EXPECT_TRUE(
      shown().contains(textWord("This is a name without “@”. Most providers want the whole address.")));
  EXPECT_TRUE(button(testing_())->isEnabled());
  EXPECT_TRUE(button(save())->isEnabled());
}

TEST_P(AccountPageTest, errorComesWhenTheFieldIsLeftAndGoesWhenCured) {
  open();
  const QString error = AccountTexts::finding(AccountDraft::Finding::notAPort, nullptr);
  ASSERT_TRUE(tabTo(port()));
  write("0");
  EXPECT_FALSE(shown().contains(error));
  press(Qt::Key_Tab);
  EXPECT_TRUE(shown().contains(error));
  press(Qt::Key_Backtab);
  EXPECT_TRUE(focusName().startsWith(port()));
  EXPECT_NE(focusName(), port());  // it is called invalid
  write("99");
  EXPECT_FALSE(shown().contains(error));
  EXPECT_EQ(focusName(), port());
}

TEST_P(AccountPageTest, noUndoBringsASavedPasswordBack) {
  open();
  fillIn("anna@example.org", "imap.example.org", 993, "geheim");
  pressButton(save());
  ASSERT_TRUE(saysNews(Kind::saved));
  EXPECT_EQ(stored("anna@example.org"), "geheim");
  ASSERT_TRUE(tabTo(shows()));
  press(Qt::Key_Space);
  press(Qt::Key_Backtab);
  ASSERT_EQ(focusName(), password());
  EXPECT_EQ(qobject_cast<QLineEdit*>(focus())->echoMode(), QLineEdit::Normal);
  for (int times = 0; times < 8; ++times) {
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(textOf(password()), "");
  }
  press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(textOf(password()), "");
}

TEST_P(AccountPageTest, savingHidesAPasswordThatWasShown) {
  open();
  fillIn("anna@example.org", "imap.example.org", 993, "geheim");
  ASSERT_TRUE(tabTo(shows()));
  press(Qt::Key_Space);
  pressButton(save());
  ASSERT_TRUE(saysNews(Kind::saved));
  ASSERT_TRUE(tabTo(password()));
  EXPECT_EQ(qobject_cast<QLineEdit*>(focus())->echoMode(), QLineEdit::Password);
}

TEST_P(AccountPageTest, anotherLanguageKeepsWhatWasTyped) {
  open();
  fillIn("anna@gmail.com", "imap.gmail.com", 993, "geheim");
  const QString before = shown();
  language.choose(GetParam() == AppLanguage::english ? AppLanguage::japanese : AppLanguage::english);
  ASSERT_TRUE(until([&] { return shown().contains(word("&E-mail address")); }));
  EXPECT_NE(shown(), before);
  EXPECT_EQ(textOf(email()), "anna@gmail.com");
  EXPECT_EQ(textOf(password()), "geheim");
}

}  // namespace
}  // namespace tarnwell::test

#include "AccountPageTests.moc"
