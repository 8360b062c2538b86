#pragma once

/// Encrypts a secret on its way between the freedesktop Secret Service and this program. Both sides agree on
/// a key, so neither the bus nor a listener on it sees the secret (Secret Service API, "Transfer of Secrets",
/// algorithm dh-ietf1024-sha256-aes128-cbc-pkcs7). Linux only.
///
///     KeyAgreement agreement;
///     send(agreement.publicKey());
///     std::optional<TransferKey> key = agreement.agree(received);
///
/// This protects against listeners. It does not protect against a program that takes the service's place on
/// the user's bus.
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

/// An agreed AES-128 key. The destructor overwrites it.
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

  /// Passes the secret to `receive`; the bytes are valid only during that call. Returns false, and does not
  /// call `receive`, when the data is not encrypted with this key.
  bool decrypt(std::string_view parameters, std::string_view bytes,
               const std::function<void(std::string_view)>& receive) const;

 private:
  Bytes bytes_;
};

/// One side of a Diffie-Hellman agreement in the second Oakley group (RFC 2409, section 6.2).
class KeyAgreement {
 public:
  /// Makes a random private number.
  KeyAgreement();
  /// Takes a private number, big-endian.
  explicit KeyAgreement(std::string_view privateNumber);

  /// Big-endian, with the length of the group's prime: 128 bytes.
  std::string publicKey() const;

  /// Absent when the other side's number is not in the group, or makes the key easy to guess.
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
