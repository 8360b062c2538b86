#include "App/Widgets/ScrollAreaAccess.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QLabel>
#include <QScrollArea>
#include <QStringList>

namespace tarnwell {
namespace {

/// All that a screen reader finds below `node`, by name.
QStringList namesBelow(QAccessibleInterface* node) {
  QStringList names(node->text(QAccessible::Name));
  for (int place = 0; place < node->childCount(); ++place) {
    names += namesBelow(node->child(place));
  }
  return names;
}

TEST(ScrollAreaAccess, aChildThatHasGoneIsNoChild) {
  makeScrollAreasSafeForScreenReaders();
  QScrollArea area;
  area.setWidget(new QLabel("A word"));
  area.show();
  QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&area);
  ASSERT_TRUE(access != nullptr);
  EXPECT_TRUE(namesBelow(access).contains("A word"));
  for (const int place : {-1, access->childCount(), access->childCount() + 1}) {
    EXPECT_EQ(access->child(place), nullptr) << place;
  }
}

}  // namespace
}  // namespace tarnwell
