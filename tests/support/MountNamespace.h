#pragma once

/// Another view of the file system for a forked process (support/ForkedProcess.h). Linux only.

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <initializer_list>
#include <stdexcept>
#include <string>

namespace tarnwell::test {

/// A mount namespace of its own with empty file systems over these directories. As root or, with user
/// namespaces, as any user. Throws where the system allows neither.
inline void enterMountNamespace(std::initializer_list<const char*> emptied) {
  uid_t user = ::getuid();
  gid_t group = ::getgid();
  if (::unshare(user == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER) < 0) {
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

}  // namespace tarnwell::test
