#include <dlfcn.h>

#include "Platform/SDBusLibrary.h"

namespace tarnwell {
namespace {

template <class Function>
bool find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
  return function != nullptr;
}

bool findFunctions() {
  void* library = ::dlopen("libsystemd.so.0", RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
  if (library == nullptr) {
    return false;
  }
#define TARNWELL_FIND(NAME) &&find(library, #NAME, NAME)
  return true TARNWELL_SD_BUS_FUNCTIONS(TARNWELL_FIND);
#undef TARNWELL_FIND
}

}  // namespace

bool loadSDBusLibrary() {
  static const bool isLoaded = findFunctions();
  return isLoaded;
}

}  // namespace tarnwell
