#include "App/Models/SettingsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QSignalSpy>
#include <QTest>
#include <filesystem>
#include <fstream>

#include "support/Files.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {
namespace {

namespace fs = std::filesystem;

class SettingsFileTest : public testing::Test {
 protected:
  void write(const std::string& text) const {
    fs::create_directories(store.configURL().parent_path());
    fs::path fresh = store.configURL();
    fresh += ".new";
    std::ofstream(fresh) << text;
    fs::rename(fresh, store.configURL());
  }

  static bool eventually(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 10'000);
  }

  TemporaryDirectory directory;
  ConfigStore store{directory / "settings"};
};

TEST_F(SettingsFileTest, readsTheFileBeforeItReturns) {
  write(R"({"email": "anna@example.org"})");
  const SettingsFile settings(store);
  EXPECT_EQ(settings.config().email, "anna@example.org");
  EXPECT_EQ(settings.state(), ConfigStore::FileState::good);
  EXPECT_EQ(settings.path().toStdString(), store.configURL().string());
}

TEST_F(SettingsFileTest, changeShowsAtOnceAndIsWrittenInOrder) {
  write(R"({"email": "anna@example.org", "later": 1})");
  SettingsFile settings(store);
  const QSignalSpy changed(&settings, &SettingsFile::changed);
  for (int limit = 1; limit <= 30; ++limit) {
    settings.change([limit](AppConfig& config) { config.safety.maxFetch = limit; });
    EXPECT_EQ(settings.config().safety.maxFetch, limit);
  }
  EXPECT_GE(changed.count(), 30);
  ASSERT_TRUE(eventually([&] { return !settings.isSaving(); }));
  EXPECT_EQ(store.load().safety.maxFetch, 30);
  EXPECT_EQ(store.load().email, "anna@example.org");
  EXPECT_THAT(fileContents(store.configURL()), testing::HasSubstr("\"later\": 1"));
}

TEST_F(SettingsFileTest, changeOfAnotherProgramShowsByItself) {
  write(R"({"email": "anna@example.org"})");
  SettingsFile settings(store);
  write(R"({"email": "ben@example.org"})");
  EXPECT_TRUE(eventually([&] { return settings.config().email == "ben@example.org"; }));
  write("{");
  EXPECT_TRUE(eventually([&] { return settings.state() == ConfigStore::FileState::damaged; }));
  EXPECT_EQ(settings.config(), AppConfig());
  EXPECT_NE(settings.reason(), "");
}

/// The other program wrote between the reading here and the change here.
TEST_F(SettingsFileTest, changeKeepsWhatAnotherProgramWrote) {
  write(R"({"email": "anna@example.org"})");
  SettingsFile settings(store);
  write(R"({"email": "anna@example.org", "httpPort": 9000})");
  settings.change([](AppConfig& config) { config.safety.allowTrash = true; });
  ASSERT_TRUE(eventually([&] { return !settings.isSaving() && settings.config().httpPort == 9000; }));
  EXPECT_TRUE(store.load().safety.allowTrash);
  EXPECT_TRUE(settings.config().safety.allowTrash);
}

TEST_F(SettingsFileTest, folderThatAppearsLaterIsFollowed) {
  SettingsFile settings(store);
  EXPECT_EQ(settings.state(), ConfigStore::FileState::missing);
  settings.change([](AppConfig& config) { config.email = "anna@example.org"; });
  ASSERT_TRUE(eventually([&] { return settings.state() == ConfigStore::FileState::good; }));
  write(R"({"email": "ben@example.org"})");
  EXPECT_TRUE(eventually([&] { return settings.config().email == "ben@example.org"; }));
}

TEST_F(SettingsFileTest, failedChangeIsToldAndTakenBack) {
  fs::create_directories(directory.path());
  std::ofstream(directory / "settings") << "a file in the folder's place";
  SettingsFile settings(store);
  QSignalSpy notSaved(&settings, &SettingsFile::notSaved);
  settings.change([](AppConfig& config) { config.email = "anna@example.org"; });
  EXPECT_EQ(settings.config().email, "anna@example.org");
  ASSERT_TRUE(eventually([&] { return settings.config().email.empty(); }));
  ASSERT_EQ(notSaved.count(), 1);
  EXPECT_THAT(notSaved[0][0].toString().toStdString(), testing::HasSubstr("settings"));
}

TEST_F(SettingsFileTest, failureNamesTheChangesThatAreLost) {
  SettingsFile settings(store);
  QSignalSpy notSaved(&settings, &SettingsFile::notSaved);
  EXPECT_EQ(settings.change([](AppConfig& config) { config.email = "anna@example.org"; }), 1);
  ASSERT_TRUE(eventually([&] { return !settings.isSaving(); }));
  ASSERT_EQ(::chmod(store.configURL().c_str(), 0666), 0);
  EXPECT_EQ(settings.change([](AppConfig& config) { config.email = "ben@example.org"; }), 2);
  EXPECT_EQ(settings.change([](AppConfig& config) { config.email = "cleo@example.org"; }), 3);
  ASSERT_TRUE(eventually([&] { return !settings.isSaving(); }));
  ASSERT_EQ(notSaved.count(), 1);
  EXPECT_EQ(notSaved[0][1].toInt(), 2);
}

TEST_F(SettingsFileTest, fileThatOthersMayWriteIsNotChanged) {
  write(R"({"email": "anna@example.org"})");
  ASSERT_EQ(::chmod(store.configURL().c_str(), 0666), 0);
  SettingsFile settings(store);
  EXPECT_EQ(settings.state(), ConfigStore::FileState::untrusted);
  QSignalSpy notSaved(&settings, &SettingsFile::notSaved);
  settings.change([](AppConfig& config) { config.email = "ben@example.org"; });
  ASSERT_TRUE(eventually([&] { return notSaved.count() == 1; }));
  EXPECT_THAT(notSaved[0][0].toString().toStdString(), testing::HasSubstr("everybody may write it"));
  EXPECT_EQ(fileContents(store.configURL()), R"({"email": "anna@example.org"})");
}

}  // namespace
}  // namespace tarnwell::test
