#pragma once

/// The system's secret store, as four calls that answer with a status.
///
/// The calls and the status codes are those of the macOS keychain (generic-password items); on Linux
/// they are carried out on the freedesktop Secret Service, whose answers are mapped onto the same
/// codes. No call ever asks the user anything or unlocks anything: what would need that fails with
/// `interactionNotAllowed`.
///
/// On Linux no call lasts longer than two seconds. On macOS the system's calls know no bound; they are
/// answered by a service of the same machine.
///
/// An item is identified by its service, its account and, when it lies in the place that programs of
/// one maker share, its access group. A query without an access group means the plain place only. On
/// macOS the shared place is in the data-protection keychain and open only to a program that is signed
/// for the group; others have `missingEntitlement` from it. The plain place is the login keychain.
///
/// Threads: any; calls on one object wait for each other.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// Status codes of `SecretItems`, by the values that the macOS keychain uses.
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
  /// Receives the bytes of a secret; called at most once, before the call returns. The bytes are only
  /// valid during the call, so that the receiver decides where the one lasting copy lies.
  class Receiver {
   public:
    virtual ~Receiver() = default;
    virtual void receive(std::string_view bytes) = 0;
  };

  virtual ~SecretItems() = default;

  /// Hands the data of the one matching item to the receiver. When several items match, the one changed
  /// last is taken on Linux, and the one in the first keychain of the search list on macOS. Success without
  /// a call of the receiver means that the item has no data.
  virtual std::int32_t copyMatching(const SecretItemQuery& query, Receiver& receiver) = 0;

  /// Adds an item, readable while the user's session is unlocked; never replaces one.
  virtual std::int32_t add(const SecretItemQuery& query, std::string_view data) = 0;

  /// Removes every matching item.
  virtual std::int32_t remove(const SecretItemQuery& query) = 0;

  /// The system's sentence for a status; absent when it has none.
  virtual std::optional<std::string> message(std::int32_t status) = 0;
};

/// The store of the system that the program runs on; one object for the whole process.
SecretItems& systemSecretItems();

}  // namespace tarnwell
