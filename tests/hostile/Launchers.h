#pragma once

/// Words before the command of a program, which change its environment. Each launcher finally becomes the
/// program (exec), so the process stays the same.
///
/// Programs needed: setpriv, unshare and prlimit of util-linux, a POSIX shell.

#include <unistd.h>

#include <string>
#include <vector>

namespace tarnwell::test {

using Launcher = std::vector<std::string>;

/// The program can do with files only what their modes allow. For this, root gives up two capabilities: they
/// leave the bounding set, so no program that starts later has them. Other users have none to give up.
inline Launcher withoutRightsOverFiles() {
  if (::geteuid() != 0) {
    return {};
  }
  constexpr const char* capabilities = "-dac_override,-dac_read_search";
  return {"setpriv", "--bounding-set", capabilities, "--inh-caps", capabilities};
}

/// Runs a script in a new mount namespace, where it may mount anything, and then the program. The user stays
/// the same, so the bus still recognises it.
inline Launcher inMountNamespace(const std::string& script) {
  Launcher launcher{"unshare", "--mount"};
  if (::geteuid() != 0) {
    launcher.insert(launcher.end(), {"--map-current-user", "--keep-caps"});
  }
  launcher.insert(launcher.end(), {"sh", "-c", "set -e; " + script + "; exec \"$@\"", "sh"});
  return launcher;
}

}  // namespace tarnwell::test
