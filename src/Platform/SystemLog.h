#pragma once

/// The system's log: the unified log on macOS, the journal on Linux.
///
/// On Linux an entry is one datagram in the journal's native protocol (systemd, "Native Journal
/// Protocol") with the fields MESSAGE, PRIORITY, SYSLOG_IDENTIFIER=tarnwell, SUBSYSTEM and CATEGORY. It
/// is sent without waiting: no journal, or a journal that does not keep up, loses the entry and nothing
/// else. Nothing is ever written to a standard stream.
///
/// Threads: any, at the same time.

#include <string>
#include <string_view>

namespace tarnwell {

/// The log types of the system, least important first.
enum class SystemLogType { debug, info, standard, error };

class SystemLog {
 public:
  /// `address` is where the system listens: on Linux the path of the journal's socket; unused elsewhere.
  explicit SystemLog(std::string subsystem, std::string address = defaultAddress());
  ~SystemLog();
  SystemLog(const SystemLog&) = delete;
  SystemLog& operator=(const SystemLog&) = delete;

  /// False when the system would drop entries of this type anyway.
  bool isEnabled(SystemLogType type) const;

  /// Hands one public entry to the system. Messages over 32 KiB are cut at a character.
  void write(SystemLogType type, std::string_view category, std::string_view message) const;

  static std::string defaultAddress();

 private:
  std::string subsystem_;
  std::string address_;
  int socket_ = -1;  // Linux only; open as long as the object lives, never connected
};

}  // namespace tarnwell
