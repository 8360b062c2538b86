// The system's secret items with services that are mute, want to prompt, fail or send nonsense.

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "Platform/Secrets/SecretItems.h"
#include "integration/FakeSecretService.h"
#include "support/ScopedEnvironment.h"

namespace tarnwell::test {
namespace {

enum class Call { copy, copyOfGroup, copyOfGroupOrPlain, add, remove };

struct Row {
  const char* name;
  FakeSecretService::Answers changed;
  Call call;
  std::int32_t status;
  std::optional<std::string> received = std::nullopt;
};

void PrintTo(const Row& row, std::ostream* stream) { *stream << row.name; }

const FakeSecretService::Answers nothingFound{{"SearchItems", "(@ao [], @ao [])"}};

FakeSecretService::Answers nothingFoundAnd(FakeSecretService::Answers others) {
  others.insert(nothingFound.begin(), nothingFound.end());
  return others;
}

constexpr const char* lockedItem = "(@ao [], [objectpath '/collection/item'])";
constexpr const char* twoItems = "([objectpath '/collection/item', objectpath '/collection/second'], @ao [])";
constexpr const char* lockedProperties =
    "({'Attributes': <@a{ss} {}>, 'Label': <''>, 'Locked': <true>, 'Created': <uint64 1>, "
    "'Modified': <uint64 1>},)";
constexpr const char* groupProperties =
    "({'Attributes': <{'accessGroup': 'g'}>, 'Label': <''>, 'Locked': <false>, 'Created': <uint64 1>, "
    "'Modified': <uint64 9>},)";
constexpr const char* isLocked = "!org.freedesktop.Secret.Error.IsLocked";
constexpr const char* noSuchObject = "!org.freedesktop.Secret.Error.NoSuchObject";
constexpr const char* failed = "!org.freedesktop.DBus.Error.Failed";

const Row rows[] = {
    {"oneItemIsCopied", {}, Call::copy, SecretStatus::success, "pw"},
    {"emptySecretIsData",
     {{"GetSecret", "((objectpath '/session', @ay [], @ay [], 'text/plain'),)"}},
     Call::copy,
     SecretStatus::success,
     ""},
    {"nothingIsFound", nothingFound, Call::copy, SecretStatus::itemNotFound},
    {"lockedItemIsNotAbsent",
     {{"SearchItems", lockedItem}, {"GetAll /collection/item", lockedProperties}},
     Call::copy,
     SecretStatus::interactionNotAllowed},
    {"unlockedItemIsTakenThoughAnotherIsLocked",
     {{"SearchItems", "([objectpath '/collection/item'], [objectpath '/collection/second'])"},
      {"GetAll /collection/second", lockedProperties}},
     Call::copy,
     SecretStatus::success,
     "pw"},
    {"itemOfAGroupIsNoPlainOne",
     {{"GetAll /collection/item", groupProperties}},
     Call::copy,
     SecretStatus::itemNotFound},
    {"itemWithoutPropertiesIsNoAnswer",
     {{"GetAll /collection/item", "(@a{sv} {},)"}},
     Call::copy,
     SecretStatus::notAvailable},
    {"newerItemOfAGroupIsPassedOver",
     {{"SearchItems", twoItems},
      {"GetAll /collection/second", groupProperties},
      {"GetSecret /collection/second", failed}},
     Call::copy,
     SecretStatus::success,
     "pw"},
    {"failedSearchIsAnError", {{"SearchItems", failed}}, Call::copy, SecretStatus::internalError},
    {"failedSecretIsAnErrorAndNotAnEmptyItem",
     {{"GetSecret", failed}},
     Call::copy,
     SecretStatus::internalError},
    {"itemLockedMeanwhile", {{"GetSecret", isLocked}}, Call::copy, SecretStatus::interactionNotAllowed},
    {"itemRemovedMeanwhile", {{"GetSecret", noSuchObject}}, Call::copy, SecretStatus::itemNotFound},
    {"noSession", {{"OpenSession", failed}}, Call::copy, SecretStatus::internalError},
    {"nameOwnedByAnotherProgram",
     {{"SearchItems", "!org.freedesktop.DBus.Error.UnknownMethod"}},
     Call::copy,
     SecretStatus::notAvailable},
    {"answerOfOtherTypes", {{"SearchItems", "('text',)"}}, Call::copy, SecretStatus::notAvailable},
    {"secretOfOtherTypes", {{"GetSecret", "('text',)"}}, Call::copy, SecretStatus::notAvailable},
    {"sessionWithoutAPath", {{"OpenSession", "(<''>,)"}}, Call::copy, SecretStatus::notAvailable},
    {"muteAtTheItem", {{"GetAll /collection/item", "..."}}, Call::copy, SecretStatus::notAvailable},
    {"muteAtTheSession", {{"OpenSession", "..."}}, Call::copy, SecretStatus::notAvailable},
    {"muteAtTheSearch", {{"SearchItems", "..."}}, Call::copy, SecretStatus::notAvailable},
    {"muteAtTheSecret", {{"GetSecret", "..."}}, Call::copy, SecretStatus::notAvailable},

    {"itemOfTheGroupIsCopied",
     {{"SearchItems", twoItems}, {"GetAll /collection/second", groupProperties}},
     Call::copyOfGroup,
     SecretStatus::success,
     "pw"},
    {"plainItemIsNoneOfAGroup", {}, Call::copyOfGroup, SecretStatus::itemNotFound},
    {"itemOfAnotherGroupIsNotCopied",
     {{"GetAll /collection/item",
       "({'Attributes': <{'accessGroup': 'h'}>, 'Label': <''>, 'Locked': <false>, 'Created': <uint64 1>, "
       "'Modified': <uint64 9>},)"}},
     Call::copyOfGroupOrPlain,
     SecretStatus::itemNotFound},
    {"lockedItemOfTheGroupIsNotAbsent",
     {{"SearchItems", lockedItem}},
     Call::copyOfGroup,
     SecretStatus::interactionNotAllowed},
    {"itemOfTheGroupThatIsLockedAfterAllIsNotAbsent",
     {{"GetAll /collection/item", lockedProperties}},
     Call::copyOfGroup,
     SecretStatus::interactionNotAllowed},
    {"itemOfTheGroupWithoutPropertiesIsNoAnswer",
     {{"GetAll /collection/item", "(@a{sv} {},)"}},
     Call::copyOfGroup,
     SecretStatus::notAvailable},
    {"plainItemIsCopiedWhenTheGroupHasNone", {}, Call::copyOfGroupOrPlain, SecretStatus::success, "pw"},
    {"muteAtTheSearchForTheGroup", {{"SearchItems", "..."}}, Call::copyOfGroup, SecretStatus::notAvailable},

    {"itemIsAdded", nothingFound, Call::add, SecretStatus::success},
    {"itemIsAddedBesideTheOneOfAGroup",
     {{"GetAll /collection/item", groupProperties}},
     Call::add,
     SecretStatus::success},
    {"presentItemIsADuplicate", {}, Call::add, SecretStatus::duplicateItem},
    {"addingBesideALockedItem",
     {{"SearchItems", lockedItem}, {"GetAll /collection/item", lockedProperties}},
     Call::add,
     SecretStatus::interactionNotAllowed},
    {"addingToALockedCollection",
     nothingFoundAnd({{"GetAll /collection",
                       "({'Items': <@ao []>, 'Label': <'Login'>, 'Locked': <true>, "
                       "'Created': <uint64 1>, 'Modified': <uint64 1>},)"}}),
     Call::add, SecretStatus::interactionNotAllowed},
    {"addingThatWantsAPrompt", nothingFoundAnd({{"CreateItem", "(objectpath '/', objectpath '/prompt')"}}),
     Call::add, SecretStatus::interactionNotAllowed},
    {"addingWithoutADefaultCollection", nothingFoundAnd({{"ReadAlias", "(objectpath '/',)"}}), Call::add,
     SecretStatus::notAvailable},
    {"addingThatFails", nothingFoundAnd({{"CreateItem", failed}}), Call::add, SecretStatus::internalError},
    {"muteAtTheAdding", nothingFoundAnd({{"CreateItem", "..."}}), Call::add, SecretStatus::notAvailable},

    {"itemIsRemoved", {}, Call::remove, SecretStatus::success},
    {"nothingToRemove", nothingFound, Call::remove, SecretStatus::itemNotFound},
    {"itemOfAGroupIsNotRemoved",
     {{"GetAll /collection/item", groupProperties}},
     Call::remove,
     SecretStatus::itemNotFound},
    {"removingThatWantsAPrompt",
     {{"Delete", "(objectpath '/prompt',)"}},
     Call::remove,
     SecretStatus::interactionNotAllowed},
    {"lockedItemIsNotRemoved",
     {{"SearchItems", lockedItem}, {"GetAll /collection/item", lockedProperties}},
     Call::remove,
     SecretStatus::interactionNotAllowed},
    {"lockedItemBesideARemovedOneIsReported",
     {{"SearchItems", "([objectpath '/collection/item'], [objectpath '/collection/second'])"},
      {"GetAll /collection/second", lockedProperties}},
     Call::remove,
     SecretStatus::interactionNotAllowed},
    {"muteAtTheRemoval", {{"Delete", "..."}}, Call::remove, SecretStatus::notAvailable},
};

struct Collector : SecretItems::Receiver {
  void receive(std::string_view received) override { bytes = received; }
  std::optional<std::string> bytes;
};

std::int32_t perform(Call call, Collector& collector) {
  const SecretItemQuery query{"s", "a", std::nullopt};
  const SecretItemQuery ofGroup{"s", "a", "g"};
  switch (call) {
    case Call::copy:
      return systemSecretItems().copyMatching(query, collector);
    case Call::copyOfGroup:
      return systemSecretItems().copyMatching(ofGroup, collector);
    case Call::copyOfGroupOrPlain:
      EXPECT_EQ(systemSecretItems().copyMatching(ofGroup, collector), SecretStatus::itemNotFound);
      return systemSecretItems().copyMatching(query, collector);
    case Call::add:
      return systemSecretItems().add(query, "pw");
    case Call::remove:
      return systemSecretItems().remove(query);
  }
  return 1;
}

class SecretServiceAnswers : public testing::TestWithParam<Row> {};

TEST_P(SecretServiceAnswers, giveTheStatusAndNeverAPrompt) {
  const Row& row = GetParam();
  FakeSecretService::Answers answers = FakeSecretService::oneItem();
  for (const auto& [method, answer] : row.changed) {
    answers[method] = answer;
  }
  PrivateBus bus;
  FakeSecretService service(bus, answers);
  ScopedEnvironment environment({{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});

  Collector collector;
  EXPECT_EQ(perform(row.call, collector), row.status);
  EXPECT_EQ(collector.bytes, row.received);
  auto called = service.called();
  EXPECT_FALSE(called.contains("Prompt"));
  EXPECT_FALSE(called.contains("Unlock"));
  bool mayCreate = row.call == Call::add && row.status != SecretStatus::duplicateItem;
  EXPECT_TRUE(mayCreate || !called.contains("CreateItem"));
  EXPECT_TRUE(row.call == Call::remove || !called.contains("Delete"));
  EXPECT_TRUE(row.call != Call::copyOfGroupOrPlain || called.count("SearchItems") == 1);
}

INSTANTIATE_TEST_SUITE_P(Rows, SecretServiceAnswers, testing::ValuesIn(rows),
                         [](const auto& instance) { return std::string(instance.param.name); });

}  // namespace
}  // namespace tarnwell::test
