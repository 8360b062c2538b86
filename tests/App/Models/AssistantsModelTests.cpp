#include "App/Models/AssistantsModel.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

#include "App/Models/AssistantsModelFixture.h"

namespace tarnwell::test {
namespace {

using Kind = AssistantNews::Kind;
using testing::ElementsAre;
using enum AssistantID;

TEST_F(AssistantsModelTest, nothingIsAskedBeforeTheFirstLook) {
  model->lookAgain();
  EXPECT_FALSE(model->isLooking());
  EXPECT_TRUE(model->assistants().empty());
  ASSERT_TRUE(look());
  EXPECT_EQ(model->assistants().size(), 4U);
  model->lookAgain();
  EXPECT_TRUE(model->isLooking());
  ASSERT_TRUE(untilSeen());
  EXPECT_THAT(machine.calls(), ElementsAre("find", "find"));
}

TEST_F(AssistantsModelTest, oneLookIsEnoughAtATime) {
  machine->hold();
  model->look();
  model->look();
  machine->release();
  ASSERT_TRUE(untilSeen());
  EXPECT_THAT(machine.calls(), ElementsAre("find"));
}

TEST_F(AssistantsModelTest, nothingIsChangedBeforeItIsCarriedOut) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  EXPECT_EQ(step(cursor), Step::planned);
  EXPECT_FALSE(model->isWriting());
  EXPECT_EQ(progress(cursor).plan->change->path, machine[cursor].file);
  const auto& difference = progress(cursor).difference;
  EXPECT_EQ(std::ranges::count(difference, DifferenceLine::Kind::added, &DifferenceLine::kind), 4);
  EXPECT_EQ(std::ranges::count(difference, DifferenceLine::Kind::removed, &DifferenceLine::kind), 0);
  EXPECT_THAT(machine.calls(), ElementsAre("find", "plan"));
}

TEST_F(AssistantsModelTest, connectsAndDisconnectsAndUndoes) {
  ASSERT_TRUE(look());
  for (const AssistantID id : {claudeCode, cursor}) {
    ASSERT_TRUE(act(id));
    ASSERT_TRUE(carryOut());
    EXPECT_EQ(step(id), Step::idle);
    EXPECT_EQ(news(id), Kind::connected);
    EXPECT_EQ(progress(id).offer, Offer::undo);
    EXPECT_FALSE(progress(id).plan);
    EXPECT_EQ(connection(id), Connection::here);

    ASSERT_TRUE(act(id));
    EXPECT_EQ(progress(id).goal, Goal::disconnect);
    ASSERT_TRUE(carryOut());
    EXPECT_EQ(news(id), Kind::disconnected);
    EXPECT_EQ(connection(id), Connection::none);

    ASSERT_TRUE(undo(id));
    EXPECT_EQ(news(id), Kind::undone);
    EXPECT_EQ(progress(id).offer, Offer::none);
    EXPECT_EQ(connection(id), Connection::here);
    model->undo(id);  // once
    EXPECT_FALSE(model->isWriting());
  }
}

TEST_F(AssistantsModelTest, otherProgramGivesWayToThisOne) {
  machine[cursor].connection = Connection::elsewhere;
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  EXPECT_EQ(progress(cursor).goal, Goal::connect);
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(connection(cursor), Connection::here);
}

TEST_F(AssistantsModelTest, otherProgramIsDisconnected) {
  machine[cursor].connection = Connection::elsewhere;
  ASSERT_TRUE(look());
  model->remove(cursor);
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(progress(cursor).goal, Goal::disconnect);
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(news(cursor), Kind::disconnected);
  EXPECT_EQ(connection(cursor), Connection::none);
}

TEST_F(AssistantsModelTest, stateIsKnownBeforeTheNextLookHasAnAnswer) {
  machine[cursor].isSwitchedOff = true;
  machine[cursor].connection = Connection::elsewhere;
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  machine->carryOut = [](const ConnectionPlan& plan) { return ConnectionDone{plan, std::nullopt, {}}; };
  machine->undo = [](const ConnectionDone&) {};
  model->carryOut();
  ASSERT_TRUE(until([&] { return step(cursor) == Step::idle; }));
  EXPECT_EQ(connection(cursor), Connection::here);
  EXPECT_TRUE(model->assistants().at(2).isSwitchedOff) << "its other members stay";
  ASSERT_TRUE(untilSeen());

  model->undo(cursor);
  ASSERT_TRUE(until([&] { return step(cursor) == Step::idle; }));
  EXPECT_EQ(connection(cursor), Connection::elsewhere);
  EXPECT_TRUE(model->assistants().at(2).isSwitchedOff);
}

TEST_F(AssistantsModelTest, oneAfterTheOtherAndBothCanBeUndone) {
  ASSERT_TRUE(look());
  for (const AssistantID id : {claudeCode, cursor}) {
    ASSERT_TRUE(act(id));
    ASSERT_TRUE(carryOut());
  }
  EXPECT_EQ(news(claudeCode), Kind::connected);
  EXPECT_EQ(news(cursor), Kind::connected);
  ASSERT_TRUE(undo(claudeCode));
  EXPECT_EQ(connection(claudeCode), Connection::none);
  EXPECT_EQ(connection(cursor), Connection::here);
  ASSERT_TRUE(undo(cursor));
  EXPECT_EQ(connection(cursor), Connection::none);
}

TEST_F(AssistantsModelTest, nextPlanClosesTheOneBefore) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(claudeCode));
  ASSERT_TRUE(act(cursor));
  EXPECT_EQ(step(claudeCode), Step::idle);
  EXPECT_FALSE(progress(claudeCode).plan);
  EXPECT_EQ(step(cursor), Step::planned);
}

TEST_F(AssistantsModelTest, answerToAPlanThatWasGivenUpIsDropped) {
  ASSERT_TRUE(look());
  machine->hold();
  model->act(claudeCode);
  EXPECT_EQ(step(claudeCode), Step::planning);
  model->cancel();
  EXPECT_EQ(step(claudeCode), Step::idle);
  model->act(cursor);
  machine->release();
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(step(claudeCode), Step::idle);
  EXPECT_EQ(step(cursor), Step::planned);
}

TEST_F(AssistantsModelTest, cancellingLeavesNoTrace) {
  ASSERT_TRUE(look());
  model->cancel();
  ASSERT_TRUE(act(cursor));
  model->cancel();
  EXPECT_EQ(step(cursor), Step::idle);
  EXPECT_EQ(news(cursor), Kind::none);
  model->carryOut();
  EXPECT_FALSE(model->isWriting());
}

TEST_F(AssistantsModelTest, nothingInterruptsWhatIsWritten) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  machine->hold();
  model->carryOut();
  EXPECT_EQ(step(cursor), Step::carryingOut);
  EXPECT_TRUE(model->isWriting());
  model->cancel();
  model->carryOut();
  model->act(claudeCode);
  model->tryAgain(cursor);
  model->undo(cursor);
  model->look();
  EXPECT_EQ(step(cursor), Step::carryingOut);
  EXPECT_FALSE(model->isLooking());
  machine->release();
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(news(cursor), Kind::connected);
  EXPECT_THAT(machine.calls(), ElementsAre("find", "plan", "carryOut", "find"));
}

TEST_F(AssistantsModelTest, whatWasFoundBeforeTheChangeIsDropped) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  machine->hold();
  model->look();
  model->carryOut();
  EXPECT_FALSE(model->isLooking());
  machine->release();
  ASSERT_TRUE(until([&] { return step(cursor) == Step::idle; }));
  EXPECT_EQ(connection(cursor), Connection::here);
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(connection(cursor), Connection::here);
}

TEST_F(AssistantsModelTest, lookingLeavesAnOpenPlanAlone) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  machine[cursor].connection = Connection::elsewhere;
  model->lookAgain();
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(connection(cursor), Connection::elsewhere);
  EXPECT_EQ(step(cursor), Step::planned);
  EXPECT_TRUE(progress(cursor).plan);
}

TEST_F(AssistantsModelTest, planForNothingSaysSo) {
  ASSERT_TRUE(look());
  machine->plan = [planWell = machine->plan](AssistantID id, Goal goal) {
    ConnectionPlan plan = planWell(id, goal);
    plan.change->after = *plan.change->before;
    return plan;
  };
  machine[cursor].connection = Connection::here;  // by somebody else, since the look
  ASSERT_TRUE(act(cursor));
  EXPECT_EQ(news(cursor), Kind::alreadyConnected);
  EXPECT_EQ(connection(cursor), Connection::here);
  machine[cursor].connection = Connection::none;
  ASSERT_TRUE(act(cursor));
  EXPECT_EQ(news(cursor), Kind::alreadyDisconnected);
}

TEST_F(AssistantsModelTest, blockIsOnlyShown) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(codex));
  EXPECT_FALSE(progress(codex).plan->block.empty());
  model->carryOut();
  EXPECT_EQ(step(codex), Step::planned);
  EXPECT_THAT(machine.calls(), ElementsAre("find", "plan"));
  machine[codex].connection = Connection::here;  // the person has done it
  model->lookAgain();
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(step(codex), Step::planned);
  EXPECT_EQ(connection(codex), Connection::here);
}

TEST_F(AssistantsModelTest, unreadableOneIsLookedAtAgain) {
  machine[cursor].connection = Connection::unknown;
  ASSERT_TRUE(look());
  machine[cursor].connection = Connection::none;
  ASSERT_TRUE(act(cursor));
  EXPECT_THAT(machine.calls(), ElementsAre("find", "find"));
  EXPECT_EQ(connection(cursor), Connection::none);
}

TEST_F(AssistantsModelTest, planThatWasCancelledLeavesTheWayBackOfTheOneBefore) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  ASSERT_TRUE(carryOut());
  ASSERT_TRUE(act(cursor));
  model->cancel();
  EXPECT_EQ(news(cursor), Kind::connected);
  EXPECT_EQ(progress(cursor).offer, Offer::undo);
}

TEST_F(AssistantsModelTest, goingAwayWaitsForNothing) {
  machine->hold();
  model->look();
  model.reset();
  model.emplace(settings, machine.work());
  EXPECT_TRUE(model->assistants().empty());
}

TEST_F(AssistantsModelTest, saysWhetherThereIsAnAccount) {
  EXPECT_TRUE(model->isAccountMissing());
  const QSignalSpy changed(&*model, &AssistantsModel::changed);
  store.update([](AppConfig& config) {
    config.email = "user@example.org";
    config.imapHost = "imap.example.org";
  });
  settings.reload();
  ASSERT_TRUE(until([&] { return !model->isAccountMissing(); }));
  EXPECT_FALSE(changed.isEmpty());
}

TEST_F(AssistantsModelTest, blockNamesTheHelper) {
  EXPECT_TRUE(model->block(BlockFormat::codexTOML).contains("\"/opt/tarnwell/bin/tarnwell\""));
}

}  // namespace
}  // namespace tarnwell::test
