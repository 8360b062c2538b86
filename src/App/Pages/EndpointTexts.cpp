#include "App/Pages/EndpointTexts.h"

#include <QCoreApplication>

#include "App/Pages/AccountTexts.h"

namespace tarnwell::EndpointTexts {

namespace {

using State = EndpointModel::State;
using Kind = EndpointNews::Kind;

class Words {
  Q_DECLARE_TR_FUNCTIONS(tarnwell::EndpointTexts)
};

QString withFreePort(const QString& trouble, const EndpointNews& news) {
  return news.freePort ? Words::tr("%1 Port %2 is free.").arg(trouble).arg(*news.freePort)
                       : Words::tr("%1 Choose another port.").arg(trouble);
}

/// A client that tried to reach the endpoint has sent its token to the other program.
QString withAdvice(const QString& trouble, const EndpointNews& news) {
  return news.hadToken ? Words::tr("%1 If you do not know that program, renew the token.").arg(trouble)
                       : trouble;
}

}  // namespace

QString state(State state) {
  switch (state) {
    case State::stopped:
      return Words::tr("Stopped");
    case State::starting:
      return Words::tr("Starting");
    case State::running:
      return Words::tr("Running");
    case State::stopping:
      return Words::tr("Stopping");
    case State::failed:
      return Words::tr("Not started");
  }
  return {};
}

QString sentence(State state) {
  switch (state) {
    case State::starting:
      return Words::tr("The token is taken from the keyring, and the port is opened.");
    case State::running:
      return Words::tr(
          "Programs on this computer that know the token can use your mailbox as far as the safety settings "
          "allow. It ends with this window.");
    case State::stopping:
      return Words::tr(
          "The port is closed. A call that runs is finished first, which takes a minute at most.");
    case State::stopped:
    case State::failed:
      break;
  }
  return Words::tr("The endpoint does not listen. It never starts by itself.");
}

QString news(const EndpointNews& news, int port) {
  switch (news.kind) {
    case Kind::none:
      break;
    case Kind::portTaken:
      return withAdvice(withFreePort(Words::tr("Another program already uses port %1.").arg(port), news),
                        news);
    case Kind::portNeedsRights:
      return withFreePort(Words::tr("Only programs of the system may use port %1.").arg(port), news);
    case Kind::notStarted:
      return Words::tr("The endpoint could not be started.");
    case Kind::keyring:
      return AccountTexts::news({.kind = news.keyring});
    case Kind::tokenRenewed:
      return Words::tr("The new token is in effect now. Give it to every client that uses the endpoint.");
    case Kind::tokenNotRenewed:
      return Words::tr("The token could not be renewed. The previous one stays in effect.");
    case Kind::settingsNotSaved:
      return Words::tr("The settings could not be saved. The page shows what holds.");
  }
  return {};
}

QString action(const EndpointNews& news) {
  return news.freePort ? Words::tr("Use &port %1").arg(*news.freePort) : QString();
}

Question renewal() {
  return {
      .title = Words::tr("Renew the token?"),
      .text = Words::tr("Every client that uses the endpoint must be given the new token. Until then it is "
                        "refused."),
      .yes = Words::tr("Renew"),
      .no = Words::tr("Keep")};
}

Question closing() {
  return {.title = Words::tr("Close the window?"),
          .text = Words::tr("The local endpoint is running. It ends with the window, and clients that use "
                            "it lose their connection."),
          .yes = Words::tr("Close"),
          .no = Words::tr("Leave open"),
          .isDangerous = false};
}

}  // namespace tarnwell::EndpointTexts
