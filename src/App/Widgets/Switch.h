#pragma once

/// A check box in the shape of a switch. It is one in everything else: keys, signals, role for screen
/// readers.

#include <QCheckBox>

namespace tarnwell {

class Switch : public QCheckBox {
  Q_OBJECT

 public:
  explicit Switch(QWidget* parent = nullptr);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool hitButton(const QPoint& place) const override { return rect().contains(place); }
};

}  // namespace tarnwell
