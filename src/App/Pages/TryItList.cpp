#include "App/Pages/TryItList.h"

#include <QAbstractListModel>
#include <QStyledItemDelegate>

#include "App/Pages/TryItTexts.h"
#include "App/Widgets/Marks.h"

namespace tarnwell {

/// The messages by their places. Holds no text of its own.
class TryItList::Rows : public QAbstractListModel {
 public:
  Rows(const TryItModel& tryIt, QObject* parent) : QAbstractListModel(parent), tryIt_(tryIt) {}

  int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count_; }
  QVariant data(const QModelIndex& index, int role) const override {
    return role == Qt::DisplayRole || role == Qt::AccessibleTextRole
               ? TryItTexts::spoken(message(index.row()), QDateTime::currentDateTime())
               : QVariant();
  }
  const TriedMessage& message(int row) const { return tryIt_.messages().at(static_cast<std::size_t>(row)); }

  void take() {
    beginResetModel();
    count_ = static_cast<int>(tryIt_.messages().size());
    endResetModel();
  }
  void retranslate() {
    if (count_ > 0) {
      Q_EMIT dataChanged(index(0), index(count_ - 1));
    }
  }

 private:
  const TryItModel& tryIt_;
  int count_ = 0;  // as far as the view knows
};

namespace {

constexpr int margin = 14;
constexpr int gap = 4;
constexpr int markColumn = 18;

/// Qt lays a text out before it cuts it, and a subject may be of any length.
QString beginning(const QString& text) { return text.left(400); }

/// Takes the colours when it paints, so a change of the scheme needs nothing.
class MessagePainter : public QStyledItemDelegate {
 public:
  using MessageOf = std::function<const TriedMessage&(int row)>;
  MessagePainter(MessageOf messageOf, QObject* parent)
      : QStyledItemDelegate(parent), messageOf_(std::move(messageOf)) {}

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const override {
    return {0, 3 * option.fontMetrics.lineSpacing() + 2 * gap + 2 * margin - 6};
  }

  void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
    const TriedMessage& message = messageOf_(index.row());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    paintGround(*painter, option, index.row() > 0);

    const int height = option.fontMetrics.lineSpacing();
    QRect line = option.rect.adjusted(margin + markColumn, margin - 3, -margin, 0);
    line.setHeight(height);
    if (message.isUnread) {
      paintMark(*painter, QRectF(line.left() - markColumn - 3, line.top() + (height - 16) / 2.0, 16, 16),
                Mark::unread, toneColour(Tone::accent, option.palette));
    }
    paintFirstLine(*painter, option, line, message);
    line.translate(0, height + gap);
    write(*painter, option, line, TryItTexts::subject(message), Tone::text, message.isUnread);
    line.translate(0, height + gap);
    if (message.isWithheld) {
      paintMark(*painter, QRectF(line.left() - 1, line.top() + (height - 16) / 2.0, 16, 16), Mark::shield,
                toneColour(Tone::warning, option.palette));
      line.setLeft(line.left() + 21);
    }
    write(*painter, option, line, TryItTexts::preview(message),
          message.isWithheld ? Tone::warning : Tone::faint, false);
    painter->restore();
  }

 private:
  static void paintGround(QPainter& painter, const QStyleOptionViewItem& option, bool hasRowAbove) {
    const QRectF row = QRectF(option.rect).adjusted(5, 2, -5, -2);
    if (hasRowAbove) {
      painter.setPen(QPen(option.palette.color(QPalette::AlternateBase), 1));
      painter.drawLine(QPointF(row.left() + margin, option.rect.top() + 0.5),
                       QPointF(row.right() - margin, option.rect.top() + 0.5));
    }
    const bool isSelected = option.state.testFlag(QStyle::State_Selected);
    if (isSelected || option.state.testFlag(QStyle::State_MouseOver)) {
      painter.setPen(Qt::NoPen);
      painter.setBrush(option.palette.color(QPalette::AlternateBase));
      painter.drawRoundedRect(row, 7, 7);
    }
    if (isSelected) {  // by its shape too, and not by the colour alone
      painter.setBrush(toneColour(Tone::accent, option.palette));
      painter.drawRoundedRect(QRectF(row.left(), row.top() + 8, 3, row.height() - 16), 1.5, 1.5);
    }
    if (option.state.testFlag(QStyle::State_HasFocus)) {
      painter.setPen(QPen(toneColour(Tone::accent, option.palette), 1.5));
      painter.setBrush(Qt::NoBrush);
      painter.drawRoundedRect(row, 7, 7);
    }
  }

  /// The sender, and at the end of the line the date, with a clip before it.
  static void paintFirstLine(QPainter& painter, const QStyleOptionViewItem& option, QRect line,
                             const TriedMessage& message) {
    const QString date = beginning(TryItTexts::shortDate(message.date, QDateTime::currentDateTime()));
    const int dateWidth = std::min(option.fontMetrics.horizontalAdvance(date), line.width() / 3);
    QRect right = line;
    right.setLeft(line.right() - dateWidth);
    write(painter, option, right, date, Tone::faint, false);
    line.setRight(right.left() - 10);
    if (message.hasAttachments) {
      line.setRight(line.right() - 20);
      paintMark(painter, QRectF(line.right() + 5, line.top() + (line.height() - 15) / 2.0, 15, 15),
                Mark::attachment, toneColour(Tone::faint, option.palette));
    }
    write(painter, option, line, TryItTexts::sender(message), Tone::faint, false);
  }

  static void write(QPainter& painter, const QStyleOptionViewItem& option, const QRect& line,
                    const QString& text, Tone tone, bool isBold) {
    QFont font = option.font;
    font.setBold(isBold);
    painter.setFont(font);
    painter.setPen(toneColour(tone, option.palette));
    const QString fitting = QFontMetrics(font).elidedText(beginning(text), Qt::ElideRight, line.width());
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, fitting);
  }

  MessageOf messageOf_;
};

}  // namespace

TryItList::TryItList(const TryItModel& tryIt, QWidget* parent)
    : QListView(parent), rows_(new Rows(tryIt, this)) {
  setObjectName("messages");
  setModel(rows_);
  setItemDelegate(
      new MessagePainter([this](int row) -> const TriedMessage& { return rows_->message(row); }, this));
  setUniformItemSizes(true);
  setMouseTracking(true);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(ScrollPerPixel);
  setMinimumSize(200, 120);
}

void TryItList::showMessages() { rows_->take(); }

void TryItList::retranslate() { rows_->retranslate(); }

void TryItList::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QListView::currentChanged(current, previous);
  Q_EMIT currentMoved(current.row());
}

/// The first row is the current one then, as a person sees it.
void TryItList::focusInEvent(QFocusEvent* event) {
  QListView::focusInEvent(event);
  if (!currentIndex().isValid() && rows_->rowCount() > 0) {
    setCurrentIndex(rows_->index(0));
  }
}

}  // namespace tarnwell
