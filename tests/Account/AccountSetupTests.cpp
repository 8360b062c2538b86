#include "Account/AccountSetup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/resource.h>

#include <csignal>
#include <fstream>
#include <nlohmann/json.hpp>

#include "Core/LogBuffer.h"
#include "support/Files.h"
#include "support/InMemorySecretItems.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

class AccountSetupTest : public testing::Test {
 protected:
  AccountSetupTest() { fs::create_directories(store.configURL().parent_path()); }

  void write(const std::string& text) const { std::ofstream(store.configURL()) << text; }
  json file() const { return json::parse(fileContents(store.configURL())); }
  std::optional<std::string> password(const std::string& account) const {
    return items.at({"service", account, std::nullopt});
  }
  void putPassword(const std::string& account, const std::string& text) {
    items.put({"service", account, std::nullopt}, text);
  }
  /// Makes the folder refuse every write.
  void refuseWrites() const {
    fs::remove_all(store.configURL().parent_path());
    std::ofstream(store.configURL().parent_path()) << "a file in the folder's place";
  }

  TemporaryDirectory directory;
  InMemorySecretItems items;
  ConfigStore store{directory / "settings"};
  AccountSetup setup{store, KeychainStore("service", std::nullopt, items)};
};

/// Lets no file of this process grow beyond this many bytes. Gives the limit that was in force.
rlimit limitOfFileSize(rlim_t bytes) {
  std::signal(SIGXFSZ, SIG_IGN);
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const rlimit narrow{bytes, before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &narrow);
  return before;
}

const AccountAddress anna{"anna@example.org", "imap.example.org", 993};
const AccountAddress ben{"ben@example.org", "imap.example.org", 1993};

TEST_F(AccountSetupTest, firstAccountIsWithheldStrictly) {
  setup.save(anna, Secret("pass"));
  EXPECT_EQ(password(anna.email), "pass");
  const AppConfig config = store.load();
  EXPECT_EQ(config.email, anna.email);
  EXPECT_EQ(config.imapHost, anna.imapHost);
  EXPECT_EQ(config.imapPort, anna.imapPort);
  EXPECT_TRUE(config.strictWithholding);
  EXPECT_EQ(config.safety, SafetySettings());
}

TEST_F(AccountSetupTest, laterSavesLeaveEverythingElse) {
  write(R"({"email": "anna@example.org", "imapHost": "imap.example.org", "httpPort": 9000, "language": "ja",
           "safety": {"readOnly": false, "future": [1]}, "of a later version": {"a": null}})");
  putPassword(anna.email, "pass");
  setup.save({anna.email, "mail.example.org", 994}, std::nullopt);
  EXPECT_EQ(password(anna.email), "pass");
  const json after = file();
  EXPECT_EQ(after["imapHost"], "mail.example.org");
  EXPECT_EQ(after["imapPort"], 994);
  EXPECT_EQ(after["httpPort"], 9000);
  EXPECT_EQ(after["language"], "ja");
  EXPECT_EQ(after["safety"]["readOnly"], false);
  EXPECT_EQ(after["safety"]["future"], json::parse("[1]"));
  EXPECT_EQ(after["of a later version"], json::parse(R"({"a": null})"));
  EXPECT_FALSE(after.contains("strictWithholding"));
}

TEST_F(AccountSetupTest, newAddressTakesThePasswordWithIt) {
  setup.save(anna, Secret("pass"));
  setup.save(ben, std::nullopt);
  EXPECT_EQ(password(anna.email), std::nullopt);
  EXPECT_EQ(password(ben.email), "pass");
  EXPECT_EQ(store.load().email, ben.email);
}

TEST_F(AccountSetupTest, newAddressWithANewPasswordRemovesTheOldOne) {
  setup.save(anna, Secret("pass"));
  setup.save(ben, Secret("word"));
  EXPECT_EQ(password(anna.email), std::nullopt);
  EXPECT_EQ(password(ben.email), "word");
}

TEST_F(AccountSetupTest, changeForgetsTheLastTest) {
  setup.save(anna, Secret("pass"));
  setup.recordTest(anna.email, true);
  setup.save(anna, std::nullopt);
  EXPECT_EQ(store.load().lastConnectionTestSuccess, true);
  setup.save({anna.email, "other.example.org", 993}, std::nullopt);
  EXPECT_EQ(store.load().lastConnectionTestSuccess, std::nullopt);
  EXPECT_EQ(store.load().lastConnectionTestDate, std::nullopt);
}

TEST_F(AccountSetupTest, lockedStoreLeavesEverythingAsItWas) {
  setup.save(anna, Secret("pass"));
  for (std::size_t call = 0; call < 3; ++call) {  // reading, removing, adding
    SCOPED_TRACE(call);
    items.answers.assign(call, std::nullopt);
    items.answers.emplace_back(SecretStatus::interactionNotAllowed);
    if (call == 1) {  // saving goes on after a removal that failed, and fails at the item that is still there
      items.answers.emplace_back(SecretStatus::duplicateItem);
    }
    EXPECT_THROW(setup.save({anna.email, "other.example.org", 1}, Secret("other")), KeychainError);
    items.answers.clear();
    EXPECT_EQ(password(anna.email), "pass");
    EXPECT_EQ(store.load().imapHost, anna.imapHost);
  }
}

TEST_F(AccountSetupTest, fullDiskTakesTheNewPasswordBack) {
  refuseWrites();
  EXPECT_THROW(setup.save(anna, Secret("pass")), fs::filesystem_error);
  EXPECT_EQ(password(anna.email), std::nullopt);
  putPassword(anna.email, "old");
  EXPECT_THROW(setup.save(anna, Secret("pass")), fs::filesystem_error);
  EXPECT_EQ(password(anna.email), "old");
}

TEST_F(AccountSetupTest, damagedFileIsCopiedFirst) {
  write("{\"email\": \"anna@");
  setup.save(anna, Secret("pass"));
  EXPECT_EQ(store.load().email, anna.email);
  std::vector<std::string> copies;
  for (const fs::directory_entry& entry : fs::directory_iterator(store.configURL().parent_path())) {
    if (entry.path() != store.configURL()) {
      copies.push_back(fileContents(entry.path()));
    }
  }
  EXPECT_THAT(copies, testing::ElementsAre("{\"email\": \"anna@"));
}

TEST_F(AccountSetupTest, removalForgetsTheAccountAndWhatItAllowed) {
  write(R"({"email": "anna@example.org", "imapHost": "imap.example.org", "httpPort": 9000, "language": "ja",
           "strictWithholding": true, "safety": {"readOnly": false, "future": 1}, "later": 2})");
  putPassword(anna.email, "pass");
  setup.remove();
  EXPECT_EQ(password(anna.email), std::nullopt);
  const AppConfig config = store.load();
  EXPECT_FALSE(config.isConfigured());
  EXPECT_EQ(config.imapHost, BridgeConstants::defaultIMAPHost);
  EXPECT_EQ(config.safety, SafetySettings());
  EXPECT_EQ(config.language, AppLanguage::japanese);
  EXPECT_EQ(config.httpPort, 9000);
  EXPECT_EQ(file()["later"], 2);
  EXPECT_EQ(file()["safety"]["future"], 1);
}

TEST_F(AccountSetupTest, removalThatTheStoreRefusesKeepsTheAccount) {
  setup.save(anna, Secret("pass"));
  items.answers = {SecretStatus::interactionNotAllowed};
  EXPECT_THROW(setup.remove(), KeychainError);
  EXPECT_EQ(store.load().email, anna.email);
}

/// The disk takes no new file, so the account stays with its password.
TEST_F(AccountSetupTest, removalThatCannotBeWrittenPutsThePasswordBack) {
  setup.save(anna, Secret("pass"));
  const rlimit before = limitOfFileSize(0);
  EXPECT_THROW(setup.remove(), fs::filesystem_error);
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(password(anna.email), "pass");
  EXPECT_EQ(store.load().email, anna.email);
}

TEST_F(AccountSetupTest, testThatCannotBeRecordedStillCountsAndIsLogged) {
  setup.save(anna, Secret("pass"));
  LogBuffer::shared().clear();
  const rlimit before = limitOfFileSize(0);
  EXPECT_NO_THROW(setup.recordTest(anna.email, true));
  setrlimit(RLIMIT_FSIZE, &before);
  EXPECT_EQ(store.load().lastConnectionTestSuccess, std::nullopt);
  const std::vector<LogEntry> logged = LogBuffer::shared().snapshot();
  ASSERT_EQ(logged.size(), 1U);
  EXPECT_THAT(logged[0].message, testing::StartsWith("test outcome not saved: "));
}

TEST_F(AccountSetupTest, itemThatIsNoTextIsReplaced) {
  putPassword(anna.email, "\xff");
  setup.save(anna, Secret("pass"));
  EXPECT_EQ(password(anna.email), "pass");
}

TEST_F(AccountSetupTest, removalWithoutAnAccountTouchesNothing) {
  setup.remove();
  EXPECT_FALSE(fs::exists(store.configURL()));
  EXPECT_THAT(items.calls, testing::IsEmpty());
}

TEST_F(AccountSetupTest, testOfAnotherAccountIsNotRecorded) {
  setup.save(anna, Secret("pass"));
  setup.recordTest(ben.email, false);
  EXPECT_EQ(store.load().lastConnectionTestSuccess, std::nullopt);
  setup.recordTest(anna.email, false);
  EXPECT_EQ(store.load().lastConnectionTestSuccess, false);
}

}  // namespace
}  // namespace tarnwell::test
