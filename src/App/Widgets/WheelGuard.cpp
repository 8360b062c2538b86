#include "App/Widgets/WheelGuard.h"

#include <QEvent>

namespace tarnwell {

namespace {

class WheelGuard : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Wheel || static_cast<QWidget*>(watched)->hasFocus()) {
      return false;
    }
    event->ignore();  // so the page gets it
    return true;
  }
};

}  // namespace

void guardFromWheel(QWidget* control) {
  control->setFocusPolicy(Qt::StrongFocus);  // the wheel does not give the focus either
  control->installEventFilter(new WheelGuard(control));
}

}  // namespace tarnwell
