#include "App/Widgets/ReadingText.h"

#include <QTextBlock>
#include <algorithm>

namespace tarnwell {

ReadingText::ReadingText(int mostLines, QWidget* parent) : FittedText(parent), mostLines_(mostLines) {
  setObjectName("reading");
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void ReadingText::setText(const QString& text) {
  if (text != text_) {
    text_ = text;
    setPlainText(text);
  }
  fitHeight();
}

/// Lays out no more than what is seen: a text may be long. Lines differ in height where a letter comes from
/// another font.
qreal ReadingText::linesHeight() const {
  const qreal most = mostLines_ * fontMetrics().lineSpacing();
  qreal height = 0;
  for (QTextBlock block = document()->begin(); block.isValid() && height < most; block = block.next()) {
    blockBoundingRect(block);  // lays it out
    height += block.layout()->boundingRect().height();
  }
  return std::min(height, most);
}

}  // namespace tarnwell
