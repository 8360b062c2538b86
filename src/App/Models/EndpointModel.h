#pragma once

/// The endpoint page's knowledge: whether the local HTTP endpoint runs, where, and with which token.
///
///     EndpointModel model(settings, KeychainStore::shared(), MCPTools::shared());
///     connect(&model, &EndpointModel::changed, page, &EndpointPage::showModel);
///     model.start();
///
/// Nothing starts it but `start`. It always asks for the token, which is made at the first start and kept in
/// the keyring. Its tools are those of an assistant: the same settings, the same passwords.
///
/// A program that ends should call `stop` and wait a little until `isRunning` and `isRenewing` are false, so
/// that a change that a client has asked for is finished, and the keyring has a token. It need not wait: the
/// destructor leaves what runs to a thread of its own.
///
/// Threads: that of the window, which never waits here.

#include <QObject>
#include <QString>
#include <memory>
#include <optional>
#include <system_error>

#include "App/Models/AccountNews.h"
#include "App/Models/BackgroundTask.h"
#include "App/Models/EndpointServer.h"
#include "App/Models/EndpointToken.h"
#include "App/Models/Keyring.h"
#include "App/Models/SettingsFile.h"
#include "Core/KeychainStore.h"
#include "Core/Secret.h"
#include "MCP/Tools/MCPTools.h"

namespace tarnwell {

/// What a wish of the person came to, as far as the state does not tell.
struct EndpointNews {
  enum class Kind {
    none,
    portTaken,        // by another program; `freePort` is one that was free
    portNeedsRights,  // only the system's own programs may listen there
    notStarted,       // any other reason; see the details
    keyring,          // `keyring` says what is the matter with it
    tokenRenewed,
    tokenNotRenewed,   // see the details; the previous one stays in effect
    settingsNotSaved,  // the port of the last wish; see the details
  };

  Kind kind = Kind::none;
  /// The original English text, where there is one.
  QString details{};
  std::optional<int> freePort{};
  /// Clients may already have sent the token to whoever listens there instead.
  bool hadToken = false;
  AccountNews::Kind keyring = AccountNews::Kind::none;
};

/// For an endpoint that does not listen.
EndpointNews endpointNewsOf(std::error_code failure, std::optional<int> freePort);

class EndpointModel : public QObject {
  Q_OBJECT

 public:
  enum class State { stopped, starting, running, stopping, failed };

  /// `settings` must outlive the model. The token lies in the same secret store as `passwords`.
  EndpointModel(SettingsFile& settings, const KeychainStore& passwords, MCPTools tools,
                KeyringAccess keyring = {}, QObject* parent = nullptr);

  State state() const { return state_; }
  /// True while closing the window would end something: also while it starts or stops.
  bool isRunning() const { return state_ != State::stopped && state_ != State::failed; }
  /// Why it is `failed`, or what the last wish came to.
  const EndpointNews& news() const { return news_; }

  static constexpr int leastPort = 1;
  static constexpr int greatestPort = 65535;
  /// The one of the settings, or the usual one when they hold no port.
  int port() const;
  /// Not while it runs.
  void setPort(int port);
  bool mayChangePort() const { return !isRunning(); }

  /// Where it listens, or will.
  QString address() const;

  /// Absent before the first start, and until `refresh` has looked.
  const std::optional<Secret>& token() const { return token_; }
  bool isRenewing() const { return isRenewing_; }

  /// What a client that speaks HTTP has in its settings. With this text in the place of the token.
  QString clientBlock(const QString& token) const;

  std::optional<KeyringState> keyring() const { return keyring_.state(); }
  bool isUnlocking() const { return keyring_.isUnlocking(); }

  /// Looks at the keyring, and for a token in it. For a page that is shown.
  void refresh();

  void start();
  /// Starts at the free port of the news, which becomes that of the settings.
  void startAtFreePort();
  /// Closes at once, or as soon as what is under way with the keyring allows. `stopping` begins at once, and
  /// lasts until the call that runs has ended.
  void stop();
  /// Makes a new token, which a running endpoint takes at once. Ask first.
  void renewToken();
  void unlockKeyring();
  /// Gives the question for the unlocking up.
  void giveUp();

 Q_SIGNALS:
  /// Anything of the above may be different now.
  void changed();

 private:
  struct Started {
    std::shared_ptr<EndpointServer> server{};
    Secret token{};
    bool hadToken = false;
    std::optional<int> freePort{};
  };

  bool isBusy() const;
  void become(State state, EndpointNews news = {});
  void stopIfWanted();
  void started(Outcome<Started> outcome);
  void tell(EndpointNews news);

  SettingsFile& settings_;
  EndpointToken tokens_;
  MCPTools tools_;

  State state_ = State::stopped;
  EndpointNews news_;
  std::shared_ptr<EndpointServer> server_;
  std::optional<Secret> token_;
  bool isRenewing_ = false;
  bool wantsStop_ = false;  // as soon as it can be
  int portChange_ = 0;      // the last one of the settings that was wished here

  BackgroundTask work_;
  BackgroundTask reading_;
  Keyring keyring_;
};

}  // namespace tarnwell
