#include "App/Widgets/NumberBox.h"

#include <QLineEdit>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyleOptionSpinBox>

#include "App/Widgets/WheelGuard.h"

namespace tarnwell {

NumberBox::NumberBox(QWidget* parent) : QSpinBox(parent) {
  setGroupSeparatorShown(true);
  setKeyboardTracking(false);
  guardFromWheel(this);
  connect(lineEdit(), &QLineEdit::textEdited, this, [this] { isBeingTyped_ = true; });
  connect(this, &QSpinBox::valueChanged, this, &NumberBox::choose);
  connect(this, &QSpinBox::editingFinished, this, [this] {
    if (isBeingTyped_) {
      choose(value());
    }
  });
}

void NumberBox::choose(int number) {
  isBeingTyped_ = false;
  Q_EMIT chosen(number);
}

void NumberBox::showNumber(int number) {
  if (!isBeingTyped_) {
    const QSignalBlocker isNoChoice(this);
    setValue(number);
  }
}

/// The style sheet leaves the buttons empty, because it knows arrows only as picture files.
void NumberBox::paintEvent(QPaintEvent* event) {
  QSpinBox::paintEvent(event);
  QStyleOptionSpinBox option;
  initStyleOption(&option);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  for (const bool isUp : {true, false}) {
    const bool mayStep = isEnabled() && stepEnabled().testFlag(isUp ? StepUpEnabled : StepDownEnabled);
    painter.setPen(QPen(palette().color(mayStep ? QPalette::Text : QPalette::Mid), 1.5));
    const QPointF middle =
        QRectF(style()->subControlRect(QStyle::CC_SpinBox, &option,
                                       isUp ? QStyle::SC_SpinBoxUp : QStyle::SC_SpinBoxDown, this))
            .center();
    const qreal tip = isUp ? -2 : 2;
    const QPointF chevron[] = {middle + QPointF(-4, -tip), middle + QPointF(0, tip),
                               middle + QPointF(4, -tip)};
    painter.drawPolyline(chevron, 3);
  }
}

}  // namespace tarnwell
