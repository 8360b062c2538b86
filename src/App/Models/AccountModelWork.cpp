/// What the model has done off the thread of the window: testing, saving, removing, unlocking.

#include <utility>

#include "App/Models/AccountModel.h"

namespace tarnwell {

namespace {

using Kind = AccountNews::Kind;

}  // namespace

void AccountModel::begin(Activity activity) {
  activity_ = activity;
  news_ = {};
  Q_EMIT changed();
}

void AccountModel::end(AccountNews news) {
  activity_ = Activity::none;
  news_ = std::move(news);
  Q_EMIT changed();
}

AccountModel::TestResult AccountModel::runTest(const AppConfig& config, Secret typed,
                                               const std::string& storedAccount,
                                               const KeychainStore& passwords, SessionWatch watch) {
  if (typed.empty()) {
    std::optional<Secret> stored = passwords.read(storedAccount);
    if (!stored || stored->empty()) {
      return {};
    }
    typed = *std::move(stored);
  }
  return {true, testConnection(config, std::move(typed), std::move(watch))};
}

void AccountModel::test(Secret typed) {
  if (obstacleToTest() != Obstacle::none) {
    return;
  }
  const AccountAddress address = draft_.address();
  const Provider* const provider = draft_.provider();
  AppConfig config;
  config.email = address.email;
  config.imapHost = address.imapHost;
  config.imapPort = address.imapPort;
  const bool isOfSaved = typed.empty() && address == saved_;
  stages_.emplace();
  stages_->front() = StageState::running;
  cancellation_ = Cancellation();
  provenAddress_ = address;  // until a keystroke, or until it fails
  begin(Activity::testing);

  SessionWatch watch{.reached = work_.reporter<SessionStage>([this](SessionStage stage) { reach(stage); }),
                     .cancellation = cancellation_};
  work_.run(
      [config, typed = passwordToSend(provider, std::move(typed)), stored = saved_.email, isOfSaved,
       passwords = passwords_, setup = setup(), watch = std::move(watch)]() mutable {
        TestResult result = runTest(config, std::move(typed), stored, passwords, watch);
        if (isOfSaved && result.hadPassword &&
            result.outcome.result != ConnectionOutcome::Result::cancelled) {
          setup.recordTest(config.email, result.outcome.succeeded());
        }
        return result;
      },
      [this, provider](Outcome<TestResult> outcome) { tested(std::move(outcome), provider); });
}

void AccountModel::tested(Outcome<TestResult> outcome, const Provider* provider) {
  AccountNews news{.provider = provider};
  if (outcome.failure) {
    news = newsOf(outcome.failure, Kind::testFailed);
  } else if (!outcome.value->hadPassword) {
    news.kind = Kind::noPassword;
  } else {
    news.kind = kindOf(outcome.value->outcome);
    if (const auto& error = outcome.value->outcome.error) {
      news.details = QString::fromStdString(error->description());
    }
  }
  if (news.kind != Kind::testSucceeded) {
    provenAddress_.reset();
  }
  endStages(news.kind);
  if (outcome.failure) {
    refreshKeyring();
  }
  end(std::move(news));
}

void AccountModel::cancelTest() {
  if (activity_ != Activity::testing) {
    return;
  }
  cancellation_.cancel();
  work_.abandon();
  provenAddress_.reset();
  endStages(Kind::testCancelled);
  end({.kind = Kind::testCancelled});
}

void AccountModel::reach(SessionStage stage) {
  const auto finish = [this](Stage finished) {
    const auto place = static_cast<std::size_t>(finished);
    stages_->at(place) = StageState::done;
    if (place + 1 < stageCount) {
      stages_->at(place + 1) = StageState::running;
    }
  };
  switch (stage) {
    case SessionStage::nameFound:
      finish(Stage::name);
      break;
    case SessionStage::connected:
      return;  // the next one tells more
    case SessionStage::secured:
      finish(Stage::secureConnection);
      break;
    case SessionStage::signedIn:
      finish(Stage::signIn);
      break;
    case SessionStage::inboxOpened:
      finish(Stage::inbox);
      break;
  }
  Q_EMIT changed();
}

/// A stage that was under way has failed; one that was given up, or never began, is as if it had not begun.
void AccountModel::endStages(Kind kind) {
  const bool wasTried = kind != Kind::testCancelled && kind != Kind::noPassword &&
                        kind != Kind::keyringMissing && kind != Kind::keyringLocked &&
                        kind != Kind::keyringRefused;
  for (StageState& state : *stages_) {
    if (state == StageState::running) {
      state = wasTried ? StageState::failed : StageState::waiting;
    }
  }
}

void AccountModel::save(Secret typed) {
  if (obstacleToSave() != Obstacle::none) {
    return;
  }
  const AccountAddress address = draft_.address();
  const bool isProven = provenAddress_ == address;
  std::optional<Secret> password = passwordToSend(draft_.provider(), std::move(typed));
  if (password->empty()) {
    password.reset();
  }
  isEditedSinceSave_ = false;
  begin(Activity::saving);
  work_.run(
      [address, isProven, password = std::move(password), setup = setup()]() mutable {
        setup.save(address, std::move(password));
        if (isProven) {
          setup.recordTest(address.email, true);
        }
      },
      [this, address](const Outcome<void>& outcome) {
        if (outcome.failure) {
          refreshKeyring();
          end(newsOf(outcome.failure, Kind::notSaved));
          return;
        }
        const bool wasEdited = !(draft_.address() == address);
        saved_ = address;
        shown_ = AccountDraft(saved_);
        if (!wasEdited) {
          draft_ = shown_;
        }
        settings_.reload();
        if (!isEditedSinceSave_) {
          Q_EMIT passwordDone();
        }
        end({.kind = Kind::saved});
      });
}

void AccountModel::remove() {
  if (obstacleToRemove() != Obstacle::none) {
    return;
  }
  begin(Activity::removing);
  work_.run([setup = setup()] { setup.remove(); },
            [this](const Outcome<void>& outcome) {
              if (outcome.failure) {
                refreshKeyring();
                end(newsOf(outcome.failure, Kind::notRemoved));
                return;
              }
              saved_ = {};
              shown_ = {};
              draft_ = {};
              stages_.reset();
              provenAddress_.reset();
              settings_.reload();
              Q_EMIT passwordDone();
              end({.kind = Kind::removed});
            });
}

void AccountModel::giveUp() {
  if (activity_ == Activity::unlocking) {
    keyring_.giveUp();
    end({});
  } else {
    cancelTest();
  }
}

void AccountModel::unlockKeyring() {
  if (activity_ == Activity::none || activity_ == Activity::unlocking) {
    begin(Activity::unlocking);
    keyring_.unlock();
  }
}

}  // namespace tarnwell
