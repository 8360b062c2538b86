#pragma once

/// The running process: its first preparations, its file and its name.

#include <filesystem>
#include <optional>
#include <string_view>

namespace tarnwell {

/// Call first thing in `main`, before any thread exists.
/// - Opens /dev/null on each closed descriptor from 0 to 2. Otherwise a socket or a file could take the
///   number of a standard stream.
/// - Ignores SIGPIPE and SIGXFSZ. A write to a closed pipe, or to a file at its size limit (setrlimit(2),
///   RLIMIT_FSIZE), then fails with an error and does not end the process.
/// - On Linux, sets DBUS_SESSION_BUS_ADDRESS to the user's bus, /run/user/UID/bus, if that is a socket and
///   neither DBUS_SESSION_BUS_ADDRESS nor XDG_RUNTIME_DIR is set. Many MCP clients start a server without
///   them.
/// - With glibc, returns freed blocks of a megabyte or more to the system at once. A message body may need
///   dozens of such blocks for a moment, and the process then lives for days.
void prepareProcess();

/// The absolute path of the program's file, without symbolic links. Absent when the system does not tell it.
std::optional<std::filesystem::path> executablePath();

/// The program's name as its caller gave it: a path or a bare name. Empty when there is none.
std::string_view invocationName();

}  // namespace tarnwell
