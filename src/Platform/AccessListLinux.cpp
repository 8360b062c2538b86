#include <sys/xattr.h>

#include "Platform/AccessList.h"

namespace tarnwell {
namespace {

/// acl(5): the list of a file, not the one that a folder gives to new files.
constexpr const char* attribute = "system.posix_acl_access";

}  // namespace

std::optional<std::string> accessListOf(const std::filesystem::path& path) {
  const ssize_t size = ::getxattr(path.c_str(), attribute, nullptr, 0);
  if (size <= 0) {
    return std::nullopt;
  }
  std::string list(static_cast<std::size_t>(size), '\0');
  return ::getxattr(path.c_str(), attribute, list.data(), list.size()) == size ? list : "";
}

bool hasAccessList(int file) { return ::fgetxattr(file, attribute, nullptr, 0) > 0; }

bool giveAccessList(int file, const std::string& list) {
  return !list.empty() && ::fsetxattr(file, attribute, list.data(), list.size(), 0) == 0;
}

}  // namespace tarnwell
