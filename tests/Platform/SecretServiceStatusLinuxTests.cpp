#include "Platform/SecretServiceStatus.h"

#include <set>

#include "Platform/SecretItems.h"

namespace tarnwell {
namespace {

constexpr const char* io = "g-io-error-quark";
constexpr const char* bus = "g-dbus-error-quark";
constexpr const char* secret = "secret-error";

struct Row {
  const char* name;
  const char* domain;
  int code;
  std::int32_t status;
};

// The numbers are those of GLib 2.74 and libsecret 0.20, as they were seen.
TEST(SecretServiceStatus, answersHaveTheCodesOfTheKeychain) {
  const Row rows[] = {
      {"any failure of the connection", io, 0, SecretStatus::notAvailable},
      {"missing socket", io, 1, SecretStatus::notAvailable},
      {"malformed address", io, 13, SecretStatus::notAvailable},
      {"socket of another user", io, 14, SecretStatus::notAvailable},
      {"unknown transport", io, 15, SecretStatus::notAvailable},
      {"connection closed", io, 18, SecretStatus::notAvailable},
      {"deadline passed", io, 19, SecretStatus::notAvailable},
      {"time-out of GDBus", io, 24, SecretStatus::notAvailable},
      {"nobody listens", io, 39, SecretStatus::notAvailable},
      {"peer went away", io, 44, SecretStatus::notAvailable},
      {"not connected", io, 45, SecretStatus::notAvailable},
      {"no such service", bus, 2, SecretStatus::notAvailable},
      {"name without an owner", bus, 3, SecretStatus::notAvailable},
      {"no reply", bus, 4, SecretStatus::notAvailable},
      {"limits of the bus", bus, 8, SecretStatus::notAvailable},
      {"access denied", bus, 9, SecretStatus::notAvailable},
      {"unknown method", bus, 19, SecretStatus::notAvailable},
      {"timed out", bus, 20, SecretStatus::notAvailable},
      {"service could not be started", bus, 27, SecretStatus::notAvailable},
      {"arguments refused", bus, 16, SecretStatus::badParameter},
      {"any failure of the service", bus, 0, SecretStatus::internalError},
      {"no memory", bus, 1, SecretStatus::internalError},
      {"protocol of the secret", secret, 1, SecretStatus::internalError},
      {"locked", secret, 2, SecretStatus::interactionNotAllowed},
      {"no such object", secret, 3, SecretStatus::itemNotFound},
      {"already exists", secret, 4, SecretStatus::duplicateItem},
      {"another domain", "g-exec-error-quark", 8, SecretStatus::internalError},
      {"no domain", "", 0, SecretStatus::internalError},
      {"unknown code", io, 9999, SecretStatus::internalError},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(secretServiceStatus(row.domain, row.code), row.status) << row.name;
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
