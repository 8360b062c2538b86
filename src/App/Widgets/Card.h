#pragma once

/// A rounded box that holds what belongs together.

#include <QFrame>
#include <QLabel>
#include <QVBoxLayout>

namespace tarnwell {

class Card : public QFrame {
  Q_OBJECT

 public:
  explicit Card(QWidget* parent = nullptr);

  /// Where its contents go, from the top down.
  QVBoxLayout* rows() { return rows_; }

  /// No heading is shown while it is empty.
  void setHeading(const QString& heading);

 private:
  QLabel* heading_;
  QVBoxLayout* rows_;
};

}  // namespace tarnwell
