#pragma once

/// The exact JSON of the page "Try it": what an assistant sends and receives, of one call at a time.
///
/// Threads: that of the window. The model must outlive the widget.

#include <QWidget>

#include "App/Models/TryItModel.h"
#include "App/Widgets/ChoiceBox.h"
#include "App/Widgets/CopyBlock.h"
#include "App/Widgets/Theme.h"

namespace tarnwell {

class TryItCalls : public QWidget {
  Q_OBJECT

 public:
  explicit TryItCalls(const TryItModel& tryIt, QWidget* parent = nullptr);

  /// In the language of the window.
  void setTexts();

 private:
  /// Takes the calls of the model. Stays at the call of the tool that is shown, unless there is a newer one.
  void showCalls();
  void showCall();

  const TryItModel& tryIt_;
  ChoiceBox* choice_;
  ToneLabel* sentName_;
  CopyBlock* sent_;
  ToneLabel* receivedName_;
  CopyBlock* received_;
};

}  // namespace tarnwell
