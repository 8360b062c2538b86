#pragma once

/// Postpones the signals that ask a program to end, SIGTERM, SIGINT and SIGHUP, over a few steps that belong
/// together.
///
///     EndSignals::install();                    // once, in the program that wants it
///     {
///       const EndSignals::Postponed whole;      // around steps that should not be separated
///       ...
///     }                                         // a signal that came meanwhile ends the program here
///
/// Outside such a section a signal ends the program at once. Within one, the first signal is noted, and later
/// ones change nothing. The program ends with the section, after `patience` at the latest. In each case the
/// same signal ends it as without this module, so the parent sees no difference. Signals that cannot be
/// caught, such as SIGKILL, are not postponed.
///
/// A signal that was ignored at the start stays ignored (nohup). In a program that never calls `install`,
/// `Postponed` does nothing. The module uses alarm(2) and SIGALRM, but only after a signal was noted.
///
/// Threads: `install` before other threads start. One section at a time in the whole program, and none within
/// another: the calls of tools run one at a time, and only one step of one tool has a section.

#include <chrono>

namespace tarnwell::EndSignals {

/// The longest time that a section can keep the program alive.
inline constexpr std::chrono::seconds patience{5};

void install();

class Postponed {
 public:
  Postponed();
  ~Postponed();
  Postponed(const Postponed&) = delete;
  Postponed& operator=(const Postponed&) = delete;
};

}  // namespace tarnwell::EndSignals
