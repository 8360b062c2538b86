#include "App/Widgets/DifferenceView.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <optional>

#include "App/Widgets/Theme.h"

namespace tarnwell::test {
namespace {

using Kind = DifferenceView::Line::Kind;

const std::vector<DifferenceView::Line> lines{{Kind::remark, "… 7 lines that stay …"},
                                              {Kind::same, "{"},
                                              {Kind::removed, "  \"command\": \"/old\""},
                                              {Kind::added, "  \"command\": \"/new\""},
                                              {Kind::same, "}"}};

class DifferenceViewTest : public testing::Test {
 protected:
  DifferenceViewTest() : layout(&window), view(new DifferenceView) {
    applyTheme(*qApp, Scheme::light);
    layout.addWidget(view);
    layout.addStretch(1);
    window.resize(500, 500);
    window.show();
    view->setLines(lines);
    QCoreApplication::processEvents();
  }

  /// Its own one. Absent when it has that of all.
  std::optional<QColor> groundOf(int line) const {
    for (const QTextEdit::ExtraSelection& selection : view->extraSelections()) {
      if (selection.cursor.blockNumber() == line) {
        return selection.format.background().color();
      }
    }
    return std::nullopt;
  }

  QWidget window;
  QVBoxLayout layout;
  DifferenceView* view;
};

/// WCAG 2.2.
double luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

TEST_F(DifferenceViewTest, signTellsTheLinesApartAsTheColourDoes) {
  EXPECT_EQ(view->toPlainText(),
            "  … 7 lines that stay …\n  {\n−   \"command\": \"/old\"\n+   \"command\": \"/new\"\n  }");
}

TEST_F(DifferenceViewTest, screenReaderReadsAllLines) {
  QAccessibleInterface* const heard = QAccessible::queryAccessibleInterface(view);
  EXPECT_EQ(heard->text(QAccessible::Value), view->toPlainText());
  EXPECT_TRUE(heard->state().readOnly);
}

TEST_F(DifferenceViewTest, linesHaveEnoughContrastInBothSchemes) {
  for (const Scheme scheme : {Scheme::light, Scheme::dark, Scheme::light}) {
    applyTheme(*qApp, scheme);
    QCoreApplication::processEvents();
    const QColor ground = paletteOf(scheme).color(QPalette::AlternateBase);
    std::vector<QColor> colours;
    for (QTextBlock line = view->document()->begin(); line.isValid(); line = line.next()) {
      const QColor letters = line.begin().fragment().charFormat().foreground().color();
      const QColor behind = groundOf(line.blockNumber()).value_or(ground);
      const auto [darker, lighter] = std::minmax({luminance(letters), luminance(behind)});
      EXPECT_GE((lighter + 0.05) / (darker + 0.05), 4.5) << line.text().toStdString();
      colours.push_back(letters);
    }
    EXPECT_EQ(colours[2], toneColour(Tone::error, paletteOf(scheme)));
    EXPECT_EQ(colours[3], toneColour(Tone::success, paletteOf(scheme)));
  }
}

/// The style sheet gives the letters to the widgets when it is applied again.
TEST_F(DifferenceViewTest, lettersGrowWithAllOthers) {
  const QFont before = QApplication::font();
  QFont larger = before;
  larger.setPointSizeF(2 * before.pointSizeF());
  const int height = view->height();
  const qreal tab = view->tabStopDistance();
  QApplication::setFont(larger);
  applyTheme(*qApp, Scheme::dark);
  EXPECT_EQ(view->font().pointSizeF(), larger.pointSizeF());
  EXPECT_GT(view->height(), height * 3 / 2);
  EXPECT_GT(view->tabStopDistance(), tab * 3 / 2);
  QApplication::setFont(before);
  applyTheme(*qApp, Scheme::light);
}

TEST_F(DifferenceViewTest, groundReachesFromEdgeToEdge) {
  const QImage picture = view->viewport()->grab().toImage();
  for (const int line : {2, 3}) {
    const int y = view->cursorRect(QTextCursor(view->document()->findBlockByNumber(line))).center().y();
    for (const int x : {view->viewport()->width() / 2, view->viewport()->width() - 6}) {
      EXPECT_EQ(picture.pixelColor(QPoint(x, y) * picture.devicePixelRatio()).name(), groundOf(line)->name())
          << x;
    }
  }
}

/// Else the colours would slip to other lines.
TEST_F(DifferenceViewTest, noLetterEndsALine) {
  for (const char16_t letter : {u'\n', u'\r', u'\v', u'\f', char16_t{0x2028}, char16_t{0x2029},
                                char16_t{0xFDD0}, char16_t{0xFDD1}, char16_t{0}}) {
    view->setLines({{Kind::same, QStringLiteral("a%1b").arg(QChar(letter))}, {Kind::added, "c"}});
    EXPECT_EQ(view->toPlainText(), "  a\uFFFDb\n+ c") << static_cast<int>(letter);
    EXPECT_EQ(view->document()->blockCount(), 2);
    EXPECT_TRUE(groundOf(1));
  }
}

TEST_F(DifferenceViewTest, sameLinesAndAnotherSchemeLeaveTheCursorAlone) {
  view->moveCursor(QTextCursor::End);
  view->setLines(lines);
  applyTheme(*qApp, Scheme::dark);
  QCoreApplication::processEvents();
  EXPECT_TRUE(view->textCursor().atEnd());
}

TEST_F(DifferenceViewTest, nothingIsScrolledThatHasRoom) {
  EXPECT_EQ(view->verticalScrollBar()->maximum(), 0);
  view->setLines(std::vector<DifferenceView::Line>(16, {Kind::added, "a"}));
  QCoreApplication::processEvents();
  EXPECT_EQ(view->verticalScrollBar()->maximum(), 0);
  view->setLines(std::vector<DifferenceView::Line>(17, {Kind::added, "a"}));
  QCoreApplication::processEvents();
  EXPECT_GT(view->verticalScrollBar()->maximum(), 0);
}

}  // namespace
}  // namespace tarnwell::test
