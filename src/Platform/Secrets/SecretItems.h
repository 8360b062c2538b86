#pragma once

/// The system's secret store, as four calls. Each call but `message` returns a status code.
///
/// The calls and status codes are those of the macOS keychain (generic-password items). On Linux the calls
/// use the freedesktop Secret Service, and its answers become the same codes. No call asks the user or
/// unlocks anything: where that would be necessary, the call fails with `interactionNotAllowed`.
///
/// On Linux no call lasts longer than two seconds. On macOS the system gives no bound, but a service of the
/// same machine answers the calls.
///
/// A service, an account and sometimes an access group identify an item. An item with an access group lies in
/// the shared place, which the programs of one maker share. A query without an access group means only the
/// plain place. On macOS the shared place is in the data-protection keychain, open only to programs that are
/// signed for the group; others get `missingEntitlement`. The plain place on macOS is the login keychain.
///
/// Threads: any. On Linux, calls on one object wait for each other.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// Status codes of `SecretItems`. The values are those of the macOS keychain.
namespace SecretStatus {
inline constexpr std::int32_t success = 0;
inline constexpr std::int32_t badParameter = -50;
inline constexpr std::int32_t notAvailable = -25291;  // no bus, no service, no answer in time
inline constexpr std::int32_t duplicateItem = -25299;
inline constexpr std::int32_t itemNotFound = -25300;
inline constexpr std::int32_t interactionNotAllowed = -25308;  // locked, or the user would be asked
inline constexpr std::int32_t missingEntitlement = -34018;
inline constexpr std::int32_t internalError = -26276;
}  // namespace SecretStatus

/// What identifies an item.
struct SecretItemQuery {
  std::string service;
  std::string account;
  std::optional<std::string> accessGroup;

  bool operator==(const SecretItemQuery&) const = default;
};

class SecretItems {
 public:
  /// Receives the bytes of a secret. The store calls it at most once, before `copyMatching` returns. The
  /// bytes are valid only during the call, so the receiver decides where the one lasting copy lies.
  class Receiver {
   public:
    virtual ~Receiver() = default;
    virtual void receive(std::string_view bytes) = 0;
  };

  virtual ~SecretItems() = default;

  /// Passes the data of the matching item to the receiver. When several items match, Linux takes the one
  /// changed last, and macOS the one in the first keychain of the search list. Success without a call of the
  /// receiver means that the item has no data.
  virtual std::int32_t copyMatching(const SecretItemQuery& query, Receiver& receiver) = 0;

  /// Adds an item that is readable while the user's session is unlocked. Never replaces an item.
  virtual std::int32_t add(const SecretItemQuery& query, std::string_view data) = 0;

  /// Removes every matching item.
  virtual std::int32_t remove(const SecretItemQuery& query) = 0;

  /// The system's sentence for a status. Absent when it has none.
  virtual std::optional<std::string> message(std::int32_t status) = 0;
};

/// The secret store of this system, one object for the whole process.
SecretItems& systemSecretItems();

}  // namespace tarnwell
