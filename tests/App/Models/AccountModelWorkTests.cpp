/// What the model has done: testing, saving, removing.

#include <gmock/gmock.h>

#include <QSignalSpy>

#include "App/Models/AccountModel.h"
#include "App/Models/AccountModelFixture.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;
using Activity = AccountModel::Activity;
using Kind = AccountNews::Kind;
using Obstacle = AccountModel::Obstacle;
using enum AccountModel::StageState;

class AccountWorkTest : public AccountModelTest {};

TEST_F(AccountWorkTest, stagesShowAsTheyHappen) {
  FakeIMAPServer server(Dialogue{pauseHere()} + goodSession());
  open();
  EXPECT_FALSE(model->stages());
  type(testEmail, "localhost", server.port());
  typePassword();
  model->test(Secret(testPassword));
  EXPECT_EQ(model->activity(), Activity::testing);
  EXPECT_EQ(model->obstacleToTest(), Obstacle::busy);
  EXPECT_EQ(model->obstacleToSave(), Obstacle::busy);
  EXPECT_THAT(*model->stages(), testing::ElementsAre(running, waiting, waiting, waiting));
  ASSERT_TRUE(until([&] { return model->stages()->at(2) == running; }));
  EXPECT_THAT(*model->stages(), testing::ElementsAre(done, done, running, waiting));
  ASSERT_TRUE(server.awaitPause());
  server.resume();
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::testSucceeded);
  EXPECT_THAT(*model->stages(), testing::ElementsAre(done, done, done, done));
  EXPECT_EQ(server.mismatch(), "");
}

TEST_F(AccountWorkTest, failureKeepsWhatWasTypedAndTheOriginalText) {
  FakeIMAPServer server(refusedSession());
  open();
  type(testEmail, "localhost", server.port());
  typePassword();
  model->test(Secret(testPassword));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::signInRefused);
  EXPECT_EQ(model->news().details.toStdString(), IMAPError::authenticationFailed().description());
  EXPECT_THAT(*model->stages(), testing::ElementsAre(done, done, failed, waiting));
  EXPECT_EQ(model->draft().email(), testEmail);
  EXPECT_EQ(model->draft().host(), "localhost");
  EXPECT_EQ(model->draft().port(), QString::number(server.port()));
  EXPECT_EQ(model->obstacleToTest(), Obstacle::none);
  EXPECT_FALSE(fs::exists(store.configURL()));
}

TEST_F(AccountWorkTest, cancellingEndsTheTestAtOnce) {
  FakeIMAPServer server({pauseHere(), stallHere()});
  open();
  type(testEmail, "localhost", server.port());
  typePassword();
  model->test(Secret(testPassword));
  ASSERT_TRUE(until([&] { return model->stages()->at(2) == running; }));
  model->cancelTest();
  EXPECT_EQ(model->activity(), Activity::none);
  EXPECT_EQ(model->news().kind, Kind::testCancelled);
  EXPECT_THAT(*model->stages(), testing::ElementsAre(done, done, waiting, waiting));
  model->cancelTest();
  EXPECT_EQ(model->news().kind, Kind::testCancelled);
  server.resume();
}

TEST_F(AccountWorkTest, newTestMayFollowACancelledOne) {
  FakeIMAPServer silent({pauseHere(), stallHere()});
  FakeIMAPServer server(goodSession());
  open();
  type(testEmail, "localhost", silent.port());
  typePassword();
  model->test(Secret(testPassword));
  ASSERT_TRUE(silent.awaitPause());
  model->cancelTest();
  model->setPort(QString::number(server.port()));
  model->test(Secret(testPassword));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::testSucceeded);
  silent.resume();
}

TEST_F(AccountWorkTest, closingWaitsForNothing) {
  FakeIMAPServer server({pauseHere(), stallHere()});
  open();
  type(testEmail, "localhost", server.port());
  typePassword();
  model->test(Secret(testPassword));
  ASSERT_TRUE(server.awaitPause());
  const auto begin = std::chrono::steady_clock::now();
  model.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1));
  server.resume();
  EXPECT_EQ(server.mismatch(), "");  // the client has left: the session was given up
}

TEST_F(AccountWorkTest, testOfTheSavedAccountUsesTheStoredPasswordAndIsNoted) {
  FakeIMAPServer server(goodSession());
  saveOutside(testEmail, "localhost", server.port());
  items.put({"service", testEmail, std::nullopt}, testPassword);
  open();
  model->test({});
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::testSucceeded);
  EXPECT_EQ(store.load().lastConnectionTestSuccess, true);
  EXPECT_EQ(server.mismatch(), "");
}

TEST_F(AccountWorkTest, testOfWhatIsNotSavedIsNotNoted) {
  FakeIMAPServer server(goodSession());
  saveOutside(testEmail, "elsewhere.example", 993);
  items.put({"service", testEmail, std::nullopt}, testPassword);
  open();
  type(testEmail, "localhost", server.port());
  model->test({});
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::testSucceeded);
  EXPECT_EQ(store.load().lastConnectionTestSuccess, std::nullopt);
}

TEST_F(AccountWorkTest, savingNotesTheTestBeforeIt) {
  FakeIMAPServer server(goodSession());
  open();
  type(testEmail, "localhost", server.port());
  typePassword();
  model->test(Secret(testPassword));
  ASSERT_TRUE(untilIdle());
  model->save(Secret(testPassword));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::saved);
  EXPECT_EQ(store.load().lastConnectionTestSuccess, true);
}

TEST_F(AccountWorkTest, keystrokeAfterTheTestMakesItWorthless) {
  FakeIMAPServer server(goodSession());
  open();
  type(testEmail, "localhost", server.port());
  typePassword();
  model->test(Secret(testPassword));
  ASSERT_TRUE(untilIdle());
  typePassword();  // another letter
  model->save(Secret("another"));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(store.load().lastConnectionTestSuccess, std::nullopt);
}

TEST_F(AccountWorkTest, storedPasswordThatIsAbsentIsNamed) {
  saveOutside(testEmail, "localhost");
  open();
  model->test({});
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::noPassword);
  EXPECT_THAT(*model->stages(), testing::Each(waiting));
  EXPECT_EQ(store.load().lastConnectionTestSuccess, std::nullopt);
}

TEST_F(AccountWorkTest, googlesBlanksAreDropped) {
  open();
  type("anna@gmail.com", "imap.gmail.com", 993);
  typePassword();
  model->save(Secret("abcd efgh"));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(password("anna@gmail.com"), "abcdefgh");
}

TEST_F(AccountWorkTest, savingStoresPasswordAndSettings) {
  open();
  type(" anna@example.org", "imap.example.org", 994);
  typePassword();
  const QSignalSpy isDone(&*model, &AccountModel::passwordDone);
  model->save(Secret("pass"));
  EXPECT_EQ(model->activity(), Activity::saving);
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::saved);
  EXPECT_EQ(isDone.count(), 1);
  EXPECT_TRUE(model->isConfigured());
  EXPECT_EQ(model->draft().email(), "anna@example.org");
  EXPECT_EQ(password("anna@example.org"), "pass");
  EXPECT_EQ(store.load().imapPort, 994);
  EXPECT_TRUE(store.load().strictWithholding);
  ASSERT_TRUE(until([&] { return settings->config().email == "anna@example.org"; }));
}

struct KeyringRow {
  std::int32_t status;
  Kind kind;
};

TEST_F(AccountWorkTest, keyringTroubleIsNamedAndNothingIsLost) {
  for (const KeyringRow& row : {KeyringRow{SecretStatus::notAvailable, Kind::keyringMissing},
                                KeyringRow{SecretStatus::interactionNotAllowed, Kind::keyringLocked},
                                KeyringRow{SecretStatus::internalError, Kind::keyringRefused}}) {
    keyring->state = row.kind == Kind::keyringLocked ? KeyringState::locked : KeyringState::ready;
    open();
    type("anna@example.org", "imap.example.org", 993);
    typePassword();
    const QSignalSpy isDone(&*model, &AccountModel::passwordDone);
    items.answers = {row.status};
    model->save(Secret("pass"));
    ASSERT_TRUE(untilIdle());
    EXPECT_EQ(model->news().kind, row.kind);
    EXPECT_EQ(isDone.count(), 0);
    EXPECT_EQ(model->draft().email(), "anna@example.org");
    EXPECT_TRUE(model->hasUnsavedChanges());
    EXPECT_EQ(model->obstacleToSave(), Obstacle::none);
    EXPECT_FALSE(fs::exists(store.configURL()));
  }
}

TEST_F(AccountWorkTest, lockedKeyringIsNoNewsOnceItIsUnlockedElsewhere) {
  keyring->state = KeyringState::locked;
  open();
  type("anna@example.org", "imap.example.org", 993);
  typePassword();
  items.answers = {SecretStatus::interactionNotAllowed};
  model->save(Secret("pass"));
  ASSERT_TRUE(until([this] {
    return model->news().kind == Kind::keyringLocked && model->keyring() == KeyringState::locked;
  }));
  keyring->state = KeyringState::ready;
  model->refreshKeyring();
  ASSERT_TRUE(until([this] { return model->keyring() == KeyringState::ready; }));
  EXPECT_EQ(model->news().kind, Kind::none);
}

TEST_F(AccountWorkTest, newAddressTakesThePasswordWithIt) {
  saveOutside("anna@example.org", "imap.example.org");
  items.put({"service", "anna@example.org", std::nullopt}, "pass");
  open();
  model->setEmail("ben@example.org");
  model->save({});
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::saved);
  EXPECT_EQ(password("anna@example.org"), std::nullopt);
  EXPECT_EQ(password("ben@example.org"), "pass");
}

TEST_F(AccountWorkTest, removalEmptiesTheForm) {
  saveOutside("anna@example.org", "imap.example.org");
  items.put({"service", "anna@example.org", std::nullopt}, "pass");
  open();
  const QSignalSpy isDone(&*model, &AccountModel::passwordDone);
  model->remove();
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::removed);
  EXPECT_EQ(isDone.count(), 1);
  EXPECT_FALSE(model->isConfigured());
  EXPECT_EQ(model->draft(), AccountDraft());
  EXPECT_EQ(password("anna@example.org"), std::nullopt);
  EXPECT_FALSE(store.load().isConfigured());
}

TEST_F(AccountWorkTest, removalThatTheKeyringRefusesKeepsTheAccount) {
  saveOutside("anna@example.org", "imap.example.org");
  keyring->state = KeyringState::locked;
  open();
  items.answers = {SecretStatus::interactionNotAllowed};
  model->remove();
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::keyringLocked);
  EXPECT_TRUE(model->isConfigured());
  EXPECT_EQ(model->draft().email(), "anna@example.org");
}

TEST_F(AccountWorkTest, fullDiskIsNamedAndTakesThePasswordBack) {
  fs::remove_all(store.configURL().parent_path());
  std::ofstream(store.configURL().parent_path()) << "a file in the folder's place";
  open();
  type("anna@example.org", "imap.example.org", 993);
  typePassword();
  model->save(Secret("pass"));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::notSaved);
  EXPECT_FALSE(model->news().details.isEmpty());
  EXPECT_EQ(password("anna@example.org"), std::nullopt);
  EXPECT_EQ(model->draft().email(), "anna@example.org");
}

}  // namespace
}  // namespace tarnwell::test
