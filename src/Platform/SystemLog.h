#pragma once

/// The system's log: the unified log on macOS, the journal on Linux.
///
/// On Linux an entry is one datagram in the journal's native protocol (systemd, "Native Journal
/// Protocol") with the fields MESSAGE, PRIORITY, SYSLOG_IDENTIFIER=tarnwell, SUBSYSTEM and CATEGORY. It
/// is sent without waiting: no journal, or a journal that does not keep up, loses the entry and nothing
/// else. Messages over 32 KiB are cut at a character.
///
/// On macOS an entry goes to the log object of its subsystem and category (os_log(3)), its message marked
/// as public. The system cuts long messages by its own rules, and ends one at a zero byte.
///
/// Nothing is ever written to a standard stream.
///
/// Threads: any, at the same time.

#include <memory>
#include <string>
#include <string_view>

namespace tarnwell {

/// The log types of the system, least important first.
enum class SystemLogType { debug, info, standard, error };

class SystemLog {
 public:
  /// `address` is where the system listens: on Linux the path of the journal's socket; not used on
  /// macOS.
  explicit SystemLog(std::string subsystem, std::string address = defaultAddress());
  ~SystemLog();
  SystemLog(const SystemLog&) = delete;
  SystemLog& operator=(const SystemLog&) = delete;

  /// False when the system would drop entries of this type and category anyway.
  bool isEnabled(SystemLogType type, std::string_view category) const;

  /// Hands one public entry to the system.
  void write(SystemLogType type, std::string_view category, std::string_view message) const;

  static std::string defaultAddress();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tarnwell
