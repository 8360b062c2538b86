#include "App/Models/ShownPath.h"

#include <gtest/gtest.h>

#include <QDir>

namespace tarnwell {
namespace {

struct Row {
  const char* name;
  /// After the home directory.
  const char* path;
  const char* shown;
};

TEST(ShownPath, isShortInTheHomeDirectory) {
  for (const Row& row : {Row{"file", "/a.json", "~/a.json"}, Row{"folder", "/.config/a", "~/.config/a"},
                         Row{"nameInAnotherAlphabet", "/設定.json", "~/設定.json"}}) {
    EXPECT_EQ(shownPath(QDir::homePath() + row.path).toStdString(), row.shown) << row.name;
  }
}

TEST(ShownPath, staysElsewhere) {
  for (const QString& path :
       {QString(), QStringLiteral("/etc/a.json"), QDir::homePath(), QDir::homePath() + "2/a.json"}) {
    EXPECT_EQ(shownPath(path).toStdString(), path.toStdString());
  }
}

}  // namespace
}  // namespace tarnwell
