#include <gio/gio.h>
#include <libsecret/secret.h>

#include "Platform/SecretItems.h"
#include "Platform/SecretServiceStatus.h"

namespace tarnwell {
namespace {

constexpr std::string_view ioErrors = "g-io-error-quark";
constexpr std::string_view busErrors = "g-dbus-error-quark";
constexpr std::string_view secretErrors = "secret-error";

struct ErrorRow {
  std::string_view domain;
  int code;
  std::int32_t status;
};

constexpr ErrorRow errorRows[] = {
    // The bus cannot be reached, closes the connection or keeps silent. A deadline that has passed shows
    // as a cancelled operation.
    {ioErrors, G_IO_ERROR_FAILED, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_NOT_FOUND, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_PERMISSION_DENIED, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_INVALID_ARGUMENT, SecretStatus::notAvailable},  // the address is no address
    {ioErrors, G_IO_ERROR_NOT_SUPPORTED, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_CLOSED, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_CANCELLED, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_TIMED_OUT, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_CONNECTION_REFUSED, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_BROKEN_PIPE, SecretStatus::notAvailable},
    {ioErrors, G_IO_ERROR_NOT_CONNECTED, SecretStatus::notAvailable},
    // The bus is there, the service is not, or it does not answer to this program.
    {busErrors, G_DBUS_ERROR_SERVICE_UNKNOWN, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_NAME_HAS_NO_OWNER, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_NO_REPLY, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_ACCESS_DENIED, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_AUTH_FAILED, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_NO_SERVER, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_TIMEOUT, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_TIMED_OUT, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_DISCONNECTED, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_LIMITS_EXCEEDED, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_SPAWN_EXEC_FAILED, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_SPAWN_FORK_FAILED, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_SPAWN_CHILD_EXITED, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_SPAWN_CHILD_SIGNALED, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_SPAWN_FAILED, SecretStatus::notAvailable},
    // The name belongs to a program that is no Secret Service.
    {busErrors, G_DBUS_ERROR_UNKNOWN_METHOD, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_UNKNOWN_INTERFACE, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_UNKNOWN_OBJECT, SecretStatus::notAvailable},
    {busErrors, G_DBUS_ERROR_INVALID_ARGS, SecretStatus::badParameter},
    {secretErrors, SECRET_ERROR_PROTOCOL, SecretStatus::internalError},
    {secretErrors, SECRET_ERROR_IS_LOCKED, SecretStatus::interactionNotAllowed},
    {secretErrors, SECRET_ERROR_NO_SUCH_OBJECT, SecretStatus::itemNotFound},
    {secretErrors, SECRET_ERROR_ALREADY_EXISTS, SecretStatus::duplicateItem},
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

std::int32_t secretServiceStatus(std::string_view domain, int code) {
  for (const ErrorRow& row : errorRows) {
    if (row.domain == domain && row.code == code) {
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
