#pragma once

/// The field for the password. What is typed leaves it only as a `Secret`, and can be made to leave it for
/// good: no undo brings it back.

#include <QCheckBox>
#include <QLineEdit>

#include "App/Widgets/FormField.h"
#include "Core/Secret.h"

namespace tarnwell {

class PasswordField : public QWidget {
  Q_OBJECT

 public:
  explicit PasswordField(QWidget* parent = nullptr);

  QLineEdit* input() const { return input_; }

  /// As `FormField` has them.
  void setLabel(const QString& label) { row_->setLabel(label); }
  void setHint(const QString& richText) { row_->setHint(richText); }

  /// A copy of what is typed. Empty when nothing is.
  Secret typed() const;
  /// Takes out what was typed.
  void forget();

 Q_SIGNALS:
  /// A key, a paste or a removal.
  void edited(bool isEmpty);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void setTexts();

  QLineEdit* input_;
  FormField* row_;
  QCheckBox* shows_;
};

}  // namespace tarnwell
