#pragma once

/// A box with a few choices. The wheel changes it only while it has the focus (WheelGuard.h).

#include <QComboBox>

namespace tarnwell {

class ChoiceBox : public QComboBox {
  Q_OBJECT

 public:
  explicit ChoiceBox(QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tarnwell
