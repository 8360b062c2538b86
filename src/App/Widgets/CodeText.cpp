#include "App/Widgets/CodeText.h"

#include <QEvent>
#include <QFontDatabase>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

namespace tarnwell {

CodeText::CodeText(QWidget* parent) : FittedText(parent) {
  setObjectName("code");
  setLineWrapMode(QPlainTextEdit::NoWrap);
  // Only the family: the size is that of all other letters.
  QFont fixed;
  fixed.setFamilies(QFontDatabase::systemFont(QFontDatabase::FixedFont).families());
  setFont(fixed);
  placeTabStops();
  connect(this, &QPlainTextEdit::textChanged, this, &CodeText::fitHeight);
  connect(horizontalScrollBar(), &QScrollBar::rangeChanged, this, &CodeText::fitHeight);
  fitHeight();
}

void CodeText::setMostLines(int lines) {
  mostLines_ = lines;
  fitHeight();
}

void CodeText::mark(QMimeData& copied) const {
  if (isSecret_) {
    // The histories of clipboards look for it.
    copied.setData(QStringLiteral("x-kde-passwordManagerHint"), "secret");
  }
}

/// For the key that copies, for what is dragged, and for the selection that the middle button pastes.
QMimeData* CodeText::createMimeDataFromSelection() const {
  QMimeData* const copied = FittedText::createMimeDataFromSelection();
  mark(*copied);
  return copied;
}

void CodeText::placeTabStops() {
  setTabStopDistance(QFontMetricsF(font()).horizontalAdvance(QLatin1Char(' ')) * 4);
}

/// Lines differ in height where a letter comes from another font.
qreal CodeText::linesHeight() const {
  qreal height = 0;
  int count = 0;
  for (QTextBlock line = document()->begin(); line.isValid() && count < mostLines_; line = line.next()) {
    blockBoundingRect(line);  // lays it out
    height += line.layout()->boundingRect().height();
    ++count;
  }
  return height;
}

void CodeText::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) {
    placeTabStops();
  }
  FittedText::changeEvent(event);
}

}  // namespace tarnwell
