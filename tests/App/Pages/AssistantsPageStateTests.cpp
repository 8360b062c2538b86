/// What the page shows of each state, and that it has room for it.

#include <gtest/gtest.h>

#include <QToolButton>
#include <ostream>

#include "App/Pages/AssistantsPageFixture.h"
#include "JSONEditor/JSONEditError.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Kind = AssistantNews::Kind;
using enum AssistantID;

class AssistantsPageState : public AssistantsPageIn {};
INSTANTIATE_TEST_SUITE_P(Table, AssistantsPageState, testing::ValuesIn(AppLanguages::allCases), languageName);

TEST_F(AssistantsPageTest, saysWhatItFound) {
  machine_->hold();
  beginLooking();
  EXPECT_TRUE(shown().contains("Looking for assistants…"));
  machine_->release();
  ASSERT_TRUE(untilSeen());
  EXPECT_FALSE(shown().contains("Looking for assistants…"));
  EXPECT_TRUE(shown().contains("Not found here: Zed"));
  EXPECT_FALSE(shown().contains("None of the assistants"));
}

TEST_F(AssistantsPageTest, saysThatNobodyIsHere) {
  for (AssistantState& state : machine_->assistants) {
    state.isInstalled = false;
  }
  begin();
  EXPECT_TRUE(shown().contains("None of the assistants that Tarnwell knows was found on this computer."));
  EXPECT_TRUE(shown().contains("Not found here: Claude Code, Codex, Cursor, and Zed"));
}

TEST_F(AssistantsPageTest, entryThatIsLeftOfAnAssistantCanBeRemoved) {
  machine_[zed].connection = Connection::here;
  begin();
  EXPECT_TRUE(tabTo("Zed: Disconnect"));
}

TEST_F(AssistantsPageTest, tellsThatTheAccountIsMissingAndStopsWhenItIsThere) {
  begin();
  EXPECT_TRUE(shown().contains("No account is saved yet."));
  store_.update([](AppConfig& config) {
    config.email = "user@example.org";
    config.imapHost = "imap.example.org";
  });
  settings_->reload();
  EXPECT_TRUE(eventually([&] { return !shown().contains("No account is saved yet."); }));
}

TEST_F(AssistantsPageTest, eachStateHasItsSentence) {
  machine_[claudeCode].connection = Connection::here;
  machine_[claudeCode].isSwitchedOff = true;
  machine_[codex].connection = Connection::here;
  machine_[cursor].connection = Connection::elsewhere;
  machine_[cursor].otherCommand = "/old/tarnwell";
  machine_[zed].connection = Connection::elsewhere;
  begin();
  for (const char* const sentence :
       {"Connected, but switched off in Claude Code.", "Connected.",
        "Connected to another program: /old/tarnwell", "Its entry for Tarnwell belongs to something else."}) {
    EXPECT_TRUE(shown().split('\n').contains(sentence)) << sentence;
  }
  const QStringList stops = tabStops(*page_);
  EXPECT_EQ(stops.mid(0, 6),
            (QStringList{"Claude Code: Disconnect", "Codex: Show what to remove", "Cursor: Use this one",
                         "Cursor: Disconnect", "Zed: Use this one", "Zed: Disconnect"}));
}

TEST_F(AssistantsPageTest, otherProgramIsDisconnectedByKeys) {
  machine_[cursor].connection = Connection::elsewhere;
  begin();
  ASSERT_TRUE(press("Cursor: Disconnect"));
  EXPECT_EQ(model_->progress(cursor).goal, Goal::disconnect);
  EXPECT_EQ(tabStops(*page_).filter("Cursor: "), QStringList()) << "the plan is what there is to do";
  ASSERT_TRUE(tabTo("Write the change"));
  test::press(Qt::Key_Escape);
  EXPECT_EQ(focused(), "Cursor: Disconnect");

  ASSERT_TRUE(press("Cursor: Disconnect"));
  ASSERT_TRUE(press("Write the change"));
  EXPECT_EQ(machine_[cursor].connection, Connection::none);
  EXPECT_EQ(focused(), "Cursor: Connect");
}

/// Somebody else has removed it meanwhile.
TEST_F(AssistantsPageTest, buttonThatGoesLeavesTheFocusToTheOther) {
  machine_[cursor].connection = Connection::elsewhere;
  begin();
  ASSERT_TRUE(tabTo("Cursor: Disconnect"));
  machine_[cursor].connection = Connection::none;
  model_->lookAgain();
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(focused(), "Cursor: Connect");
}

TEST_F(AssistantsPageTest, fileThatCannotBeReadIsNamedWithTheReason) {
  machine_[cursor].connection = Connection::unknown;
  machine_[cursor].problem = std::make_exception_ptr(JSONEditError(JSONEditError::Kind::notJSON, 3, 5));
  begin();
  EXPECT_TRUE(shown().contains("Tarnwell cannot tell whether it is connected."));
  EXPECT_TRUE(shown().contains("The settings of Cursor cannot be read as JSON: see line 3, column 5."));
  EXPECT_TRUE(shown().contains("The file: /home/anna/.config/Cursor/mcp.json"));
  EXPECT_FALSE(shown().contains("line 3, column 5: not JSON"));
  for (int steps = 0; steps < 20 && !qobject_cast<QToolButton*>(QApplication::focusWidget()); ++steps) {
    test::press(Qt::Key_Tab);
  }
  test::press(Qt::Key_Space);
  EXPECT_TRUE(shown().contains("line 3, column 5: not JSON"));
  machine_[cursor].connection = Connection::none;
  ASSERT_TRUE(press("Cursor: Look again"));
  EXPECT_FALSE(shown().contains("Tarnwell cannot tell"));
}

TEST_F(AssistantsPageTest, runningAssistantIsNamedAndTriedAgain) {
  begin();
  const auto planWell = machine_->plan;
  machine_->plan = [](AssistantID id, Goal) -> ConnectionPlan {
    throw AssistantError(AssistantError::Kind::running, id, "");
  };
  ASSERT_TRUE(press("Cursor: Connect"));
  EXPECT_TRUE(shown().contains(
      "Cursor is running and would write its old settings over the change. Quit it and try again."));
  machine_->plan = planWell;
  ASSERT_TRUE(press("Cursor: Try again"));
  EXPECT_FALSE(code().isEmpty());
  EXPECT_FALSE(shown().contains("Cursor is running"));
}

TEST_F(AssistantsPageTest, placeOfAFaultIsNamed) {
  begin();
  machine_->plan = [](AssistantID, Goal) -> ConnectionPlan {
    throw JSONEditError(JSONEditError::Kind::notJSON, 1200, 5);
  };
  ASSERT_TRUE(press("Cursor: Connect"));
  EXPECT_TRUE(shown().contains("The settings of Cursor cannot be read as JSON: see line 1,200, column 5."));
}

TEST_F(AssistantsPageTest, planTellsOfALinkAndOfAFileThatIsMade) {
  machine_->plan = [](AssistantID id, Goal goal) {
    ConnectionPlan plan = FakeAssistants::planFor(assistant(id, "Cursor"), goal);
    plan.change->target = "/home/anna/dotfiles/cursor.json";
    plan.change->before.reset();
    return plan;
  };
  begin();
  ASSERT_TRUE(press("Cursor: Connect"));
  EXPECT_TRUE(shown().contains("Tarnwell makes this file, which Cursor reads:"));
  EXPECT_TRUE(shown().contains("/home/anna/dotfiles/cursor.json"));
  EXPECT_FALSE(shown().contains("A copy of the file"));
}

TEST_F(AssistantsPageTest, stepsNameAnEntryThatIsInTheWay) {
  machine_[codex].connection = Connection::elsewhere;
  begin();
  ASSERT_TRUE(press("Codex: Show what to add"));
  EXPECT_TRUE(
      shown().contains("\n3. Remove the lines of the entry “tarnwell” that is there.\n4. Add the text"))
      << shown().toStdString();
}

/// The lines of a file that is not understood are the person's to look at.
TEST_F(AssistantsPageTest, stepsNameAnEntryThatMayBeInTheWay) {
  machine_[codex].connection = Connection::unknown;
  machine_[codex].problem =
      std::make_exception_ptr(AssistantError(AssistantError::Kind::notTOML, codex, "line 2: not TOML"));
  begin();
  EXPECT_TRUE(shown().contains("The settings of Codex cannot be read as TOML; the details say why."));
  ASSERT_TRUE(press("Codex: Show what to add"));
  EXPECT_TRUE(shown().contains("\n3. If there is an entry “tarnwell”, remove its lines.\n4. Add the text"))
      << shown().toStdString();
}

TEST_F(AssistantsPageTest, entryThatIsSwitchedOffIsNotSaidToBeSeen) {
  machine_[cursor].connection = Connection::elsewhere;
  machine_[cursor].isSwitchedOff = true;
  begin();
  ASSERT_TRUE(press("Cursor: Use this one"));
  ASSERT_TRUE(press("Write the change"));
  EXPECT_TRUE(shown().contains("Connected, but switched off in Cursor. Switch it on there."));
  EXPECT_FALSE(shown().contains("Restart Cursor"));
}

TEST_F(AssistantsPageTest, severalCommandsAreCounted) {
  machine_->plan = [](AssistantID id, Goal goal) {
    AssistantState state = assistant(id, "Claude Code");
    state.way = ConnectingWay::ownCommand;
    ConnectionPlan plan = FakeAssistants::planFor(state, goal);
    plan.commands.insert(plan.commands.begin(), {"claude", "mcp", "remove", "tarnwell"});
    return plan;
  };
  begin();
  ASSERT_TRUE(press("Claude Code: Connect"));
  EXPECT_TRUE(shown().contains("Tarnwell runs these 2 commands of Claude Code:"));
  EXPECT_EQ(code().count('\n'), 1);
  EXPECT_TRUE(tabTo("Run the 2 commands"));
}

/// Each picture that a person can get, in turn.
TEST_P(AssistantsPageState, nothingIsCutOff) {
  machine_[claudeCode].connection = Connection::elsewhere;
  machine_[claudeCode].otherCommand =
      "/home/anna/Downloads/a-folder-with-a-long-name/tarnwell-0.9/bin/tarnwell";
  machine_[zed].isInstalled = true;
  machine_[zed].connection = Connection::unknown;
  machine_[zed].problem = std::make_exception_ptr(JSONEditError(JSONEditError::Kind::notJSON, 3, 5));
  machine_[cursor].file =
      "/home/anna/.config/Code/User/globalStorage/saoudrizwan.claude-dev/settings/cline_mcp_settings.json";
  begin();
  const auto settle = [] {
    for (int round = 0; round < 5; ++round) {
      QCoreApplication::processEvents();
    }
  };
  settle();
  EXPECT_EQ(cutOff(*page_), QStringList()) << "the list";
  for (const AssistantID id : {claudeCode, codex, cursor}) {
    ASSERT_TRUE(press(button(id)));
    settle();
    EXPECT_EQ(cutOff(*page_), QStringList()) << "a plan";
  }
  ASSERT_TRUE(press(confirm(cursor)));
  settle();
  EXPECT_EQ(cutOff(*page_), QStringList()) << "what came of it";
  for (int kind = static_cast<int>(AssistantError::Kind::running);
       kind <= static_cast<int>(AssistantError::Kind::onlyByHand); ++kind) {
    machine_->plan = [kind](AssistantID id, Goal) -> ConnectionPlan {
      throw AssistantError(static_cast<AssistantError::Kind>(kind), id, "its own words");
    };
    ASSERT_TRUE(press(button(cursor)));
    settle();
    EXPECT_EQ(cutOff(*page_), QStringList()) << "failure " << kind;
  }
}

}  // namespace
}  // namespace tarnwell::test
