#include "App/Pages/SafetyPage.h"

#include <ostream>

#include "App/Pages/SafetyPageFixture.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using SafetyTexts::label;

INSTANTIATE_TEST_SUITE_P(Table, SafetyPageIn, testing::ValuesIn(AppLanguages::allCases), languageName);

TEST_P(SafetyPageIn, tabVisitsEverySettingFromTheTopDown) {
  begin();
  const QStringList stops = tabStops(*page_);
  QStringList expected{label(SafetySwitch::readOnly), label(SafetySwitch::blockAuthCodeBodies),
                       label(SafetySwitch::strictWithholding)};
  for (const SafetyLimit limit : SafetyItems::limits) {
    expected.append(label(limit));
  }
  expected += {label(SafetySwitch::allowMarkRead), label(SafetySwitch::allowMove),
               label(SafetySwitch::allowTrash), label(SafetySwitch::allowCopyMoveFallback)};
  EXPECT_EQ(stops.mid(0, expected.size()), expected);
  EXPECT_EQ(stops.size(), expected.size() + 1);  // and the button
}

/// The switches that ask nothing.
TEST_P(SafetyPageIn, spaceTurnsASwitchAndSavesIt) {
  begin();
  for (const SafetySwitch item :
       {SafetySwitch::strictWithholding, SafetySwitch::allowMarkRead, SafetySwitch::allowMove,
        SafetySwitch::allowTrash, SafetySwitch::allowCopyMoveFallback}) {
    ASSERT_TRUE(tabTo(label(item)));
    const bool before = isOn();
    press(Qt::Key_Space);
    EXPECT_EQ(isOn(), !before);
    EXPECT_EQ(safety_->isOn(item), !before);
  }
  EXPECT_TRUE(questions_.asked.empty());
  AppConfig expected;
  expected.strictWithholding = true;
  expected.safety = {
      .allowTrash = true, .allowMove = false, .allowMarkRead = false, .allowCopyMoveFallback = true};
  EXPECT_TRUE(saved() == expected);
}

TEST_P(SafetyPageIn, readOnlyStaysUntilTheAnswer) {
  begin([](AppConfig& config) { config.safety.allowTrash = true; });
  ASSERT_TRUE(tabTo(label(SafetySwitch::readOnly)));
  press(Qt::Key_Space);
  ASSERT_EQ(questions_.asked.size(), 1U);
  EXPECT_TRUE(questions_.asked.back().isDangerous);
  EXPECT_TRUE(isOn());
  questions_.answer(false);
  EXPECT_TRUE(isOn());
  EXPECT_TRUE(saved().safety.readOnly);

  press(Qt::Key_Space);
  questions_.answer(true);
  EXPECT_FALSE(isOn());
  EXPECT_FALSE(saved().safety.readOnly);

  press(Qt::Key_Space);  // back without a question
  EXPECT_TRUE(isOn());
  EXPECT_TRUE(saved().safety.readOnly);
  EXPECT_EQ(questions_.asked.size(), 2U);
}

TEST_F(SafetyPageTest, questionSaysWhatBecomesPossible) {
  begin([](AppConfig& config) { config.safety.allowTrash = config.safety.allowCopyMoveFallback = true; });
  ASSERT_TRUE(tabTo("Read-only mode"));
  press(Qt::Key_Space);
  EXPECT_EQ(
      questions_.asked.back().text,
      "This becomes possible for an assistant: It may mark messages as read and move them to other folders "
      "and to the trash. Where the server cannot move, it may leave originals behind that are marked as "
      "deleted.");
}

TEST_F(SafetyPageTest, questionSaysWhenNothingBecomesPossible) {
  begin([](AppConfig& config) { config.safety.allowMove = config.safety.allowMarkRead = false; });
  ASSERT_TRUE(tabTo("Read-only mode"));
  press(Qt::Key_Space);
  EXPECT_EQ(questions_.asked.back().text,
            "Nothing becomes possible by that alone, because every change is switched off.");
}

TEST_P(SafetyPageIn, withholdingAsksBeforeItEnds) {
  begin([](AppConfig& config) { config.strictWithholding = true; });
  for (const SafetySwitch item : {SafetySwitch::strictWithholding, SafetySwitch::blockAuthCodeBodies}) {
    ASSERT_TRUE(tabTo(label(item)));
    press(Qt::Key_Space);
    EXPECT_TRUE(isOn());
    questions_.answer(false);
    EXPECT_TRUE(isOn());
    press(Qt::Key_Space);
    questions_.answer(true);
    EXPECT_FALSE(isOn());
    page_->setFocus();
  }
  EXPECT_EQ(questions_.asked.size(), 4U);
  EXPECT_FALSE(saved().strictWithholding);
  EXPECT_FALSE(saved().safety.blockAuthCodeBodies);
}

TEST_P(SafetyPageIn, numberCountsWhenItIsComplete) {
  begin();
  ASSERT_TRUE(tabTo(label(SafetyLimit::maxMessagesPerCall)));
  press(Qt::Key_A, Qt::ControlModifier);
  type("12");
  EXPECT_EQ(safety_->value(SafetyLimit::maxMessagesPerCall), 20);
  press(Qt::Key_Return);
  EXPECT_EQ(saved().safety.maxMessagesPerCall, 12);
  press(Qt::Key_A, Qt::ControlModifier);
  type("7");
  press(Qt::Key_Tab);
  EXPECT_EQ(saved().safety.maxMessagesPerCall, 7);
  EXPECT_EQ(focused().accessibleName(), label(SafetyLimit::maxFetch));
  press(Qt::Key_Up);
  EXPECT_EQ(saved().safety.maxFetch, 51);
}

TEST_F(SafetyPageTest, safeValuesComeAfterANumberThatIsStillTyped) {
  begin([](AppConfig& config) { config.safety.allowTrash = true; });
  ASSERT_TRUE(tabTo(label(SafetyLimit::maxMessagesPerCall)));
  press(Qt::Key_A, Qt::ControlModifier);
  type("7");
  press(Qt::Key_B, Qt::AltModifier);
  ASSERT_TRUE(eventually([this] { return safety_->isAtSafeValues(); }));
  press(Qt::Key_Tab);
  EXPECT_TRUE(saved().safety == SafetySettings());
}

TEST_P(SafetyPageIn, numberKeepsToTheBoundsOfTheHelper) {
  begin();
  for (const SafetyLimit limit : SafetyItems::limits) {
    ASSERT_TRUE(tabTo(label(limit)));
    for (int step = 0; step < 101; ++step) {
      press(Qt::Key_PageUp);
    }
    EXPECT_EQ(number(), SafetyModel::bounds(limit).most);
    for (int step = 0; step < 101; ++step) {
      press(Qt::Key_PageDown);
    }
    EXPECT_EQ(number(), SafetyModel::bounds(limit).least);
  }
  EXPECT_EQ(saved().safety.maxBodyChars, 1);
}

struct Words {
  const char* name;
  SafetySettings safety;
  bool isStrict;
  const char* english;
  const char* japanese;
};

void PrintTo(const Words& words, std::ostream* stream) { *stream << words.name; }

const Words summaries[] = {
    {"defaults",
     {},
     true,
     "An assistant may read at most 20 messages a call. It may change nothing.",
     "アシスタントが 1 回の呼び出しで読めるメールは最大 20 通です。変更は一切できません。"},
    {"oneMessage",
     {.maxFetch = 1},
     true,
     "An assistant may read at most 1 message a call. It may change nothing.",
     "アシスタントが 1 回の呼び出しで読めるメールは最大 1 通です。変更は一切できません。"},
    {"marking",
     {.readOnly = false, .allowMove = false},
     true,
     "a call. It may mark messages as read and change nothing else.",
     "です。メールを既読にできますが、ほかの変更はできません。"},
    {"moving",
     {.readOnly = false, .allowMarkRead = false},
     true,
     "It may move messages to other folders and change nothing else.",
     "メールを別のフォルダーに移動できますが、ほかの変更はできません。"},
    {"trashing",
     {.readOnly = false, .allowTrash = true, .allowMove = false, .allowMarkRead = false},
     true,
     "It may move messages to the trash and change nothing else.",
     "メールをゴミ箱に移動できますが、ほかの変更はできません。"},
    {"markingAndMoving",
     {.readOnly = false},
     true,
     "It may mark messages as read and move them to other folders.",
     "メールを既読にし、別のフォルダーに移動できます。"},
    {"markingAndTrashing",
     {.readOnly = false, .allowTrash = true, .allowMove = false},
     true,
     "It may mark messages as read and move them to the trash.",
     "メールを既読にし、ゴミ箱に移動できます。"},
    {"movingAndTrashing",
     {.readOnly = false, .allowTrash = true, .allowMarkRead = false},
     true,
     "It may move messages to other folders and to the trash.",
     "メールを別のフォルダーやゴミ箱に移動できます。"},
    {"everything",
     {.readOnly = false, .allowTrash = true},
     true,
     "It may mark messages as read and move them to other folders and to the trash.",
     "メールを既読にし、別のフォルダーやゴミ箱に移動できます。"},
    {"fallback",
     {.readOnly = false, .allowCopyMoveFallback = true},
     true,
     "it may leave originals behind that are marked as deleted.",
     "削除の印の付いた元のメールが残ることがあります。"},
    {"text", {}, true, "It gets at most 4,000 characters of a text.", "渡される本文は最大 4,000 文字です。"},
    {"oneCharacter",
     {.maxBodyChars = 1},
     true,
     "It gets at most 1 character of a text.",
     "渡される本文は最大 1 文字です。"},
    {"strict",
     {},
     true,
     "Mail with one-time codes and account links is withheld, as far as it is recognised.",
     "判別できる限り渡されません。"},
    {"byKeywords",
     {},
     false,
     "Mail that names a one-time code or a password reset is withheld.",
     "パスワード再設定と書かれたメールは渡されません。"},
    {"nothingWithheld",
     {.blockAuthCodeBodies = false},
     true,
     "One-time codes and account links are handed out like any other mail.",
     "ほかのメールと同じように渡されます。"},
};

class SafetyPageSummary : public SafetyPageTest, public testing::WithParamInterface<Words> {};
INSTANTIATE_TEST_SUITE_P(Table, SafetyPageSummary, testing::ValuesIn(summaries), rowName);

TEST_P(SafetyPageSummary, standsAtTheTopInBothLanguages) {
  begin([](AppConfig& config) {
    config.safety = GetParam().safety;
    config.strictWithholding = GetParam().isStrict;
  });
  EXPECT_TRUE(shown(*page_).contains(GetParam().english)) << shown(*page_).toStdString();
  language_.choose(AppLanguage::japanese);
  QCoreApplication::sendPostedEvents();
  EXPECT_TRUE(shown(*page_).contains(GetParam().japanese)) << shown(*page_).toStdString();
}

TEST_P(SafetyPageIn, keyGoesBackToTheSafeValues) {
  begin([](AppConfig& config) {
    config.safety = {.readOnly = false, .maxFetch = 90, .allowTrash = true, .blockAuthCodeBodies = false};
  });
  press(Qt::Key_B, Qt::AltModifier);
  EXPECT_TRUE(eventually([&] { return safety_->isAtSafeValues(); }));
  AppConfig expected;
  expected.strictWithholding = true;
  EXPECT_TRUE(saved() == expected);
  ASSERT_TRUE(tabTo(label(SafetySwitch::readOnly)));
  EXPECT_TRUE(isOn());
  ASSERT_TRUE(tabTo(label(SafetyLimit::maxFetch)));
  EXPECT_EQ(number(), 50);
  EXPECT_FALSE(page_->findChild<QPushButton*>(QString(), Qt::FindDirectChildrenOnly)->isEnabled());
}

}  // namespace
}  // namespace tarnwell::test
