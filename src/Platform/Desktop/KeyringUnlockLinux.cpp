#include <chrono>
#include <optional>
#include <string>
#include <utility>

#include "Platform/Desktop/KeyringUnlock.h"
#include "Platform/Secrets/SecretItems.h"
#include "Platform/Secrets/SecretServiceConversation.h"
#include "Platform/Secrets/SecretServiceStatus.h"
#include "Platform/Secrets/SessionBus.h"

namespace tarnwell {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr const char* serviceName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char* promptInterface = "org.freedesktop.Secret.Prompt";
constexpr const char* noObject = "/";

constexpr auto answerBound = 1900ms;
/// How long `giveUp` may take to be seen.
constexpr auto slice = 100ms;

std::string orNoObject(std::optional<std::string> path) {
  return path ? std::move(*path) : std::string(noObject);
}

KeyringState stateOf(SecretServiceConversation& service) {
  const std::optional<std::string> collection = service.defaultCollection();
  if (!collection) {
    return KeyringState::absent;
  }
  return service.isLocked(*collection) ? KeyringState::locked : KeyringState::ready;
}

/// One question, from its request to its answer.
class Question {
 public:
  Question(const std::string& address, const std::atomic<bool>& isGivenUp)
      : bus_(address, Clock::now() + answerBound), isGivenUp_(isGivenUp) {
    bus_.subscribe(std::string("type='signal',sender='") + serviceName + "',interface='" + promptInterface +
                       "',member='Completed'",
                   Clock::now() + answerBound);
    bus_.subscribe(
        std::string("type='signal',sender='org.freedesktop.DBus',member='NameOwnerChanged',arg0='") +
            serviceName + "'",
        Clock::now() + answerBound);
  }

  /// False when the user did not answer.
  bool askToUnlock(const std::string& collection) {
    BusMessage request = bus_.methodCall(serviceName, servicePath, serviceInterface, "Unlock");
    request.open('a', "o");
    request.appendPath(collection);
    request.close();
    BusMessage reply = bus_.call(request, Clock::now() + answerBound);
    reply.skip("ao");
    return show(orNoObject(reply.readPath()));
  }

  /// The same, for a first keyring. The user chooses its password.
  bool askToCreate() {
    BusMessage request = bus_.methodCall(serviceName, servicePath, serviceInterface, "CreateCollection");
    request.open('a', "{sv}");
    request.open('e', "sv");
    request.appendText("org.freedesktop.Secret.Collection.Label");
    request.open('v', "s");
    request.appendText("Login");
    request.close();
    request.close();
    request.close();
    request.appendText("default");
    BusMessage reply = bus_.call(request, Clock::now() + answerBound);
    reply.skip("o");
    return show(orNoObject(reply.readPath()));
  }

 private:
  bool show(const std::string& prompt) {
    if (prompt == noObject) {
      return true;  // done without a question
    }
    BusMessage request = bus_.methodCall(serviceName, prompt, promptInterface, "Prompt");
    request.appendText("");  // no window of this program to stand above
    bus_.call(request, Clock::now() + answerBound);
    while (!isGivenUp_) {
      std::optional<BusMessage> signal = bus_.nextSignal(Clock::now() + slice);
      if (!signal) {
        continue;
      }
      if (signal->isSignal(prompt, promptInterface, "Completed")) {
        return !signal->readFlag();
      }
      if (signal->isSignal("/org/freedesktop/DBus", "org.freedesktop.DBus", "NameOwnerChanged")) {
        throw BusError();  // the service ended while it asked
      }
    }
    return false;
  }

  SessionBus bus_;
  const std::atomic<bool>& isGivenUp_;
};

}  // namespace

KeyringState keyringState() {
  const std::optional<std::string> address = sessionBusAddress();
  if (!address) {
    return KeyringState::noService;
  }
  try {
    SecretServiceConversation service(*address, Clock::now() + answerBound);
    return stateOf(service);
  } catch (const BusError&) {
    return KeyringState::noService;
  }
}

UnlockOutcome KeyringUnlock::ask() const {
  const std::optional<std::string> address = sessionBusAddress();
  if (!address) {
    return UnlockOutcome::noService;
  }
  try {
    SecretServiceConversation service(*address, Clock::now() + answerBound);
    const std::optional<std::string> collection = service.defaultCollection();
    if (!collection || service.isLocked(*collection)) {
      Question question(*address, *isGivenUp_);
      if (*isGivenUp_ || !(collection ? question.askToUnlock(*collection) : question.askToCreate())) {
        return UnlockOutcome::dismissed;
      }
    }
    service.goOnUntil(Clock::now() + answerBound);
    return stateOf(service) == KeyringState::ready ? UnlockOutcome::unlocked : UnlockOutcome::refused;
  } catch (const BusError& error) {
    return secretServiceStatus(error.name()) == SecretStatus::notAvailable && !error.name().empty()
               ? UnlockOutcome::noService
               : UnlockOutcome::refused;
  }
}

}  // namespace tarnwell
