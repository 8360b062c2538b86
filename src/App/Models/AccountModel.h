#pragma once

/// The account page's knowledge: what was typed, what is wrong with it, what is under way, what came of it.
///
///     AccountModel model(settings, KeychainStore::shared());
///     connect(&model, &AccountModel::changed, page, &AccountPage::refresh);
///     model.setEmail("anna@icloud.com");
///     if (model.obstacleToTest() == AccountModel::Obstacle::none) {
///       model.test(std::move(typedPassword));
///     }
///
/// What was typed survives every failure. The password is never kept: `test` and `save` take it along. One
/// thing runs at a time, off this thread. The fields follow the settings file unless they hold something that
/// is not saved or are being edited: what belongs to one account never mixes with another.
///
/// Threads: that of the window.

#include <QObject>
#include <QString>
#include <array>
#include <optional>

#include "App/Models/AccountDraft.h"
#include "App/Models/AccountNews.h"
#include "App/Models/BackgroundTask.h"
#include "App/Models/Keyring.h"
#include "App/Models/SettingsFile.h"
#include "Core/KeychainStore.h"
#include "Core/Secret.h"
#include "IMAP/Connection/SessionWatch.h"

namespace tarnwell {

class AccountModel : public QObject {
  Q_OBJECT

 public:
  enum class Activity { none, testing, saving, removing, unlocking };

  /// Why something cannot be done now, the first of them that a person would mend.
  enum class Obstacle {
    none,
    busy,
    emailMissing,
    emailWrong,
    takesNoPassword,
    hostMissing,
    hostWrong,
    portWrong,
    passwordMissing,
    fileUntrusted,
    nothingToSave,
    nothingToRemove,
  };

  enum class StageState { waiting, running, done, failed };
  enum class Stage { name, secureConnection, signIn, inbox };
  static constexpr std::size_t stageCount = 4;

  /// `settings` must outlive the model.
  AccountModel(SettingsFile& settings, KeychainStore passwords, KeyringAccess keyring = {},
               QObject* parent = nullptr);
  /// Gives up what runs, and waits for nothing.
  ~AccountModel() override;

  const AccountDraft& draft() const { return draft_; }
  void setEmail(const QString& text);
  void setHost(const QString& text);
  void setPort(const QString& text);
  /// Says whether there is something in the password field.
  void setPasswordTyped(bool isTyped);
  /// While a field of the account has the focus, no news from the file changes the fields.
  void setEditing(bool isEditing);

  /// True when an account is saved.
  bool isConfigured() const { return !saved_.email.empty(); }
  bool hasUnsavedChanges() const;

  Obstacle obstacleToTest() const;
  Obstacle obstacleToSave() const;
  Obstacle obstacleToRemove() const;

  Activity activity() const { return activity_; }
  const AccountNews& news() const { return news_; }
  /// Of the last test. Absent when there was none since the program began or the account was removed.
  const std::optional<std::array<StageState, stageCount>>& stages() const { return stages_; }
  /// Absent until it was asked for the first time.
  std::optional<KeyringState> keyring() const { return keyring_.state(); }
  const SettingsFile& settings() const { return settings_; }

  /// Without a typed password the stored one is used. A test of the saved account is noted in the settings.
  void test(Secret typed);
  /// At once. What the server still answers is dropped.
  void cancelTest();
  /// Without a typed password the stored one stays, and moves to a new address.
  void save(Secret typed);
  /// Ask first.
  void remove();
  /// While the question is on the screen, gives it up and asks anew.
  void unlockKeyring();
  /// Gives up what waits for somebody else: a test, or the unlocking.
  void giveUp();
  /// Looks at the keyring again, off this thread.
  void refreshKeyring() { keyring_.refresh(); }

 Q_SIGNALS:
  /// Anything of the above may be different now.
  void changed();
  /// The typed password is kept in the keyring, or its account is gone: the field must forget it.
  void passwordDone();

 private:
  struct TestResult {
    bool hadPassword = false;
    ConnectionOutcome outcome{};
  };
  static TestResult runTest(const AppConfig& config, Secret typed, const std::string& storedAccount,
                            const KeychainStore& passwords, SessionWatch watch);

  Obstacle obstacleInFields() const;
  AccountSetup setup() const { return {settings_.store(), passwords_}; }
  void edited();
  void followFile();
  void begin(Activity activity);
  void end(AccountNews news);
  void reach(SessionStage stage);
  void endStages(AccountNews::Kind kind);
  void tested(Outcome<TestResult> outcome, const Provider* provider);

  SettingsFile& settings_;
  KeychainStore passwords_;

  AccountAddress seen_;   // in the file, when it was looked at last
  AccountAddress saved_;  // as far as is known
  AccountDraft shown_;    // what the fields were last set to
  AccountDraft draft_;
  bool isPasswordTyped_ = false;
  bool isEditedSinceSave_ = false;  // since the saving began
  bool isEditing_ = false;
  /// What a test has found good since the last keystroke, to be noted when it is saved.
  std::optional<AccountAddress> provenAddress_;

  Activity activity_ = Activity::none;
  AccountNews news_;
  std::optional<std::array<StageState, stageCount>> stages_;

  Cancellation cancellation_;
  BackgroundTask work_;
  Keyring keyring_;
};

}  // namespace tarnwell
