#include "App/Widgets/Switch.h"

#include <QPainter>

namespace tarnwell {

Switch::Switch(QWidget* parent) : QCheckBox(parent) {
  setCursor(Qt::PointingHandCursor);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Switch::sizeHint() const { return {48, 28}; }

/// The knob's place tells on from off as well as the colour does.
void Switch::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QPalette& colours = palette();
  const QRectF track = QRectF(rect()).adjusted(3, 3, -3, -3);
  const qreal radius = track.height() / 2;
  const QColor on = colours.color(QPalette::Highlight);
  const QColor border = colours.color(!isEnabled()  ? QPalette::Mid
                                      : isChecked() ? QPalette::Highlight
                                                    : QPalette::PlaceholderText);
  painter.setPen(QPen(border, 1));
  painter.setBrush(isChecked() && isEnabled() ? on : colours.color(QPalette::Window));
  painter.drawRoundedRect(track, radius, radius);

  const qreal inset = 3;
  const qreal size = track.height() - 2 * inset;
  const bool isRight = isChecked() == (layoutDirection() == Qt::LeftToRight);
  const qreal left = isRight ? track.right() - inset - size : track.left() + inset;
  painter.setPen(Qt::NoPen);
  painter.setBrush(isChecked() && isEnabled() ? colours.color(QPalette::HighlightedText) : border);
  painter.drawEllipse(QRectF(left, track.top() + inset, size, size));

  if (hasFocus()) {
    painter.setPen(QPen(colours.color(QPalette::WindowText), 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius + 2, radius + 2);
  }
}

}  // namespace tarnwell
