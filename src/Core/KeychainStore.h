#pragma once

/// The account's app password in the system's secret store.
///
/// An item is identified by service and account. It may lie in the place shared by the programs of one
/// maker (an access group) or in the plain one; every operation asks the shared place first. A program
/// that may not use the shared place falls back to the plain one without an error.
///
///     std::optional<Secret> password = KeychainStore::shared().read("user@example.org");
///
/// Threads: an immutable value; the calls of one `SecretItems` come one at a time.

#include <cstdint>
#include <exception>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Core/Secret.h"
#include "Platform/Secrets/SecretItems.h"

namespace tarnwell {

/// Why the secret store did not do what was asked.
class KeychainError : public std::exception {
 public:
  enum class Kind { unexpectedStatus, decodingFailed };

  /// `message` is the system's sentence for the status; "unknown" stands for an absent one.
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

  /// The store with this program's service and access group, on the system's items.
  static KeychainStore shared();

  /// The password, or absent when no item exists in either place. Throws `KeychainError`.
  std::optional<Secret> read(std::string_view account) const;

  /// Replaces any existing item. Throws `KeychainError`.
  void save(const Secret& password, std::string_view account) const;

  /// Removes the item from both places; one that does not exist is no error. Throws `KeychainError`.
  void remove(std::string_view account) const;

  /// True exactly when `read` returns a password without an error.
  bool hasPassword(std::string_view account) const;

 private:
  /// One query for each place, in the order in which they are tried.
  std::vector<SecretItemQuery> attempts(std::string_view account) const;

  std::string service_;
  std::optional<std::string> accessGroup_;
  SecretItems* items_;
};

}  // namespace tarnwell
