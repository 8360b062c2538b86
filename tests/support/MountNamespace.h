#pragma once

/// Gives a forked process another view of the file system (support/ForkedProcess.h). Linux only.

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <string>

#include "support/TemporaryDirectory.h"

namespace tarnwell::test {

/// Enters a new mount namespace and puts empty file systems over these directories. Works for root, and for
/// any user where user namespaces are allowed. Otherwise throws. `others` are flags of unshare(2) for more
/// namespaces.
inline void enterMountNamespace(std::initializer_list<const char*> emptied, int others = 0) {
  uid_t user = ::getuid();
  gid_t group = ::getgid();
  if (::unshare(CLONE_NEWNS | others | (user == 0 ? 0 : CLONE_NEWUSER)) < 0) {
    throw std::runtime_error("this test needs unshare(2): root, or user namespaces");
  }
  if (user != 0) {
    std::ofstream("/proc/self/setgroups") << "deny";
    std::ofstream("/proc/self/uid_map") << user << ' ' << user << " 1";
    std::ofstream("/proc/self/gid_map") << group << ' ' << group << " 1";
  }
  ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
  for (const char* directory : emptied) {
    if (::mount("tmpfs", directory, "tmpfs", 0, "mode=0755") < 0) {
      throw std::runtime_error(std::string("cannot mount over ") + directory + ": " + std::strerror(errno));
    }
  }
}

/// Gives an existing file this content, in the namespace that was entered.
inline void replaceFile(const char* path, const std::string& content) {
  const TemporaryDirectory directory;
  const std::string file = (directory / "replacement").string();
  std::ofstream(file) << content;
  if (::mount(file.c_str(), path, nullptr, MS_BIND, nullptr) < 0) {
    throw std::runtime_error(std::string(path) + " cannot be replaced: " + std::strerror(errno));
  }
}

}  // namespace tarnwell::test
