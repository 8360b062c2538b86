#include "App/Models/AccountModel.h"

#include <utility>

namespace tarnwell {

namespace {

using Field = AccountDraft::Field;
using Finding = AccountDraft::Finding;

AccountAddress accountOf(const AppConfig& config) {
  return config.isConfigured() ? AccountAddress{config.email, config.imapHost, config.imapPort}
                               : AccountAddress{};
}

}  // namespace

AccountModel::AccountModel(SettingsFile& settings, KeychainStore passwords, KeyringAccess keyring,
                           QObject* parent)
    : QObject(parent),
      settings_(settings),
      passwords_(std::move(passwords)),
      seen_(accountOf(settings.config())),
      saved_(seen_),
      shown_(saved_),
      draft_(shown_),
      keyring_(std::move(keyring)) {
  connect(&settings_, &SettingsFile::changed, this, &AccountModel::followFile);
  connect(&keyring_, &Keyring::changed, this, [this] {
    if (news_.kind == AccountNews::Kind::keyringLocked && keyring_.state() == KeyringState::ready) {
      news_ = {};  // it is unlocked
    }
    Q_EMIT changed();
  });
  connect(&keyring_, &Keyring::unlockEnded, this, &AccountModel::end);
  connect(&keyring_, &Keyring::openedOtherwise, this, [this] { end({}); });
  refreshKeyring();
}

AccountModel::~AccountModel() { cancellation_.cancel(); }

void AccountModel::setEmail(const QString& text) {
  draft_.setEmail(text);
  edited();
}

void AccountModel::setHost(const QString& text) {
  draft_.setHost(text);
  edited();
}

void AccountModel::setPort(const QString& text) {
  draft_.setPort(text);
  edited();
}

void AccountModel::setPasswordTyped(bool isTyped) {
  isPasswordTyped_ = isTyped;
  edited();
}

void AccountModel::edited() {
  provenAddress_.reset();
  isEditedSinceSave_ = true;
  if (activity_ == Activity::none && news_.kind == AccountNews::Kind::testSucceeded) {
    news_ = {};  // it was about what stood here before
    stages_.reset();
  }
  Q_EMIT changed();
}

void AccountModel::setEditing(bool isEditing) {
  isEditing_ = isEditing;
  if (!isEditing) {
    followFile();
  }
}

void AccountModel::followFile() {
  if (const AccountAddress inFile = accountOf(settings_.config()); inFile != seen_) {
    seen_ = inFile;
    saved_ = inFile;
  }
  if (!isEditing_ && !isPasswordTyped_ && draft_ == shown_ && !(shown_ == AccountDraft(saved_))) {
    shown_ = AccountDraft(saved_);
    draft_ = shown_;
  }
  Q_EMIT changed();
}

bool AccountModel::hasUnsavedChanges() const { return isPasswordTyped_ || !(draft_ == AccountDraft(saved_)); }

AccountModel::Obstacle AccountModel::obstacleInFields() const {
  switch (draft_.finding(Field::email)) {
    case Finding::empty:
      return Obstacle::emailMissing;
    case Finding::brokenAddress:
      return Obstacle::emailWrong;
    case Finding::takesNoPassword:
      return Obstacle::takesNoPassword;
    default:
      break;
  }
  if (const Finding host = draft_.finding(Field::host); host != Finding::none) {
    return host == Finding::empty ? Obstacle::hostMissing : Obstacle::hostWrong;
  }
  if (draft_.finding(Field::port) != Finding::none) {
    return Obstacle::portWrong;
  }
  return isPasswordTyped_ || isConfigured() ? Obstacle::none : Obstacle::passwordMissing;
}

AccountModel::Obstacle AccountModel::obstacleToTest() const {
  return activity_ == Activity::none ? obstacleInFields() : Obstacle::busy;
}

AccountModel::Obstacle AccountModel::obstacleToSave() const {
  if (activity_ != Activity::none) {
    return Obstacle::busy;
  }
  if (settings_.state() == ConfigStore::FileState::untrusted) {
    return Obstacle::fileUntrusted;
  }
  const Obstacle inFields = obstacleInFields();
  return inFields == Obstacle::none && !hasUnsavedChanges() ? Obstacle::nothingToSave : inFields;
}

AccountModel::Obstacle AccountModel::obstacleToRemove() const {
  if (activity_ != Activity::none) {
    return Obstacle::busy;
  }
  if (!isConfigured()) {
    return Obstacle::nothingToRemove;
  }
  return settings_.state() == ConfigStore::FileState::untrusted ? Obstacle::fileUntrusted : Obstacle::none;
}

}  // namespace tarnwell
