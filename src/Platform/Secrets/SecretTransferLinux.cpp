#include "Platform/Secrets/SecretTransfer.h"

#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/kdf.h>
#include <openssl/params.h>
#include <openssl/rand.h>

#include <stdexcept>
#include <vector>

namespace tarnwell {
namespace {

constexpr std::size_t primeBytes = 128;
/// Twice the strength of the group. More bits would only slow the work down.
constexpr int privateBits = 256;

const unsigned char* data(std::string_view bytes) {
  return reinterpret_cast<const unsigned char*>(bytes.data());
}

unsigned char* data(std::string& bytes) { return reinterpret_cast<unsigned char*>(bytes.data()); }

/// OpenSSL fails here only when memory runs out or the library is broken.
template <class Result>
Result orThrow(Result result) {
  if (!result) {
    throw std::runtime_error("OpenSSL cannot encrypt a secret for its way");
  }
  return result;
}

/// Memory that is overwritten before it is freed.
class PassingBytes {
 public:
  explicit PassingBytes(std::size_t size) : bytes_(size) {}
  PassingBytes(const PassingBytes&) = delete;
  ~PassingBytes() { OPENSSL_cleanse(bytes_.data(), bytes_.size()); }

  unsigned char* data() { return bytes_.data(); }
  std::string_view first(int size) const {
    return {reinterpret_cast<const char*>(bytes_.data()), static_cast<std::size_t>(size)};
  }

 private:
  std::vector<unsigned char> bytes_;
};

struct FreeCipher {
  void operator()(EVP_CIPHER_CTX* cipher) const { EVP_CIPHER_CTX_free(cipher); }
};
using Cipher = std::unique_ptr<EVP_CIPHER_CTX, FreeCipher>;

Cipher newCipher() { return Cipher(orThrow(EVP_CIPHER_CTX_new())); }

struct FreeNumberContext {
  void operator()(BN_CTX* context) const { BN_CTX_free(context); }
};

/// base^exponent modulo the prime, in constant time with respect to the exponent.
void raise(BIGNUM* result, const BIGNUM* base, const BIGNUM* exponent, const BIGNUM* prime) {
  const std::unique_ptr<BN_CTX, FreeNumberContext> context(orThrow(BN_CTX_secure_new()));
  orThrow(BN_mod_exp_mont_consttime(result, base, exponent, prime, context.get(), nullptr));
}

/// HKDF (RFC 5869) with SHA-256, without salt or context.
TransferKey::Bytes derivedKey(PassingBytes& shared) {
  const std::unique_ptr<EVP_KDF, decltype(&EVP_KDF_free)> hkdf(
      orThrow(EVP_KDF_fetch(nullptr, "HKDF", nullptr)), EVP_KDF_free);
  const std::unique_ptr<EVP_KDF_CTX, decltype(&EVP_KDF_CTX_free)> context(
      orThrow(EVP_KDF_CTX_new(hkdf.get())), EVP_KDF_CTX_free);
  char digest[] = "SHA256";
  const OSSL_PARAM parameters[] = {
      OSSL_PARAM_construct_utf8_string("digest", digest, 0),
      OSSL_PARAM_construct_octet_string("key", shared.data(), primeBytes),
      OSSL_PARAM_construct_end(),
  };
  TransferKey::Bytes key;
  orThrow(EVP_KDF_derive(context.get(), key.data(), key.size(), parameters) > 0);
  return key;
}

}  // namespace

TransferKey::~TransferKey() { OPENSSL_cleanse(bytes_.data(), bytes_.size()); }

TransferKey::Encrypted TransferKey::encrypted(std::string_view secret) const {
  Encrypted result{std::string(size, '\0'), std::string(secret.size() + size, '\0')};
  orThrow(RAND_bytes(data(result.parameters), size) > 0);
  const Cipher cipher = newCipher();
  orThrow(
      EVP_EncryptInit_ex2(cipher.get(), EVP_aes_128_cbc(), bytes_.data(), data(result.parameters), nullptr));
  int written = 0;
  int rest = 0;
  orThrow(EVP_EncryptUpdate(cipher.get(), data(result.bytes), &written, data(secret),
                            static_cast<int>(secret.size())));
  orThrow(EVP_EncryptFinal_ex(cipher.get(), data(result.bytes) + written, &rest));
  result.bytes.resize(static_cast<std::size_t>(written) + static_cast<std::size_t>(rest));
  return result;
}

bool TransferKey::decrypt(std::string_view parameters, std::string_view bytes,
                          const std::function<void(std::string_view)>& receive) const {
  if (parameters.size() != size || bytes.empty() || bytes.size() % size != 0) {
    return false;
  }
  const Cipher cipher = newCipher();
  orThrow(EVP_DecryptInit_ex2(cipher.get(), EVP_aes_128_cbc(), bytes_.data(), data(parameters), nullptr));
  PassingBytes secret(bytes.size());
  int written = 0;
  int rest = 0;
  const bool isValid = EVP_DecryptUpdate(cipher.get(), secret.data(), &written, data(bytes),
                                         static_cast<int>(bytes.size())) > 0 &&
                       EVP_DecryptFinal_ex(cipher.get(), secret.data() + written, &rest) > 0;
  if (isValid) {
    receive(secret.first(written + rest));
  }
  return isValid;
}

KeyAgreement::KeyAgreement()
    : prime_(orThrow(BN_get_rfc2409_prime_1024(nullptr))), private_(orThrow(BN_secure_new())) {
  orThrow(BN_priv_rand(private_.get(), privateBits, BN_RAND_TOP_ONE, BN_RAND_BOTTOM_ANY));
}

KeyAgreement::KeyAgreement(std::string_view privateNumber)
    : prime_(orThrow(BN_get_rfc2409_prime_1024(nullptr))),
      private_(orThrow(BN_bin2bn(data(privateNumber), static_cast<int>(privateNumber.size()), nullptr))) {}

std::string KeyAgreement::publicKey() const {
  const Number generator(orThrow(BN_new()));
  const Number number(orThrow(BN_new()));
  orThrow(BN_set_word(generator.get(), 2));
  raise(number.get(), generator.get(), private_.get(), prime_.get());
  std::string bytes(primeBytes, '\0');
  orThrow(BN_bn2binpad(number.get(), data(bytes), primeBytes) > 0);
  return bytes;
}

std::optional<TransferKey> KeyAgreement::agree(std::string_view peersPublicKey) const {
  if (peersPublicKey.size() > primeBytes) {
    return std::nullopt;
  }
  const Number peer(
      orThrow(BN_bin2bn(data(peersPublicKey), static_cast<int>(peersPublicKey.size()), nullptr)));
  // With 0, 1 or the prime less 1, only one or two keys are possible for any private number.
  const Number largest(orThrow(BN_dup(prime_.get())));
  orThrow(BN_sub_word(largest.get(), 1));
  if (BN_is_zero(peer.get()) || BN_is_one(peer.get()) || BN_cmp(peer.get(), largest.get()) >= 0) {
    return std::nullopt;
  }
  const Number number(orThrow(BN_secure_new()));
  raise(number.get(), peer.get(), private_.get(), prime_.get());
  PassingBytes shared(primeBytes);
  orThrow(BN_bn2binpad(number.get(), shared.data(), primeBytes) > 0);
  return TransferKey(derivedKey(shared));
}

}  // namespace tarnwell
