#include "Platform/SecretServiceLibrary.h"

#include <dlfcn.h>

namespace tarnwell {
namespace {

template <class Function>
bool find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
  return function != nullptr;
}

/// GLib's functions are found as well: libsecret depends on them.
bool findFunctions() {
  void* library = ::dlopen("libsecret-1.so.0", RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) {
    return false;
  }
#define TARNWELL_FIND(NAME) &&find(library, #NAME, NAME)
  return true TARNWELL_SECRET_SERVICE_FUNCTIONS(TARNWELL_FIND);
#undef TARNWELL_FIND
}

/// GLib's debugging aids (G_MESSAGES_DEBUG, G_DBUS_DEBUG) write to the standard output, which belongs to
/// the protocol. GLib wants this settled before its first thread.
void keepOffStandardOutput() {
  g_log_writer_default_set_use_stderr(TRUE);
  g_set_print_handler([](const gchar* text) { g_printerr("%s", text); });
}

}  // namespace

bool loadSecretServiceLibrary() {
  static const bool isLoaded = [] {
    if (!findFunctions()) {
      return false;
    }
    keepOffStandardOutput();
    return true;
  }();
  return isLoaded;
}

}  // namespace tarnwell
