#include "App/Widgets/ReadingText.h"

#include <gtest/gtest.h>

#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>
#include <memory>
#include <ostream>

#include "App/Widgets/Theme.h"

namespace tarnwell::test {
namespace {

struct Row {
  const char* name;
  QString text;
  bool isScrolled;
};
void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

class ReadingTextOf : public testing::TestWithParam<Row> {};
INSTANTIATE_TEST_SUITE_P(
    Table, ReadingTextOf,
    testing::Values(Row{"nothing", {}, false}, Row{"oneLine", "Hello", false},
                    Row{"twelveLines", QString("Tea\n").repeated(11) + "Tea", false},
                    Row{"twentyLines", QString("Tea\n").repeated(20), true},
                    Row{"longWord", QString("x").repeated(100), false},
                    Row{"veryLongWord", QString("x").repeated(10'000), true},
                    Row{"longParagraph", QString("tea and cake ").repeated(400), true},
                    Row{"japanese", QString::fromUtf8("来週の打ち合わせについて\n").repeated(8), false}),
    [](const auto& instance) { return std::string(instance.param.name); });

TEST_P(ReadingTextOf, isAsHighAsItNeedsUpToTheBound) {
  for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
    applyTheme(*qApp, scheme);
    QWidget window;
    auto* const text = new ReadingText(14);
    auto* const rows = new QVBoxLayout(&window);
    rows->addWidget(text);
    rows->addStretch(1);
    window.resize(300, 600);
    window.show();
    text->setText(GetParam().text);
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents();
    EXPECT_EQ(text->verticalScrollBar()->maximum() > 0, GetParam().isScrolled);
    EXPECT_EQ(text->horizontalScrollBar()->maximum(), 0);
    EXPECT_LE(text->height(), 18 * text->fontMetrics().lineSpacing());
    EXPECT_GE(text->height(), text->fontMetrics().lineSpacing());
  }
}

TEST(ReadingText, forgetsWhatWasThereBefore) {
  ReadingText text(5);
  text.setText("secret");
  text.setText({});
  EXPECT_EQ(text.toPlainText(), "");
  EXPECT_FALSE(text.document()->isUndoAvailable());
  EXPECT_TRUE(text.isReadOnly());
}

/// News of the same message must not take the reader back to its beginning.
TEST(ReadingText, sameTextLeavesThePlaceAlone) {
  for (const QString& letters : {QStringLiteral("Tea\n"), QStringLiteral("100\u00a0km\n"),
                                 QStringLiteral("Tea\u2028cake\n"), QStringLiteral("Tea\r\n")}) {
    ReadingText text(5);
    text.setText(letters.repeated(50));
    text.moveCursor(QTextCursor::End);
    text.setText(letters.repeated(50));
    EXPECT_TRUE(text.textCursor().atEnd()) << letters.toStdString();
  }
}

}  // namespace
}  // namespace tarnwell::test
