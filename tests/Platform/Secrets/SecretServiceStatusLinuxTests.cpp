#include "Platform/Secrets/SecretServiceStatus.h"

#include <set>

#include "Platform/Secrets/SecretItems.h"

namespace tarnwell {
namespace {

struct Row {
  const char* name;
  std::int32_t status;
};

TEST(SecretServiceStatus, answersHaveTheCodesOfTheKeychain) {
  const Row rows[] = {
      {"", SecretStatus::notAvailable},  // no connection, or no answer in time
      {"System.Error.ECONNRESET", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.ServiceUnknown", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.NameHasNoOwner", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.NoReply", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.LimitsExceeded", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.AccessDenied", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.UnknownMethod", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.UnknownInterface", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.UnknownObject", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.Timeout", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.TimedOut", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.Disconnected", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.Spawn.ExecFailed", SecretStatus::notAvailable},
      {"org.freedesktop.DBus.Error.InvalidArgs", SecretStatus::badParameter},
      {"org.freedesktop.DBus.Error.Failed", SecretStatus::internalError},
      {"org.freedesktop.DBus.Error.NoMemory", SecretStatus::internalError},
      {"org.freedesktop.DBus.Error.", SecretStatus::internalError},
      {"org.freedesktop.Secret.Error.IsLocked", SecretStatus::interactionNotAllowed},
      {"org.freedesktop.Secret.Error.NoSuchObject", SecretStatus::itemNotFound},
      {"org.freedesktop.Secret.Error.AlreadyExists", SecretStatus::duplicateItem},
      {"org.freedesktop.Secret.Error.NoSession", SecretStatus::internalError},
      {"org.freedesktop.DBus.Error.IsLocked", SecretStatus::internalError},
      {"IsLocked", SecretStatus::internalError},
      {"org.example.Error", SecretStatus::internalError},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(secretServiceStatus(row.name), row.status) << row.name;
  }
}

TEST(SecretServiceStatus, everyStatusHasASentenceOfItsOwn) {
  std::set<std::string_view> sentences;
  for (std::int32_t status :
       {SecretStatus::success, SecretStatus::badParameter, SecretStatus::notAvailable,
        SecretStatus::duplicateItem, SecretStatus::itemNotFound, SecretStatus::interactionNotAllowed,
        SecretStatus::missingEntitlement, SecretStatus::internalError}) {
    auto sentence = secretStatusMessage(status);
    ASSERT_TRUE(sentence) << status;
    EXPECT_TRUE(sentence->ends_with('.')) << *sentence;
    EXPECT_TRUE(sentences.insert(*sentence).second) << *sentence;
  }
  EXPECT_EQ(secretStatusMessage(-1), std::nullopt);
  EXPECT_EQ(secretStatusMessage(-67000), std::nullopt);
}

}  // namespace
}  // namespace tarnwell
