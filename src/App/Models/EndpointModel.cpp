#include "App/Models/EndpointModel.h"

#include <utility>

#include "MCP/HTTP/LoopbackPort.h"

namespace tarnwell {

namespace {

using Kind = EndpointNews::Kind;

/// The keyring's trouble by name, `other` for the rest.
EndpointNews endpointNewsOf(const std::exception_ptr& failure, Kind other) {
  const AccountNews news = newsOf(failure, AccountNews::Kind::none);
  return news.kind == AccountNews::Kind::none
             ? EndpointNews{.kind = other, .details = news.details}
             : EndpointNews{.kind = Kind::keyring, .details = news.details, .keyring = news.kind};
}

}  // namespace

EndpointNews endpointNewsOf(std::error_code failure, std::optional<int> freePort) {
  const Kind kind = failure == std::errc::address_in_use      ? Kind::portTaken
                    : failure == std::errc::permission_denied ? Kind::portNeedsRights
                                                              : Kind::notStarted;
  return {.kind = kind, .details = QString::fromStdString(failure.message()), .freePort = freePort};
}

EndpointModel::EndpointModel(SettingsFile& settings, const KeychainStore& passwords, MCPTools tools,
                             KeyringAccess keyring, QObject* parent)
    : QObject(parent),
      settings_(settings),
      tokens_(passwords),
      tools_(std::move(tools)),
      keyring_(std::move(keyring)) {
  connect(&settings_, &SettingsFile::changed, this, &EndpointModel::changed);
  connect(&settings_, &SettingsFile::notSaved, this, [this](const QString& reason, int first) {
    if (portChange_ >= first) {
      tell({.kind = Kind::settingsNotSaved, .details = reason});
    }
  });
  connect(&keyring_, &Keyring::changed, this, [this] {
    const bool isOutdated = news_.kind == Kind::keyring && news_.keyring == AccountNews::Kind::keyringLocked;
    tell(isOutdated && keyring_.state() == KeyringState::ready ? EndpointNews() : news_);
  });
  connect(&keyring_, &Keyring::openedOtherwise, this, &EndpointModel::refresh);
  connect(&keyring_, &Keyring::unlockEnded, this, [this](const AccountNews& news) {
    tell({.kind = Kind::keyring, .details = news.details, .keyring = news.kind});
    refresh();
  });
}

bool EndpointModel::isBusy() const {
  return isRenewing_ || state_ == State::starting || state_ == State::stopping;
}

void EndpointModel::become(State state, EndpointNews news) {
  state_ = state;
  tell(std::move(news));
}

void EndpointModel::tell(EndpointNews news) {
  news_ = std::move(news);
  Q_EMIT changed();
}

int EndpointModel::port() const {
  const std::int64_t port = settings_.config().httpPort;
  return port >= leastPort && port <= greatestPort ? static_cast<int>(port)
                                                   : BridgeConstants::defaultHTTPPort;
}

void EndpointModel::setPort(int port) {
  if (!mayChangePort() || port == this->port()) {
    return;
  }
  state_ = State::stopped;
  news_ = {};  // it was about the port before
  portChange_ = settings_.change([port](AppConfig& config) { config.httpPort = port; });
}

QString EndpointModel::address() const {
  return state_ == State::running ? QString::fromStdString(server_->url())
                                  : QStringLiteral("http://127.0.0.1:%1/mcp").arg(port());
}

QString EndpointModel::clientBlock(const QString& token) const {
  return QStringLiteral(
             "{\n  \"mcpServers\": {\n    \"tarnwell\": {\n      \"type\": \"http\",\n      \"url\": "
             "\"%1\",\n"
             "      \"headers\": {\n        \"Authorization\": \"Bearer %2\"\n      }\n    }\n  }\n}\n")
      .arg(address(), token);
}

void EndpointModel::refresh() {
  keyring_.refresh();
  if (token_ || isBusy()) {
    return;
  }
  reading_.run([tokens = tokens_] { return tokens.existing(); },
               [this](Outcome<std::optional<Secret>> outcome) {
                 // A locked keyring shows by its state, and the next look comes with the next refresh.
                 if (outcome.value && *outcome.value && !token_) {
                   token_ = *std::move(outcome.value);
                   Q_EMIT changed();
                 }
               });
}

void EndpointModel::start() {
  if (isRunning() || isBusy()) {
    return;
  }
  reading_.abandon();
  become(State::starting);
  work_.run(
      [tokens = tokens_, tools = tools_, port = port()] {
        std::optional<Secret> existing = tokens.existing();
        Started started{.hadToken = existing.has_value()};
        started.token = existing ? *std::move(existing) : tokens.renew();
        started.server = std::make_shared<EndpointServer>(tools, port, started.token);
        if (started.server->failure()) {
          started.freePort = freeLoopbackPort(static_cast<std::uint16_t>(port));
        }
        return started;
      },
      [this](Outcome<Started> outcome) { started(std::move(outcome)); });
}

void EndpointModel::started(Outcome<Started> outcome) {
  if (outcome.failure) {
    wantsStop_ = false;
    keyring_.refresh();
    become(State::failed, endpointNewsOf(outcome.failure, Kind::notStarted));
    return;
  }
  auto& [server, token, hadToken, freePort] = *outcome.value;
  token_ = std::move(token);
  if (const std::error_code failure = server->failure()) {
    wantsStop_ = false;
    EndpointNews news = endpointNewsOf(failure, freePort);
    news.hadToken = hadToken;
    become(State::failed, std::move(news));
  } else {
    server_ = std::move(server);
    if (wantsStop_) {
      stopIfWanted();
    } else {
      become(State::running, std::move(news_));  // what was told meanwhile stays
    }
  }
}

void EndpointModel::startAtFreePort() {
  if (const std::optional<int> port = news_.freePort) {
    setPort(*port);
    start();
  }
}

void EndpointModel::stop() {
  if (!isRunning() || state_ == State::stopping) {
    return;
  }
  const bool canStopNow = !isBusy();
  wantsStop_ = true;
  become(State::stopping);
  if (canStopNow) {
    stopIfWanted();
  }
}

void EndpointModel::stopIfWanted() {
  if (!std::exchange(wantsStop_, false)) {
    return;
  }
  work_.run([server = std::move(server_)] { server->end(); },
            [this](const Outcome<void>&) { become(State::stopped, std::move(news_)); });
}

void EndpointModel::renewToken() {
  if (isBusy()) {
    return;
  }
  reading_.abandon();
  isRenewing_ = true;
  tell({});
  work_.run(
      [tokens = tokens_, server = server_] {
        Secret token = tokens.renew();
        if (server) {
          server->requireToken(token);
        }
        return token;
      },
      [this](Outcome<Secret> outcome) {
        isRenewing_ = false;
        if (outcome.failure) {
          keyring_.refresh();
          tell(endpointNewsOf(outcome.failure, Kind::tokenNotRenewed));
        } else {
          token_ = std::move(outcome.value);
          tell({.kind = Kind::tokenRenewed});
        }
        stopIfWanted();
      });
}

void EndpointModel::unlockKeyring() {
  keyring_.unlock();
  Q_EMIT changed();
}

void EndpointModel::giveUp() {
  keyring_.giveUp();
  Q_EMIT changed();
}

}  // namespace tarnwell
