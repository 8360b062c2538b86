#pragma once

/// The window: the names of the pages at the left, the chosen page at the right.
///
/// Ctrl and a digit chooses a page, Ctrl+Q closes the window.

#include <QListWidget>
#include <QMainWindow>
#include <QStackedWidget>
#include <functional>
#include <utility>
#include <vector>

#include "App/Widgets/Page.h"

namespace tarnwell {

class MainWindow : public QMainWindow {
  Q_OBJECT

 public:
  MainWindow();

  /// Adds a page after those that are there. It is made when it is first shown, so that a window with many
  /// pages opens as fast as one with one. `name` gives its name in the language of the moment.
  void addPage(std::function<QString()> name, std::function<Page*()> make);
  void choose(int page);
  int chosen() const { return navigation_->currentRow(); }

  /// Asked when the window is about to close. When it says false the window stays, until `closeUnasked`.
  void askBeforeClosing(std::function<bool()> mayClose) { mayClose_ = std::move(mayClose); }
  void closeUnasked();

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
  void open(int page);
  void followSelection();

  struct Entry {
    std::function<QString()> name;
    std::function<Page*()> make;
    Page* page = nullptr;
  };
  std::vector<Entry> entries_;
  std::function<bool()> mayClose_;
  QListWidget* navigation_;
  QStackedWidget* pages_;
};

}  // namespace tarnwell
