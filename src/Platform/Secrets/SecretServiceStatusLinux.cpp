#include "Platform/Secrets/SecretItems.h"
#include "Platform/Secrets/SecretServiceStatus.h"

namespace tarnwell {
namespace {

constexpr std::string_view busErrors = "org.freedesktop.DBus.Error.";
constexpr std::string_view secretErrors = "org.freedesktop.Secret.Error.";
/// Errors that the bus library itself makes from an error number.
constexpr std::string_view systemErrors = "System.Error.";

struct ErrorRow {
  std::string_view domain;
  std::string_view name;
  std::int32_t status;
};

constexpr ErrorRow errorRows[] = {
    // The bus is there. The service is not, or does not answer this program.
    {busErrors, "ServiceUnknown", SecretStatus::notAvailable},
    {busErrors, "NameHasNoOwner", SecretStatus::notAvailable},
    {busErrors, "NoReply", SecretStatus::notAvailable},
    {busErrors, "AccessDenied", SecretStatus::notAvailable},
    {busErrors, "AuthFailed", SecretStatus::notAvailable},
    {busErrors, "NoServer", SecretStatus::notAvailable},
    {busErrors, "Timeout", SecretStatus::notAvailable},
    {busErrors, "TimedOut", SecretStatus::notAvailable},
    {busErrors, "Disconnected", SecretStatus::notAvailable},
    {busErrors, "IOError", SecretStatus::notAvailable},
    {busErrors, "LimitsExceeded", SecretStatus::notAvailable},
    {busErrors, "Spawn.ExecFailed", SecretStatus::notAvailable},
    {busErrors, "Spawn.ForkFailed", SecretStatus::notAvailable},
    {busErrors, "Spawn.ChildExited", SecretStatus::notAvailable},
    {busErrors, "Spawn.ChildSignaled", SecretStatus::notAvailable},
    {busErrors, "Spawn.Failed", SecretStatus::notAvailable},
    // The program that owns the name is not a Secret Service.
    {busErrors, "UnknownMethod", SecretStatus::notAvailable},
    {busErrors, "UnknownInterface", SecretStatus::notAvailable},
    {busErrors, "UnknownObject", SecretStatus::notAvailable},
    {busErrors, "InvalidArgs", SecretStatus::badParameter},
    {secretErrors, "IsLocked", SecretStatus::interactionNotAllowed},
    {secretErrors, "NoSuchObject", SecretStatus::itemNotFound},
    {secretErrors, "AlreadyExists", SecretStatus::duplicateItem},
};

struct MessageRow {
  std::int32_t status;
  std::string_view message;
};

constexpr MessageRow messageRows[] = {
    {SecretStatus::success, "No error."},
    {SecretStatus::badParameter, "The secret service does not accept these attributes."},
    {SecretStatus::notAvailable, "No secret service answers on the session bus."},
    {SecretStatus::duplicateItem, "The item is already in the keyring."},
    {SecretStatus::itemNotFound, "The item is not in the keyring."},
    {SecretStatus::interactionNotAllowed, "The keyring is locked. Unlock it and try again."},
    {SecretStatus::missingEntitlement, "This program may not use the shared items."},
    {SecretStatus::internalError, "The secret service reported an internal error."},
};

}  // namespace

std::int32_t secretServiceStatus(std::string_view errorName) {
  if (errorName.empty() || errorName.starts_with(systemErrors)) {
    return SecretStatus::notAvailable;
  }
  for (const ErrorRow& row : errorRows) {
    if (errorName.starts_with(row.domain) && errorName.substr(row.domain.size()) == row.name) {
      return row.status;
    }
  }
  return SecretStatus::internalError;
}

std::optional<std::string_view> secretStatusMessage(std::int32_t status) {
  for (const MessageRow& row : messageRows) {
    if (row.status == status) {
      return row.message;
    }
  }
  return std::nullopt;
}

}  // namespace tarnwell
