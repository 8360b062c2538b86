#include "App/Widgets/Chevron.h"

#include <QPainter>

namespace tarnwell {

void drawChevron(QWidget* widget, QPointF middle, Pointing pointing, QPalette::ColorRole colour) {
  QPainter painter(widget);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(widget->palette().color(colour), 1.5));
  const qreal tip = pointing == Pointing::up ? -2 : 2;
  const QPointF corners[] = {middle + QPointF(-4, -tip), middle + QPointF(0, tip), middle + QPointF(4, -tip)};
  painter.drawPolyline(corners, 3);
}

}  // namespace tarnwell
