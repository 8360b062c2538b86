#pragma once

/// The page "Local endpoint": starts and stops it, and gives its address and token to the person.
///
/// The token is not shown until the person wants to see it, and hidden again when the page goes.
///
/// Threads: that of the window. The model and the questions must outlive the page.

#include <QPushButton>

#include "App/Models/EndpointModel.h"
#include "App/Widgets/Card.h"
#include "App/Widgets/CopyBlock.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/NumberBox.h"
#include "App/Widgets/Page.h"
#include "App/Widgets/Questions.h"
#include "App/Widgets/SettingRow.h"

namespace tarnwell {

class EndpointPage : public Page {
  Q_OBJECT

 public:
  EndpointPage(EndpointModel& endpoint, Questions& questions, QWidget* parent = nullptr);

  /// In the language of the window.
  static QString name();

 protected:
  void setTexts() final;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void build();
  void listen();
  void startOrStop();
  void renew();
  void setTokenShown(bool isShown);
  /// The token, for the moment of copying.
  QString token() const;

  /// Shows what the model says.
  void showModel();
  void showState();
  void showNotices();
  void showToken();

  EndpointModel& endpoint_;
  Questions& questions_;

  Notice* keyringNotice_;
  Notice* news_;
  ToneLabel* state_;
  ToneLabel* sentence_;
  QPushButton* start_;
  CopyBlock* address_;
  NumberBox* port_;
  SettingRow* portRow_;
  Card* tokenCard_;
  ToneLabel* danger_;
  CopyBlock* token_;
  QPushButton* show_;
  QPushButton* renew_;
  Card* clientCard_;
  ToneLabel* clientSentence_;
  CopyBlock* block_;
  bool isTokenShown_ = false;
};

}  // namespace tarnwell
