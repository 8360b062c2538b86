#pragma once

/// The chosen message of the page "Try it": what it says of itself, what is withheld of it and why, and the
/// text that an assistant gets.
///
/// All texts of mail are shown as plain text.
///
/// Threads: that of the window. The model must outlive the widget.

#include <QScrollArea>

#include "App/Models/TryItModel.h"
#include "App/Pages/TryItChanges.h"
#include "App/Widgets/Marks.h"
#include "App/Widgets/ReadingText.h"

namespace tarnwell {

class TryItMessage : public QScrollArea {
  Q_OBJECT

 public:
  explicit TryItMessage(TryItModel& tryIt, QWidget* parent = nullptr);

  /// In the language of the window.
  void setTexts();

 private:
  void arrange();
  void showAnother();
  void showMessage();
  void showText(const TriedMessage& message);

  TryItModel& tryIt_;
  ToneLabel* subject_;
  ToneLabel* sender_;
  ToneLabel* date_;
  ToneLabel* marks_;
  QFrame* verdictBox_;
  MarkLabel* verdictMark_;
  ToneLabel* verdict_;
  ToneLabel* signs_;
  ToneLabel* previewName_;
  ToneLabel* preview_;
  ToneLabel* textName_;
  ReadingText* text_;
  ToneLabel* extent_;
  TryItChanges* changes_;
};

}  // namespace tarnwell
