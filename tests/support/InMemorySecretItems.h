#pragma once

/// Secret items in memory, which behave as the real ones do, and answer with a status of the test's
/// choice where it asks for one.
///
///     InMemorySecretItems items;
///     items.answers = {SecretStatus::itemNotFound};   // the first call; later ones behave as usual
///     ...
///     items.calls;                                    // {"copy shared user@example.org", ...}

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "Platform/Secrets/SecretItems.h"

namespace tarnwell::test {

class InMemorySecretItems : public SecretItems {
 public:
  using Key = std::tuple<std::string, std::string, std::string>;

  /// What the next calls answer, in order. A call with a given answer changes nothing and hands over
  /// nothing; an absent one, like every call after the last answer, does what it should.
  std::deque<std::optional<std::int32_t>> answers;

  /// The calls so far: what was asked, in which place, for which account.
  std::vector<std::string> calls;

  /// The sentences that `message` knows.
  std::map<std::int32_t, std::string> messages;

  /// When true, an item that is found has no data.
  bool withholdsData = false;

  void put(const SecretItemQuery& query, std::string bytes) { items_[key(query)] = std::move(bytes); }

  std::optional<std::string> at(const SecretItemQuery& query) const {
    auto found = items_.find(key(query));
    return found == items_.end() ? std::nullopt : std::optional<std::string>(found->second);
  }

  std::int32_t copyMatching(const SecretItemQuery& query, Receiver& receiver) override {
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
    if (auto status = begin("add", query)) {
      return *status;
    }
    return items_.try_emplace(key(query), data).second ? SecretStatus::success : SecretStatus::duplicateItem;
  }

  std::int32_t remove(const SecretItemQuery& query) override {
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

  std::map<Key, std::string> items_;
};

}  // namespace tarnwell::test
