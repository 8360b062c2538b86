#include "App/Models/EndpointToken.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "Core/BridgeConstants.h"
#include "Platform/RandomBytes.h"
#include "Text/ASCIICase.h"

namespace tarnwell {

namespace {

constexpr std::string_view account = "local-endpoint";

/// Those of RFC 4648, section 5: all of them may stand in a header, an address and a file name.
constexpr std::string_view digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

/// Six bits each, without padding.
Secret written(std::array<unsigned char, 32>& bytes) {
  Secret text;
  unsigned held = 0;
  int count = 0;
  for (const unsigned char byte : bytes) {
    held = (held << 8 | byte) & 0xffff;
    for (count += 8; count >= 6; count -= 6) {
      text.append(digits[held >> (count - 6) & 63]);
    }
  }
  if (count > 0) {
    text.append(digits[held << (6 - count) & 63]);
  }
  wipe(bytes.data(), bytes.size());
  return text;
}

/// What RFC 6750, section 2.1 lets a token have. Somebody may have put another one there with a program for
/// keyrings.
bool isUsable(const Secret& token) {
  const auto mayStand = [](char byte) {
    return isASCIILetterOrDigit(byte) || std::string_view("-._~+/=").find(byte) != std::string_view::npos;
  };
  return !token.empty() && std::ranges::all_of(token.view(), mayStand);
}

}  // namespace

EndpointToken::EndpointToken(const KeychainStore& passwords)
    : store_(passwords.ofService(std::string(BridgeConstants::endpointTokenService))) {}

std::optional<Secret> EndpointToken::existing() const {
  try {
    std::optional<Secret> token = store_.read(account);
    return token && isUsable(*token) ? std::move(token) : std::nullopt;
  } catch (const KeychainError& error) {
    if (error.kind() == KeychainError::Kind::decodingFailed) {
      return std::nullopt;
    }
    throw;
  }
}

/// As far as the store allows.
void EndpointToken::putBack(const std::optional<Secret>& token) const {
  try {
    if (token) {
      store_.save(*token, account);
    }
  } catch (const KeychainError&) {
    // The first failure is the one that the person is told of.
  }
}

Secret EndpointToken::renew() const {
  std::array<unsigned char, 32> bytes{};
  fillWithRandom(bytes);
  Secret token = written(bytes);
  const std::optional<Secret> before = existing();
  try {
    store_.save(token, account);
  } catch (const KeychainError&) {
    putBack(before);
    throw;
  }
  return token;
}

}  // namespace tarnwell
