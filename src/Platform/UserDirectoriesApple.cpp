#include "Platform/UserDirectories.h"

#include <limits.h>
#include <sysdir.h>

#include <string_view>

#include "Platform/CoreFoundationObjects.h"

namespace tarnwell {
namespace {

/// sysdir(3) writes the user's home directory as a tilde.
std::filesystem::path expanded(std::string_view path) {
  if (!path.starts_with("~/")) {
    return path;
  }
  return homeDirectory() / path.substr(2);
}

}  // namespace

std::optional<std::filesystem::path> applicationSupportDirectory() {
  const auto search =
      sysdir_start_search_path_enumeration(SYSDIR_DIRECTORY_APPLICATION_SUPPORT, SYSDIR_DOMAIN_MASK_USER);
  char path[PATH_MAX];
  if (sysdir_get_next_search_path_enumeration(search, path) == 0) {
    return std::nullopt;
  }
  return expanded(path);
}

std::vector<std::string> preferredLanguages() {
  CFPointer<CFArrayRef> languages(CFLocaleCopyPreferredLanguages());
  std::vector<std::string> tags;
  const CFIndex count = languages ? CFArrayGetCount(languages.get()) : 0;
  for (CFIndex index = 0; index < count; ++index) {
    auto language = static_cast<CFStringRef>(CFArrayGetValueAtIndex(languages.get(), index));
    if (auto tag = utf8Text(language)) {
      tags.push_back(*std::move(tag));
    }
  }
  return tags;
}

}  // namespace tarnwell
