#include "App/Widgets/FittedText.h"

#include <QEvent>
#include <QScrollBar>
#include <cmath>

namespace tarnwell {

namespace {

/// A QPlainTextEdit keeps its margin free once above the text and twice below. Another one around it makes
/// all sides equal.
constexpr int margin = 4;

}  // namespace

FittedText::FittedText(QWidget* parent) : QPlainTextEdit(parent) {
  setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  setTabChangesFocus(true);
  setUndoRedoEnabled(false);
  document()->setDocumentMargin(margin);
  setViewportMargins(margin, margin, margin, 0);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void FittedText::fitHeight() {
  const bool isWide = horizontalScrollBar()->maximum() > 0;
  const QMargins frame = contentsMargins();
  setFixedHeight(static_cast<int>(std::ceil(linesHeight())) + 4 * margin + frame.top() + frame.bottom() +
                 (isWide ? horizontalScrollBar()->sizeHint().height() : 0));
}

void FittedText::resizeEvent(QResizeEvent* event) {
  QPlainTextEdit::resizeEvent(event);
  fitHeight();
}

void FittedText::showEvent(QShowEvent* event) {
  QPlainTextEdit::showEvent(event);
  fitHeight();
}

void FittedText::changeEvent(QEvent* event) {
  QPlainTextEdit::changeEvent(event);
  if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) {
    fitHeight();
  }
}

}  // namespace tarnwell
