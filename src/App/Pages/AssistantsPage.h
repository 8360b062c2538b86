#pragma once

/// The page "Assistants": which of them are on this machine, and connecting each to Tarnwell. Everything that
/// will be changed is shown first.

#include <map>

#include "App/Models/AssistantsModel.h"
#include "App/Pages/AssistantListRow.h"
#include "App/Widgets/Card.h"
#include "App/Widgets/ChoiceBox.h"
#include "App/Widgets/CopyBlock.h"
#include "App/Widgets/FormField.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/Page.h"

namespace tarnwell {

class AssistantsPage : public Page {
  Q_OBJECT

 public:
  /// The model must outlive the page.
  explicit AssistantsPage(AssistantsModel& assistants, QWidget* parent = nullptr);

  /// In the language of the window.
  static QString name();

 protected:
  void setTexts() final;
  void showEvent(QShowEvent* event) override;

 private:
  std::map<AssistantID, AssistantListRow*> newRows();
  AssistantListRow* newRow(AssistantID assistant);
  void showModel();
  void showBlock();

  AssistantsModel& assistants_;
  Notice* accountNotice_;
  Card* found_;
  std::map<AssistantID, AssistantListRow*> rows_;
  ToneLabel* nobody_;
  ToneLabel* missing_;
  Card* other_;
  ToneLabel* otherLead_;
  ChoiceBox* formats_;
  FormField* formatField_;
  CopyBlock* block_;
};

}  // namespace tarnwell
