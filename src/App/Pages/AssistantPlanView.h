#pragma once

/// Shows what a plan does before it is carried out: the commands, the change to a file, or the steps for
/// doing it by hand.

#include <QPushButton>

#include "App/Models/AssistantsModel.h"
#include "App/Widgets/CopyBlock.h"
#include "App/Widgets/DifferenceView.h"
#include "App/Widgets/Theme.h"

namespace tarnwell {

class AssistantPlanView : public QWidget {
  Q_OBJECT

 public:
  explicit AssistantPlanView(QWidget* parent = nullptr);

  /// For a progress with a plan.
  void showPlan(const AssistantState& assistant, const AssistantProgress& progress);

  /// Where reading begins.
  QWidget* first() const;
  /// Tab comes here from that widget, and visits everything from the top down.
  void setTabOrderAfter(QWidget* before);

 Q_SIGNALS:
  void confirmed();
  void dismissed();

 private:
  ToneLabel* lead_;
  ToneLabel* path_;
  ToneLabel* steps_;
  CodeText* commands_;
  DifferenceView* difference_;
  CopyBlock* block_;
  ToneLabel* caution_;
  QPushButton* confirm_;
  QPushButton* dismiss_;
};

}  // namespace tarnwell
