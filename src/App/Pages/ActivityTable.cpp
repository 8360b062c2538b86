#include "App/Pages/ActivityTable.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>

#include "App/Pages/ActivityTexts.h"
#include "App/Widgets/Theme.h"

namespace tarnwell {
namespace {

/// Takes the colours when it paints, so a change of the scheme needs nothing.
class LevelColours : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

 protected:
  void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override {
    QStyledItemDelegate::initStyleOption(option, index);
    const auto level = static_cast<LogLevel>(index.data(ActivityModel::levelRole).toInt());
    if (level == LogLevel::error || level == LogLevel::debug) {
      const Tone tone = level == LogLevel::error ? Tone::error : Tone::faint;
      option->palette.setColor(QPalette::Text, toneColour(tone, option->palette));
    }
  }
};

constexpr int padding = 20;

}  // namespace

ActivityTable::ActivityTable(ActivityModel& activity, QWidget* parent)
    : QTableView(parent), activity_(activity) {
  setModel(&activity);
  setItemDelegate(new LevelColours(this));
  setSelectionBehavior(SelectRows);
  setSelectionMode(ExtendedSelection);
  setAlternatingRowColors(true);
  setShowGrid(false);
  setWordWrap(false);
  setTabKeyNavigation(false);
  setCornerButtonEnabled(false);
  setHorizontalScrollMode(ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setStretchLastSection(true);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  horizontalHeader()->setSectionsClickable(false);
  setMinimumHeight(120);

  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ActivityTable::takeScroll);
  connect(&activity_, &ActivityModel::grown, this, &ActivityTable::restorePlace);
  connect(&activity_, &QAbstractItemModel::modelReset, this, &ActivityTable::restorePlace);
}

void ActivityTable::setFollowing(bool isFollowing) {
  if (isFollowing != isFollowing_) {
    isFollowing_ = isFollowing;
    restorePlace();
    Q_EMIT followingChanged(isFollowing);
  }
}

void ActivityTable::restorePlace() {
  const QScopedValueRollback guard(isRestoring_, true);
  if (isFollowing_) {
    scrollToBottom();
  } else if (top_.isValid()) {
    scrollTo(top_, PositionAtTop);
  }
  fitTime();
  top_ = indexAt({0, 0});
}

/// A smaller value while the entries stay as they are is a person who scrolls up.
void ActivityTable::takeScroll(int value) {
  if (isRestoring_) {
    return;
  }
  top_ = indexAt({0, 0});
  const bool isAtEnd = value >= verticalScrollBar()->maximum();
  if (isAtEnd != isFollowing_) {
    isFollowing_ = isAtEnd;
    Q_EMIT followingChanged(isAtEnd);
  }
}

std::vector<int> ActivityTable::selectedRowNumbers() const {
  std::vector<int> rows;
  for (const QModelIndex& index : selectionModel()->selectedRows()) {
    rows.push_back(index.row());
  }
  std::sort(rows.begin(), rows.end());
  return rows;
}

void ActivityTable::fitColumns() {
  const ActivityTexts texts;
  using enum LogLevel;
  using AppLogger::Category;
  setColumnWidth(1, widthOf({texts.heading(ActivityColumn::level), texts.level(debug), texts.level(info),
                             texts.level(notice), texts.level(error)}));
  setColumnWidth(2, widthOf({texts.heading(ActivityColumn::subject), texts.subject(Category::app),
                             texts.subject(Category::mcp), texts.subject(Category::imap),
                             texts.subject(Category::security), texts.subject(Category::tool),
                             texts.subject(Category::http)}));
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + padding / 2);
  fitTime();
}

/// The day takes room only where there is an entry of another day. The first one is the oldest.
void ActivityTable::fitTime() {
  const ActivityTexts texts;
  const QString oldest =
      activity_.rowCount() > 0 ? texts.words(activity_.entry(0), ActivityColumn::time) : QString();
  setColumnWidth(0, widthOf({texts.heading(ActivityColumn::time), oldest, "00:00:00"}));
}

int ActivityTable::widthOf(std::initializer_list<QString> words) const {
  int width = 0;
  for (const QString& word : words) {
    width = std::max(width, fontMetrics().horizontalAdvance(word));
  }
  return width + padding;
}

void ActivityTable::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Copy)) {
    Q_EMIT copyWanted();
    event->accept();
  } else {
    QTableView::keyPressEvent(event);
  }
}

/// Otherwise the view makes its first row the current one and scrolls there.
void ActivityTable::focusInEvent(QFocusEvent* event) {
  if (!currentIndex().isValid() && activity_.rowCount() > 0) {
    const QModelIndex start =
        isFollowing_ || !top_.isValid() ? activity_.index(activity_.rowCount() - 1, 0) : QModelIndex(top_);
    selectionModel()->setCurrentIndex(start, QItemSelectionModel::NoUpdate);
  }
  QTableView::focusInEvent(event);
}

void ActivityTable::resizeEvent(QResizeEvent* event) {
  const QScopedValueRollback guard(isRestoring_, true);
  QTableView::resizeEvent(event);
  restorePlace();
}

void ActivityTable::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitColumns();
  }
}

}  // namespace tarnwell
