#pragma once

/// A systemd-journald of its own for a forked process (support/ForkedProcess.h), in a mount namespace that
/// this enters. Needs the package systemd. Linux only.

#include <signal.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

#include "Platform/SystemLog.h"
#include "support/ChildProgram.h"
#include "support/MountNamespace.h"

namespace tarnwell::test {

class RealJournal {
 public:
  /// Returns when programs of the namespace can write to it. Throws `std::runtime_error` when it does not
  /// start.
  RealJournal() {
    enterMountNamespace({"/run", "/var/log"});
    std::filesystem::create_directories("/run/systemd/journal");
    std::filesystem::create_directories("/run/log/journal");
    daemon_.emplace(std::vector<std::string>{"/lib/systemd/systemd-journald"}, environment());
    for (int attempt = 0; !std::filesystem::exists(SystemLog::defaultAddress()); ++attempt) {
      if (attempt == 3000) {
        throw std::runtime_error("systemd-journald did not open its socket");
      }
      ::usleep(10'000);
    }
  }
  ~RealJournal() { daemon_->end(SIGTERM); }
  RealJournal(const RealJournal&) = delete;
  RealJournal& operator=(const RealJournal&) = delete;

  /// Returns when all that was written can be read. The journal's socket may hold no more than ten entries
  /// (net.unix.max_dgram_qlen), and `SystemLog` drops what does not fit.
  void sync() const { ChildProgram({"journalctl", "--sync"}, environment()).wait(); }

  /// Goes on in new files.
  void rotate() const { ChildProgram({"journalctl", "--rotate"}, environment()).wait(); }

 private:
  static std::vector<std::string> environment() { return {"PATH=/usr/bin:/bin"}; }

  std::optional<ChildProgram> daemon_;
};

}  // namespace tarnwell::test
