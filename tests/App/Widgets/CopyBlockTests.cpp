#include "App/Widgets/CopyBlock.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QScrollBar>
#include <QTest>
#include <QVBoxLayout>

#include "App/Widgets/Theme.h"

namespace tarnwell::test {
namespace {

class CopyBlockTest : public testing::Test {
 protected:
  CopyBlockTest() : layout(&window), block(new CopyBlock) {
    applyTheme(*qApp, Scheme::light);
    layout.addWidget(block);
    layout.addStretch(1);
    window.resize(500, 500);
    window.show();
    QApplication::setActiveWindow(&window);
    block->setAccessibleLabel("Settings of Codex");
  }

  static QString lines(int count) {
    QStringList all;
    for (int number = 1; number <= count; ++number) {
      all += QStringLiteral("line %1").arg(number);
    }
    return all.join('\n');
  }
  void settle() const {
    for (int round = 0; round < 3; ++round) {
      QCoreApplication::processEvents();
    }
  }
  QScrollBar* upright() const { return block->code()->verticalScrollBar(); }

  QWidget window;
  QVBoxLayout layout;
  CopyBlock* block;
};

TEST_F(CopyBlockTest, secretTextIsMadeOnlyForTheCopy) {
  int made = 0;
  block->setSecretText("token: ***", [&made] { return QStringLiteral("token: %1").arg(++made); });
  EXPECT_EQ(block->text(), "token: ***");
  EXPECT_EQ(block->code()->toPlainText(), "token: ***");
  EXPECT_EQ(made, 0);
  QTest::mouseClick(block->copyButton(), Qt::LeftButton);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "token: 1");
  EXPECT_EQ(block->code()->toPlainText(), "token: ***");
  block->setText("token: ***");
  QTest::mouseClick(block->copyButton(), Qt::LeftButton);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "token: ***") << "a text of its own again";
}

/// Plasma's clipboard and others keep no text that is marked so.
TEST_F(CopyBlockTest, onlySecretTextsAreMarkedForTheHistoriesOfClipboards) {
  const auto hint = [this] {
    QTest::mouseClick(block->copyButton(), Qt::LeftButton);
    return QGuiApplication::clipboard()->mimeData()->data("x-kde-passwordManagerHint");
  };
  block->setSecretText("***", [] { return QStringLiteral("token"); });
  EXPECT_EQ(hint(), "secret");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "token");
  block->setText("***", [] { return QStringLiteral("no token"); });
  EXPECT_EQ(hint(), "");
  EXPECT_EQ(QGuiApplication::clipboard()->text(), "no token");
  block->setSecretText("***", [] { return QStringLiteral("token"); });
  block->setText("***");
  EXPECT_EQ(hint(), "");
}

TEST_F(CopyBlockTest, selectedSecretIsMarkedToo) {
  const auto hintOfTheSelection = [this] {
    block->code()->setFocus();
    QTest::keyClick(block->code(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(block->code(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), "token");
    return QGuiApplication::clipboard()->mimeData()->data("x-kde-passwordManagerHint");
  };
  block->setSecretText("token", [] { return QStringLiteral("token"); });
  EXPECT_EQ(hintOfTheSelection(), "secret");
  block->setText("token");
  EXPECT_EQ(hintOfTheSelection(), "");
}

TEST_F(CopyBlockTest, keyCopiesTheWholeTextByteForByte) {
  const QString text = "[mcp_servers.tarnwell]\r\ncommand = \"/opt/t arn\u3042well\"\n";
  block->setText(text);
  block->copyButton()->setFocus();
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    QGuiApplication::clipboard()->clear();
    QTest::keyClick(QApplication::focusWidget(), key);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), text);
  }
}

TEST_F(CopyBlockTest, buttonSaysForAMomentThatItCopied) {
  block->setText("a");
  const int width = block->copyButton()->width();
  QTest::keyClick(block->copyButton(), Qt::Key_Space);
  EXPECT_EQ(block->copyButton()->text(), "Copied");
  EXPECT_EQ(block->copyButton()->accessibleName(), "Copied: Settings of Codex");
  settle();
  EXPECT_EQ(block->copyButton()->width(), width) << "nothing moves";
  EXPECT_TRUE(QTest::qWaitFor([&] { return block->copyButton()->text() == QLatin1String("Copy"); }, 10'000));
}

TEST_F(CopyBlockTest, anotherTextIsNotCopiedYet) {
  block->setText("a");
  QTest::keyClick(block->copyButton(), Qt::Key_Space);
  block->setText("b");
  EXPECT_EQ(block->copyButton()->accessibleName(), "Copy: Settings of Codex");
}

TEST_F(CopyBlockTest, fewLinesNeedNoScrolling) {
  for (const int count : {1, 2, 12}) {
    block->setText(lines(count));
    settle();
    EXPECT_EQ(upright()->maximum(), 0) << count;
  }
}

TEST_F(CopyBlockTest, widthTakesNothingFromTheLines) {
  block->setText(lines(2) + QString(500, 'x'));
  settle();
  EXPECT_GT(block->code()->horizontalScrollBar()->maximum(), 0);
  EXPECT_EQ(upright()->maximum(), 0);
}

TEST_F(CopyBlockTest, heightIsBounded) {
  block->setText(lines(12));
  settle();
  const int height = block->height();
  block->setText(lines(1000));
  settle();
  EXPECT_EQ(block->height(), height);
  EXPECT_GT(upright()->maximum(), 0);
}

TEST_F(CopyBlockTest, keysScrollAndSelectButChangeNothing) {
  block->setText(lines(1000));
  block->code()->setFocus();
  const auto press = [](Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), key, modifiers);
  };
  press(Qt::Key_End, Qt::ControlModifier);
  EXPECT_GT(upright()->value(), 0);
  EXPECT_TRUE(block->code()->viewport()->rect().contains(block->code()->cursorRect()));
  QTest::keyClicks(QApplication::focusWidget(), "x");
  press(Qt::Key_Delete);
  press(Qt::Key_Backspace);
  EXPECT_EQ(block->code()->toPlainText(), lines(1000));
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), lines(1000));
  press(Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), block->copyButton());
}

TEST_F(CopyBlockTest, sameTextLeavesTheCursorAlone) {
  block->setText(lines(3));
  block->code()->moveCursor(QTextCursor::End);
  block->setText(lines(3));
  EXPECT_TRUE(block->code()->textCursor().atEnd());
}

TEST_F(CopyBlockTest, focusMovesNoLine) {
  block->setText(lines(3));
  settle();
  const QSize before = block->code()->viewport()->size();
  block->code()->setFocus();
  settle();
  EXPECT_EQ(block->code()->viewport()->size(), before);
}

}  // namespace
}  // namespace tarnwell::test
