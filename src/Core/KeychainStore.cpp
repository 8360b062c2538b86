#include "Core/KeychainStore.h"

#include <utility>
#include <vector>

#include "Core/BridgeConstants.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

/// True for the statuses of a place that this program may not use. The next place is then tried.
bool isPlaceClosed(std::int32_t status) {
  return status == SecretStatus::missingEntitlement || status == SecretStatus::badParameter;
}

class SecretReceiver : public SecretItems::Receiver {
 public:
  void receive(std::string_view bytes) override { secret_.emplace(bytes); }

  std::optional<Secret> take() { return std::exchange(secret_, std::nullopt); }

 private:
  std::optional<Secret> secret_;
};

KeychainError failure(std::int32_t status, SecretItems& items) {
  return KeychainError::unexpectedStatus(status, items.message(status));
}

}  // namespace

KeychainError::KeychainError(Kind kind, std::int32_t status, std::string description)
    : kind_(kind), status_(status), description_(std::move(description)) {}

KeychainError KeychainError::unexpectedStatus(std::int32_t status,
                                              const std::optional<std::string>& message) {
  return {Kind::unexpectedStatus, status,
          "Keychain error " + std::to_string(status) + ": " + message.value_or("unknown")};
}

KeychainError KeychainError::decodingFailed() {
  return {Kind::decodingFailed, SecretStatus::success, "Keychain item could not be decoded as UTF-8"};
}

KeychainStore::KeychainStore(std::string service, std::optional<std::string> accessGroup, SecretItems& items)
    : service_(std::move(service)), accessGroup_(std::move(accessGroup)), items_(&items) {}

KeychainStore KeychainStore::shared() {
  return {std::string(BridgeConstants::keychainService), std::string(BridgeConstants::keychainAccessGroup),
          systemSecretItems()};
}

std::vector<SecretItemQuery> KeychainStore::attempts(std::string_view account) const {
  std::vector<SecretItemQuery> queries;
  if (accessGroup_) {
    queries.push_back({service_, std::string(account), accessGroup_});
  }
  queries.push_back({service_, std::string(account), std::nullopt});
  return queries;
}

std::optional<Secret> KeychainStore::read(std::string_view account) const {
  std::int32_t status = SecretStatus::itemNotFound;
  for (const SecretItemQuery& query : attempts(account)) {
    SecretReceiver receiver;
    status = items_->copyMatching(query, receiver);
    if (status == SecretStatus::success) {
      std::optional<Secret> password = receiver.take();
      if (password && !isValidUTF8(password->view())) {
        throw KeychainError::decodingFailed();
      }
      return password;
    }
    if (status != SecretStatus::itemNotFound && !isPlaceClosed(status)) {
      throw failure(status, *items_);
    }
  }
  // Deliberate: only the last place counts. If it has no item, there is no password, even when the place
  // before it was closed.
  if (status != SecretStatus::itemNotFound) {
    throw failure(status, *items_);
  }
  return std::nullopt;
}

void KeychainStore::save(const Secret& password, std::string_view account) const {
  try {
    remove(account);
  } catch (const KeychainError&) {
    // Deliberate: only the new item matters, and the calls below report whether it can be added.
  }
  std::int32_t status = SecretStatus::success;
  for (const SecretItemQuery& query : attempts(account)) {
    status = items_->add(query, password.view());
    if (!isPlaceClosed(status)) {
      break;
    }
  }
  if (status != SecretStatus::success) {
    throw failure(status, *items_);
  }
}

void KeychainStore::remove(std::string_view account) const {
  // Deliberate: does not stop after the first success, because each place may hold a copy.
  for (const SecretItemQuery& query : attempts(account)) {
    std::int32_t status = items_->remove(query);
    bool isRemoved = status == SecretStatus::success || status == SecretStatus::itemNotFound;
    if (!isRemoved && !isPlaceClosed(status)) {
      throw failure(status, *items_);
    }
  }
}

bool KeychainStore::hasPassword(std::string_view account) const {
  try {
    return read(account).has_value();
  } catch (const KeychainError&) {
    return false;
  }
}

}  // namespace tarnwell
