#pragma once

/// Ends a program when its window has drawn its first frame, or, with the argument "stay", leaves it open.

#include <QApplication>
#include <QEvent>
#include <QTimer>
#include <QWidget>

/// Installed on the window.
class FirstFrame : public QObject {
 public:
  bool eventFilter(QObject* watched, QEvent* event) override {
    const bool isHandled = QObject::eventFilter(watched, event);
    if (event->type() == QEvent::Paint && !isPainted_) {
      isPainted_ = true;
      QTimer::singleShot(0, qApp, &QApplication::quit);  // after the frame was handed to the system
    }
    return isHandled;
  }

  static void endAfter(QWidget& window) {
    if (!QApplication::arguments().contains(QStringLiteral("stay"))) {
      window.installEventFilter(new FirstFrame);
    }
  }

 private:
  bool isPainted_ = false;
};
