#include <gtest/gtest.h>

#include <ostream>

#include "App/Models/AssistantsModel.h"
#include "App/support/FakeAssistants.h"
#include "support/RowName.h"

namespace tarnwell::test {
namespace {

using Action = AssistantsModel::Action;

struct NextThing {
  const char* name;
  ConnectingWay way;
  Connection connection;
  Action action;
};

void PrintTo(const NextThing& row, std::ostream* stream) { *stream << row.name; }

const NextThing nextThings[] = {
    {"commandNone", ConnectingWay::ownCommand, Connection::none, Action::connect},
    {"commandHere", ConnectingWay::ownCommand, Connection::here, Action::disconnect},
    {"commandElsewhere", ConnectingWay::ownCommand, Connection::elsewhere, Action::useThisOne},
    {"fileNone", ConnectingWay::file, Connection::none, Action::connect},
    {"fileHere", ConnectingWay::file, Connection::here, Action::disconnect},
    {"fileElsewhere", ConnectingWay::file, Connection::elsewhere, Action::useThisOne},
    {"fileUnknown", ConnectingWay::file, Connection::unknown, Action::lookAgain},
    {"blockNone", ConnectingWay::block, Connection::none, Action::showEntry},
    {"blockHere", ConnectingWay::block, Connection::here, Action::showRemoval},
    {"blockElsewhere", ConnectingWay::block, Connection::elsewhere, Action::showEntry},
    {"blockUnknown", ConnectingWay::block, Connection::unknown, Action::showEntry},
};

class AssistantAction : public testing::TestWithParam<NextThing> {};
INSTANTIATE_TEST_SUITE_P(Table, AssistantAction, testing::ValuesIn(nextThings), rowName);

TEST_P(AssistantAction, isWhatAPersonDoesNext) {
  AssistantState state = assistant(AssistantID::cursor, "Cursor", GetParam().connection);
  state.way = GetParam().way;
  EXPECT_EQ(AssistantsModel::action(state), GetParam().action);
  EXPECT_EQ(AssistantsModel::offersDisconnect(state), GetParam().action == Action::useThisOne);
}

}  // namespace
}  // namespace tarnwell::test
