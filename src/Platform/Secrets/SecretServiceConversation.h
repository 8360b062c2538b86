#pragma once

/// One conversation with the freedesktop Secret Service (Secret Service API), on a connection of its own.
/// Linux only; included by source files alone, since it brings the bus library's headers with it.
///
/// Nothing is asked of the service that would need the user. Where its answer names a prompt, that prompt is
/// left alone. Every call may throw `BusError`.
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
  /// What a query matches.
  struct Matches {
    struct Item {
      std::string path;
      std::uint64_t modified;  // seconds since 1970
    };
    std::vector<Item> unlocked;
    bool hasLocked = false;
  };

  /// Connects to the bus at the address. Does not tell whether any program offers the service: the first
  /// request does.
  SecretServiceConversation(std::string address, Deadline deadline);

  /// True when the conversation is with the bus at this address and can go on.
  bool isOpenAt(const std::string& address);

  /// The time by which every further answer must be there.
  void goOnUntil(Deadline deadline) { deadline_ = deadline; }

  /// The service takes the attributes of a query as the least that an item must have, so that a query for
  /// the plain place also finds the items of every access group. These are dropped here.
  /// Locked items are not told apart: a keyring that was never unlocked shows hashes of the attributes.
  ///
  /// So a query for an access group asks for the items of all places, and one for the plain place that comes
  /// right behind it is answered from what was told then.
  Matches search(const SecretItemQuery& query);

  void handOver(const std::string& item, SecretItems::Receiver& receiver);

  /// The collection for new items; absent when the user has none.
  std::optional<std::string> defaultCollection();

  bool isLocked(const std::string& collection);

  /// These two are false when the service wants to ask the user first.
  bool create(const std::string& collection, const SecretItemQuery& query, std::string_view bytes);
  bool erase(const std::string& item);

 private:
  struct Properties;

  /// The items of an account in all places, when all of them are unlocked.
  struct Listing {
    struct Item {
      Matches::Item item;
      std::optional<std::string> accessGroup;
    };
    SecretItemQuery query;  // without an access group
    std::vector<Item> items;
    Deadline end;  // of its use

    Matches matches(const std::optional<std::string>& accessGroup) const;
  };
  /// Absent when something is locked, or does not tell its attributes.
  std::optional<Listing> list(const SecretItemQuery& query);
  Matches ask(const SecretItemQuery& query);
  /// The paths of the unlocked and of the locked items.
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
  std::optional<Listing> listing_;  // of the query right before
  std::string session_;             // empty before the first secret
  std::optional<TransferKey> key_;  // absent in a session that does not encrypt
};

}  // namespace tarnwell
