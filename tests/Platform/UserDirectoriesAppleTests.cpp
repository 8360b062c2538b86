#include "Platform/UserDirectories.h"

#include "apple/FrameworksInMemory.h"

namespace tarnwell::test {
namespace {

class UserDirectoriesOnApple : public testing::Test {
 protected:
  void SetUp() override { frameworks = {}; }
  void TearDown() override { EXPECT_EQ(frameworks.liveObjects, objectsBefore); }

  FrameworksInMemory& frameworks = frameworksInMemory();
  const int objectsBefore = frameworks.liveObjects;
};

TEST_F(UserDirectoriesOnApple, firstDirectoryCountsAndItsTildeIsTheHomeDirectory) {
  frameworks.applicationSupportDirectories = {"~/Library/Application Support", "/elsewhere"};
  EXPECT_EQ(applicationSupportDirectory(), homeDirectory() / "Library" / "Application Support");
  frameworks.applicationSupportDirectories = {"/Volumes/Home/Application Support"};
  EXPECT_EQ(applicationSupportDirectory(), "/Volumes/Home/Application Support");
}

TEST_F(UserDirectoriesOnApple, noDirectoryIsAbsent) {
  EXPECT_EQ(applicationSupportDirectory(), std::nullopt);
}

struct LanguageRow {
  const char* name;
  std::optional<std::vector<std::u16string>> languages;
  std::vector<std::string> expected;
};

TEST_F(UserDirectoriesOnApple, languagesAreThoseOfTheSystemInItsOrder) {
  const LanguageRow rows[] = {
      {"not known", std::nullopt, {}},
      {"none", std::vector<std::u16string>{}, {}},
      {"two", {{u"ja-JP", u"en-GB"}}, {"ja-JP", "en-GB"}},
      {"no text is passed over", {{u"\xD800", u"en"}}, {"en"}},
  };
  for (const LanguageRow& row : rows) {
    frameworks.languages = row.languages;
    EXPECT_EQ(preferredLanguages(), row.expected) << row.name;
  }
}

}  // namespace
}  // namespace tarnwell::test
