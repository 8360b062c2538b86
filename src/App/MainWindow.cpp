#include "App/MainWindow.h"

#include <QCloseEvent>
#include <QEvent>
#include <QFontMetrics>
#include <QHBoxLayout>
#include <QShortcut>
#include <algorithm>

#include "Core/BridgeConstants.h"

namespace tarnwell {

namespace {

QString productName() {
  return QString::fromUtf8(BridgeConstants::productName.data(),
                           static_cast<qsizetype>(BridgeConstants::productName.size()));
}

}  // namespace

MainWindow::MainWindow() : navigation_(new QListWidget), pages_(new QStackedWidget) {
  setWindowTitle(productName());
  resize(940, 700);

  auto* const name = new QLabel(productName());
  QFont bold = name->font();
  bold.setBold(true);
  bold.setPointSizeF(bold.pointSizeF() * 1.2);
  name->setFont(bold);
  name->setContentsMargins(12, 4, 0, 8);

  navigation_->setObjectName("navigation");
  navigation_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  navigation_->setSpacing(2);

  auto* const left = new QVBoxLayout;
  left->setContentsMargins(10, 16, 0, 10);
  left->addWidget(name);
  left->addWidget(navigation_, 1);
  auto* const contents = new QWidget;
  auto* const columns = new QHBoxLayout(contents);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->setSpacing(0);
  columns->addLayout(left);
  columns->addWidget(pages_, 1);
  setCentralWidget(contents);

  connect(navigation_, &QListWidget::currentRowChanged, this, &MainWindow::open);
  connect(navigation_, &QListWidget::itemSelectionChanged, this, &MainWindow::followSelection);
  connect(new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this), &QShortcut::activated, this,
          &QWidget::close);
  setTexts();
}

void MainWindow::addPage(std::function<QString()> name, std::function<Page*()> make) {
  const int number = static_cast<int>(entries_.size());
  entries_.push_back({std::move(name), std::move(make)});
  new QListWidgetItem(navigation_);
  auto* const chooses =
      new QShortcut(QKeySequence(Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + number)), this);
  connect(chooses, &QShortcut::activated, this, [this, number] { choose(number); });
  setTexts();
  if (number == 0) {
    choose(0);
  }
}

void MainWindow::open(int page) {
  Entry& entry = entries_.at(static_cast<std::size_t>(page));
  if (entry.page == nullptr) {
    entry.page = entry.make();
    pages_->addWidget(entry.page);
  }
  pages_->setCurrentWidget(entry.page);
}

/// A screen reader selects a name without moving to it, or takes the selection away.
void MainWindow::followSelection() {
  QListWidgetItem* const current = navigation_->currentItem();
  for (QListWidgetItem* const item : navigation_->selectedItems()) {
    if (item != current) {
      navigation_->setCurrentItem(item);
      return;
    }
  }
  if (current != nullptr) {
    current->setSelected(true);
  }
}

void MainWindow::choose(int page) { navigation_->setCurrentRow(page); }

/// The column is as wide as the longest name.
void MainWindow::setTexts() {
  navigation_->setAccessibleName(tr("Pages"));
  int width = 140;
  for (int row = 0; row < navigation_->count(); ++row) {
    QListWidgetItem* const item = navigation_->item(row);
    item->setText(entries_[static_cast<std::size_t>(row)].name());
    const QFontMetrics metrics(navigation_->font());
    item->setSizeHint({0, metrics.height() + 18});
    width = std::max(width, metrics.horizontalAdvance(item->text()) + 64);
  }
  navigation_->setFixedWidth(width);
}

void MainWindow::raiseToFront() {
  setWindowState(windowState() & ~Qt::WindowMinimized);
  show();
  raise();
  activateWindow();
}

/// A number that was typed counts when its field loses the focus.
void MainWindow::closeEvent(QCloseEvent* event) {
  if (QWidget* const field = focusWidget()) {
    field->clearFocus();
  }
  if (mayClose_ && !mayClose_()) {
    event->ignore();
    return;
  }
  QMainWindow::closeEvent(event);
}

void MainWindow::closeUnasked() {
  mayClose_ = {};
  close();
}

void MainWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() == QEvent::LanguageChange) {
    setTexts();
  } else if (event->type() == QEvent::ActivationChange && isActiveWindow()) {
    Q_EMIT activated();
  }
}

}  // namespace tarnwell
