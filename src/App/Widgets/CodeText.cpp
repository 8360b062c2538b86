#include "App/Widgets/CodeText.h"

#include <QAbstractTextDocumentLayout>
#include <QEvent>
#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>
#include <algorithm>
#include <cmath>

namespace tarnwell {

namespace {

/// A QPlainTextEdit keeps its margin free once above the text and twice below. Another one around it makes
/// all sides equal.
constexpr int margin = 4;

}  // namespace

CodeText::CodeText(QWidget* parent) : QPlainTextEdit(parent) {
  setObjectName("code");
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  fixed.setPointSizeF(font().pointSizeF());
  setFont(fixed);
  setLineWrapMode(QPlainTextEdit::NoWrap);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setTabStopDistance(QFontMetricsF(fixed).horizontalAdvance(QLatin1Char(' ')) * 4);
  setUndoRedoEnabled(false);
  document()->setDocumentMargin(margin);
  setViewportMargins(margin, margin, margin, 0);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(this, &QPlainTextEdit::textChanged, this, &CodeText::fitHeight);
  connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this, &CodeText::fitHeight);
  fitHeight();
}

void CodeText::setMostLines(int lines) {
  mostLines_ = lines;
  fitHeight();
}

/// Lines differ in height where a letter comes from another font.
void CodeText::fitHeight() {
  qreal lines = 0;
  int count = 0;
  for (QTextBlock line = document()->begin(); line.isValid() && count < mostLines_; line = line.next()) {
    document()->documentLayout()->blockBoundingRect(line);  // lays it out
    lines += line.layout()->boundingRect().height();
    ++count;
  }
  const bool isWide = horizontalScrollBar()->maximum() > 0;
  const QMargins frame = contentsMargins();
  setFixedHeight(static_cast<int>(std::ceil(lines)) + 4 * margin + frame.top() + frame.bottom() +
                 (isWide ? horizontalScrollBar()->sizeHint().height() : 0));
}

void CodeText::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  fitHeight();
}

void CodeText::showEvent(QShowEvent* event) {
  QPlainTextEdit::showEvent(event);
  fitHeight();
}

void CodeText::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitHeight();
  }
}

}  // namespace tarnwell
