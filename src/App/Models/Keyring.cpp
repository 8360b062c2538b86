#include "App/Models/Keyring.h"

#include <utility>

namespace tarnwell {

Keyring::Keyring(KeyringAccess access, QObject* parent) : QObject(parent), access_(std::move(access)) {}

Keyring::~Keyring() { unlock_.giveUp(); }

void Keyring::refresh() {
  probe_.run(access_.state, [this](const Outcome<KeyringState>& outcome) {
    if (!outcome.value || state_ == outcome.value) {
      return;
    }
    state_ = outcome.value;
    if (state_ == KeyringState::ready && isUnlocking()) {
      giveUp();
      Q_EMIT openedOtherwise();
    }
    Q_EMIT changed();
  });
}

void Keyring::unlock() {
  giveUp();
  unlocking_.run([ask = access_.ask, unlock = unlock_] { return ask(unlock); },
                 [this](const Outcome<UnlockOutcome>& outcome) {
                   refresh();
                   Q_EMIT unlockEnded(outcome.value
                                          ? AccountNews{.kind = kindOf(*outcome.value)}
                                          : newsOf(outcome.failure, AccountNews::Kind::unlockRefused));
                 });
}

void Keyring::giveUp() {
  if (isUnlocking()) {
    unlock_.giveUp();
    unlock_ = KeyringUnlock();
    unlocking_.abandon();
  }
}

}  // namespace tarnwell
