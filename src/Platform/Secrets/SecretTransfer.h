#pragma once

/// How a secret travels between the freedesktop Secret Service and this program: encrypted with a key that
/// both sides agree on, so that neither the bus nor who listens on it sees it (Secret Service API,
/// "Transfer of Secrets", algorithm dh-ietf1024-sha256-aes128-cbc-pkcs7). Linux only.
///
///     KeyAgreement agreement;
///     send(agreement.publicKey());
///     std::optional<TransferKey> key = std::move(agreement).agree(received);
///
/// The agreement keeps out who listens, not who takes the service's place on the user's own bus.
///
/// Threads: one at a time for each object.

#include <openssl/bn.h>

#include <array>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwell {

/// An agreed key of AES-128, overwritten when it dies.
class TransferKey {
 public:
  static constexpr std::size_t size = 16;  // bytes
  using Bytes = std::array<unsigned char, size>;

  explicit TransferKey(const Bytes& bytes) : bytes_(bytes) {}
  TransferKey(const TransferKey&) = default;
  TransferKey& operator=(const TransferKey&) = default;
  ~TransferKey();

  struct Encrypted {
    std::string parameters;  // the initialization vector
    std::string bytes;
  };
  Encrypted encrypted(std::string_view secret) const;

  /// Hands the secret over; it is only there during the call. False, without a call, for what is not
  /// encrypted with this key.
  bool decrypt(std::string_view parameters, std::string_view bytes,
               const std::function<void(std::string_view)>& receive) const;

 private:
  Bytes bytes_;
};

/// One side of an agreement by Diffie and Hellman in the second Oakley group (RFC 2409, section 6.2).
class KeyAgreement {
 public:
  /// With a random private number.
  KeyAgreement();
  /// With a given one, big-endian.
  explicit KeyAgreement(std::string_view privateNumber);

  /// Big-endian, as long as the group's prime: 128 bytes.
  std::string publicKey() const;

  /// Absent when the other side's number is none of the group, or one that makes the key known to all.
  std::optional<TransferKey> agree(std::string_view peersPublicKey) const;

 private:
  struct Clear {
    void operator()(BIGNUM* number) const { BN_clear_free(number); }
  };
  using Number = std::unique_ptr<BIGNUM, Clear>;

  Number prime_;
  Number private_;
};

}  // namespace tarnwell
