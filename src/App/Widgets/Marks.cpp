#include "App/Widgets/Marks.h"

#include <QPainterPath>

namespace tarnwell {

namespace {

/// The shapes fill a square of 16 units.
QPainterPath shield() {
  QPainterPath path({8, 1});
  path.cubicTo(10, 2.4, 12, 3, 14, 3);
  path.cubicTo(14.4, 8.5, 12.6, 12.6, 8, 15);
  path.cubicTo(3.4, 12.6, 1.6, 8.5, 2, 3);
  path.cubicTo(4, 3, 6, 2.4, 8, 1);
  return path;
}

QPainterPath clip() {
  QPainterPath path({11.5, 5});
  path.lineTo(6.6, 9.9);
  path.cubicTo(5.2, 11.3, 7.2, 13, 8.5, 11.7);
  path.lineTo(13, 7.2);
  path.cubicTo(15.6, 4.6, 11.9, 0.9, 9.3, 3.5);
  path.lineTo(4, 8.8);
  path.cubicTo(0.5, 12.3, 5.2, 16.6, 8.5, 14.2);
  return path;
}

}  // namespace

void paintMark(QPainter& painter, const QRectF& square, Mark mark, const QColor& colour) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setBrush(Qt::NoBrush);
  painter.translate(square.topLeft());
  painter.scale(square.width() / 16, square.height() / 16);
  const QPen stroke(colour, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
  switch (mark) {
    case Mark::shield:
      painter.setPen(stroke);
      painter.drawPath(shield());
      painter.drawLine(QPointF(5.5, 8), QPointF(10.5, 8));
      break;
    case Mark::tick: {
      painter.setPen(stroke);
      painter.drawEllipse(QRectF(1.5, 1.5, 13, 13));
      const QPointF corners[] = {{4.9, 8.3}, {7.1, 10.5}, {11.2, 5.9}};
      painter.drawPolyline(corners, 3);
      break;
    }
    case Mark::attachment:
      painter.setPen(stroke);
      painter.drawPath(clip());
      break;
    case Mark::unread:
      painter.setPen(Qt::NoPen);
      painter.setBrush(colour);
      painter.drawEllipse(QRectF(4, 4, 8, 8));
      break;
  }
  painter.restore();
}

MarkLabel::MarkLabel(Mark mark, Tone tone, int size, QWidget* parent)
    : QWidget(parent), mark_(mark), tone_(tone) {
  setFixedSize(size, size);
}

void MarkLabel::setMark(Mark mark, Tone tone) {
  mark_ = mark;
  tone_ = tone;
  update();
}

void MarkLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  paintMark(painter, rect(), mark_, toneColour(tone_, palette()));
}

}  // namespace tarnwell
