#pragma once

/// "What would happen?": tries a change on the chosen message, and shows what the settings say. Nothing is
/// changed.
///
/// Folded away until it is asked for. The folders are read when it is opened.
///
/// Threads: that of the window. The model must outlive the widget.

#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include "App/Models/TryItModel.h"
#include "App/Widgets/ChoiceBox.h"
#include "App/Widgets/Notice.h"

namespace tarnwell {

class TryItChanges : public QWidget {
  Q_OBJECT

 public:
  explicit TryItChanges(TryItModel& tryIt, QWidget* parent = nullptr);

  /// In the language of the window.
  void setTexts();
  /// For another message: folds itself, and forgets what was tried.
  void startAnew();

 private:
  void unfold(bool isOpen);
  void showFolders();
  void showOutcome();

  TryItModel& tryIt_;
  QPushButton* opener_;
  QWidget* choices_;
  ToneLabel* promise_;
  ChoiceBox* folders_;
  QPushButton* move_;
  QPushButton* trash_;
  QPushButton* markRead_;
  Notice* outcome_;
};

}  // namespace tarnwell
