#pragma once

/// A session bus and a gnome-keyring for one test, in a temporary directory that is also their HOME and
/// runtime directory. They never touch the user's own bus and keyrings.
///
/// Programs needed: dbus-daemon, gnome-keyring-daemon, secret-tool, dbus-send. Without one of them the test
/// fails and names it.

#include <gio/gio.h>

#include <chrono>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "support/ChildProgram.h"
#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

/// A bus that starts no service by itself.
class PrivateBus {
 public:
  PrivateBus() {
    std::ofstream(directory_ / "bus.conf")
        << "<busconfig><type>session</type><listen>unix:path=" << (directory_ / "bus").string()
        << "</listen><auth>EXTERNAL</auth><policy context=\"default\"><allow send_destination=\"*\" "
           "eavesdrop=\"true\"/><allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";
    std::filesystem::create_directory(directory_ / "home");
    std::filesystem::create_directory(directory_ / "run");
    std::filesystem::permissions(directory_ / "run", std::filesystem::perms::owner_all);
    daemon_.emplace(std::vector<std::string>{"dbus-daemon", "--nofork", "--print-address=1",
                                             "--config-file=" + (directory_ / "bus.conf").string()},
                    environment());
    address_ = daemon_->readLine();
    if (address_.empty()) {
      throw std::runtime_error("dbus-daemon ended without printing its address");
    }
  }

  const std::string& address() const { return address_; }
  std::filesystem::path socket() const { return directory_ / "bus"; }
  std::filesystem::path directory() const { return directory_.path(); }

  std::vector<std::string> environment() const {
    return {"HOME=" + (directory_ / "home").string(), "XDG_RUNTIME_DIR=" + (directory_ / "run").string(),
            "DBUS_SESSION_BUS_ADDRESS=" + address_, "PATH=/usr/local/bin:/usr/bin:/bin", "LC_ALL=C.UTF-8"};
  }

  /// Runs a program with this bus and returns its output. Throws when the program reports a failure.
  std::string run(const std::vector<std::string>& command, const std::string& input = "") const {
    ChildProgram program(command, environment(), input);
    std::string output = program.readAll();
    if (int status = program.wait(); status != 0) {
      throw std::runtime_error(command[0] + " ended with status " + std::to_string(status) + ": " + output);
    }
    return output;
  }

  /// A connection for the test itself.
  std::unique_ptr<GDBusConnection, decltype(&g_object_unref)> connect() const {
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    GDBusConnection* connection =
        g_dbus_connection_new_for_address_sync(address_.c_str(), flags, nullptr, nullptr, nullptr);
    if (connection == nullptr) {
      throw std::runtime_error("cannot connect to the private bus");
    }
    return {connection, &g_object_unref};
  }

  bool hasOwner(const char* name) const {
    auto connection = connect();
    GVariant* reply = g_dbus_connection_call_sync(
        connection.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "NameHasOwner", g_variant_new("(s)", name), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    if (reply == nullptr) {
      throw std::runtime_error("the private bus does not answer");
    }
    gboolean owned = FALSE;
    g_variant_get(reply, "(b)", &owned);
    g_variant_unref(reply);
    return owned != FALSE;
  }

 private:
  TemporaryDirectory directory_;
  std::optional<ChildProgram> daemon_;
  std::string address_;
};

/// A bus with a keyring whose default collection is "login" and unlocked.
class PrivateKeyring {
 public:
  /// With an empty password there is the service, and no collection.
  explicit PrivateKeyring(const std::string& password = "right") { start(password); }

  const PrivateBus& bus() const { return bus_; }

  /// Stores an item as the user or another program would, with only the given attributes.
  void storeByTool(const std::vector<std::string>& attributes, const std::string& secret,
                   const std::string& collection = "") {
    std::vector<std::string> command{"secret-tool", "store", "--label=Tarnwell"};
    if (!collection.empty()) {
      command.push_back("--collection=" + collection);
    }
    command.insert(command.end(), attributes.begin(), attributes.end());
    bus_.run(command, secret);
  }

  /// The output of secret-tool for every item with these attributes.
  std::string searchByTool(const std::vector<std::string>& attributes) {
    // secret-tool prints attributes to the standard error. The test needs both streams.
    std::string command = "exec secret-tool search --all";
    for (const std::string& attribute : attributes) {
      command += " '" + attribute + "'";
    }
    return bus_.run({"sh", "-c", command + " 2>&1"});
  }

  void lock() {
    bus_.run({"dbus-send", "--session", "--print-reply", "--dest=org.freedesktop.secrets",
              "/org/freedesktop/secrets", "org.freedesktop.Secret.Service.Lock",
              "array:objpath:/org/freedesktop/secrets/collection/login"});
  }

  /// Starts a new daemon with the same keyring file and the wrong password.
  void restartLocked() { restart("wrong"); }

  /// Starts a new daemon with the same keyring file and the right password.
  void restartUnlocked() { restart("right"); }

 private:
  static constexpr const char* serviceName = "org.freedesktop.secrets";

  void restart(const std::string& password) {
    daemon_->end(SIGTERM);
    while (bus_.hasOwner(serviceName)) {
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    start(password);
  }

  void start(const std::string& password) {
    daemon_.emplace(
        std::vector<std::string>{"gnome-keyring-daemon", "--foreground", "--unlock", "--components=secrets",
                                 "--control-directory=" + (bus_.directory() / "run").string()},
        bus_.environment(), password);
    auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!bus_.hasOwner(serviceName)) {
      if (std::chrono::steady_clock::now() > end) {
        throw std::runtime_error("gnome-keyring-daemon did not take its name on the bus");
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
  }

  PrivateBus bus_;
  std::optional<ChildProgram> daemon_;
};

}  // namespace tarnwell::test
