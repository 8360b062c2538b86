#pragma once

/// A conversation with the freedesktop Secret Service (Secret Service API) on its own connection. Linux only.
/// Include this header only in source files: it brings the bus library's headers with it.
///
/// Never lets the service ask the user: when an answer names a prompt, the prompt is not started. Every call
/// may throw `BusError`.
///
/// Threads: one at a time for each object.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Platform/Secrets/SecretItems.h"
#include "Platform/Secrets/SecretTransfer.h"
#include "Platform/Secrets/SessionBus.h"

namespace tarnwell {

class SecretServiceConversation {
 public:
  /// The items that match a query.
  struct Matches {
    struct Item {
      std::string path;
      std::uint64_t modified;  // seconds since 1970
    };
    std::vector<Item> unlocked;
    bool hasLocked = false;
  };

  /// Connects to the bus at the address. Does not check that a program offers the service; the first request
  /// finds that out.
  SecretServiceConversation(std::string address, Deadline deadline);

  /// True when the conversation is with the bus at this address and the connection is open.
  bool isOpenAt(const std::string& address);

  /// Sets the deadline for all further answers.
  void goOnUntil(Deadline deadline) { deadline_ = deadline; }

  /// The service also returns items with more attributes than the query has. A query for the plain place
  /// therefore also finds the items of every access group; `search` drops these. It cannot drop locked items,
  /// because a keyring that was never unlocked shows only hashes of the attributes.
  ///
  /// A query for an access group asks for the items of all places. A query for the plain place right after it
  /// reuses that answer.
  Matches search(const SecretItemQuery& query);

  void handOver(const std::string& item, SecretItems::Receiver& receiver);

  /// The collection for new items. Absent when the user has none.
  std::optional<std::string> defaultCollection();

  bool isLocked(const std::string& collection);

  /// `create` and `erase` return false when the service wants to ask the user first.
  bool create(const std::string& collection, const SecretItemQuery& query, std::string_view bytes);
  bool erase(const std::string& item);

 private:
  struct Properties;

  /// All items of an account in all places. Made only when all of them are unlocked.
  struct Listing {
    struct Item {
      Matches::Item item;
      std::optional<std::string> accessGroup;
    };
    SecretItemQuery query;  // without an access group
    std::vector<Item> items;
    Deadline end;  // when it must no longer be used

    Matches matches(const std::optional<std::string>& accessGroup) const;
  };
  /// Absent when an item is locked or does not tell its attributes.
  std::optional<Listing> list(const SecretItemQuery& query);
  Matches ask(const SecretItemQuery& query);
  /// The paths of the unlocked items, then those of the locked items.
  std::pair<std::vector<std::string>, std::vector<std::string>> searchItems(const SecretItemQuery& query);

  BusMessage methodCall(const std::string& path, const char* interface, const char* member);
  BusMessage call(const BusMessage& request) { return bus_.call(request, deadline_); }
  Properties propertiesOf(const std::string& path, const char* interface);

  void appendSecret(BusMessage& request, std::string_view bytes);
  const std::string& session();
  void openEncryptedSession();
  void openPlainSession();

  std::string address_;
  Deadline deadline_;
  SessionBus bus_;
  std::optional<Listing> listing_;  // of the query before this one
  std::string session_;             // empty until the first secret
  std::optional<TransferKey> key_;  // absent when the session does not encrypt
};

}  // namespace tarnwell
