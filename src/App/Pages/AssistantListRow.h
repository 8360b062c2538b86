#pragma once

/// One assistant: its name, whether it is connected, the buttons for what a person would do next, and below
/// them the plan or what came of it.

#include <QPushButton>

#include "App/Models/AssistantsModel.h"
#include "App/Pages/AssistantPlanView.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/Theme.h"

namespace tarnwell {

class AssistantListRow : public QWidget {
  Q_OBJECT

 public:
  explicit AssistantListRow(QWidget* parent = nullptr);

  void showAssistant(const AssistantState& assistant, const AssistantProgress& progress);

 Q_SIGNALS:
  /// The button for the next thing to do.
  void acted();
  /// The quiet one below it.
  void disconnectWanted();
  /// Whatever the news offer.
  void offerTaken();
  void confirmed();
  void dismissed();
  /// Something was shown that should be seen with the whole row.
  void grew();

 private:
  void showState(const AssistantState& assistant);
  void showNews(const AssistantState& assistant, const AssistantProgress& progress);
  void showPlan(const AssistantState& assistant, const AssistantProgress& progress);

  ToneLabel* name_;
  ToneLabel* mark_;
  ToneLabel* state_;
  QPushButton* action_;
  QPushButton* disconnect_;
  Notice* trouble_;
  Notice* news_;
  AssistantPlanView* plan_ = nullptr;
};

}  // namespace tarnwell
