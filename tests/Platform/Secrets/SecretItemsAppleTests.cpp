#include "Platform/Secrets/SecretItems.h"

#include <Security/Security.h>

#include <initializer_list>

#include "apple/FrameworksInMemory.h"

namespace tarnwell::test {
namespace {

using Found = FrameworksInMemory::Found;

const SecretItemQuery shared{"service", "user@example.org", "TEAM.service"};
const SecretItemQuery plain{"service", "user@example.org", std::nullopt};

class Receiver : public SecretItems::Receiver {
 public:
  void receive(std::string_view bytes) override { received.emplace_back(bytes); }

  std::vector<std::string> received;
};

std::int32_t copy(const SecretItemQuery& query) {
  Receiver receiver;
  return systemSecretItems().copyMatching(query, receiver);
}

std::int32_t add(const SecretItemQuery& query) { return systemSecretItems().add(query, "pass word"); }

std::int32_t remove(const SecretItemQuery& query) { return systemSecretItems().remove(query); }

struct OperationRow {
  const char* name;
  std::int32_t (*call)(const SecretItemQuery&);
  std::map<std::string, std::string> extraAttributes;
};

const OperationRow operations[] = {
    {"copy", copy, {{"return data", "true"}, {"match limit", "one"}}},
    {"add", add, {{"data", "pass word"}, {"accessible", "when unlocked"}}},
    {"delete", remove, {}},
};

class SecretItemsOnKeychain : public testing::Test {
 protected:
  void SetUp() override { frameworks = {}; }
  void TearDown() override { EXPECT_EQ(frameworks.liveObjects, objectsBefore); }

  FrameworksInMemory& frameworks = frameworksInMemory();
  const int objectsBefore = frameworks.liveObjects;
};

TEST_F(SecretItemsOnKeychain, itemIsNamedByExactlyTheseAttributes) {
  for (const OperationRow& row : operations) {
    frameworks = {};
    std::map<std::string, std::string> expected{
        {"class", "generic password"}, {"service", "service"}, {"account", "user@example.org"}};
    expected.insert(row.extraAttributes.begin(), row.extraAttributes.end());

    row.call(plain);
    ASSERT_EQ(frameworks.keychainCalls.size(), 1U) << row.name;
    EXPECT_EQ(frameworks.keychainCalls.back().name, row.name);
    EXPECT_EQ(frameworks.keychainCalls.back().attributes, expected) << row.name;

    row.call(shared);
    ASSERT_EQ(frameworks.keychainCalls.size(), 2U) << row.name;
    expected.insert({{"access group", "TEAM.service"}, {"data protection", "true"}});
    EXPECT_EQ(frameworks.keychainCalls.back().attributes, expected) << row.name;
  }
}

TEST_F(SecretItemsOnKeychain, statusPassesThrough) {
  for (const OperationRow& row : operations) {
    for (OSStatus status :
         std::initializer_list<OSStatus>{errSecSuccess, errSecParam, errSecDuplicateItem, errSecItemNotFound,
                                         errSecInteractionNotAllowed, errSecMissingEntitlement, -67671}) {
      frameworks = {};
      frameworks.keychainStatus = status;
      EXPECT_EQ(row.call(plain), status) << row.name;
    }
  }
}

TEST_F(SecretItemsOnKeychain, nobodyIsAskedDuringACallAndTheSettingIsPutBack) {
  for (const OperationRow& row : operations) {
    for (bool before : {true, false}) {
      frameworks = {};
      frameworks.mayInteract = before;
      row.call(plain);
      ASSERT_EQ(frameworks.keychainCalls.size(), 1U) << row.name;
      EXPECT_FALSE(frameworks.keychainCalls.front().mayInteract) << row.name;
      EXPECT_EQ(frameworks.mayInteract, before) << row.name;
    }
  }
}

TEST_F(SecretItemsOnKeychain, noCallIsMadeWhenAskingCannotBeForbidden) {
  for (const OperationRow& row : operations) {
    frameworks = {};
    frameworks.interactionStatus = errSecNotAvailable;
    EXPECT_EQ(row.call(plain), SecretStatus::notAvailable) << row.name;
    EXPECT_TRUE(frameworks.keychainCalls.empty()) << row.name;
  }
}

TEST_F(SecretItemsOnKeychain, textsThatAreNotUTF8AreABadParameter) {
  const SecretItemQuery rows[] = {{"\xFF", "account", std::nullopt},
                                  {"service", "\xC3", std::nullopt},
                                  {"service", "account", "\xED\xA0\x80"}};
  for (const OperationRow& row : operations) {
    for (const SecretItemQuery& query : rows) {
      EXPECT_EQ(row.call(query), SecretStatus::badParameter) << row.name;
    }
  }
  EXPECT_TRUE(frameworks.keychainCalls.empty());
}

struct FoundRow {
  const char* name;
  OSStatus status;
  Found found;
  std::string bytes;
  std::vector<std::string> expected;
};

TEST_F(SecretItemsOnKeychain, receiverHasTheDataOfASuccessAndNothingElse) {
  using namespace std::string_literals;
  const FoundRow rows[] = {
      {"data", errSecSuccess, Found::data, "pass word", {"pass word"}},
      {"any bytes", errSecSuccess, Found::data, "a\0\xFF"s, {"a\0\xFF"s}},
      {"no bytes", errSecSuccess, Found::data, "", {""}},
      {"nothing", errSecSuccess, Found::nothing, "", {}},
      {"no data but a text", errSecSuccess, Found::text, "pass word", {}},
      {"data of a failure", errSecItemNotFound, Found::data, "pass word", {}},
  };
  for (const FoundRow& row : rows) {
    frameworks = {};
    frameworks.keychainStatus = row.status;
    frameworks.found = row.found;
    frameworks.foundBytes = row.bytes;
    Receiver receiver;
    EXPECT_EQ(systemSecretItems().copyMatching(plain, receiver), row.status) << row.name;
    EXPECT_EQ(receiver.received, row.expected) << row.name;
    EXPECT_EQ(frameworks.liveObjects, objectsBefore) << row.name;
  }
}

TEST_F(SecretItemsOnKeychain, secretIsHandedOverWithoutACopy) {
  const std::string secret = "pass word";
  EXPECT_EQ(systemSecretItems().add(shared, secret), SecretStatus::success);
  EXPECT_EQ(frameworks.keychainCalls.at(0).dataBytes, secret.data());
}

TEST_F(SecretItemsOnKeychain, messageIsThatOfTheSystem) {
  frameworks.messages = {{errSecItemNotFound, "Élément introuvable — 項目がない 🔑."}};
  EXPECT_EQ(systemSecretItems().message(errSecItemNotFound), "Élément introuvable — 項目がない 🔑.");
  EXPECT_EQ(systemSecretItems().message(-1), std::nullopt);
}

}  // namespace
}  // namespace tarnwell::test
