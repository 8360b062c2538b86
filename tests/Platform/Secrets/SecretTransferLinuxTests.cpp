#include "Platform/Secrets/SecretTransfer.h"

#include <gtest/gtest.h>

#include <numeric>

namespace tarnwell::test {
namespace {

using Bytes = TransferKey::Bytes;

/// The bytes from `first` on, each one greater than the one before.
std::string ascending(char first) {
  std::string bytes(32, '\0');
  std::iota(bytes.begin(), bytes.end(), first);
  return bytes;
}

std::optional<std::string> decrypted(const TransferKey& key, const TransferKey::Encrypted& secret) {
  std::optional<std::string> result;
  const bool isValid = key.decrypt(secret.parameters, secret.bytes, [&](std::string_view bytes) {
    EXPECT_FALSE(result);
    result = bytes;
  });
  EXPECT_EQ(isValid, result.has_value());
  return result;
}

bool isKey(const std::optional<TransferKey>& key, const Bytes& expected) {
  return key && decrypted(TransferKey(expected), key->encrypted("secret")) == "secret";
}

// The expected keys were computed with another implementation of the two public algorithms.
TEST(SecretTransfer, bothSidesAgreeOnTheKey) {
  const KeyAgreement one(ascending(1));
  const KeyAgreement other(ascending(33));
  const Bytes expected{0x5d, 0x81, 0x24, 0x26, 0x20, 0x36, 0xed, 0x21,
                       0x8d, 0xc0, 0xab, 0x3d, 0x8b, 0x3b, 0xf5, 0x68};
  EXPECT_TRUE(isKey(one.agree(other.publicKey()), expected));
  EXPECT_TRUE(isKey(other.agree(one.publicKey()), expected));
}

TEST(SecretTransfer, agreedNumberKeepsTheZeroByteThatItBeginsWith) {
  const Bytes expected{0xc9, 0xcc, 0x31, 0x95, 0x26, 0xf0, 0xe8, 0x07,
                       0x7e, 0x0d, 0x5d, 0xaf, 0x66, 0x4f, 0xfa, 0x84};
  EXPECT_TRUE(isKey(KeyAgreement(ascending(1)).agree(KeyAgreement("\x1B").publicKey()), expected));
}

TEST(SecretTransfer, privateNumbersAreRandom) {
  EXPECT_EQ(KeyAgreement().publicKey().size(), 128U);
  EXPECT_NE(KeyAgreement().publicKey(), KeyAgreement().publicKey());
}

TEST(SecretTransfer, numbersThatFixTheKeyAreRefused) {
  const KeyAgreement agreement;
  const std::string large(128, '\xFF');
  for (const std::string& number : {std::string(), std::string(1, '\0'), std::string(128, '\0'),
                                    std::string("\x01"), large, large + large}) {
    EXPECT_FALSE(agreement.agree(number)) << number.size();
  }
  EXPECT_TRUE(agreement.agree("\x02"));
}

TEST(SecretTransfer, bytesOfEveryLengthComeBack) {
  const TransferKey key(Bytes{1, 2, 3});
  for (const std::size_t length : {0U, 1U, 15U, 16U, 17U, 31U, 32U, 33U, 100'000U}) {
    std::string secret(length, 'x');
    std::iota(secret.begin(), secret.end(), '\0');
    const TransferKey::Encrypted encrypted = key.encrypted(secret);
    EXPECT_EQ(encrypted.parameters.size(), TransferKey::size);
    EXPECT_EQ(encrypted.bytes.size(), (length / TransferKey::size + 1) * TransferKey::size);
    EXPECT_EQ(decrypted(key, encrypted), secret);
  }
}

TEST(SecretTransfer, equalSecretsDoNotLookEqual) {
  const TransferKey key(Bytes{1, 2, 3});
  EXPECT_NE(key.encrypted("secret").bytes, key.encrypted("secret").bytes);
}

TEST(SecretTransfer, whatIsNotEncryptedWithTheKeyIsRefused) {
  const TransferKey key(Bytes{1, 2, 3});
  const std::string iv(16, 'i');
  const std::string block(16, 'b');
  EXPECT_FALSE(decrypted(key, {"", block}));
  EXPECT_FALSE(decrypted(key, {iv + "i", block}));
  EXPECT_FALSE(decrypted(key, {iv, ""}));
  EXPECT_FALSE(decrypted(key, {iv, "secret"}));
  EXPECT_FALSE(decrypted(key, {iv, block}));
}

}  // namespace
}  // namespace tarnwell::test
