#include "App/Models/Language.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include "support/ScopedEnvironment.h"

namespace tarnwell::test {
namespace {

QString word() { return QCoreApplication::translate("tarnwell::Notice", "Details"); }

TEST(Language, chosenOneIsSpokenAtOnce) {
  Language language;
  language.choose(AppLanguage::japanese);
  EXPECT_EQ(word(), "詳細");
  language.choose(AppLanguage::english);
  EXPECT_EQ(word(), "Details");
}

TEST(Language, absentMeansTheSystems) {
  Language language;
  const ScopedEnvironment systems(
      ScopedEnvironment::Variables{{"LANGUAGE", std::nullopt}, {"LC_ALL", "ja_JP.UTF-8"}});
  language.choose(std::nullopt);
  EXPECT_EQ(word(), "詳細");
  language.choose(AppLanguage::english);
  EXPECT_EQ(word(), "Details");
}

}  // namespace
}  // namespace tarnwell::test
