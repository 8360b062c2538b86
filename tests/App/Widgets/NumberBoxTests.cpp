#include "App/Widgets/NumberBox.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include "App/Widgets/ChoiceBox.h"

namespace tarnwell::test {
namespace {

void turnWheel(QWidget& over) {
  const QPointF place(5, 5);
  QWheelEvent event(place, over.mapToGlobal(place), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                    Qt::NoScrollPhase, false);
  QCoreApplication::sendEvent(&over, &event);
}

class NumberBoxTest : public testing::Test {
 protected:
  NumberBoxTest()
      : other(new QLineEdit(&window)), box(new NumberBox(1, 100, &window)), chosen(box, &NumberBox::chosen) {
    box->showNumber(20);
    window.show();
    QApplication::setActiveWindow(&window);
    box->setFocus();
  }

  void press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
  void type(const char* text) {
    box->selectAll();
    QTest::keyClicks(box, text);
  }
  QList<int> numbers() const {
    QList<int> all;
    for (const QList<QVariant>& call : chosen) {
      all.append(call.at(0).toInt());
    }
    return all;
  }

  QWidget window;
  QLineEdit* other;
  NumberBox* box;
  QSignalSpy chosen;
};

TEST_F(NumberBoxTest, shownNumberIsNoChoice) { EXPECT_EQ(numbers(), QList<int>()); }

TEST_F(NumberBoxTest, eachStepCountsAtOnce) {
  press(Qt::Key_Up);
  press(Qt::Key_Up);
  EXPECT_EQ(numbers(), QList<int>({21, 22}));
}

TEST_F(NumberBoxTest, typedNumberCountsOnceAfterEnter) {
  type("35");
  EXPECT_TRUE(box->isBeingTyped());
  EXPECT_EQ(numbers(), QList<int>());
  press(Qt::Key_Return);
  EXPECT_FALSE(box->isBeingTyped());
  EXPECT_EQ(numbers(), QList<int>({35}));
}

TEST_F(NumberBoxTest, typedNumberCountsWhenTheFocusLeaves) {
  type("35");
  other->setFocus();
  EXPECT_EQ(numbers(), QList<int>({35}));
}

TEST_F(NumberBoxTest, newsDoesNotOverwriteWhatIsTyped) {
  type("20");
  box->showNumber(30);
  EXPECT_EQ(box->cleanText(), "20");
  press(Qt::Key_Return);
  EXPECT_EQ(numbers(), QList<int>({20}));  // chosen, although it stood there before
  box->showNumber(30);
  EXPECT_EQ(box->value(), 30);
}

TEST_F(NumberBoxTest, wheelPassesItWithoutTheFocus) {
  other->setFocus();
  turnWheel(*box);
  EXPECT_EQ(box->value(), 20);
  EXPECT_FALSE(box->hasFocus());
  box->setFocus();
  turnWheel(*box);
  EXPECT_EQ(box->value(), 21);
}

TEST(ChoiceBox, wheelPassesItWithoutTheFocus) {
  QWidget window;
  auto* const other = new QLineEdit(&window);
  auto* const box = new ChoiceBox(&window);
  box->addItems({"English", "日本語"});
  box->setCurrentIndex(1);
  window.show();
  QApplication::setActiveWindow(&window);
  other->setFocus();
  turnWheel(*box);
  EXPECT_EQ(box->currentIndex(), 1);
  box->setFocus();
  turnWheel(*box);
  EXPECT_EQ(box->currentIndex(), 0);
}

}  // namespace
}  // namespace tarnwell::test
