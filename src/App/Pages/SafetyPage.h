#pragma once

/// The page "Safety settings": what an assistant may read and change.
///
/// Threads: that of the window. The model and the questions must outlive the page.

#include <optional>
#include <vector>

#include "App/Models/SafetyModel.h"
#include "App/Widgets/Card.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/NumberBox.h"
#include "App/Widgets/Page.h"
#include "App/Widgets/Questions.h"
#include "App/Widgets/SettingRow.h"
#include "App/Widgets/Switch.h"

namespace tarnwell {

class SafetyPage : public Page {
  Q_OBJECT

 public:
  SafetyPage(SafetyModel& safety, Questions& questions, QWidget* parent = nullptr);

  /// In the language of the window.
  static QString name();

 protected:
  void setTexts() final;

 private:
  struct SwitchRow {
    SafetySwitch item;
    Switch* control;
    SettingRow* row;
  };
  struct LimitRow {
    SafetyLimit limit;
    NumberBox* control;
    SettingRow* row;
  };

  void addSwitch(Card* card, SafetySwitch item);
  void addLimit(Card* card, SafetyLimit limit);
  void turn(const SwitchRow& row);
  /// A new wish: what became of the one before is no news any more.
  void forgetFailure();

  /// Shows what the model says.
  void showModel();
  void showFailure();

  SafetyModel& safety_;
  Questions& questions_;
  Notice* fileNotice_;
  Notice* saveNotice_;
  ToneLabel* summary_;
  ToneLabel* withheld_;
  Card* reading_;
  Card* changes_;
  std::vector<SwitchRow> switches_;
  std::vector<LimitRow> limits_;
  QPushButton* back_;
  /// Why the last change could not be saved.
  std::optional<QString> failure_;
};

}  // namespace tarnwell
