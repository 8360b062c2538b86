#include "App/MainWindow.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

namespace tarnwell::test {
namespace {

class TitledPage : public Page {
 public:
  explicit TitledPage(const QString& title) : field(new QLineEdit) {
    setHeading(title, {});
    body()->addWidget(field);
  }
  void setTexts() override {}

  QLineEdit* field;
};

class MainWindowTest : public testing::Test {
 protected:
  MainWindowTest() {
    window.addPage([] { return "Account"; }, [this] { return account = new TitledPage("Account"); });
    window.addPage([] { return "Activity"; }, [this] { return activity = new TitledPage("Activity"); });
    window.show();
    QApplication::setActiveWindow(&window);
  }

  MainWindow window;
  TitledPage* account = nullptr;  // until it is shown
  TitledPage* activity = nullptr;
};

TEST_F(MainWindowTest, opensOnTheFirstPage) {
  EXPECT_EQ(window.chosen(), 0);
  EXPECT_TRUE(account->isVisible());
  EXPECT_EQ(activity, nullptr) << "it is made when it is shown";
  EXPECT_EQ(window.windowTitle(), "Tarnwell");
}

TEST_F(MainWindowTest, keysChooseAPage) {
  QTest::keyClick(&window, Qt::Key_2, Qt::ControlModifier);
  EXPECT_TRUE(activity->isVisible());
  QTest::keyClick(&window, Qt::Key_1, Qt::ControlModifier);
  EXPECT_TRUE(account->isVisible());
  auto* const names = window.findChild<QListWidget*>();
  names->setFocus();
  QTest::keyClick(names, Qt::Key_Down);
  EXPECT_TRUE(activity->isVisible());
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  EXPECT_EQ(QApplication::focusWidget(), activity->field);
}

TEST_F(MainWindowTest, quitKeyClosesIt) {
  QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
  EXPECT_FALSE(window.isVisible());
}

TEST_F(MainWindowTest, screenReadersHearAWindowAndTheNamesOfThePages) {
  QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&window);
  EXPECT_EQ(accessible->role(), QAccessible::Window);
  auto* const names = window.findChild<QListWidget*>();
  EXPECT_EQ(names->accessibleName(), "Pages");
  EXPECT_EQ(names->item(1)->text(), "Activity");
}

TEST_F(MainWindowTest, longNamesAreNotCutOff) {
  window.addPage([] { return QString("安全設定（Safety settings）とその他のいろいろな設定"); },
                 [] { return new TitledPage("安全設定"); });
  auto* const names = window.findChild<QListWidget*>();
  const QRect last = names->visualItemRect(names->item(2));
  const int text = QFontMetrics(names->font()).horizontalAdvance(names->item(2)->text());
  EXPECT_GE(last.width(), text + 24) << "12 pixels at each side, as the style sheet says";
  EXPECT_GE(names->viewport()->width(), last.right());
}

TEST_F(MainWindowTest, namesFollowTheLanguage) {
  QString name = "Name";
  window.addPage([&name] { return name; }, [] { return new TitledPage("Name"); });
  auto* const names = window.findChild<QListWidget*>();
  EXPECT_EQ(names->item(2)->text(), "Name");
  name = "名前";
  QEvent changed(QEvent::LanguageChange);
  QCoreApplication::sendEvent(&window, &changed);
  EXPECT_EQ(names->item(2)->text(), "名前");
}

}  // namespace
}  // namespace tarnwell::test
