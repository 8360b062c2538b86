#pragma once

/// The window: the names of the pages at the left, the chosen page at the right.
///
/// Ctrl and a digit chooses a page, Ctrl+Q closes the window.

#include <QListWidget>
#include <QMainWindow>
#include <QStackedWidget>

#include "App/Widgets/Page.h"

namespace tarnwell {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow();

  /// Adds a page after those that are there. Takes it over.
  void addPage(Page* page);
  void choose(int page);
  int chosen() const { return navigation_->currentRow(); }

  /// Brings the window before the others, as far as the desktop allows.
  void raiseToFront();

 protected:
  void changeEvent(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 Q_SIGNALS:
  /// The person came back to this window, perhaps from another program.
  void activated();

 private:
  void setTexts();

  QListWidget* navigation_;
  QStackedWidget* pages_;
};

}  // namespace tarnwell
