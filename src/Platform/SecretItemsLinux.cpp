#include "Platform/SecretItems.h"

#include <algorithm>
#include <vector>

#include "Platform/BoundedCalls.h"
#include "Platform/SecretServiceLibrary.h"
#include "Platform/SecretServiceStatus.h"
#include "Platform/UnpromptingService.h"

namespace tarnwell {
namespace {

/// Together the two seconds that a call may last.
constexpr std::chrono::milliseconds bound(1800);
constexpr std::chrono::milliseconds grace(200);

constexpr const char* accessGroupAttribute = "accessGroup";

/// Texts of D-Bus are UTF-8 without U+0000.
bool isText(const std::string& text) {
  return g_utf8_validate(text.data(), static_cast<gssize>(text.size()), nullptr);
}

struct AttributesRelease {
  void operator()(GHashTable* attributes) const { g_hash_table_unref(attributes); }
};
using Attributes = std::unique_ptr<GHashTable, AttributesRelease>;

Attributes attributesOf(const SecretItemQuery& query) {
  Attributes attributes(g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free));
  auto insert = [&](const char* name, const std::string& value) {
    g_hash_table_insert(attributes.get(), g_strdup(name), g_strdup(value.c_str()));
  };
  insert("service", query.service);
  insert("account", query.account);
  if (query.accessGroup) {
    insert(accessGroupAttribute, *query.accessGroup);
  }
  return attributes;
}

using Item = ObjectPointer<SecretItem>;

/// What a query matches.
struct Matches {
  std::vector<Item> unlocked;
  bool hasLocked = false;
};

bool hasAccessGroup(SecretItem* item) {
  Attributes attributes(secret_item_get_attributes(item));
  return attributes && g_hash_table_contains(attributes.get(), accessGroupAttribute) != FALSE;
}

/// One conversation with the service, from the connection to its end.
class Conversation {
 public:
  Conversation() : calls_(bound, grace), service_(openUnpromptingService(calls_)) {}

  /// The service takes the attributes of a query as the least that an item must have, so that a query for
  /// the plain place also finds the items of every access group. These are dropped here.
  /// Locked items are not told apart: a keyring that was never unlocked shows hashes of the attributes.
  Matches search(const SecretItemQuery& query) {
    Attributes attributes = attributesOf(query);
    auto result = calls_.result([&](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
      secret_service_search(service_.get(), nullptr, attributes.get(), SECRET_SEARCH_ALL, cancel, done, data);
    });
    GError* error = nullptr;
    GList* found = secret_service_search_finish(service_.get(), result.get(), &error);
    throwIfFailed(error);

    Matches matches;
    for (GList* node = found; node != nullptr; node = node->next) {
      Item item(SECRET_ITEM(node->data));
      if (secret_item_get_locked(item.get())) {
        matches.hasLocked = true;
      } else if (query.accessGroup || !hasAccessGroup(item.get())) {
        matches.unlocked.push_back(std::move(item));
      }
    }
    g_list_free(found);
    return matches;
  }

  void handOver(SecretItem* item, SecretItems::Receiver& receiver) {
    auto result = calls_.result([&](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
      secret_item_load_secret(item, cancel, done, data);
    });
    GError* error = nullptr;
    secret_item_load_secret_finish(item, result.get(), &error);
    throwIfFailed(error);
    if (SecretValue* value = secret_item_get_secret(item)) {
      gsize size = 0;
      const gchar* bytes = secret_value_get(value, &size);
      receiver.receive({bytes, size});
      secret_value_unref(value);
    }
  }

  /// The collection for new items; absent when the user has none.
  ObjectPointer<SecretCollection> defaultCollection() {
    auto result = calls_.result([&](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
      secret_collection_for_alias(service_.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, cancel,
                                  done, data);
    });
    GError* error = nullptr;
    ObjectPointer<SecretCollection> collection(secret_collection_for_alias_finish(result.get(), &error));
    throwIfFailed(error);
    return collection;
  }

  void create(SecretCollection* collection, const SecretItemQuery& query, std::string_view bytes) {
    Attributes attributes = attributesOf(query);
    SecretValue* value = secret_value_new(bytes.data(), static_cast<gssize>(bytes.size()), "text/plain");
    auto result = calls_.result([&](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
      secret_item_create(collection, nullptr, attributes.get(), "Tarnwell", value, SECRET_ITEM_CREATE_NONE,
                         cancel, done, data);
      secret_value_unref(value);
    });
    GError* error = nullptr;
    Item created(secret_item_create_finish(result.get(), &error));
    throwIfFailed(error);
  }

  void erase(SecretItem* item) {
    auto result = calls_.result([&](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
      secret_item_delete(item, cancel, done, data);
    });
    GError* error = nullptr;
    secret_item_delete_finish(item, result.get(), &error);
    throwIfFailed(error);
  }

 private:
  BoundedCalls calls_;
  ObjectPointer<SecretService> service_;
};

class SecretServiceItems : public SecretItems {
 public:
  std::int32_t copyMatching(const SecretItemQuery& query, Receiver& receiver) override {
    return converse(query, [&](Conversation& service) {
      Matches matches = service.search(query);
      auto modified = [](const Item& item) { return secret_item_get_modified(item.get()); };
      auto newest = std::ranges::max_element(matches.unlocked, {}, modified);
      if (newest == matches.unlocked.end()) {
        return absentOrLocked(matches);
      }
      service.handOver(newest->get(), receiver);
      return SecretStatus::success;
    });
  }

  std::int32_t add(const SecretItemQuery& query, std::string_view data) override {
    return converse(query, [&](Conversation& service) {
      Matches matches = service.search(query);
      if (!matches.unlocked.empty()) {
        return SecretStatus::duplicateItem;
      }
      auto collection = service.defaultCollection();
      if (!collection) {
        return SecretStatus::notAvailable;
      }
      if (matches.hasLocked || secret_collection_get_locked(collection.get())) {
        return SecretStatus::interactionNotAllowed;
      }
      service.create(collection.get(), query, data);
      return SecretStatus::success;
    });
  }

  std::int32_t remove(const SecretItemQuery& query) override {
    return converse(query, [&](Conversation& service) {
      Matches matches = service.search(query);
      for (const Item& item : matches.unlocked) {
        service.erase(item.get());
      }
      return matches.unlocked.empty() || matches.hasLocked ? absentOrLocked(matches) : SecretStatus::success;
    });
  }

  std::optional<std::string> message(std::int32_t status) override {
    auto sentence = secretStatusMessage(status);
    return sentence ? std::optional<std::string>(*sentence) : std::nullopt;
  }

 private:
  static std::int32_t absentOrLocked(const Matches& matches) {
    return matches.hasLocked ? SecretStatus::interactionNotAllowed : SecretStatus::itemNotFound;
  }

  template <class Talk>
  static std::int32_t converse(const SecretItemQuery& query, const Talk& talk) {
    if (!loadSecretServiceLibrary()) {
      return SecretStatus::notAvailable;
    }
    if (!isText(query.service) || !isText(query.account) || !isText(query.accessGroup.value_or(""))) {
      return SecretStatus::badParameter;
    }
    try {
      Conversation service;
      return talk(service);
    } catch (const SecretServiceError& error) {
      return error.status();
    }
  }
};

}  // namespace

SecretItems& systemSecretItems() {
  static SecretServiceItems items;
  return items;
}

}  // namespace tarnwell
