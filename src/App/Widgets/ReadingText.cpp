#include "App/Widgets/ReadingText.h"

#include <QEvent>
#include <QTextBlock>
#include <algorithm>
#include <cmath>

namespace tarnwell {

namespace {

/// A QPlainTextEdit keeps its margin free once above the text and twice below. Another one around it makes
/// all sides equal.
constexpr int margin = 4;

}  // namespace

ReadingText::ReadingText(int mostLines, QWidget* parent) : QPlainTextEdit(parent), mostLines_(mostLines) {
  setObjectName("reading");
  setReadOnly(true);
  setUndoRedoEnabled(false);
  setTabChangesFocus(true);
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  document()->setDocumentMargin(margin);
  setViewportMargins(margin, margin, margin, 0);
}

void ReadingText::setText(const QString& text) {
  if (text != toPlainText()) {
    setPlainText(text);
  }
  fitHeight();
}

/// Lays out no more than what is seen: a text may be long. Lines differ in height where a letter comes from
/// another font.
void ReadingText::fitHeight() {
  const qreal most = mostLines_ * fontMetrics().lineSpacing();
  qreal height = 0;
  for (QTextBlock block = document()->begin(); block.isValid() && height < most; block = block.next()) {
    blockBoundingRect(block);  // lays it out
    height += block.layout()->boundingRect().height();
  }
  const QMargins frame = contentsMargins();
  setFixedHeight(static_cast<int>(std::ceil(std::min(height, most))) + 4 * margin + frame.top() +
                 frame.bottom());
}

void ReadingText::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  fitHeight();
}

void ReadingText::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitHeight();
  }
}

}  // namespace tarnwell
