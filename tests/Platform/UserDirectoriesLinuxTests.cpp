#include "Platform/UserDirectories.h"

#include "support/ScopedEnvironment.h"

namespace tarnwell::test {
namespace {

using Text = std::optional<std::string>;

struct DirectoryRow {
  const char* name;
  Text dataHome;
  Text home;
  Text expected;
};

TEST(ApplicationSupportDirectory, followsTheRulesForBaseDirectories) {
  const DirectoryRow rows[] = {
      {"data home", "/data", "/home/u", "/data"},
      {"no data home", std::nullopt, "/home/u", "/home/u/.local/share"},
      {"empty data home", "", "/home/u", "/home/u/.local/share"},
      {"relative data home", "data", "/home/u", "/home/u/.local/share"},
      {"data home alone", "/data", std::nullopt, "/data"},
      {"neither", std::nullopt, std::nullopt, std::nullopt},
      {"both empty", "", "", std::nullopt},
      {"relative home", std::nullopt, "home", std::nullopt},
      {"blank and accents", "/My Data é", std::nullopt, "/My Data é"},
  };
  for (const DirectoryRow& row : rows) {
    ScopedEnvironment environment({{"XDG_DATA_HOME", row.dataHome}, {"HOME", row.home}});
    auto directory = applicationSupportDirectory();
    EXPECT_EQ(directory ? Text(directory->string()) : std::nullopt, row.expected) << row.name;
  }
}

TEST(HomeDirectory, comesFromTheUserDatabaseAndNotFromTheEnvironment) {
  ScopedEnvironment environment({{"HOME", Text("/elsewhere")}});
  EXPECT_TRUE(homeDirectory().is_absolute());
  EXPECT_NE(homeDirectory(), "/elsewhere");
}

struct LanguageRow {
  const char* name;
  Text language, all, messages, lang;
  std::vector<std::string> expected;
};

TEST(PreferredLanguages, areAskedForAsByGettext) {
  const Text unset;
  const LanguageRow rows[] = {
      {"nothing set", unset, unset, unset, unset, {}},
      {"LANG", unset, unset, unset, "ja_JP.UTF-8", {"ja-JP"}},
      {"LC_MESSAGES beats LANG", unset, unset, "de_DE.UTF-8", "ja_JP.UTF-8", {"de-DE"}},
      {"LC_ALL beats LC_MESSAGES", unset, "fr_FR", "de_DE", "ja_JP", {"fr-FR"}},
      {"empty ones are passed over", unset, "", "", "ja_JP", {"ja-JP"}},
      {"LANGUAGE beats them all", "ja:en_GB:de", "fr_FR", "de_DE", "en_US", {"ja", "en-GB", "de"}},
      {"empty LANGUAGE", "", unset, unset, "ja_JP", {"ja-JP"}},
      {"empty entries are passed over", ":ja::en:", unset, unset, "en_US", {"ja", "en"}},
      {"LANGUAGE without a locale counts for nothing", "ja", unset, unset, unset, {}},
      {"LANGUAGE with the locale C counts for nothing", "ja", "C", unset, "ja_JP", {}},
      {"LANGUAGE with C.UTF-8 counts for nothing", "ja", "C.UTF-8", unset, unset, {}},
      {"POSIX is C", "ja", "POSIX", unset, unset, {}},
      {"C ends the list", "C:ja", unset, unset, "en_US", {}},
      {"C ends the list in its middle", "ja:C:de", unset, unset, "en_US", {"ja"}},
      {"modifier is dropped", unset, unset, unset, "de_DE@euro", {"de-DE"}},
      {"language alone", unset, unset, unset, "ja", {"ja"}},
      {"tag with hyphens", unset, unset, unset, "zh-Hans-CN", {"zh-Hans-CN"}},
      {"nonsense is passed over", "j a:日本:../x:ja", unset, unset, "en_US", {"ja"}},
  };
  for (const LanguageRow& row : rows) {
    ScopedEnvironment environment(
        {{"LANGUAGE", row.language}, {"LC_ALL", row.all}, {"LC_MESSAGES", row.messages}, {"LANG", row.lang}});
    EXPECT_EQ(preferredLanguages(), row.expected) << row.name;
  }
}

}  // namespace
}  // namespace tarnwell::test
