#pragma once

/// A mailbox in memory, with the assistant's tools over it. Answers every command, and notes it.
///
///     FakeMailbox mailbox;
///     mailbox.mails = {{.uid = 9, .subject = "Tea at four"}};
///     TryItModel model(settings, ReadOnlyTools(mailbox.tools(store)));
///     ...
///     mailbox.commands();   // {"LOGIN ...", "CAPABILITY", "EXAMINE INBOX", "UID SEARCH ALL", ...}
///
/// Threads: `mails` and the other fields are set before the first call. The functions may be called on any.
/// What a call on another thread still needs outlives the mailbox.

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "MCP/Tools/FakeMail.h"
#include "MCP/Tools/MCPTools.h"
#include "support/InstantServer.h"

namespace tarnwell::test {

class FakeMailbox {
  struct Secrets : SecretItems {
    std::atomic<std::int32_t> status = SecretStatus::success;
    std::atomic<bool> hasPassword = true;

    std::int32_t copyMatching(const SecretItemQuery&, Receiver& receiver) override {
      if (status != SecretStatus::success || !hasPassword) {
        return hasPassword ? status.load() : SecretStatus::itemNotFound;
      }
      receiver.receive(testPassword);
      return SecretStatus::success;
    }
    std::int32_t add(const SecretItemQuery&, std::string_view) override { return SecretStatus::badParameter; }
    std::int32_t remove(const SecretItemQuery&) override { return SecretStatus::badParameter; }
    std::optional<std::string> message(std::int32_t) override { return "told by the keyring"; }
  };

  struct State : std::enable_shared_from_this<State> {
    std::vector<FakeMail> mails;
    std::string folders =
        "* LIST () \"/\" INBOX\r\n* LIST () \"/\" Archive\r\n* LIST () \"/\" \"Archive/&ZeVnLIqe-\"\r\n"
        "* LIST (\\Noselect) \"/\" Shelf\r\n* LIST (\\Trash) \"/\" \"Deleted Messages\"\r\n";
    Secrets secrets;
    std::string loginAnswer = "OK done";
    std::atomic<bool> isDown = false;
    std::atomic<bool> isSlow = false;

    std::mutex mutex;
    std::condition_variable released;
    std::vector<std::string> commands;
    std::string held;

    std::unique_ptr<IMAPClient> client(std::string email, Secret password) {
      return std::make_unique<IMAPClient>(
          [self = shared_from_this(), wire = std::make_shared<Wire>()] {
            if (self->isDown) {
              throw IMAPError::connectionFailed("imap.example.org:993: nobody answers");
            }
            if (self->isSlow) {
              throw IMAPError::timeout();
            }
            return std::make_unique<IMAPConnection>(std::make_unique<InstantServer>(
                *wire, [self](const std::string& tag, const std::string& command) {
                  return self->answer(tag, command);
                }));
          },
          std::move(email), std::move(password), SessionLimits{});
    }

    std::string answer(const std::string& tag, const std::string& command) {
      {
        std::unique_lock lock(mutex);
        commands.push_back(command);
        released.wait(lock, [&] { return held.empty() || !command.starts_with(held); });
      }
      return untagged(command) + tag + " " + (command.starts_with("LOGIN") ? loginAnswer : "OK done") +
             "\r\n";
    }

    std::string untagged(const std::string& command) const {
      std::string lines;
      if (command.starts_with("CAPABILITY")) {
        return "* CAPABILITY IMAP4rev1 MOVE\r\n";
      }
      if (command.starts_with("LIST")) {
        return folders;
      }
      if (command.starts_with("UID SEARCH")) {
        lines = "* SEARCH";
        for (const FakeMail& mail : mails) {
          lines += " " + std::to_string(mail.uid);
        }
        return lines + "\r\n";
      }
      if (command.starts_with("UID FETCH")) {
        const bool isBody = command.find("BODY.PEEK") != std::string::npos;
        for (const FakeMail& mail : mails) {
          const std::string set = "," + command.substr(10, command.find(' ', 10) - 10) + ",";
          if (set.find("," + std::to_string(mail.uid) + ",") != std::string::npos) {
            lines += isBody ? mail.bodyPart() : mail.summary();
          }
        }
      }
      return lines;
    }
  };

  std::shared_ptr<State> state_ = std::make_shared<State>();

 public:
  /// Newest first.
  std::vector<FakeMail>& mails = state_->mails;
  std::string& folders = state_->folders;
  /// Why the password cannot be had, as a `SecretStatus`; and whether there is one.
  std::atomic<std::int32_t>& secretStatus = state_->secrets.status;
  std::atomic<bool>& hasPassword = state_->secrets.hasPassword;
  /// The completion of LOGIN.
  std::string& loginAnswer = state_->loginAnswer;
  /// Nothing answers.
  std::atomic<bool>& isDown = state_->isDown;
  /// Nothing answers in time.
  std::atomic<bool>& isSlow = state_->isSlow;

  MCPTools tools(const ConfigStore& store) const {
    return {store, keychain(), EmailRiskDetector::shared(),
            [state = state_](const std::string&, std::int64_t, std::string email, Secret password) {
              return state->client(std::move(email), std::move(password));
            }};
  }

  /// The store with the password. Must not outlive the mailbox, unless the tools above hold it.
  KeychainStore keychain() const { return {"service", std::nullopt, state_->secrets}; }

  std::vector<std::string> commands() const {
    const std::lock_guard lock(state_->mutex);
    return state_->commands;
  }
  bool hasCommand(const std::string& beginning) const {
    return std::ranges::any_of(commands(),
                               [&](const std::string& each) { return each.starts_with(beginning); });
  }

  /// Lets no command that begins so be answered until `release`. The sessions that wait are told nothing.
  void hold(std::string beginning) {
    const std::lock_guard lock(state_->mutex);
    state_->held = std::move(beginning);
  }
  void release() {
    const std::lock_guard lock(state_->mutex);
    state_->held.clear();
    state_->released.notify_all();
  }
  ~FakeMailbox() { release(); }
  FakeMailbox() = default;
  FakeMailbox(const FakeMailbox&) = delete;
  FakeMailbox& operator=(const FakeMailbox&) = delete;
};

}  // namespace tarnwell::test
