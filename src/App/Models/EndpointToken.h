#pragma once

/// The token of the local endpoint, in the keyring as an item of its own.
///
///     EndpointToken tokens(passwords);
///     std::optional<Secret> token = tokens.existing();
///     Secret other = tokens.renew();   // 43 letters, digits, hyphens and underscores
///
/// Threads: any, one at a time. Waits for the secret store, so not for the thread of the window. Everything
/// throws `KeychainError` when the store does not do it.

#include <optional>

#include "Core/KeychainStore.h"
#include "Core/Secret.h"

namespace tarnwell {

class EndpointToken {
 public:
  /// In the same secret store as the passwords.
  explicit EndpointToken(const KeychainStore& passwords);

  /// Absent when there is none, or what is there cannot stand in a header.
  std::optional<Secret> existing() const;

  /// Makes a token of 32 random bytes and puts it in the place of the one before, which stays when the store
  /// does not take it. Also throws `std::system_error` when there is no randomness.
  Secret renew() const;

 private:
  void putBack(const std::optional<Secret>& token) const;

  KeychainStore store_;
};

}  // namespace tarnwell
