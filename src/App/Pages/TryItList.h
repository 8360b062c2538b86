#pragma once

/// The list of the page "Try it": a message a row, with sender, date, subject and what an assistant gets of
/// its text. A withheld one carries a shield and says the word that did it.
///
/// Screen readers hear the whole row.
///
/// Threads: that of the window. The model must outlive the list.

#include <QListView>

#include "App/Models/TryItModel.h"

namespace tarnwell {

class TryItList : public QListView {
  Q_OBJECT

 public:
  explicit TryItList(const TryItModel& tryIt, QWidget* parent = nullptr);

  /// Takes the messages of the model anew, without a current one.
  void showMessages();
  /// The texts in the language of the moment.
  void retranslate();

 Q_SIGNALS:
  void currentMoved(int row);

 protected:
  void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
  void focusInEvent(QFocusEvent* event) override;

 private:
  class Rows;

  Rows* rows_;
};

}  // namespace tarnwell
