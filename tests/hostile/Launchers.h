#pragma once

/// Words to put before the command of a program, which change what surrounds it. Each launcher becomes the
/// program in the end, so that the process stays the same.
///
/// Programs needed: setpriv, unshare and prlimit of util-linux, a POSIX shell.

#include <unistd.h>

#include <string>
#include <vector>

namespace tarnwell::test {

using Launcher = std::vector<std::string>;

/// The program may do no more to files than their modes say. For root that means to give up two
/// capabilities, for good: they leave the bounding set, so that no program started later has them. Anybody
/// else has none to give up.
inline Launcher withoutRightsOverFiles() {
  if (::geteuid() != 0) {
    return {};
  }
  constexpr const char* capabilities = "-dac_override,-dac_read_search";
  return {"setpriv", "--bounding-set", capabilities, "--inh-caps", capabilities};
}

/// Runs a script in a mount namespace of its own, where it may mount what it likes; then comes the program.
/// The user stays the same, so that the bus knows whom it talks to.
inline Launcher inMountNamespace(const std::string& script) {
  Launcher launcher{"unshare", "--mount"};
  if (::geteuid() != 0) {
    launcher.insert(launcher.end(), {"--map-current-user", "--keep-caps"});
  }
  launcher.insert(launcher.end(), {"sh", "-c", "set -e; " + script + "; exec \"$@\"", "sh"});
  return launcher;
}

}  // namespace tarnwell::test
