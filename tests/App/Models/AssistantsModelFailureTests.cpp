/// What the model does when something goes wrong: at the plan, at the change, at undoing it.

#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <stdexcept>

#include "App/Models/AssistantsModel.h"
#include "App/Models/AssistantsModelFixture.h"
#include "JSONEditor/JSONEditError.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Kind = AssistantNews::Kind;
using enum AssistantID;

/// What can go wrong, at either step.
struct Failure {
  const char* name;
  std::function<void()> fail;
  AssistantNews news;
};

void PrintTo(const Failure& row, std::ostream* stream) { *stream << row.name; }

template <class Error, class... Arguments>
std::function<void()> throwing(Arguments... arguments) {
  return [=] { throw Error(arguments...); };
}

const std::filesystem::path copy = "/home/anna/mcp.json.tarnwell-20261122T193000Z";

Failure json(const char* name, JSONEditError::Kind kind, Kind expected) {
  const JSONEditError error(kind, 3, 5);
  return {name, [=] { throw error; }, {expected, QString::fromUtf8(error.what()), 3, 5}};
}

Failure file(const char* name, ConfigurationFileError::Kind kind, Kind expected) {
  const ConfigurationFileError error(kind, "/home/anna/mcp.json", "No space left on device", copy);
  return {name,
          [=] { throw error; },
          {.kind = expected, .details = QString::fromUtf8(error.what()), .backup = copy}};
}

Failure client(const char* name, AssistantError::Kind kind, Kind expected) {
  return {name,
          throwing<AssistantError>(kind, cursor, "its words\n", copy),
          {.kind = expected, .details = "its words", .backup = copy}};
}

const Failure failures[] = {
    json("notJSON", JSONEditError::Kind::notJSON, Kind::notJSON),
    json("notAnObject", JSONEditError::Kind::notAnObject, Kind::notAnObject),
    json("ambiguous", JSONEditError::Kind::ambiguous, Kind::ambiguous),
    json("notUTF8", JSONEditError::Kind::notUTF8, Kind::notUTF8),
    json("tooLarge", JSONEditError::Kind::tooLarge, Kind::tooLarge),
    file("unreadable", ConfigurationFileError::Kind::unreadable, Kind::fileUnreadable),
    file("fileTooLarge", ConfigurationFileError::Kind::tooLarge, Kind::tooLarge),
    file("notWritten", ConfigurationFileError::Kind::notWritten, Kind::notWritten),
    file("notVerified", ConfigurationFileError::Kind::notVerified, Kind::notVerified),
    file("otherWriter", ConfigurationFileError::Kind::otherWriter, Kind::otherWriter),
    client("running", AssistantError::Kind::running, Kind::assistantRuns),
    client("noHelper", AssistantError::Kind::noHelper, Kind::noHelper),
    client("helperNotUTF8", AssistantError::Kind::helperNotUTF8, Kind::helperNotUTF8),
    client("neverStarted", AssistantError::Kind::neverStarted, Kind::neverStarted),
    client("notStarted", AssistantError::Kind::notStarted, Kind::commandNotStarted),
    client("failed", AssistantError::Kind::failed, Kind::commandFailed),
    client("tookTooLong", AssistantError::Kind::tookTooLong, Kind::commandTooSlow),
    client("withoutEffect", AssistantError::Kind::withoutEffect, Kind::commandWithoutEffect),
    client("notTOML", AssistantError::Kind::notTOML, Kind::notTOML),
    client("onlyByHand", AssistantError::Kind::onlyByHand, Kind::onlyByHand),
    {"other", throwing<std::runtime_error>("out of luck"), {Kind::failed, "out of luck"}},
    {"noException", [] { throw 1; }, {Kind::failed}},
};

class AssistantsModelFailure : public AssistantsModelTest, public testing::WithParamInterface<Failure> {};
INSTANTIATE_TEST_SUITE_P(Table, AssistantsModelFailure, testing::ValuesIn(failures), rowName);

TEST_P(AssistantsModelFailure, ofThePlanIsToldAndTriedAgain) {
  ASSERT_TRUE(look());
  const auto planWell = machine->plan;
  machine->plan = [](AssistantID, Goal) -> ConnectionPlan {
    GetParam().fail();
    return {};
  };
  ASSERT_TRUE(act(cursor));
  EXPECT_EQ(step(cursor), Step::idle);
  EXPECT_EQ(progress(cursor).news, GetParam().news);
  EXPECT_TRUE(progress(cursor).news.isFailure());
  EXPECT_EQ(progress(cursor).offer, Offer::tryAgain);

  machine->plan = planWell;
  model->tryAgain(cursor);
  ASSERT_TRUE(untilSeen());
  EXPECT_EQ(step(cursor), Step::planned);
  EXPECT_EQ(news(cursor), Kind::none);
}

TEST_P(AssistantsModelFailure, ofTheChangeIsToldAndTriedAgain) {
  ASSERT_TRUE(look());
  const auto carryOutWell = machine->carryOut;
  machine->carryOut = [](const ConnectionPlan&) -> ConnectionDone {
    GetParam().fail();
    return {};
  };
  ASSERT_TRUE(act(cursor));
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(step(cursor), Step::idle);
  EXPECT_EQ(progress(cursor).news, GetParam().news);
  EXPECT_EQ(progress(cursor).offer, Offer::tryAgain);
  EXPECT_EQ(connection(cursor), Connection::none);
  EXPECT_FALSE(progress(cursor).done);

  machine->carryOut = carryOutWell;
  model->tryAgain(cursor);
  ASSERT_TRUE(untilSeen());
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(news(cursor), Kind::connected);
}

TEST_F(AssistantsModelTest, fileThatChangedMeanwhileGetsANewPlan) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  const auto carryOutWell = machine->carryOut;
  machine->carryOut = [](const ConnectionPlan& plan) -> ConnectionDone {
    throw ConfigurationFileError(ConfigurationFileError::Kind::changed, plan.change->path, "changed");
  };
  machine->plan = [planWell = machine->plan](AssistantID id, Goal goal) {
    ConnectionPlan plan = planWell(id, goal);
    plan.change->after += "// new\n";
    return plan;
  };
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(step(cursor), Step::planned);
  EXPECT_EQ(news(cursor), Kind::newPlan);
  EXPECT_EQ(progress(cursor).difference.back().text, "// new");

  machine->carryOut = carryOutWell;
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(news(cursor), Kind::connected);
}

TEST_F(AssistantsModelTest, cancellingTheNewPlanForgetsWhyItWasMade) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  machine->carryOut = [](const ConnectionPlan& plan) -> ConnectionDone {
    throw ConfigurationFileError(ConfigurationFileError::Kind::changed, plan.change->path, "changed");
  };
  ASSERT_TRUE(carryOut());
  model->cancel();
  EXPECT_EQ(news(cursor), Kind::none);
}

/// The assistant was started after it was connected, and is in the way of disconnecting it.
TEST_F(AssistantsModelTest, failureOfAPlanKeepsTheWayBackOfWhatWasDoneBefore) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  ASSERT_TRUE(carryOut());
  const auto planWell = machine->plan;
  machine->plan = [](AssistantID id, Goal) -> ConnectionPlan {
    throw AssistantError(AssistantError::Kind::running, id, "");
  };
  ASSERT_TRUE(act(cursor));
  EXPECT_EQ(news(cursor), Kind::assistantRuns);
  EXPECT_EQ(progress(cursor).offer, Offer::undo);

  machine->plan = planWell;
  ASSERT_TRUE(act(cursor));
  EXPECT_EQ(step(cursor), Step::planned);
  model->cancel();
  EXPECT_EQ(news(cursor), Kind::connected) << "the failure is over";
  EXPECT_EQ(progress(cursor).offer, Offer::undo);
  ASSERT_TRUE(undo(cursor));
  EXPECT_EQ(connection(cursor), Connection::none);
}

TEST_F(AssistantsModelTest, failureToCarryOutKeepsTheWayBackOfWhatWasDoneBefore) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  ASSERT_TRUE(carryOut());
  auto kind = ConfigurationFileError::Kind::changed;
  machine->carryOut = [&](const ConnectionPlan& plan) -> ConnectionDone {
    throw ConfigurationFileError(kind, plan.change->path, "");
  };
  ASSERT_TRUE(act(cursor));
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(news(cursor), Kind::newPlan);
  kind = ConfigurationFileError::Kind::notWritten;
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(news(cursor), Kind::notWritten);
  EXPECT_EQ(progress(cursor).offer, Offer::undo);

  kind = ConfigurationFileError::Kind::changed;
  ASSERT_TRUE(act(cursor));
  ASSERT_TRUE(carryOut());
  EXPECT_EQ(news(cursor), Kind::newPlan);
  model->cancel();
  EXPECT_EQ(news(cursor), Kind::connected);
  EXPECT_EQ(progress(cursor).offer, Offer::undo);
}

TEST_F(AssistantsModelTest, failureOfUndoKeepsTheWayBackUnlessItIsTooLate) {
  ASSERT_TRUE(look());
  ASSERT_TRUE(act(cursor));
  ASSERT_TRUE(carryOut());
  machine->undo = [](const ConnectionDone& done) {
    throw ConfigurationFileError(ConfigurationFileError::Kind::notWritten, done.plan.file, "disk full");
  };
  ASSERT_TRUE(undo(cursor));
  EXPECT_EQ(news(cursor), Kind::notWritten);
  EXPECT_EQ(progress(cursor).offer, Offer::undo);
  machine->undo = [](const ConnectionDone& done) {
    throw ConfigurationFileError(ConfigurationFileError::Kind::changed, done.plan.file, "changed");
  };
  ASSERT_TRUE(undo(cursor));
  EXPECT_EQ(news(cursor), Kind::changedSince);
  EXPECT_EQ(progress(cursor).offer, Offer::none);
  EXPECT_TRUE(progress(cursor).done->written->backup) << "the page names it";
}

}  // namespace
}  // namespace tarnwell::test
