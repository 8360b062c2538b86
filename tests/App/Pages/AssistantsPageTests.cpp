#include "App/Pages/AssistantsPage.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QGuiApplication>

#include "App/Pages/AssistantsPageFixture.h"

namespace tarnwell::test {
namespace {

using testing::ElementsAre;
using enum AssistantID;

INSTANTIATE_TEST_SUITE_P(Table, AssistantsPageIn, testing::ValuesIn(AppLanguages::allCases), languageName);

TEST_P(AssistantsPageIn, tabVisitsEveryAssistantFromTheTopDown) {
  begin();
  const QStringList stops = tabStops(*page_);
  EXPECT_EQ(stops.mid(0, 3), (QStringList{button(claudeCode), button(codex), button(cursor)}));
  EXPECT_EQ(stops.size(), 6);  // and the format, the block and its button
  EXPECT_FALSE(stops.contains(QString()));
}

TEST_P(AssistantsPageIn, tabVisitsAPlanAfterItsAssistant) {
  begin();
  ASSERT_TRUE(press(button(claudeCode)));
  const ConnectionPlan plan = *model_->progress(claudeCode).plan;
  EXPECT_EQ(tabStops(*page_).mid(0, 4),
            (QStringList{AssistantsTexts::label(machine_[claudeCode], plan), confirm(claudeCode),
                         AssistantsTexts::dismiss(plan), button(codex)}));
}

TEST_P(AssistantsPageIn, keysConnectByFile) {
  begin();
  ASSERT_TRUE(press(button(cursor)));
  EXPECT_TRUE(shown().contains("/home/anna/.config/Cursor/mcp.json"));
  EXPECT_TRUE(code().contains("+     \"tarnwell\": {\n")) << code().toStdString();
  EXPECT_TRUE(code().startsWith("  {\n    // mine\n"));
  EXPECT_THAT(machine_.calls(), ElementsAre("find", "plan"));

  ASSERT_TRUE(press(confirm(cursor)));
  EXPECT_THAT(machine_.calls(), ElementsAre("find", "plan", "carryOut", "find"));
  EXPECT_EQ(focused(), button(cursor)) << "which disconnects now";
  EXPECT_TRUE(shown().contains("/home/anna/.config/Cursor/mcp.json.tarnwell-20261122T193000Z"));

  ASSERT_TRUE(press(offer(cursor)));
  EXPECT_THAT(machine_.calls(), testing::Contains("undo"));
  EXPECT_EQ(focused(), button(cursor));
  EXPECT_FALSE(shown().contains("20261122T193000Z"));
}

TEST_P(AssistantsPageIn, keysConnectByCommand) {
  begin();
  ASSERT_TRUE(press(button(claudeCode), Qt::Key_Space));
  EXPECT_EQ(code(), "claude mcp add --scope user tarnwell -- /opt/tarnwell/bin/tarnwell serve");
  ASSERT_TRUE(press(confirm(claudeCode), Qt::Key_Space));
  EXPECT_EQ(machine_[claudeCode].connection, Connection::here);
  EXPECT_EQ(focused(), button(claudeCode));
}

TEST_P(AssistantsPageIn, keysCopyABlock) {
  begin();
  ASSERT_TRUE(press(button(codex)));
  test::press(Qt::Key_Return);  // the button that copies has the focus
  EXPECT_EQ(QGuiApplication::clipboard()->text(),
            "[mcp_servers.tarnwell]\ncommand = \"/opt/tarnwell/bin/tarnwell\"\nargs = [\"serve\"]\n");
  EXPECT_TRUE(shown().contains("1. "));
  EXPECT_TRUE(shown().contains("/home/anna/.config/Codex/mcp.json"));
  test::press(Qt::Key_Escape);
  EXPECT_EQ(focused(), button(codex));
}

/// An entry that is removed may hold anything.
TEST_F(AssistantsPageTest, blockIsShownHarmlessAndCopiedAsItIs) {
  machine_->plan = [](AssistantID id, Goal goal) {
    AssistantState state = assistant(id, "Codex");
    state.way = ConnectingWay::block;
    ConnectionPlan plan = FakeAssistants::planFor(state, goal);
    plan.block = "command = \"a\u202eb\"\n";
    return plan;
  };
  begin();
  ASSERT_TRUE(press("Codex: Show what to add"));
  test::press(Qt::Key_Return);
  EXPECT_EQ(QGuiApplication::clipboard()->text(), QString::fromUtf8("command = \"a\u202eb\"\n"));
  test::press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(code(), QString::fromUtf8("command = \"a‹U+202E›b\""));
}

TEST_P(AssistantsPageIn, escapeAndItsButtonCloseAPlan) {
  begin();
  for (const AssistantID id : {claudeCode, codex, cursor}) {
    ASSERT_TRUE(press(button(id)));
    EXPECT_EQ(model_->progress(id).step, Step::planned);
    const QString close = AssistantsTexts::dismiss(*model_->progress(id).plan);
    test::press(Qt::Key_Escape);
    EXPECT_EQ(model_->progress(id).step, Step::idle);
    EXPECT_EQ(focused(), button(id));

    ASSERT_TRUE(press(button(id)));
    ASSERT_TRUE(press(close));
    EXPECT_EQ(model_->progress(id).step, Step::idle);
    EXPECT_EQ(focused(), button(id));
  }
  EXPECT_THAT(machine_.calls(), testing::Not(testing::Contains("carryOut")));
}

TEST_P(AssistantsPageIn, anotherAssistantGetsABlockInEachFormat) {
  begin();
  QStringList copied;
  for (int format = 0; format < 6; ++format) {
    for (int steps = 0; steps < 20 && !qobject_cast<ChoiceBox*>(QApplication::focusWidget()); ++steps) {
      test::press(Qt::Key_Tab);
    }
    const auto* const formats = qobject_cast<ChoiceBox*>(QApplication::focusWidget());
    ASSERT_NE(formats, nullptr);
    EXPECT_EQ(formats->count(), 6);
    EXPECT_EQ(formats->currentIndex(), format);
    test::press(Qt::Key_Tab);
    EXPECT_TRUE(code().contains("/opt/tarnwell/bin/tarnwell"));
    test::press(Qt::Key_Tab);
    test::press(Qt::Key_Space);
    copied.append(QGuiApplication::clipboard()->text());
    test::press(Qt::Key_Backtab, Qt::ShiftModifier);
    test::press(Qt::Key_Backtab, Qt::ShiftModifier);
    test::press(Qt::Key_Down);
  }
  copied.removeDuplicates();
  EXPECT_EQ(copied.size(), 6);
  EXPECT_TRUE(copied.front().contains("\"mcpServers\""));
}

TEST_F(AssistantsPageTest, planThatIsOldGivesWayToANewOne) {
  begin();
  ASSERT_TRUE(press("Cursor: Connect"));
  const auto carryOutWell = machine_->carryOut;
  machine_->carryOut = [](const ConnectionPlan& plan) -> ConnectionDone {
    throw ConfigurationFileError(ConfigurationFileError::Kind::changed, plan.change->path, "changed");
  };
  machine_->plan = [planWell = machine_->plan](AssistantID id, Goal goal) {
    ConnectionPlan plan = planWell(id, goal);
    plan.change->after += "// new\n";
    return plan;
  };
  ASSERT_TRUE(press("Write the change"));
  EXPECT_TRUE(shown().contains("The settings of Cursor have changed meanwhile, so nothing was done."));
  EXPECT_TRUE(code().endsWith("+ // new")) << "the new plan is read next";
  machine_->carryOut = carryOutWell;
  ASSERT_TRUE(press("Write the change"));
  EXPECT_TRUE(shown().contains("Connected. Restart Cursor to see it."));
}

TEST_F(AssistantsPageTest, lookingMovesNeitherPlanNorFocus) {
  begin();
  ASSERT_TRUE(press("Cursor: Connect"));
  const QWidget* const before = QApplication::focusWidget();
  const QString text = code();
  machine_[zed].isInstalled = true;
  model_->lookAgain();
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(QApplication::focusWidget(), before);
  EXPECT_EQ(code(), text);
  EXPECT_FALSE(shown().contains("Not found here"));
}

TEST_F(AssistantsPageTest, planOfAnotherTakesTheFocusOnlyFromItsOwnRow) {
  begin();
  ASSERT_TRUE(tabTo("Cursor: Connect"));
  machine_->hold();
  test::press(Qt::Key_Return);
  test::press(Qt::Key_Backtab, Qt::ShiftModifier);  // the person goes elsewhere
  EXPECT_EQ(focused(), "Codex: Show what to add");
  machine_->release();
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(model_->progress(cursor).step, Step::planned);
  EXPECT_EQ(focused(), "Codex: Show what to add");
}

TEST_F(AssistantsPageTest, buttonSaysThatItIsUnderWay) {
  begin();
  ASSERT_TRUE(press("Claude Code: Connect"));
  ASSERT_TRUE(tabTo("Run the command"));
  machine_->hold();
  test::press(Qt::Key_Return);
  EXPECT_EQ(focused(), "Running…");
  test::press(Qt::Key_Return);
  test::press(Qt::Key_Escape);
  EXPECT_EQ(focused(), "Running…");
  machine_->release();
  ASSERT_TRUE(untilSeen());
  ASSERT_TRUE(tabTo("Claude Code: Undo"));
  machine_->hold();
  test::press(Qt::Key_Return);
  EXPECT_EQ(focused(), "Claude Code: Undoing…");
  machine_->release();
  ASSERT_TRUE(untilSeen());
  EXPECT_THAT(machine_.calls(), ElementsAre("find", "plan", "carryOut", "find", "undo", "find"));
}

TEST_F(AssistantsPageTest, languageChangesWhileAPlanIsOpen) {
  begin();
  ASSERT_TRUE(press("Cursor: Connect"));
  const QString text = code();
  language_.choose(AppLanguage::japanese);
  QCoreApplication::sendPostedEvents();
  EXPECT_EQ(code(), text);
  EXPECT_TRUE(shown().contains(AssistantsTexts::lead(machine_[cursor], *model_->progress(cursor).plan)));
  EXPECT_FALSE(shown().contains("Tarnwell changes"));
}

}  // namespace
}  // namespace tarnwell::test
