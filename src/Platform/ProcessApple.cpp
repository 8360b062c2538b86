#include "Platform/Process.h"

#include <CoreFoundation/CoreFoundation.h>
#include <crt_externs.h>
#include <limits.h>

#include <system_error>

#include "Platform/CoreFoundationObjects.h"
#include "Platform/StandardStreams.h"

namespace tarnwell {

void prepareProcess() { secureStandardStreams(); }

std::optional<std::filesystem::path> executablePath() {
  // A program outside a bundle also has a main bundle, and that knows the program's file.
  CFBundleRef bundle = CFBundleGetMainBundle();
  CFPointer<CFURLRef> url(bundle != nullptr ? CFBundleCopyExecutableURL(bundle) : nullptr);
  char path[PATH_MAX];
  if (!url || !CFURLGetFileSystemRepresentation(url.get(), /*resolveAgainstBase=*/true,
                                                reinterpret_cast<UInt8*>(path), sizeof path)) {
    return std::nullopt;
  }
  std::error_code error;
  auto resolved = std::filesystem::canonical(path, error);
  if (error) {
    return std::nullopt;
  }
  return resolved;
}

std::string_view invocationName() {
  const char* name = **_NSGetArgv();
  return name != nullptr ? name : "";
}

}  // namespace tarnwell
