/// What the building blocks do for keys and for screen readers.

#include <gtest/gtest.h>

#include <QAccessible>
#include <QLineEdit>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTest>
#include <memory>
#include <utility>

#include "App/Widgets/Card.h"
#include "App/Widgets/FormField.h"
#include "App/Widgets/Notice.h"
#include "App/Widgets/SettingRow.h"
#include "App/Widgets/StageRow.h"
#include "App/Widgets/Switch.h"

namespace tarnwell::test {
namespace {

QAccessibleInterface* accessible(QWidget* widget) { return QAccessible::queryAccessibleInterface(widget); }

std::string spokenName(QWidget* widget) { return accessible(widget)->text(QAccessible::Name).toStdString(); }

std::string spokenDescription(QWidget* widget) {
  return accessible(widget)->text(QAccessible::Description).toStdString();
}

TEST(FormField, labelIsTheNameWithoutItsMnemonic) {
  FormField field(new QLineEdit);
  field.setLabel("&E-mail address");
  EXPECT_EQ(spokenName(field.input()), "E-mail address");
  field.setLabel("メールアドレス(&E)");
  EXPECT_EQ(spokenName(field.input()), "メールアドレス");
}

TEST(FormField, mnemonicReachesTheField) {
  QWidget window;
  auto* const first = new QLineEdit(&window);
  auto* const field = new FormField(new QLineEdit, &window);
  field->setLabel("&Port");
  window.show();
  QApplication::setActiveWindow(&window);
  first->setFocus();
  QTest::keyClick(QApplication::focusWidget(), Qt::Key_P, Qt::AltModifier);
  EXPECT_EQ(QApplication::focusWidget(), field->input());
}

TEST(FormField, errorIsSpokenAndGoesAtOnceWhenCured) {
  FormField field(new QLineEdit);
  field.setLabel("&Port");
  field.setHint("Usually <b>993</b>.");
  EXPECT_EQ(spokenDescription(field.input()), "Usually 993.");
  field.setError("A port is a number.");
  EXPECT_EQ(spokenName(field.input()), "Port, invalid");
  EXPECT_EQ(spokenDescription(field.input()), "A port is a number. Usually 993.");
  field.setError({});
  EXPECT_EQ(spokenName(field.input()), "Port");
  EXPECT_EQ(spokenDescription(field.input()), "Usually 993.");
}

TEST(FormField, onlyAHintWithALinkTakesTheFocus) {
  QWidget window;
  FormField field(new QLineEdit, &window);
  QLabel* const hint = field.findChildren<QLabel*>().at(1);
  field.setHint("Nothing to open.");
  EXPECT_EQ(hint->focusPolicy(), Qt::NoFocus);
  field.setHint("<a href=\"https://example.org\">How</a>");
  EXPECT_EQ(hint->focusPolicy(), Qt::StrongFocus);
}

TEST(Switch, isACheckBoxToScreenReadersAndKeys) {
  Switch control;
  EXPECT_EQ(accessible(&control)->role(), QAccessible::CheckBox);
  EXPECT_FALSE(accessible(&control)->state().checked);
  const QSignalSpy toggled(&control, &QAbstractButton::toggled);
  control.show();
  QTest::keyClick(&control, Qt::Key_Space);
  EXPECT_TRUE(accessible(&control)->state().checked);
  EXPECT_EQ(toggled.count(), 1);
}

/// The picture tells on from off, and enabled from disabled, in both schemes.
TEST(Switch, everyStateLooksDifferent) {
  for (const Scheme scheme : {Scheme::light, Scheme::dark}) {
    applyTheme(*qApp, scheme);
    QList<QImage> pictures;
    for (const bool isOn : {false, true}) {
      for (const bool isEnabled : {false, true}) {
        Switch control;
        control.setChecked(isOn);
        control.setEnabled(isEnabled);
        control.resize(control.sizeHint());
        const QImage picture = control.grab().toImage();
        EXPECT_FALSE(pictures.contains(picture));
        pictures.append(picture);
      }
    }
  }
}

TEST(SettingRow, sentenceAndQuoteDescribeTheControl) {
  SettingRow row(new Switch);
  row.setTexts("Allow moving", "One message may be moved.", "Moving is off.");
  EXPECT_EQ(spokenName(row.control()), "Allow moving");
  EXPECT_EQ(spokenDescription(row.control()), "One message may be moved. Moving is off.");
  row.setTexts("Allow moving", "One message may be moved.");
  EXPECT_EQ(spokenDescription(row.control()), "One message may be moved.");
}

TEST(Notice, isHiddenUntilItTellsSomethingAndForgetsIt) {
  QWidget window;
  Notice notice(&window);
  window.show();
  EXPECT_FALSE(notice.isVisible());
  notice.tell(Notice::Kind::error, "The keyring is locked.", "status -25308");
  notice.setAction("&Unlock");
  EXPECT_TRUE(notice.isVisible());
  EXPECT_EQ(spokenName(&notice), "The keyring is locked.");
  EXPECT_TRUE(notice.action()->isVisible());
  notice.fallSilent();
  EXPECT_FALSE(notice.isVisible());
  EXPECT_EQ(notice.details(), "");
  EXPECT_FALSE(notice.action()->isVisible());
}

TEST(Notice, markTellsTheKindApartFromTheColour) {
  Notice notice;
  const std::pair<Notice::Kind, const char*> marks[] = {{Notice::Kind::information, "i"},
                                                        {Notice::Kind::success, "✓"},
                                                        {Notice::Kind::warning, "!"},
                                                        {Notice::Kind::error, "✕"}};
  for (const auto& [kind, mark] : marks) {
    notice.tell(kind, "The keyring is locked.");
    EXPECT_EQ(notice.findChild<QLabel*>()->text(), mark);
  }
}

TEST(Notice, detailsOpenByKey) {
  QWidget window;
  Notice notice(&window);
  window.show();
  notice.tell(Notice::Kind::error, "No answer.", "<b>timeout</b>");
  auto* const details = notice.findChild<QToolButton*>();
  QTest::keyClick(details, Qt::Key_Space);
  const QList<QLabel*> labels = notice.findChildren<QLabel*>();
  const auto shown = std::ranges::find_if(
      labels, [](const QLabel* label) { return label->text() == QLatin1String("<b>timeout</b>"); });
  ASSERT_NE(shown, labels.end());
  EXPECT_TRUE((*shown)->isVisible());
  EXPECT_EQ((*shown)->textFormat(), Qt::PlainText) << "words from elsewhere are no mark-up";
}

TEST(StageRow, saysEachStageWithItsState) {
  StageRow row;
  row.setStages({"Name found", "Sign in"});
  row.setState(0, StageRow::State::done);
  row.setState(1, StageRow::State::running);
  std::vector<std::string> spoken;
  for (QLabel* const label : row.findChildren<QLabel*>()) {
    if (!label->accessibleName().isEmpty()) {
      spoken.push_back(label->accessibleName().toStdString());
    }
  }
  EXPECT_EQ(spoken, (std::vector<std::string>{"Name found: done", "Sign in: under way"}));
  row.setStages({"名前", "サインイン"});
  EXPECT_EQ(row.state(0), StageRow::State::done);
}

TEST(Card, showsNoHeadingWhileItIsEmpty) {
  Card card;
  card.show();
  QLabel* const heading = card.findChild<QLabel*>();
  EXPECT_FALSE(heading->isVisible());
  card.setHeading("Reading");
  EXPECT_TRUE(heading->isVisible());
  EXPECT_EQ(spokenName(&card), "Reading");
}

}  // namespace
}  // namespace tarnwell::test
