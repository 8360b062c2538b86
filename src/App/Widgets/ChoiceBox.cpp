#include "App/Widgets/ChoiceBox.h"

#include <QStyleOptionComboBox>

#include "App/Widgets/Chevron.h"
#include "App/Widgets/WheelGuard.h"

namespace tarnwell {

ChoiceBox::ChoiceBox(QWidget* parent) : QComboBox(parent) {
  setSizeAdjustPolicy(QComboBox::AdjustToContents);
  guardFromWheel(this);
}

void ChoiceBox::paintEvent(QPaintEvent* event) {
  QComboBox::paintEvent(event);
  QStyleOptionComboBox option;
  initStyleOption(&option);
  const QRect arrow = style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, this);
  drawChevron(this, QRectF(arrow).center(), Pointing::down, QPalette::Text);
}

}  // namespace tarnwell
