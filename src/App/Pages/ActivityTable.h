#pragma once

/// The table of the page "Activity". While it follows, it stays at the newest entry. Otherwise what is in
/// view stays in view, whatever comes or goes above.
///
/// Threads: that of the window.

#include <QPersistentModelIndex>
#include <QTableView>
#include <initializer_list>
#include <vector>

#include "App/Models/ActivityModel.h"

namespace tarnwell {

class ActivityTable : public QTableView {
  Q_OBJECT

 public:
  explicit ActivityTable(ActivityModel& activity, QWidget* parent = nullptr);

  bool isFollowing() const { return isFollowing_; }
  void setFollowing(bool isFollowing);

  /// In the order of the table.
  std::vector<int> selectedRowNumbers() const;

  /// Makes each column but the last wide enough for all that it may hold.
  void fitColumns();

 Q_SIGNALS:
  /// The person scrolled up, or to the end again.
  void followingChanged(bool isFollowing);
  void copyWanted();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void fitTime();
  int widthOf(std::initializer_list<QString> words) const;
  void restorePlace();
  void takeScroll(int value);

  ActivityModel& activity_;
  bool isFollowing_ = true;
  /// This class itself moves the scroll bar, or the layout does.
  bool isRestoring_ = false;
  /// The first row in view.
  QPersistentModelIndex top_;
};

}  // namespace tarnwell
