#pragma once

/// A Secret Service that a test controls: mute, prompting or failing. It answers from a filter on GLib's
/// thread for the connection, so the test needs no event loop.

#include <gio/gio.h>

#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>

#include "integration/PrivateKeyring.h"

namespace tarnwell::test {

class FakeSecretService {
 public:
  /// The answer to each method. It is the reply's arguments in GVariant's text form; or "!" and an error
  /// name; or "..." for no answer. A method without an entry gives the error UnknownMethod.
  using Answers = std::map<std::string, std::string>;

  /// The answers of a service with one unlocked collection that has one unlocked item.
  static Answers oneItem() {
    return {
        {"OpenSession", "(<''>, objectpath '/session')"},
        {"SearchItems", "([objectpath '/collection/item'], @ao [])"},
        {"GetAll /collection/item",
         "({'Attributes': <{'service': 's', 'account': 'a'}>, 'Label': <'Tarnwell'>, 'Locked': <false>, "
         "'Created': <uint64 1>, 'Modified': <uint64 1>},)"},
        {"GetSecret", "((objectpath '/session', @ay [], [byte 0x70, 0x77], 'text/plain'),)"},
        {"Delete", "(objectpath '/',)"},
        {"ReadAlias", "(objectpath '/collection',)"},
        {"GetAll /collection",
         "({'Items': <@ao []>, 'Label': <'Login'>, 'Locked': <false>, "
         "'Created': <uint64 1>, 'Modified': <uint64 1>},)"},
        {"CreateItem", "(objectpath '/collection/item', objectpath '/')"},
        {"GetAll /org/freedesktop/secrets", "({'Collections': <[objectpath '/collection']>},)"},
    };
  }

  explicit FakeSecretService(const PrivateBus& bus, Answers answers)
      : answers_(std::move(answers)), connection_(bus.connect()) {
    filter_ = g_dbus_connection_add_filter(connection_.get(), &onMessage, this, nullptr);
    GVariant* reply = g_dbus_connection_call_sync(
        connection_.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
        "RequestName", g_variant_new("(su)", "org.freedesktop.secrets", 0U), nullptr, G_DBUS_CALL_FLAGS_NONE,
        -1, nullptr, nullptr);
    if (reply == nullptr) {
      throw std::runtime_error("cannot take the name of the Secret Service on the private bus");
    }
    g_variant_unref(reply);
  }
  FakeSecretService(const FakeSecretService&) = delete;
  ~FakeSecretService() {
    g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr);
    g_dbus_connection_remove_filter(connection_.get(), filter_);
  }

  /// From now on GetSecret returns these bytes, whatever the answers say. Any bytes are allowed, also many,
  /// for which GVariant's text form is too slow.
  void holdSecret(std::string secret) {
    std::lock_guard guard(lock_);
    secret_ = std::move(secret);
  }

  /// The methods that were called, each as often as it was called.
  std::multiset<std::string> called() const {
    std::lock_guard guard(lock_);
    return called_;
  }

 private:
  static GDBusMessage* onMessage(GDBusConnection* connection, GDBusMessage* message, gboolean isIncoming,
                                 gpointer self) {
    if (!isIncoming || g_dbus_message_get_message_type(message) != G_DBUS_MESSAGE_TYPE_METHOD_CALL) {
      return message;
    }
    if (GDBusMessage* answer = static_cast<FakeSecretService*>(self)->answer(message)) {
      g_dbus_connection_send_message(connection, answer, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
      g_object_unref(answer);
    }
    g_object_unref(message);
    return nullptr;
  }

  GDBusMessage* answer(GDBusMessage* message) {
    std::string member = g_dbus_message_get_member(message);
    std::lock_guard guard(lock_);
    called_.insert(member);
    auto found = answers_.find(member + " " + g_dbus_message_get_path(message));
    if (found == answers_.end()) {
      found = answers_.find(member);
    }
    std::string text = found == answers_.end() ? "!org.freedesktop.DBus.Error.UnknownMethod" : found->second;
    if (text == "...") {
      return nullptr;
    }
    if (text.starts_with("!")) {
      return g_dbus_message_new_method_error_literal(message, text.c_str() + 1, "as the test wants");
    }
    if (member == "OpenSession" && !isPlain(message)) {
      return g_dbus_message_new_method_error_literal(message, "org.freedesktop.DBus.Error.NotSupported",
                                                     "plain only");
    }
    GDBusMessage* reply = g_dbus_message_new_method_reply(message);
    if (member == "GetSecret" && secret_) {
      g_dbus_message_set_body(reply, heldSecret());
      return reply;
    }
    GError* error = nullptr;
    GVariant* arguments = g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, &error);
    if (arguments == nullptr) {
      g_error("%s: %s", text.c_str(), error->message);
    }
    g_dbus_message_set_body(reply, arguments);
    g_variant_unref(arguments);
    return reply;
  }

  GVariant* heldSecret() const {
    GVariant* none = g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, nullptr, 0, 1);
    GVariant* bytes = g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, secret_->data(), secret_->size(), 1);
    return g_variant_new("((o@ay@ays))", "/session", none, bytes, "text/plain");
  }

  static bool isPlain(GDBusMessage* message) {
    const char* algorithm = nullptr;
    g_variant_get(g_dbus_message_get_body(message), "(&sv)", &algorithm, nullptr);
    return std::string(algorithm) == "plain";
  }

  Answers answers_;
  std::optional<std::string> secret_;
  mutable std::mutex lock_;
  std::multiset<std::string> called_;
  std::unique_ptr<GDBusConnection, decltype(&g_object_unref)> connection_;
  guint filter_ = 0;
};

}  // namespace tarnwell::test
