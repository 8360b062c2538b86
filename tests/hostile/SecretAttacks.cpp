/// Secret stores that are missing, locked, ambiguous or broken. Without a password there is no connection.

#include <gtest/gtest.h>
#include <pwd.h>

#include <chrono>
#include <memory>

#include "Core/BridgeConstants.h"
#include "hostile/Launchers.h"
#include "hostile/ServerAttack.h"
#include "hostile/TestSecrets.h"

namespace tarnwell::test {

namespace {

using Answers = FakeSecretService::Answers;

/// The right answers to every question, except these.
Answers answersBut(const Answers& changed) {
  Answers answers = passwordAnswers(testPassword);
  for (const auto& [method, answer] : changed) {
    answers[method] = answer;
  }
  return answers;
}

constexpr const char* noAnswer = "Keychain error -25291: No secret service answers on the session bus.";
constexpr const char* locked = "Keychain error -25308: The keyring is locked. Unlock it and try again.";
constexpr const char* noAccount =
    "No iCloud account is configured. Open the app and save your email + app password.";

/// The longest time that a call may take on a busy machine. It is several times the two seconds that the
/// program waits for a secret service.
constexpr std::chrono::seconds longestWait{10};

ToolAnswer callInTime(ServeProgram& program, std::string_view tool) {
  const auto begin = std::chrono::steady_clock::now();
  ToolAnswer answer = program.call(tool);
  EXPECT_LT(std::chrono::steady_clock::now() - begin, longestWait) << tool;
  return answer;
}

/// A call that needs the password fails with `error` and makes no connection. Later requests are answered.
void expectNoPassword(Home& home, const std::string& error) {
  FakeIMAPServer server({});
  home.useServer(server.port());
  ServeProgram program(home);
  const ToolAnswer status = callInTime(program, "get_status");
  EXPECT_FALSE(status.isError);
  EXPECT_EQ(status.result["configured"], JSONValue(false));
  EXPECT_EQ(status.result["email"], JSONValue(testEmail));
  for (const char* tool : {"list_folders", "search_inbox"}) {
    EXPECT_EQ(callInTime(program, tool).error(), error) << tool;
  }
  EXPECT_TRUE(program.answersPing());
  EXPECT_EQ(server.acceptCount(), 0);
  expectQuietEnd(program);
}

Attack byService(const std::string& name, const std::string& attack, const std::string& outcome,
                 const Answers& changed, const std::string& error) {
  return {name, attack, outcome, [changed, error] {
            PrivateBus bus;
            FakeSecretService service(bus, answersBut(changed));
            Home home;
            home.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
            expectNoPassword(home, error);
          }};
}

Attack byBusAddress(const std::string& name, const std::string& attack, const std::string& address) {
  return {name, attack, "says that no secret service answers", [address] {
            Home home;
            home.environment["DBUS_SESSION_BUS_ADDRESS"] = address;
            expectNoPassword(home, noAnswer);
          }};
}

void busWithoutService() {
  PrivateBus bus;
  Home home;
  home.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
  expectNoPassword(home, noAnswer);
}

/// The real keyring with the right item, but its daemon does not know the keyring's password.
void lockedKeyring() {
  PrivateKeyring keyring;
  keyring.storeByTool({"service", std::string(BridgeConstants::keychainService), "account", testEmail},
                      testPassword);
  keyring.lock();
  Home home;
  home.environment["DBUS_SESSION_BUS_ADDRESS"] = keyring.bus().address();
  expectNoPassword(home, locked);
}

void twoMatchingItems() {
  const std::string properties =
      std::string("({'Attributes': <{'service': 'app.tarnwell.Tarnwell', 'account': '") + testEmail +
      "'}>, 'Label': <'Tarnwell'>, 'Locked': <false>, 'Created': <uint64 1>, 'Modified': <uint64 ";
  PrivateBus bus;
  FakeSecretService service(
      bus,
      answersBut({{"SearchItems", "([objectpath '/collection/item', objectpath '/collection/new'], @ao [])"},
                  {"GetAll /collection/item", properties + "5>},)"},
                  {"GetAll /collection/new", properties + "6>},)"},
                  {"GetSecret /collection/item",
                   "((objectpath '/session', @ay [], " + byteList("old") + ", 'text/plain'),)"}}));
  Home home;
  home.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.address();
  ServeProgram program(home);
  expectSound(home, program);
  expectQuietEnd(program);
}

/// Hides the user's own folder and bus, so the row has the same result on every machine.
void emptyEnvironment() {
  const std::string own = std::string(::getpwuid(::getuid())->pw_dir) + "/.local/share/" +
                          std::string(BridgeConstants::bundleIdentifier);
  Home home;
  home.launcher = inMountNamespace("for hidden in '" + own +
                                   "' /run/user; do if [ -d \"$hidden\" ]; then "
                                   "mount -t tmpfs tmpfs \"$hidden\"; fi; done");
  home.launcher.insert(home.launcher.end(), {"env", "-i"});
  ServeProgram program(home);
  const ToolAnswer status = program.call("get_status");
  EXPECT_FALSE(status.isError);
  EXPECT_EQ(status.result["configured"], JSONValue(false));
  EXPECT_EQ(program.call("list_folders").error(), noAccount);
  EXPECT_TRUE(program.answersPing());
  expectQuietEnd(program);
}

}  // namespace

std::vector<Attack> secretAttacks() {
  return {
      byBusAddress("noBus", "a bus address at which nobody listens", "unix:path=/nowhere/bus"),
      byBusAddress("addressWithoutSense", "a bus address that is none", "none\n of : these"),
      {"busWithoutService", "a bus without a secret service", "says that no secret service answers",
       busWithoutService},
      {"lockedKeyring", "a keyring that is locked", "says so; shows no prompt, unlocks nothing",
       lockedKeyring},
      byService("muteService", "a secret service that never answers",
                "says within ten seconds that none answers", {{"SearchItems", "..."}}, noAnswer),
      byService("failingService", "a secret service that fails", "says so",
                {{"GetSecret", "!org.freedesktop.DBus.Error.Failed"}},
                "Keychain error -26276: The secret service reported an internal error."),
      byService("itemGone", "an item that is deleted between search and reading",
                "says that no account is configured",
                {{"GetSecret", "!org.freedesktop.Secret.Error.NoSuchObject"}}, noAccount),
      byService("emptyPassword", "an item with an empty password", "says that no account is configured",
                {{"GetSecret", "((objectpath '/session', @ay [], @ay [], 'text/plain'),)"}}, noAccount),
      byService("passwordIsNoUTF8", "a password that is no UTF-8", "says so",
                {{"GetSecret", "((objectpath '/session', @ay [], [byte 0xFF, 0xFE], 'text/plain'),)"}},
                "Keychain item could not be decoded as UTF-8"),
      byService("secretOfAnotherForm", "an answer of another form than the protocol's",
                "says that no secret service answers", {{"GetSecret", "('nonsense',)"}}, noAnswer),
      {"twoMatchingItems", "two items that match", "takes the one that was changed last", twoMatchingItems},
      {"emptyEnvironment", "no environment variable is set",
       "acts as without settings: says that no account is configured", emptyEnvironment},
  };
}

}  // namespace tarnwell::test
