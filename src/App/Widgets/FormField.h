#pragma once

/// A label, a field, a hint and an error as one thing. The only way in which a page makes a field.
///
///     auto* const address = new FormField(new QLineEdit);
///     address->setLabel(tr("&E-mail address"));
///     address->setHint(tr("Its settings are filled in for well-known providers."));
///     address->setError(tr("An address has one at sign."));   // empty: cured
///
/// A screen reader hears the label as the field's name, with "invalid" while there is an error, and hint and
/// error as its description.

#include <QWidget>

#include "App/Widgets/Theme.h"

namespace tarnwell {

class FormField : public QWidget {
  Q_OBJECT

 public:
  /// Takes the field over.
  explicit FormField(QWidget* input, QWidget* parent = nullptr);

  QWidget* input() const { return input_; }

  /// An ampersand stands before the letter that Alt reaches the field with.
  void setLabel(const QString& label);
  /// Rich text: it may hold links, which the person's browser opens.
  void setHint(const QString& richText);
  void setError(const QString& error);
  QString error() const { return error_->text(); }

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void describe();

  QWidget* input_;
  QLabel* label_;
  ToneLabel* hint_;
  ToneLabel* error_;
};

}  // namespace tarnwell
