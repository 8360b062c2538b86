#pragma once

/// Secret items in memory. They behave like the real ones, except that a test may choose the status of a
/// call.
///
///     InMemorySecretItems items;
///     items.answers = {SecretStatus::itemNotFound};   // the first call; later ones behave as usual
///     ...
///     items.calls;                                    // {"copy shared user@example.org", ...}
///
/// Threads: as the real ones, any. `answers`, `calls` and `messages` are for a test that waits for no call.

#include <deque>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "Platform/Secrets/SecretItems.h"

namespace tarnwell::test {

class InMemorySecretItems : public SecretItems {
 public:
  using Key = std::tuple<std::string, std::string, std::string>;

  /// New ones that stay until the program ends. For a model of the app: work that it has given up reads on by
  /// itself, after the test.
  static InMemorySecretItems& kept() {
    static auto* const all = new std::list<InMemorySecretItems>;
    return all->emplace_back();
  }

  /// The statuses of the next calls, in order. A call with a given status changes nothing and returns no
  /// data. A call with an absent status, and every call after the last one, does its normal work.
  std::deque<std::optional<std::int32_t>> answers;

  /// The calls so far: the operation, the place and the account.
  std::vector<std::string> calls;

  /// The sentences for `message`.
  std::map<std::int32_t, std::string> messages;

  /// When true, an item that is found has no data.
  bool withholdsData = false;

  /// For a test that waits for a call of another thread.
  std::size_t callCount() const {
    const std::lock_guard lock(mutex_);
    return calls.size();
  }

  void put(const SecretItemQuery& query, std::string bytes) {
    const std::lock_guard lock(mutex_);
    items_[key(query)] = std::move(bytes);
  }

  std::optional<std::string> at(const SecretItemQuery& query) const {
    const std::lock_guard lock(mutex_);
    auto found = items_.find(key(query));
    return found == items_.end() ? std::nullopt : std::optional<std::string>(found->second);
  }

  std::int32_t copyMatching(const SecretItemQuery& query, Receiver& receiver) override {
    const std::lock_guard lock(mutex_);
    if (auto status = begin("copy", query)) {
      return *status;
    }
    auto found = items_.find(key(query));
    if (found == items_.end()) {
      return SecretStatus::itemNotFound;
    }
    if (!withholdsData) {
      receiver.receive(found->second);
    }
    return SecretStatus::success;
  }

  std::int32_t add(const SecretItemQuery& query, std::string_view data) override {
    const std::lock_guard lock(mutex_);
    if (auto status = begin("add", query)) {
      return *status;
    }
    return items_.try_emplace(key(query), data).second ? SecretStatus::success : SecretStatus::duplicateItem;
  }

  std::int32_t remove(const SecretItemQuery& query) override {
    const std::lock_guard lock(mutex_);
    if (auto status = begin("remove", query)) {
      return *status;
    }
    return items_.erase(key(query)) > 0 ? SecretStatus::success : SecretStatus::itemNotFound;
  }

  std::optional<std::string> message(std::int32_t status) override {
    auto found = messages.find(status);
    return found == messages.end() ? std::nullopt : std::optional<std::string>(found->second);
  }

 private:
  static Key key(const SecretItemQuery& query) {
    return {query.service, query.account, query.accessGroup.value_or("")};
  }

  std::optional<std::int32_t> begin(const std::string& call, const SecretItemQuery& query) {
    calls.push_back(call + (query.accessGroup ? " shared " : " plain ") + query.account);
    if (answers.empty()) {
      return std::nullopt;
    }
    auto answer = answers.front();
    answers.pop_front();
    return answer;
  }

  mutable std::mutex mutex_;
  std::map<Key, std::string> items_;
};

}  // namespace tarnwell::test
