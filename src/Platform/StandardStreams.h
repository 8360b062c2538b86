#pragma once

/// Prepares the standard streams and the signals of writing, the same way on every POSIX system.

namespace tarnwell {

/// The part of `prepareProcess` (Platform/Process.h) that all systems share. Opens /dev/null on each closed
/// descriptor from 0 to 2, and ignores SIGPIPE and SIGXFSZ.
void secureStandardStreams();

}  // namespace tarnwell
