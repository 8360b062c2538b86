/// What the model knows: the fields, the settings file, the keyring.

#include "App/Models/AccountModel.h"

#include <gmock/gmock.h>

#include "App/Models/AccountModelFixture.h"
#include "support/Files.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;
using Activity = AccountModel::Activity;
using Kind = AccountNews::Kind;
using Obstacle = AccountModel::Obstacle;

TEST_F(AccountModelTest, obstaclesComeInTheOrderOfTheFields) {
  open();
  EXPECT_EQ(model->obstacleToTest(), Obstacle::emailMissing);
  model->setEmail("anna@");
  EXPECT_EQ(model->obstacleToTest(), Obstacle::emailWrong);
  model->setEmail("anna@hotmail.com");
  EXPECT_EQ(model->obstacleToTest(), Obstacle::takesNoPassword);
  model->setEmail("anna@example.org");
  EXPECT_EQ(model->obstacleToTest(), Obstacle::hostMissing);
  model->setHost("imap example.org");
  EXPECT_EQ(model->obstacleToTest(), Obstacle::hostWrong);
  model->setHost("imap.example.org");
  model->setPort("0");
  EXPECT_EQ(model->obstacleToTest(), Obstacle::portWrong);
  model->setPort("993");
  EXPECT_EQ(model->obstacleToTest(), Obstacle::passwordMissing);
  EXPECT_EQ(model->obstacleToSave(), Obstacle::passwordMissing);
  typePassword();
  EXPECT_EQ(model->obstacleToTest(), Obstacle::none);
  EXPECT_EQ(model->obstacleToSave(), Obstacle::none);
  EXPECT_EQ(model->obstacleToRemove(), Obstacle::nothingToRemove);
}

TEST_F(AccountModelTest, savedAccountNeedsNoPasswordForATest) {
  saveOutside(testEmail, "localhost");
  open();
  EXPECT_TRUE(model->isConfigured());
  EXPECT_EQ(model->obstacleToTest(), Obstacle::none);
  EXPECT_EQ(model->obstacleToSave(), Obstacle::nothingToSave);
  EXPECT_EQ(model->obstacleToRemove(), Obstacle::none);
  model->setPort("994");
  EXPECT_EQ(model->obstacleToSave(), Obstacle::none);
  model->setPort("993");
  EXPECT_EQ(model->obstacleToSave(), Obstacle::nothingToSave);
}

TEST_F(AccountModelTest, lockedKeyringIsSeenAndUnlocked) {
  keyring->state = KeyringState::locked;
  open();
  EXPECT_EQ(model->keyring(), std::nullopt);
  ASSERT_TRUE(until([&] { return model->keyring() == KeyringState::locked; }));
  keyring->state = KeyringState::ready;
  model->unlockKeyring();
  EXPECT_EQ(model->activity(), Activity::unlocking);
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::unlocked);
  ASSERT_TRUE(until([&] { return model->keyring() == KeyringState::ready; }));
}

TEST_F(AccountModelTest, closedQuestionLeavesTheKeyringLocked) {
  keyring->state = KeyringState::locked;
  keyring->answer = UnlockOutcome::dismissed;
  open();
  model->unlockKeyring();
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::unlockDismissed);
  ASSERT_TRUE(until([&] { return model->keyring() == KeyringState::locked; }));
}

TEST_F(AccountModelTest, fieldsFollowTheFile) {
  saveOutside("anna@example.org", "imap.example.org");
  open();
  saveOutside("ben@example.org", "mail.example.org");
  ASSERT_TRUE(until([&] { return model->draft().email() == "ben@example.org"; }));
  EXPECT_EQ(model->draft().host(), "mail.example.org");
}

TEST_F(AccountModelTest, fieldBeingEditedIsNotOverwritten) {
  saveOutside("anna@example.org", "imap.example.org");
  open();
  model->setEditing(true);
  saveOutside("ben@example.org", "mail.example.org");
  ASSERT_TRUE(until([&] { return settings->config().email == "ben@example.org"; }));
  EXPECT_EQ(model->draft().email(), "anna@example.org");
  EXPECT_EQ(model->draft().host(), "imap.example.org");
  model->setEditing(false);
  EXPECT_EQ(model->draft().email(), "ben@example.org");
}

TEST_F(AccountModelTest, whatIsNotSavedIsNotOverwritten) {
  saveOutside("anna@example.org", "imap.example.org");
  open();
  model->setHost("other.example.org");
  saveOutside("ben@example.org", "mail.example.org");
  ASSERT_TRUE(until([&] { return settings->config().email == "ben@example.org"; }));
  EXPECT_EQ(model->draft().email(), "anna@example.org");
  EXPECT_EQ(model->draft().host(), "other.example.org");
  EXPECT_TRUE(model->hasUnsavedChanges());
}

/// Else the password of one account would be saved for another.
TEST_F(AccountModelTest, typedPasswordKeepsItsAccount) {
  saveOutside("anna@example.org", "imap.example.org");
  open();
  typePassword();
  saveOutside("ben@example.org", "mail.example.org");
  ASSERT_TRUE(until([&] { return settings->config().email == "ben@example.org"; }));
  EXPECT_EQ(model->draft().email(), "anna@example.org");
}

TEST_F(AccountModelTest, damagedFileIsShownBeforeSavingAndCopied) {
  write("{\"email\": ");
  open();
  EXPECT_EQ(model->settings().state(), ConfigStore::FileState::damaged);
  EXPECT_FALSE(model->settings().reason().isEmpty());
  type("anna@example.org", "imap.example.org", 993);
  typePassword();
  model->save(Secret("pass"));
  ASSERT_TRUE(untilIdle());
  EXPECT_EQ(model->news().kind, Kind::saved);
  std::vector<std::string> copies;
  for (const fs::directory_entry& entry : fs::directory_iterator(store.configURL().parent_path())) {
    if (entry.path() != store.configURL()) {
      copies.push_back(fileContents(entry.path()));
    }
  }
  EXPECT_THAT(copies, testing::ElementsAre("{\"email\": "));
}

TEST_F(AccountModelTest, untrustedFileCannotBeSavedOver) {
  write("{}");
  fs::permissions(store.configURL(), fs::perms::others_write, fs::perm_options::add);
  open();
  type("anna@example.org", "imap.example.org", 993);
  typePassword();
  EXPECT_EQ(model->obstacleToSave(), Obstacle::fileUntrusted);
  EXPECT_EQ(model->obstacleToTest(), Obstacle::none);
  model->save(Secret("pass"));
  EXPECT_EQ(model->activity(), Activity::none);
  EXPECT_EQ(password("anna@example.org"), std::nullopt);
}

}  // namespace
}  // namespace tarnwell::test
