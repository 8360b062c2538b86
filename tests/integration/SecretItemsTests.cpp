// The system's secret items with a real gnome-keyring on a private bus, and with buses that are missing or
// mute.

#include "Platform/Secrets/SecretItems.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <optional>
#include <string>
#include <vector>

#include "Core/KeychainStore.h"
#include "integration/PrivateKeyring.h"
#include "support/ScopedEnvironment.h"

namespace tarnwell::test {
namespace {

const std::string service = "app.tarnwell.Tarnwell";
const std::string address = "user@example.org";
const std::string group = "TARNWELL01.app.tarnwell.Tarnwell";
const SecretItemQuery plain{service, address, std::nullopt};
const SecretItemQuery shared{service, address, group};

ScopedEnvironment::Variables onlyBus(std::optional<std::string> busAddress) {
  return {{"DBUS_SESSION_BUS_ADDRESS", std::move(busAddress)},
          {"XDG_RUNTIME_DIR", std::nullopt},
          {"DISPLAY", std::nullopt},
          {"WAYLAND_DISPLAY", std::nullopt}};
}

struct Copy {
  std::int32_t status;
  std::optional<std::string> bytes;

  bool operator==(const Copy&) const = default;
};

void PrintTo(const Copy& copy, std::ostream* stream) {
  *stream << copy.status << " with " << testing::PrintToString(copy.bytes);
}

Copy copy(const SecretItemQuery& query) {
  struct Collector : SecretItems::Receiver {
    void receive(std::string_view received) override {
      EXPECT_FALSE(bytes) << "received twice";
      bytes = received;
    }
    std::optional<std::string> bytes;
  } collector;
  std::int32_t status = systemSecretItems().copyMatching(query, collector);
  return {status, collector.bytes};
}

const Copy notFound{SecretStatus::itemNotFound, std::nullopt};

class SecretItemsOnKeyring : public testing::Test {
 protected:
  PrivateKeyring keyring;
  ScopedEnvironment environment{onlyBus(keyring.bus().address())};
  SecretItems& items = systemSecretItems();
};

TEST_F(SecretItemsOnKeyring, itemStoredByHandIsFound) {
  keyring.storeByTool({"service", service, "account", address}, "app-pass-word");
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "app-pass-word"}));
  EXPECT_EQ(copy(shared), notFound);
  auto password = KeychainStore::shared().read(address);
  ASSERT_TRUE(password);
  EXPECT_EQ(password->view(), "app-pass-word");
}

TEST_F(SecretItemsOnKeyring, absentItemIsNotFound) {
  EXPECT_EQ(copy(plain), notFound);
  EXPECT_EQ(items.remove(plain), SecretStatus::itemNotFound);
  EXPECT_FALSE(KeychainStore::shared().read(address));
}

TEST_F(SecretItemsOnKeyring, twoPlacesAreKeptApart) {
  ASSERT_EQ(items.add(shared, "in the group"), SecretStatus::success);
  EXPECT_EQ(copy(plain), notFound);
  EXPECT_EQ(items.remove(plain), SecretStatus::itemNotFound);
  ASSERT_EQ(items.add(plain, "in the plain place"), SecretStatus::success);
  EXPECT_EQ(copy(shared), (Copy{SecretStatus::success, "in the group"}));
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "in the plain place"}));
  ASSERT_EQ(items.remove(plain), SecretStatus::success);
  EXPECT_EQ(copy(plain), notFound);
  EXPECT_EQ(copy(shared), (Copy{SecretStatus::success, "in the group"}));
}

// The answer about the plain place that came with the shared one is kept only for a short time.
TEST_F(SecretItemsOnKeyring, itemStoredAfterTheSearchInTheSharedPlaceIsFound) {
  EXPECT_EQ(copy(shared), notFound);
  keyring.storeByTool({"service", service, "account", address}, "app-pass-word");
  std::this_thread::sleep_for(std::chrono::milliseconds(150));
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "app-pass-word"}));
}

TEST_F(SecretItemsOnKeyring, otherAccountsAreNotTouched) {
  SecretItemQuery other{service, "other@example.org", std::nullopt};
  ASSERT_EQ(items.add(other, "other"), SecretStatus::success);
  EXPECT_EQ(copy(plain), notFound);
  EXPECT_EQ(items.remove(plain), SecretStatus::itemNotFound);
  EXPECT_EQ(copy(other), (Copy{SecretStatus::success, "other"}));
}

TEST_F(SecretItemsOnKeyring, addNeverReplaces) {
  ASSERT_EQ(items.add(plain, "first"), SecretStatus::success);
  EXPECT_EQ(items.add(plain, "second"), SecretStatus::duplicateItem);
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "first"}));
}

TEST_F(SecretItemsOnKeyring, addedItemCarriesLabelAndAttributes) {
  ASSERT_EQ(items.add(shared, "secret"), SecretStatus::success);
  std::string shown = keyring.searchByTool({"service", service, "account", address});
  EXPECT_THAT(shown, testing::HasSubstr("label = Tarnwell\n"));
  EXPECT_THAT(shown, testing::HasSubstr("attribute.service = " + service + "\n"));
  EXPECT_THAT(shown, testing::HasSubstr("attribute.account = " + address + "\n"));
  EXPECT_THAT(shown, testing::HasSubstr("attribute.accessGroup = " + group + "\n"));
}

TEST_F(SecretItemsOnKeyring, anyBytesComeBackUnchanged) {
  for (const std::string& bytes :
       {std::string("\xFF\xFE\x00\x80 caf\xE9", 9), std::string("日本語\n"), std::string(100'000, 'x')}) {
    ASSERT_EQ(items.add(plain, bytes), SecretStatus::success);
    EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, bytes}));
    ASSERT_EQ(items.remove(plain), SecretStatus::success);
  }
}

TEST_F(SecretItemsOnKeyring, bytesThatAreNotUTF8FailTheDecoding) {
  ASSERT_EQ(items.add(plain, "caf\xE9"), SecretStatus::success);
  KeychainStore store = KeychainStore::shared();
  try {
    store.read(address);
    FAIL() << "no error";
  } catch (const KeychainError& error) {
    EXPECT_EQ(error.kind(), KeychainError::Kind::decodingFailed);
  }
  EXPECT_FALSE(store.hasPassword(address));
}

TEST_F(SecretItemsOnKeyring, storeSavesReplacesAndDeletes) {
  KeychainStore store = KeychainStore::shared();
  keyring.storeByTool({"service", service, "account", address}, "by hand");
  store.save(Secret("first"), address);
  EXPECT_EQ(copy(plain), notFound);
  store.save(Secret("second"), address);
  EXPECT_EQ(store.read(address).value_or(Secret("absent")).view(), "second");
  store.remove(address);
  EXPECT_FALSE(store.hasPassword(address));
  store.remove(address);
}

TEST_F(SecretItemsOnKeyring, ofTwoMatchesTheOneModifiedLastIsTaken) {
  // A third attribute makes two items that match one query. Modification times are whole seconds.
  keyring.storeByTool({"service", service, "account", address, "kind", "old"}, "old");
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  keyring.storeByTool({"service", service, "account", address, "kind", "new"}, "new");
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "new"}));
  std::this_thread::sleep_for(std::chrono::milliseconds(1100));
  keyring.storeByTool({"service", service, "account", address, "kind", "old"}, "old again");
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "old again"}));
  EXPECT_EQ(items.remove(plain), SecretStatus::success);
  EXPECT_EQ(copy(plain), notFound);
}

TEST_F(SecretItemsOnKeyring, lockedCollectionAllowsNothing) {
  ASSERT_EQ(items.add(plain, "secret"), SecretStatus::success);
  keyring.lock();
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::interactionNotAllowed, std::nullopt}));
  EXPECT_EQ(items.add(plain, "other"), SecretStatus::interactionNotAllowed);
  EXPECT_EQ(items.remove(plain), SecretStatus::interactionNotAllowed);
  SecretItemQuery absent{service, "absent@example.org", std::nullopt};
  EXPECT_EQ(items.add(absent, "new"), SecretStatus::interactionNotAllowed);
  EXPECT_THROW(KeychainStore::shared().save(Secret("new"), address), KeychainError);
}

TEST_F(SecretItemsOnKeyring, collectionThatWasNeverUnlockedAllowsNothing) {
  ASSERT_EQ(items.add(plain, "secret"), SecretStatus::success);
  keyring.restartLocked();
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::interactionNotAllowed, std::nullopt}));
  EXPECT_EQ(items.add(plain, "other"), SecretStatus::interactionNotAllowed);
  EXPECT_EQ(items.remove(plain), SecretStatus::interactionNotAllowed);
  try {
    KeychainStore::shared().read(address);
    FAIL() << "no error";
  } catch (const KeychainError& error) {
    EXPECT_EQ(error.description(), "Keychain error -25308: The keyring is locked. Unlock it and try again.");
  }
}

TEST_F(SecretItemsOnKeyring, textThatIsNoTextIsABadParameter) {
  for (const std::string& account : {std::string("a\0b", 3), std::string("\xFF")}) {
    SecretItemQuery query{service, account, std::nullopt};
    EXPECT_EQ(copy(query), (Copy{SecretStatus::badParameter, std::nullopt}));
    EXPECT_EQ(items.add(query, "secret"), SecretStatus::badParameter);
    EXPECT_EQ(items.remove(query), SecretStatus::badParameter);
  }
}

TEST_F(SecretItemsOnKeyring, busIsFoundInTheRuntimeDirectory) {
  ASSERT_EQ(items.add(plain, "secret"), SecretStatus::success);
  auto variables = onlyBus(std::nullopt);
  variables["XDG_RUNTIME_DIR"] = keyring.bus().directory().string();
  ScopedEnvironment runtimeDirectory(variables);
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "secret"}));
}

TEST_F(SecretItemsOnKeyring, busThatGoesAwayIsNotAvailableAndEndsNothing) {
  EXPECT_EQ(copy(plain), notFound);
  {
    PrivateBus other;
    ScopedEnvironment shortLived(onlyBus(other.address()));
    EXPECT_EQ(copy(plain).status, SecretStatus::notAvailable);
  }
  EXPECT_EQ(copy(plain), notFound);
}

TEST_F(SecretItemsOnKeyring, addressesOfOtherKindsArePassedOver) {
  ASSERT_EQ(items.add(plain, "secret"), SecretStatus::success);
  ScopedEnvironment several(onlyBus("tcp:host=127.0.0.1,port=1;" + keyring.bus().address() + ";autolaunch:"));
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "secret"}));
}

TEST_F(SecretItemsOnKeyring, serviceThatWasStartedAnewIsReadAgain) {
  ASSERT_EQ(items.add(plain, "secret"), SecretStatus::success);
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "secret"}));
  keyring.restartUnlocked();
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::success, "secret"}));
  EXPECT_EQ(copy(shared), notFound);
}

void expectNotAvailable() {
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::notAvailable, std::nullopt}));
  EXPECT_EQ(systemSecretItems().add(plain, "secret"), SecretStatus::notAvailable);
  EXPECT_EQ(systemSecretItems().remove(plain), SecretStatus::notAvailable);
  EXPECT_THROW(KeychainStore::shared().read(address), KeychainError);
  EXPECT_THROW(KeychainStore::shared().save(Secret("secret"), address), KeychainError);
}

TEST(SecretItemsWithoutService, noBusVariables) {
  ScopedEnvironment environment(onlyBus(std::nullopt));
  expectNotAvailable();
}

TEST(SecretItemsWithoutService, addressOfAMissingSocket) {
  TemporaryDirectory directory;
  ScopedEnvironment environment(onlyBus("unix:path=" + (directory / "missing").string()));
  expectNotAvailable();
}

TEST(SecretItemsWithoutService, addressThatNamesAProgramStartsNone) {
  TemporaryDirectory directory;
  const std::filesystem::path trace = directory / "trace";
  ScopedEnvironment environment(onlyBus("unixexec:path=/usr/bin/touch,argv1=" + trace.string()));
  expectNotAvailable();
  EXPECT_FALSE(std::filesystem::exists(trace));
}

TEST(SecretItemsWithoutService, addressThatIsNone) {
  ScopedEnvironment environment(onlyBus("no address at all"));
  expectNotAvailable();
}

TEST(SecretItemsWithoutService, debuggingAidsOfTheLibraryLeaveTheStandardStreamsAlone) {
  ScopedEnvironment withoutBus(onlyBus("unix:path=/nowhere"));
  ScopedEnvironment environment(
      ScopedEnvironment::Variables{{"SYSTEMD_LOG_LEVEL", "debug"}, {"SYSTEMD_LOG_TARGET", "console"}});
  testing::internal::CaptureStdout();
  testing::internal::CaptureStderr();
  copy(plain);
  EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(SecretItemsWithoutService, busWithoutService) {
  PrivateBus bus;
  ScopedEnvironment environment(onlyBus(bus.address()));
  expectNotAvailable();
}

TEST(SecretItemsWithoutService, busThatNeverSpeaks) {
  TemporaryDirectory directory;
  std::string path = (directory / "bus").string();
  int listener = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un name{};
  name.sun_family = AF_UNIX;
  path.copy(name.sun_path, sizeof name.sun_path - 1);
  ASSERT_EQ(::bind(listener, reinterpret_cast<const sockaddr*>(&name), sizeof name), 0);
  ASSERT_EQ(::listen(listener, 16), 0);
  ScopedEnvironment environment(onlyBus("unix:path=" + path));
  // Each call takes its whole time limit. So there are only two: a reading, and a saving that tries twice.
  EXPECT_EQ(copy(plain), (Copy{SecretStatus::notAvailable, std::nullopt}));
  EXPECT_THROW(KeychainStore::shared().save(Secret("secret"), address), KeychainError);
  ::close(listener);
}

}  // namespace
}  // namespace tarnwell::test
