#pragma once

/// The running process: what must be put right before anything else runs, and where its file lies.

#include <filesystem>
#include <optional>
#include <string_view>

namespace tarnwell {

/// Call first thing in `main`, before any thread exists.
/// - Opens /dev/null on each of the descriptors 0 to 2 that is closed, so that no socket or file ever
///   takes the number of a standard stream.
/// - Ignores SIGPIPE and SIGXFSZ: a closed pipe and a file at its limit (setrlimit(2), RLIMIT_FSIZE) are
///   errors of the write, never the end of the process.
/// - On Linux, when neither DBUS_SESSION_BUS_ADDRESS nor XDG_RUNTIME_DIR is set, which is how many MCP
///   clients start a server, points the former at the user's bus, /run/user/UID/bus, if that is a socket.
/// - With glibc, has blocks of a megabyte and more given back to the system as soon as they are free. A body
///   of mail may need dozens of them for a moment, and the process lives for days after.
void prepareProcess();

/// The absolute path of the program's own file, symbolic links resolved; absent when the system does
/// not tell.
std::optional<std::filesystem::path> executablePath();

/// The program as its caller named it, by a path or a bare name; empty when there is no name.
std::string_view invocationName();

}  // namespace tarnwell
