#pragma once

/// The system's log: the unified log on macOS, the journal on Linux.
///
/// On Linux an entry is one datagram in the journal's native protocol (systemd, "Native Journal Protocol")
/// with the fields MESSAGE, PRIORITY, SYSLOG_IDENTIFIER=tarnwell, SUBSYSTEM and CATEGORY. Sending never
/// waits. When the journal is missing or full, the entry is lost. Messages over 32 KiB are cut between
/// characters.
///
/// On macOS an entry goes to the log object of its subsystem and category (os_log(3)), and its message is
/// marked as public. The system cuts long messages by its own rules, and ends a message at a zero byte.
///
/// Never writes to a standard stream.
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
  /// `address` is where the system listens: the path of the journal's socket on Linux, unused on macOS.
  explicit SystemLog(std::string subsystem, std::string address = defaultAddress());
  ~SystemLog();
  SystemLog(const SystemLog&) = delete;
  SystemLog& operator=(const SystemLog&) = delete;

  /// False when the system would drop entries of this type and category.
  bool isEnabled(SystemLogType type, std::string_view category) const;

  /// Sends one entry, marked as public, to the system.
  void write(SystemLogType type, std::string_view category, std::string_view message) const;

  static std::string defaultAddress();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace tarnwell
