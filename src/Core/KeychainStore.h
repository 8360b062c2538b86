#pragma once

/// The account's app password in the system's secret store.
///
/// Service and account identify an item. It may lie in the place that the programs of one maker share (an
/// access group), or in the plain place. Every operation tries the shared place first. A program that may not
/// use the shared place uses only the plain one, without an error.
///
///     std::optional<Secret> password = KeychainStore::shared().read("user@example.org");
///
/// Threads: an immutable value. For the store's items, the thread rule of `SecretItems` applies.

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Core/Secret.h"
#include "Platform/Secrets/SecretItems.h"

namespace tarnwell {

/// Why an operation of the secret store failed.
class KeychainError : public std::exception {
 public:
  enum class Kind { unexpectedStatus, decodingFailed };

  /// `message` is the system's sentence for the status. Without one the description says "unknown".
  static KeychainError unexpectedStatus(std::int32_t status, const std::optional<std::string>& message);
  static KeychainError decodingFailed();

  Kind kind() const { return kind_; }
  std::int32_t status() const { return status_; }

  /// The sentence that tools and commands show.
  const std::string& description() const { return description_; }
  const char* what() const noexcept override { return description_.c_str(); }

 private:
  KeychainError(Kind kind, std::int32_t status, std::string description);

  Kind kind_;
  std::int32_t status_;
  std::string description_;
};

class KeychainStore {
 public:
  /// `items` must outlive the store.
  KeychainStore(std::string service, std::optional<std::string> accessGroup, SecretItems& items);

  /// The store with this program's service and access group in the system's secret store.
  static KeychainStore shared();

  /// The items of another service in the same secret store.
  KeychainStore ofService(std::string service) const { return {std::move(service), accessGroup_, *items_}; }

  /// The password. Absent when neither place has an item, or the item has no data. Throws `KeychainError`.
  std::optional<Secret> read(std::string_view account) const;

  /// Replaces any existing item. Throws `KeychainError`.
  void save(const Secret& password, std::string_view account) const;

  /// Removes the item from both places. A missing item is no error. Throws `KeychainError`.
  void remove(std::string_view account) const;

  /// True if `read` returns a password, false if it returns none or throws.
  bool hasPassword(std::string_view account) const;

 private:
  /// One query for each place, in the order of the tries.
  std::vector<SecretItemQuery> attempts(std::string_view account) const;

  std::string service_;
  std::optional<std::string> accessGroup_;
  SecretItems* items_;
};

}  // namespace tarnwell
