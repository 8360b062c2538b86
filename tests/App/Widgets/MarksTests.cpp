#include "App/Widgets/Marks.h"

#include <gtest/gtest.h>

#include <QImage>

namespace tarnwell::test {
namespace {

QImage drawn(Mark mark, const QColor& brush = Qt::transparent) {
  QImage image(32, 32, QImage::Format_ARGB32);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  painter.setBrush(brush);
  paintMark(painter, {8, 8, 16, 16}, mark, Qt::red);
  return image;
}

TEST(Marks, differFromEachOtherAndStayInTheirSquare) {
  const Mark marks[] = {Mark::shield, Mark::tick, Mark::attachment, Mark::unread};
  for (const Mark mark : marks) {
    const QImage image = drawn(mark);
    for (const Mark other : marks) {
      EXPECT_EQ(image == drawn(other), mark == other);
    }
    for (int place = 0; place < 32; ++place) {
      EXPECT_EQ(qAlpha(image.pixel(place, 6)), 0);
      EXPECT_EQ(qAlpha(image.pixel(6, place)), 0);
      EXPECT_EQ(qAlpha(image.pixel(place, 25)), 0);
      EXPECT_EQ(qAlpha(image.pixel(25, place)), 0);
    }
  }
}

TEST(Marks, takeNothingFromWhatWasPaintedBefore) {
  for (const Mark mark : {Mark::shield, Mark::tick, Mark::attachment, Mark::unread}) {
    EXPECT_EQ(drawn(mark, Qt::blue), drawn(mark));
  }
}

TEST(Marks, labelFollowsTheScheme) {
  MarkLabel label(Mark::shield, Tone::warning);
  applyTheme(*qApp, Scheme::light);
  const QImage light = label.grab().toImage();
  applyTheme(*qApp, Scheme::dark);
  EXPECT_NE(label.grab().toImage(), light);
}

}  // namespace
}  // namespace tarnwell::test
