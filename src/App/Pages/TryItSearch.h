#pragma once

/// The search of the page "Try it": one field, and filters that are folded away.
///
/// Threads: that of the window.

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QWidget>

#include "App/Models/TryItModel.h"
#include "App/Widgets/Card.h"
#include "App/Widgets/ChoiceBox.h"
#include "App/Widgets/FormField.h"

namespace tarnwell {

class TryItSearch : public QWidget {
  Q_OBJECT

 public:
  explicit TryItSearch(QWidget* parent = nullptr);

  /// In the language of the window.
  void setTexts();
  TriedQuery query() const;
  /// Forgets what was typed, so that Undo does not bring it back either.
  void forget();
  void focusWords();

 Q_SIGNALS:
  void wanted();

 private:
  QLineEdit* words_;
  QPushButton* filters_;
  QPushButton* search_;
  Card* card_;
  QLineEdit* sender_;
  FormField* senderField_;
  QLineEdit* subject_;
  FormField* subjectField_;
  ChoiceBox* since_;
  FormField* sinceField_;
  QCheckBox* unread_;
};

}  // namespace tarnwell
