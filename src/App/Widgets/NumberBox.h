#pragma once

/// A spin box for a number of which each change counts at once. While somebody types, it counts nothing: the
/// number is complete after Enter or when the focus leaves.
///
/// The wheel changes it only while it has the focus (WheelGuard.h).

#include <QSpinBox>

namespace tarnwell {

class NumberBox : public QSpinBox {
  Q_OBJECT

 public:
  NumberBox(int least, int most, QWidget* parent = nullptr);

  /// True while a number is typed that does not count yet. News must not overwrite it.
  bool isBeingTyped() const { return isBeingTyped_; }

  /// Shows a number. Not while one is typed.
  void showNumber(int number);

 Q_SIGNALS:
  /// The person wants this number, which may be the one that stood there before.
  void chosen(int number);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void choose(int number);

  bool isBeingTyped_ = false;
};

}  // namespace tarnwell
