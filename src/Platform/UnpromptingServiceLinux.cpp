#include "Platform/UnpromptingService.h"

#include <sys/stat.h>

#include <cstdlib>
#include <optional>
#include <string>

#include "Platform/SecretItems.h"

namespace tarnwell {
namespace {

void refusePrompt(SecretService* service, SecretPrompt* /*prompt*/, const GVariantType* /*resultType*/,
                  GCancellable* cancellable, GAsyncReadyCallback done, gpointer data) {
  ObjectPointer<GTask> task(g_task_new(service, cancellable, done, data));
  g_task_return_new_error(task.get(), SECRET_ERROR, SECRET_ERROR_IS_LOCKED, "A prompt is not allowed");
}

GVariant* finishRefusal(SecretService* /*service*/, GAsyncResult* result, GError** error) {
  return static_cast<GVariant*>(g_task_propagate_pointer(G_TASK(result), error));
}

/// The parent's constructor (libsecret 0.19 and later) fills in the names of the service and its object, and
/// chooses the connection that all libraries of a process share, whatever the caller asked for. That choice
/// is taken back, so that the connection of the caller counts.
GObject* constructOnConnection(GType type, guint count, GObjectConstructParam* properties) {
  auto* parent = G_OBJECT_CLASS(g_type_class_peek(SECRET_TYPE_SERVICE));
  GObject* service = parent->constructor(type, count, properties);
  g_object_set(service, "g-bus-type", G_BUS_TYPE_NONE, nullptr);
  return service;
}

/// libsecret asks the service object to prompt, through its class. This class says no.
GType unpromptingServiceType() {
  static const GType type = [] {
    auto initializeClass = [](gpointer classRecord, gpointer /*data*/) {
      G_OBJECT_CLASS(classRecord)->constructor = constructOnConnection;
      auto* functions = SECRET_SERVICE_CLASS(classRecord);
      functions->prompt_async = refusePrompt;
      functions->prompt_finish = finishRefusal;
    };
    return g_type_register_static_simple(SECRET_TYPE_SERVICE, "TarnwellUnpromptingService",
                                         sizeof(SecretServiceClass), initializeClass, sizeof(SecretService),
                                         nullptr, G_TYPE_FLAG_NONE);
  }();
  return type;
}

/// The address in the environment, else the socket that systemd and elogind put in the runtime directory
/// (sd_bus_default_user(3)). GLib's own search is not used: without a bus it starts one, by a program whose
/// running time nothing bounds.
std::optional<std::string> sessionBusAddress() {
  if (const char* address = std::getenv("DBUS_SESSION_BUS_ADDRESS"); address != nullptr && *address != '\0') {
    return address;
  }
  const char* directory = std::getenv("XDG_RUNTIME_DIR");
  if (directory == nullptr || *directory != '/') {
    return std::nullopt;
  }
  std::string path = std::string(directory) + "/bus";
  struct stat status {};
  if (::stat(path.c_str(), &status) < 0 || !S_ISSOCK(status.st_mode)) {
    return std::nullopt;
  }
  std::unique_ptr<gchar, decltype(g_free)> escaped(g_dbus_address_escape_value(path.c_str()), g_free);
  return std::string("unix:path=") + escaped.get();
}

/// A connection that nobody shares. The one that libraries share in a process has the process killed when
/// the bus goes away.
ObjectPointer<GDBusConnection> connect(BoundedCalls& calls, const std::string& address) {
  constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                           G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
  auto result = calls.result([&](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
    g_dbus_connection_new_for_address(address.c_str(), flags, nullptr, cancel, done, data);
  });
  GError* error = nullptr;
  ObjectPointer<GDBusConnection> connection(g_dbus_connection_new_for_address_finish(result.get(), &error));
  throwIfFailed(error);
  return connection;
}

}  // namespace

ObjectPointer<SecretService> openUnpromptingService(BoundedCalls& calls) {
  auto address = sessionBusAddress();
  if (!address) {
    throw SecretServiceError(SecretStatus::notAvailable);
  }
  auto connection = connect(calls, *address);
  auto result = calls.result([&](GCancellable* cancel, GAsyncReadyCallback done, gpointer data) {
    g_async_initable_new_async(unpromptingServiceType(), G_PRIORITY_DEFAULT, cancel, done, data,
                               "g-connection", connection.get(), nullptr);
  });
  GError* error = nullptr;
  ObjectPointer<GObject> source(g_async_result_get_source_object(result.get()));
  GObject* service = g_async_initable_new_finish(G_ASYNC_INITABLE(source.get()), result.get(), &error);
  throwIfFailed(error);
  return ObjectPointer<SecretService>(SECRET_SERVICE(service));
}

}  // namespace tarnwell
