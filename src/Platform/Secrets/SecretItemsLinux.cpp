#include "Platform/Secrets/SecretItems.h"

#include <algorithm>
#include <memory>
#include <mutex>

#include "Platform/Secrets/SecretServiceConversation.h"
#include "Platform/Secrets/SecretServiceStatus.h"
#include "Text/Text.h"

namespace tarnwell {
namespace {

/// Leaves the process 100 ms for its own work within the two seconds that a call may last.
constexpr std::chrono::milliseconds bound(1900);

/// D-Bus texts are UTF-8 without U+0000.
bool isText(const std::string& text) { return text.find('\0') == std::string::npos && isValidUTF8(text); }

class SecretServiceItems : public SecretItems {
 public:
  std::int32_t copyMatching(const SecretItemQuery& query, Receiver& receiver) override {
    return converse(query, Reuse::allowed, [&](SecretServiceConversation& service) {
      const Matches matches = service.search(query);
      const auto newest = std::ranges::max_element(matches.unlocked, {}, &Matches::Item::modified);
      if (newest == matches.unlocked.end()) {
        return absentOrLocked(matches);
      }
      service.handOver(newest->path, receiver);
      return SecretStatus::success;
    });
  }

  std::int32_t add(const SecretItemQuery& query, std::string_view data) override {
    return converse(query, Reuse::forbidden, [&](SecretServiceConversation& service) {
      const Matches matches = service.search(query);
      if (!matches.unlocked.empty()) {
        return SecretStatus::duplicateItem;
      }
      const std::optional<std::string> collection = service.defaultCollection();
      if (!collection) {
        return SecretStatus::notAvailable;
      }
      const bool mayCreate = !matches.hasLocked && !service.isLocked(*collection);
      return mayCreate && service.create(*collection, query, data) ? SecretStatus::success
                                                                   : SecretStatus::interactionNotAllowed;
    });
  }

  std::int32_t remove(const SecretItemQuery& query) override {
    return converse(query, Reuse::forbidden, [&](SecretServiceConversation& service) {
      const Matches matches = service.search(query);
      for (const Matches::Item& item : matches.unlocked) {
        if (!service.erase(item.path)) {
          return SecretStatus::interactionNotAllowed;
        }
      }
      return matches.unlocked.empty() || matches.hasLocked ? absentOrLocked(matches) : SecretStatus::success;
    });
  }

  std::optional<std::string> message(std::int32_t status) override {
    auto sentence = secretStatusMessage(status);
    return sentence ? std::optional<std::string>(*sentence) : std::nullopt;
  }

 private:
  using Matches = SecretServiceConversation::Matches;

  /// Whether a call may reuse the conversation of the call before it. Reading a secret takes milliseconds,
  /// and most of them go into the key agreement, which reuse saves.
  enum class Reuse { allowed, forbidden };

  static std::int32_t absentOrLocked(const Matches& matches) {
    return matches.hasLocked ? SecretStatus::interactionNotAllowed : SecretStatus::itemNotFound;
  }

  template <class Talk>
  std::int32_t converse(const SecretItemQuery& query, Reuse reuse, const Talk& talk) {
    if (!isText(query.service) || !isText(query.account) || !isText(query.accessGroup.value_or(""))) {
      return SecretStatus::badParameter;
    }
    const std::optional<std::string> address = sessionBusAddress();
    if (!address) {
      return SecretStatus::notAvailable;
    }
    const std::lock_guard oneAtATime(oneAtATime_);
    const Deadline deadline = std::chrono::steady_clock::now() + bound;
    if (reuse == Reuse::allowed && last_ && last_->isOpenAt(*address)) {
      try {
        last_->goOnUntil(deadline);
        return talk(*last_);
      } catch (const BusError&) {
        // The service may have restarted and lost the session. Try once more with a new conversation.
      }
    }
    last_.reset();
    try {
      auto conversation = std::make_unique<SecretServiceConversation>(*address, deadline);
      const std::int32_t status = talk(*conversation);
      last_ = std::move(conversation);
      return status;
    } catch (const BusError& error) {
      return secretServiceStatus(error.name());
    }
  }

  std::mutex oneAtATime_;
  std::unique_ptr<SecretServiceConversation> last_;
};

}  // namespace

SecretItems& systemSecretItems() {
  static SecretServiceItems items;
  return items;
}

}  // namespace tarnwell
