#include "App/Widgets/NumberBox.h"

#include <QLineEdit>
#include <QSignalBlocker>
#include <QStyleOptionSpinBox>

#include "App/Widgets/Chevron.h"
#include "App/Widgets/WheelGuard.h"

namespace tarnwell {

NumberBox::NumberBox(int least, int most, QWidget* parent) : QSpinBox(parent) {
  setRange(least, most);
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

void NumberBox::paintEvent(QPaintEvent* event) {
  QSpinBox::paintEvent(event);
  QStyleOptionSpinBox option;
  initStyleOption(&option);
  const auto draw = [&](QStyle::SubControl button, StepEnabledFlag step, Pointing pointing) {
    const QRect place = style()->subControlRect(QStyle::CC_SpinBox, &option, button, this);
    const bool mayStep = isEnabled() && stepEnabled().testFlag(step);
    drawChevron(this, QRectF(place).center(), pointing, mayStep ? QPalette::Text : QPalette::Mid);
  };
  draw(QStyle::SC_SpinBoxUp, StepUpEnabled, Pointing::up);
  draw(QStyle::SC_SpinBoxDown, StepDownEnabled, Pointing::down);
}

}  // namespace tarnwell
