#include "Platform/UserDirectories.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>

namespace tarnwell {

std::filesystem::path homeDirectory() {
  std::vector<char> buffer(1024);
  passwd record{};
  passwd* found = nullptr;
  while (::getpwuid_r(::getuid(), &record, buffer.data(), buffer.size(), &found) == ERANGE) {
    buffer.resize(buffer.size() * 2);
  }
  if (found == nullptr || found->pw_dir == nullptr) {
    return "/";
  }
  std::filesystem::path directory(found->pw_dir);
  return directory.is_absolute() ? directory : "/";
}

}  // namespace tarnwell
