#include "App/Widgets/DifferenceView.h"

#include <QEvent>
#include <QStringList>
#include <QTextBlock>
#include <QTextCursor>
#include <utility>

#include "App/Widgets/Theme.h"

namespace tarnwell {

namespace {

using Kind = DifferenceView::Line::Kind;

QString signOf(Kind kind) {
  switch (kind) {
    case Kind::removed:
      return QStringLiteral("\u2212 ");  // a hyphen is not read aloud
    case Kind::added:
      return QStringLiteral("+ ");
    case Kind::same:
    case Kind::remark:
      break;
  }
  return QStringLiteral("  ");
}

Tone toneOf(Kind kind) {
  switch (kind) {
    case Kind::same:
      return Tone::text;
    case Kind::removed:
      return Tone::error;
    case Kind::added:
      return Tone::success;
    case Kind::remark:
      break;
  }
  return Tone::faint;
}

/// With a sign for each letter that would end the line here, though not in the file: separators, and the
/// codes that Qt keeps for frames.
QString onOneLine(QString text) {
  for (QChar& letter : text) {
    const char16_t code = letter.unicode();
    if (code == 0x2028 || code == 0x2029 || code == 0xFDD0 || code == 0xFDD1 ||
        (code < 0x20 && code != u'\t')) {
      letter = QChar::ReplacementCharacter;
    }
  }
  return text;
}

/// The ground with a little of the colour in it.
QColor tinted(const QColor& ground, const QColor& colour) {
  constexpr float share = 0.09F;
  const auto mix = [](float one, float other) { return one + (other - one) * share; };
  return QColor::fromRgbF(mix(ground.redF(), colour.redF()), mix(ground.greenF(), colour.greenF()),
                          mix(ground.blueF(), colour.blueF()));
}

}  // namespace

DifferenceView::DifferenceView(QWidget* parent) : CodeText(parent) { setMostLines(16); }

void DifferenceView::setLines(std::vector<Line> lines) {
  if (lines == lines_) {
    return;
  }
  lines_ = std::move(lines);
  QStringList text;
  for (const Line& line : lines_) {
    text += signOf(line.kind) + onOneLine(line.text);
  }
  setPlainText(text.join(QLatin1Char('\n')));
  colour();
}

/// The ground as a selection, because that reaches to the right edge, however short the line is.
void DifferenceView::colour() {
  const QPalette whole = QApplication::palette();
  QList<QTextEdit::ExtraSelection> grounds;
  QTextCursor cursor(document());
  cursor.beginEditBlock();
  for (const Line& line : lines_) {
    const QColor colour = toneColour(toneOf(line.kind), whole);
    QTextCharFormat letters;
    letters.setForeground(colour);
    if (line.kind == Kind::removed || line.kind == Kind::added) {
      QTextCharFormat ground;
      ground.setBackground(tinted(whole.color(QPalette::AlternateBase), colour));
      ground.setProperty(QTextFormat::FullWidthSelection, true);
      grounds.append({cursor, ground});
    }
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    cursor.setCharFormat(letters);
    cursor.movePosition(QTextCursor::NextBlock);
  }
  cursor.endEditBlock();
  setExtraSelections(grounds);
}

void DifferenceView::changeEvent(QEvent* event) {
  CodeText::changeEvent(event);
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange) {
    colour();
  }
}

}  // namespace tarnwell
