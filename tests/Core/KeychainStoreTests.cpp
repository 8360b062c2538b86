#include "Core/KeychainStore.h"

#include "Core/BridgeConstants.h"
#include "support/InMemorySecretItems.h"

namespace tarnwell::test {
namespace {

using testing::ElementsAre;

constexpr const char* account = "user@example.org";
const SecretItemQuery sharedQuery{"service", account, "group"};
const SecretItemQuery plainQuery{"service", account, std::nullopt};

constexpr std::int32_t success = SecretStatus::success;
constexpr std::int32_t notFound = SecretStatus::itemNotFound;
constexpr std::int32_t closed = SecretStatus::missingEntitlement;
constexpr std::int32_t badParameter = SecretStatus::badParameter;

/// Every status that the store treats in its own way, and some others.
const std::vector<std::int32_t> statuses{success,
                                         notFound,
                                         closed,
                                         badParameter,
                                         SecretStatus::duplicateItem,
                                         SecretStatus::interactionNotAllowed,
                                         SecretStatus::notAvailable,
                                         SecretStatus::internalError,
                                         -1,
                                         1,
                                         INT32_MIN};

/// How an operation ended: "value", "absent" or "done", or the status of the error that it threw.
template <class Operation>
std::string outcome(const Operation& operation) {
  try {
    return operation();
  } catch (const KeychainError& error) {
    return error.kind() == KeychainError::Kind::decodingFailed ? "decoding failed"
                                                               : std::to_string(error.status());
  }
}

std::string readOutcome(const KeychainStore& store) {
  return outcome([&] { return std::string(store.read(account) ? "value" : "absent"); });
}

struct Fixture {
  InMemorySecretItems items;
  KeychainStore store{"service", "group", items};
  KeychainStore ungrouped{"service", std::nullopt, items};
};

bool leadsOn(std::int32_t status) { return status == closed || status == badParameter; }

/// The outcome of reading when the two places answer with these statuses and no data.
std::string expectedRead(std::int32_t first, std::int32_t second) {
  if (first == success) {
    return "absent";  // success without data
  }
  if (first != notFound && !leadsOn(first)) {
    return std::to_string(first);
  }
  if (second == success || second == notFound) {
    return "absent";
  }
  return std::to_string(second);
}

TEST(KeychainStoreRead, everyStatusAtEveryAttempt) {
  for (std::int32_t first : statuses) {
    for (std::int32_t second : statuses) {
      SCOPED_TRACE(std::to_string(first) + " then " + std::to_string(second));
      Fixture fixture;
      fixture.items.answers = {first, second};
      EXPECT_EQ(readOutcome(fixture.store), expectedRead(first, second));
      std::size_t attempts = first == notFound || leadsOn(first) ? 2 : 1;
      EXPECT_EQ(fixture.items.calls.size(), attempts);

      Fixture other;
      other.items.answers = {first, second};
      EXPECT_FALSE(other.store.hasPassword(account));
    }
  }
}

TEST(KeychainStoreRead, withoutAGroupThereIsOneAttempt) {
  for (std::int32_t status : statuses) {
    SCOPED_TRACE(status);
    Fixture fixture;
    fixture.items.answers = {status};
    bool isAbsent = status == success || status == notFound;
    EXPECT_EQ(readOutcome(fixture.ungrouped), isAbsent ? "absent" : std::to_string(status));
    EXPECT_THAT(fixture.items.calls, ElementsAre("copy plain user@example.org"));
  }
}

TEST(KeychainStoreRead, sharedPlaceComesFirst) {
  Fixture fixture;
  fixture.items.put(sharedQuery, "shared");
  fixture.items.put(plainQuery, "plain");
  EXPECT_EQ(fixture.store.read(account)->view(), "shared");
  EXPECT_THAT(fixture.items.calls, ElementsAre("copy shared user@example.org"));
}

TEST(KeychainStoreRead, itemInThePlainPlaceOnlyIsFoundSecond) {
  Fixture fixture;
  fixture.items.put(plainQuery, "plain");
  EXPECT_EQ(fixture.store.read(account)->view(), "plain");
  EXPECT_THAT(fixture.items.calls,
              ElementsAre("copy shared user@example.org", "copy plain user@example.org"));
}

TEST(KeychainStoreRead, plainItemIsReadWhenTheSharedPlaceIsClosed) {
  for (std::int32_t status : {closed, badParameter}) {
    Fixture fixture;
    fixture.items.put(plainQuery, "plain");
    fixture.items.answers = {status};
    EXPECT_EQ(fixture.store.read(account)->view(), "plain");
  }
}

// The last place decides, even when the place before it was closed.
TEST(KeychainStoreRead, closedSharedPlaceAndNoPlainItemMeanThatThereIsNoPassword) {
  Fixture fixture;
  fixture.items.answers = {closed};
  EXPECT_FALSE(fixture.store.read(account));
}

struct BytesRow {
  const char* name;
  std::string bytes;
  std::string outcome;
};

TEST(KeychainStoreRead, bytesMustBeUTF8) {
  const BytesRow rows[] = {
      {"plain", "abcd-efgh", "value"},
      {"empty", "", "value"},
      {"japanese", "合言葉", "value"},
      {"with a zero byte", std::string("a\0b", 3), "value"},
      {"latin 1", "caf\xE9", "decoding failed"},
      {"cut in a character", "\xE5\x90", "decoding failed"},
      {"overlong", "\xC0\xAF", "decoding failed"},
      {"surrogate", "\xED\xA0\x80", "decoding failed"},
  };
  for (const BytesRow& row : rows) {
    SCOPED_TRACE(row.name);
    Fixture fixture;
    fixture.items.put(plainQuery, row.bytes);
    EXPECT_EQ(readOutcome(fixture.store), row.outcome);
    EXPECT_EQ(fixture.store.hasPassword(account), row.outcome == "value");
  }
}

TEST(KeychainStoreRead, itemWithoutDataIsAbsent) {
  Fixture fixture;
  fixture.items.put(sharedQuery, "shared");
  fixture.items.put(plainQuery, "plain");
  fixture.items.withholdsData = true;
  EXPECT_FALSE(fixture.store.read(account));
  EXPECT_EQ(fixture.items.calls.size(), 1U);
}

std::string saveOutcome(const KeychainStore& store) {
  return outcome([&] {
    store.save(Secret("new"), account);
    return std::string("done");
  });
}

TEST(KeychainStoreSave, everyStatusAtEveryAttemptToAdd) {
  for (std::int32_t first : statuses) {
    for (std::int32_t second : statuses) {
      SCOPED_TRACE(std::to_string(first) + " then " + std::to_string(second));
      Fixture fixture;
      fixture.items.answers = {notFound, notFound, first, second};
      std::int32_t last = leadsOn(first) ? second : first;
      EXPECT_EQ(saveOutcome(fixture.store), last == success ? "done" : std::to_string(last));
      EXPECT_EQ(fixture.items.calls.size(), leadsOn(first) ? 4U : 3U);
    }
  }
}

// What matters is whether the new item can be added.
TEST(KeychainStoreSave, failureToDeleteTheOldItemIsNoFailure) {
  for (std::int32_t status : statuses) {
    SCOPED_TRACE(status);
    Fixture fixture;
    bool endsTheDeleting = status != success && status != notFound && !leadsOn(status);
    fixture.items.answers = {status};
    EXPECT_EQ(saveOutcome(fixture.store), "done");
    EXPECT_EQ(fixture.items.at(sharedQuery), "new");
    EXPECT_EQ(fixture.items.calls.size(), endsTheDeleting ? 2U : 3U);
  }
}

TEST(KeychainStoreSave, existingItemIsDeletedFirstInBothPlaces) {
  Fixture fixture;
  fixture.items.put(sharedQuery, "old");
  fixture.items.put(plainQuery, "old");
  fixture.store.save(Secret("new"), account);
  EXPECT_EQ(fixture.items.at(sharedQuery), "new");
  EXPECT_EQ(fixture.items.at(plainQuery), std::nullopt);
  EXPECT_THAT(fixture.items.calls,
              ElementsAre("remove shared user@example.org", "remove plain user@example.org",
                          "add shared user@example.org"));
}

TEST(KeychainStoreSave, passwordGoesToThePlainPlaceWhenTheSharedOneIsClosed) {
  Fixture fixture;
  fixture.items.answers = {closed, std::nullopt, closed};
  fixture.store.save(Secret("new"), account);
  EXPECT_EQ(fixture.items.at(sharedQuery), std::nullopt);
  EXPECT_EQ(fixture.items.at(plainQuery), "new");
}

TEST(KeychainStoreSave, itemThatCouldNotBeDeletedIsADuplicate) {
  Fixture fixture;
  fixture.items.put(sharedQuery, "old");
  fixture.items.answers = {SecretStatus::internalError};
  EXPECT_EQ(saveOutcome(fixture.store), std::to_string(SecretStatus::duplicateItem));
  EXPECT_EQ(fixture.items.at(sharedQuery), "old");
}

std::string removeOutcome(const KeychainStore& store) {
  return outcome([&] {
    store.remove(account);
    return std::string("done");
  });
}

TEST(KeychainStoreRemove, everyStatusAtEveryAttempt) {
  auto isAccepted = [](std::int32_t status) {
    return status == success || status == notFound || leadsOn(status);
  };
  for (std::int32_t first : statuses) {
    for (std::int32_t second : statuses) {
      SCOPED_TRACE(std::to_string(first) + " then " + std::to_string(second));
      Fixture fixture;
      fixture.items.answers = {first, second};
      std::string expected = !isAccepted(first)    ? std::to_string(first)
                             : !isAccepted(second) ? std::to_string(second)
                                                   : "done";
      EXPECT_EQ(removeOutcome(fixture.store), expected);
      EXPECT_EQ(fixture.items.calls.size(), isAccepted(first) ? 2U : 1U);
    }
  }
}

// Each place may hold a copy, so the first success is not the end.
TEST(KeychainStoreRemove, copiesInBothPlacesAreRemoved) {
  Fixture fixture;
  fixture.items.put(sharedQuery, "one");
  fixture.items.put(plainQuery, "two");
  fixture.store.remove(account);
  EXPECT_EQ(fixture.items.at(sharedQuery), std::nullopt);
  EXPECT_EQ(fixture.items.at(plainQuery), std::nullopt);
}

TEST(KeychainStoreRemove, withoutAGroupThePlainPlaceAloneIsTouched) {
  Fixture fixture;
  fixture.items.put(sharedQuery, "stays");
  fixture.items.put(plainQuery, "goes");
  fixture.ungrouped.remove(account);
  EXPECT_EQ(fixture.items.at(sharedQuery), "stays");
  EXPECT_EQ(fixture.items.at(plainQuery), std::nullopt);
}

TEST(KeychainStoreHasPassword, isTrueForAPasswordThatCanBeRead) {
  Fixture fixture;
  EXPECT_FALSE(fixture.store.hasPassword(account));
  fixture.items.put(plainQuery, "here");
  EXPECT_TRUE(fixture.store.hasPassword(account));
}

TEST(KeychainErrorDescription, namesStatusAndMessage) {
  EXPECT_EQ(KeychainError::unexpectedStatus(-25308, "The keyring is locked.").description(),
            "Keychain error -25308: The keyring is locked.");
  EXPECT_EQ(KeychainError::unexpectedStatus(-1, std::nullopt).description(), "Keychain error -1: unknown");
  EXPECT_EQ(KeychainError::unexpectedStatus(7, "").description(), "Keychain error 7: ");
  EXPECT_EQ(KeychainError::decodingFailed().description(), "Keychain item could not be decoded as UTF-8");
  EXPECT_STREQ(KeychainError::decodingFailed().what(), "Keychain item could not be decoded as UTF-8");
}

TEST(KeychainErrorDescription, messageComesFromTheSecretItems) {
  Fixture fixture;
  fixture.items.messages[SecretStatus::internalError] = "Out of order.";
  for (auto [status, description] : std::vector<std::pair<std::int32_t, std::string>>{
           {SecretStatus::internalError, "Keychain error -26276: Out of order."},
           {-67000, "Keychain error -67000: unknown"}}) {
    fixture.items.answers = {status};
    try {
      fixture.store.read(account);
      FAIL() << "no error";
    } catch (const KeychainError& error) {
      EXPECT_EQ(error.description(), description);
      EXPECT_EQ(error.status(), status);
    }
  }
}

}  // namespace
}  // namespace tarnwell::test
